#include "bar/BarLine.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

using S = SensorType;

// waybar's class follows the tray's warning colours, hottest shown kind first; its
// percentage is the first kind's, kept within 0...100.
TEST(BarLine, WaybarClassAndPercentageFollowTheReadings) {
    const struct {
        std::vector<SensorType> kinds;
        double cpu, temperature, gpuTemperature;
        const char* className;
        int percentage;
    } cases[] = {
        {{S::cpu}, 0.424, 0, 0, "", 42},
        {{S::cpu, S::cpuTemp}, 0.5, 74.9, 0, "", 50},
        {{S::cpuTemp, S::gpuTemp}, 0, 75.0, 90.0, "hot", 75},
        {{S::gpuTemp, S::cpuTemp}, 0, 89.9, 20.0, "warm", 20},
        {{S::gpuTemp}, 0, 0, 130.0, "hot", 100},
        {{S::disk}, 0, 0, 0, "", 0}, // no volume size: no share of it
        {{S::fan}, 0, 0, 0, "", 50},
    };
    for (const auto& c : cases) {
        MenuBarReadings readings;
        readings.cpuUsage = c.cpu;
        readings.temperature = c.temperature;
        readings.gpuTemperature = c.gpuTemperature;
        readings.diskUsed = 30.0;
        readings.fanSpeed = 3000; // of 6000
        const QString line = barLine(BarFormat::waybar, c.kinds, readings);
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        EXPECT_EQ(object.value("class").toString().toStdString(), c.className)
            << line.toStdString();
        EXPECT_EQ(object.value("percentage").toInt(-1), c.percentage) << line.toStdString();
    }
}

TEST(BarLine, ItemsAreNamedByTheirKeyWordsAndAnUnknownOneRefusesAll) {
    EXPECT_EQ(barItemsNamed(" cpu,CPUTemp,networkIn"),
              (std::vector<SensorType>{S::cpu, S::cpuTemp, S::networkIn}));
    for (const char* wrong : {"", ",", "cpu,gpu", "cpu;memory"})
        EXPECT_EQ(barItemsNamed(QString::fromLatin1(wrong)), std::nullopt) << wrong;
    EXPECT_EQ(barFormatNamed(QStringLiteral("Waybar")), std::nullopt);
}

} // namespace
