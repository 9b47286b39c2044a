#include "app/SensorType.h"

#include <gtest/gtest.h>

namespace {

struct SensorCase {
    SensorType type;
    int index;
    std::string_view raw;
    std::string_view keyWord;
};

constexpr SensorCase sensorCases[] = {
    {SensorType::cpu, 0, "CPU", "cpu"},
    {SensorType::memory, 1, "Memory", "memory"},
    {SensorType::disk, 2, "Disk", "disk"},
    {SensorType::networkIn, 3, "Net \u2193", "networkIn"},
    {SensorType::networkOut, 4, "Net \u2191", "networkOut"},
    {SensorType::network, 5, "Network", "network"},
    {SensorType::cpuTemp, 6, "CPU Temp", "cpuTemp"},
    {SensorType::gpuTemp, 7, "GPU Temp", "gpuTemp"},
    {SensorType::fan, 8, "Fan", "fan"},
};

TEST(SensorType, EveryCaseHasItsIndexRawValueAndKeyWord) {
    const auto cases = allCases<SensorType>();
    ASSERT_EQ(cases.size(), std::size(sensorCases));
    for (const SensorCase& expected : sensorCases) {
        SCOPED_TRACE(expected.raw);
        EXPECT_EQ(cases[static_cast<std::size_t>(expected.index)], expected.type);
        EXPECT_EQ(sensorTypeIndex(expected.type), expected.index);
        EXPECT_EQ(sensorTypeAt(expected.index), expected.type);
        EXPECT_EQ(rawValue(expected.type), expected.raw);
        EXPECT_EQ(fromRawValue<SensorType>(expected.raw), expected.type);
        EXPECT_EQ(sensorKeyWord(expected.type), expected.keyWord);
    }
}

TEST(SensorType, IndicesOutsideTheCasesAndKeyWordsAsRawValuesFindNothing) {
    EXPECT_EQ(sensorTypeAt(-1), std::nullopt);
    EXPECT_EQ(sensorTypeAt(9), std::nullopt);
    // The key word is a settings word, not a display name.
    EXPECT_EQ(fromRawValue<SensorType>("cpu"), std::nullopt);
    EXPECT_EQ(fromRawValue<SensorType>("networkIn"), std::nullopt);
}

} // namespace
