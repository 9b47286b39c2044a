#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class HelperMode { oneShot, serve, daemon, version };

struct HelperOptions {
    HelperMode mode = HelperMode::oneShot;
    std::optional<std::string> sysfsRoot; ///< fake hardware for tests
};

struct ParsedOptions {
    std::optional<HelperOptions> options;
    std::string error;
};

constexpr std::string_view helperUsage =
    "usage: smc_helper --all | --serve | --daemon [--sysfs-root DIR] | --version";

/// The arguments after the program name: exactly one of "--all", "--serve" and
/// "--daemon", optionally "--sysfs-root DIR"; or "--version" with anything else.
ParsedOptions parseHelperOptions(const std::vector<std::string_view>& arguments);
