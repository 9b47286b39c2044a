#include "ThermalAnswerDecoder.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <optional>

namespace {

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::optional<TemperatureSensor> decodeSensor(const QJsonValue& element) {
    const QJsonObject sensor = element.toObject();
    const QJsonValue key = sensor.value(QLatin1String("key"));
    const QJsonValue label = sensor.value(QLatin1String("label"));
    const QJsonValue value = sensor.value(QLatin1String("value"));
    if (!key.isString() || !label.isString() || !value.isDouble())
        return std::nullopt;
    return TemperatureSensor{key.toString().toStdString(), label.toString().toStdString(),
                             value.toDouble()};
}

// A JSON number that is a whole number representable as a 64-bit integer.
std::optional<long long> wholeNumber(const QJsonValue& value) {
    if (!value.isDouble())
        return std::nullopt;
    const qint64 first = value.toInteger(0);
    if (first != value.toInteger(1))
        return std::nullopt;
    return first;
}

double numberOr(const QJsonObject& object, const char* name, double fallback) {
    const QJsonValue value = object.value(QLatin1String(name));
    return value.isDouble() ? value.toDouble() : fallback;
}

std::optional<double> optionalNumber(const QJsonObject& object, const char* name) {
    const QJsonValue value = object.value(QLatin1String(name));
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<FanInfo> decodeFan(const QJsonValue& element) {
    const QJsonObject fan = element.toObject();
    const std::optional<long long> id = wholeNumber(fan.value(QLatin1String("id")));
    if (!id)
        return std::nullopt;
    return FanInfo{*id,
                   fan.value(QLatin1String("key")).toString().toStdString(),
                   numberOr(fan, "actual", 0.0),
                   optionalNumber(fan, "min"),
                   optionalNumber(fan, "max"),
                   optionalNumber(fan, "target")};
}

} // namespace

ChosenTemperatures chooseTemperatures(const std::vector<TemperatureSensor>& sensors) {
    ChosenTemperatures chosen;
    for (const TemperatureSensor& sensor : sensors) {
        const std::string_view label = sensor.label;
        // A performance-cluster sensor counts only while nothing is chosen; a later
        // "CPU Die" or "CPU Proximity" always overrides what came before.
        const double candidate =
            chosen.cpuTemp == 0.0 && contains(label, "CPU") && contains(label, "Performance")
                ? sensor.value
                : chosen.cpuTemp;
        if (contains(label, "CPU Die") || label == "CPU Proximity")
            chosen.cpuTemp = sensor.value;
        else
            chosen.cpuTemp = candidate;
        if (chosen.gpuTemp == 0.0 && contains(label, "GPU"))
            chosen.gpuTemp = sensor.value;
    }
    if (chosen.cpuTemp == 0.0) {
        std::optional<double> hottest;
        for (const TemperatureSensor& sensor : sensors) {
            if (contains(sensor.label, "CPU"))
                hottest = std::max(hottest.value_or(sensor.value), sensor.value);
        }
        chosen.cpuTemp = hottest.value_or(0.0);
    }
    return chosen;
}

ThermalReadings decodeThermalAnswer(std::string_view answer) {
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray(answer.data(), static_cast<qsizetype>(answer.size())));
    if (!document.isObject())
        return emptyThermalReadings;
    const QJsonObject top = document.object();

    ThermalReadings readings;
    for (const QJsonValue element : top.value(QLatin1String("temperatures")).toArray()) {
        if (std::optional<TemperatureSensor> sensor = decodeSensor(element))
            readings.sensors.push_back(std::move(*sensor));
    }
    for (const QJsonValue element : top.value(QLatin1String("fans")).toArray()) {
        if (std::optional<FanInfo> fan = decodeFan(element))
            readings.fans.push_back(*fan);
    }
    const ChosenTemperatures chosen = chooseTemperatures(readings.sensors);
    readings.cpuTemp = chosen.cpuTemp;
    readings.gpuTemp = chosen.gpuTemp;
    return readings;
}
