#include "SensorType.h"

namespace {

constexpr std::array<std::string_view, 9> keyWords{
    "cpu", "memory", "disk", "networkIn", "networkOut", "network", "cpuTemp", "gpuTemp", "fan"};

} // namespace

std::string_view sensorKeyWord(SensorType type) {
    return keyWords[static_cast<std::size_t>(type)];
}

int sensorTypeIndex(SensorType type) {
    return static_cast<int>(type);
}

std::optional<SensorType> sensorTypeAt(int index) {
    if (index < 0 || index >= static_cast<int>(keyWords.size()))
        return std::nullopt;
    return static_cast<SensorType>(index);
}

QString sensorSymbolName(SensorType type) {
    switch (type) {
    case SensorType::cpu:
        return QStringLiteral("cpu");
    case SensorType::memory:
        return QStringLiteral("memorychip");
    case SensorType::disk:
        return QStringLiteral("internaldrive");
    case SensorType::networkIn:
        return QStringLiteral("arrow.down.circle");
    case SensorType::networkOut:
        return QStringLiteral("arrow.up.circle");
    case SensorType::network:
        return QStringLiteral("arrow.up.arrow.down.circle");
    case SensorType::cpuTemp:
        return QStringLiteral("thermometer.high");
    case SensorType::gpuTemp:
        return QStringLiteral("thermometer.medium");
    case SensorType::fan:
        return QStringLiteral("fan");
    }
    return {};
}

QString trayItemId(std::optional<SensorType> type) {
    if (!type)
        return QStringLiteral("vorlune");
    const std::string_view word = sensorKeyWord(*type);
    return QStringLiteral("vorlune-") +
           QString::fromLatin1(word.data(), qsizetype(word.size())).toLower();
}

QString trayItemTitle(std::optional<SensorType> type) {
    if (!type)
        return QStringLiteral("Vorlune");
    const std::string_view raw = rawValue(*type);
    return QStringLiteral("Vorlune ") + QString::fromUtf8(raw.data(), qsizetype(raw.size()));
}
