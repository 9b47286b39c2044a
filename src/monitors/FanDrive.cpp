#include "FanDrive.h"

FanDrive fanDrive(const FanInfo& fan, double percent) {
    if (fan.key.empty())
        return {};
    if (fan.max && *fan.max > 0)
        return {FanDrive::Kind::speed, fan.key, percent / 100.0 * *fan.max};
    return {FanDrive::Kind::duty, fan.key, percent};
}

std::vector<FanDrive> fanDrives(const std::vector<FanInfo>& fans,
                                const std::map<long long, double>& percentByFan) {
    std::vector<FanDrive> drives;
    for (const FanInfo& fan : fans) {
        const auto entry = percentByFan.find(fan.id);
        drives.push_back(fanDrive(fan, entry == percentByFan.end() ? 0.0 : entry->second));
    }
    return drives;
}
