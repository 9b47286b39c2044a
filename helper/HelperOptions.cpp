#include "HelperOptions.h"

ParsedOptions parseHelperOptions(const std::vector<std::string_view>& arguments) {
    HelperOptions options;
    std::optional<HelperMode> mode;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if ((argument == "--all" || argument == "--daemon") && !mode) {
            mode = argument == "--all" ? HelperMode::oneShot : HelperMode::daemon;
        } else if (argument == "--sysfs-root" && !options.sysfsRoot && i + 1 < arguments.size() &&
                   !arguments[i + 1].empty()) {
            options.sysfsRoot = std::string(arguments[++i]);
        } else {
            return {std::nullopt, std::string(helperUsage)};
        }
    }
    if (!mode)
        return {std::nullopt, std::string(helperUsage)};
    options.mode = *mode;
    return {options, {}};
}
