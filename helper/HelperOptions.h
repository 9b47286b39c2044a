#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class HelperMode { oneShot, daemon };

struct HelperOptions {
    HelperMode mode = HelperMode::oneShot;
    std::optional<std::string> sysfsRoot; ///< fake hardware for tests
};

struct ParsedOptions {
    std::optional<HelperOptions> options;
    std::string error;
};

constexpr std::string_view helperUsage = "usage: smc_helper --all | --daemon [--sysfs-root DIR]";

/// The arguments after the program name: exactly one of "--all" and "--daemon",
/// optionally "--sysfs-root DIR".
ParsedOptions parseHelperOptions(const std::vector<std::string_view>& arguments);
