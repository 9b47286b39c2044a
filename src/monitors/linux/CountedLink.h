#pragma once

#include <string>

/// What sysfs says a network interface is, as far as counting its traffic goes.
struct LinkShape {
    bool hasDevice = false;   ///< /sys/class/net/<if>/device: backed by hardware
    bool isAggregate = false; ///< a bond or team master
    bool inAggregate = false; ///< a port of a bond or team: its master counts for it
};

/// Whether the machine's traffic through this interface counts: hardware links (wired,
/// Wi-Fi, mobile, USB tethers, InfiniBand, whatever their names) and bond or team
/// masters in place of their ports. Loopback, bridges, veth, tun/tap, WireGuard,
/// VLANs and other virtual links would count bytes twice or bytes that never leave.
bool isCountedLink(const LinkShape& link);

/// The shape of `name` under `classNetDir` (/sys/class/net, or a fixture tree's).
LinkShape readLinkShape(const std::string& classNetDir, const std::string& name);
