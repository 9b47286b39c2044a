#pragma once

/// Receive and send rates in bytes per second.
struct NetworkThroughput {
    double bytesIn = 0.0;
    double bytesOut = 0.0;

    bool operator==(const NetworkThroughput&) const = default;
};
