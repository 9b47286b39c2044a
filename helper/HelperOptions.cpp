#include "HelperOptions.h"

ParsedOptions parseHelperOptions(const std::vector<std::string_view>& arguments) {
    HelperOptions options;
    std::optional<HelperMode> mode;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--version") {
            // Whatever else is given: the app asks any copy, wrapped or not, this way.
            return {HelperOptions{HelperMode::version, std::nullopt}, {}};
        }
        if ((argument == "--all" || argument == "--serve" || argument == "--daemon") && !mode) {
            mode = argument == "--all"     ? HelperMode::oneShot
                   : argument == "--serve" ? HelperMode::serve
                                           : HelperMode::daemon;
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
