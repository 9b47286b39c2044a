#include "BarLine.h"

#include "views/menubar/MenuBarColor.h"
#include "views/menubar/MenuBarValueText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

// "hot" or "warm" where the tray draws the temperature red or orange.
QString temperatureClass(double celsius) {
    const QColor colour = temperatureColor(celsius, QColor());
    return colour == MenuBarColors::hot    ? QStringLiteral("hot")
           : colour == MenuBarColors::warm ? QStringLiteral("warm")
                                           : QString();
}

std::optional<double> temperatureOf(SensorType type, const MenuBarReadings& readings) {
    if (type == SensorType::cpuTemp)
        return readings.temperature;
    if (type == SensorType::gpuTemp)
        return readings.gpuTemperature;
    return std::nullopt;
}

int percentageOf(SensorType type, const MenuBarReadings& readings) {
    double value = 0.0;
    switch (type) {
    case SensorType::cpu:
        value = readings.cpuUsage * 100.0;
        break;
    case SensorType::memory:
        value =
            readings.memoryTotal > 0.0 ? readings.memoryUsed / readings.memoryTotal * 100.0 : 0.0;
        break;
    case SensorType::disk:
        value = readings.diskFraction() * 100.0;
        break;
    case SensorType::cpuTemp:
    case SensorType::gpuTemp:
        value = *temperatureOf(type, readings);
        break;
    case SensorType::fan:
        value = readings.fanMaxSpeed > 0
                    ? double(readings.fanSpeed) / double(readings.fanMaxSpeed) * 100.0
                    : 0.0;
        break;
    default:
        break;
    }
    return std::isfinite(value) ? static_cast<int>(std::clamp(std::round(value), 0.0, 100.0)) : 0;
}

// The hottest warning among the kinds shown.
QString worstClass(const std::vector<SensorType>& kinds, const MenuBarReadings& readings) {
    QString worst;
    for (const SensorType type : kinds)
        if (const auto celsius = temperatureOf(type, readings)) {
            const QString level = temperatureClass(*celsius);
            if (level == QStringLiteral("hot") || worst.isEmpty())
                worst = level;
            if (worst == QStringLiteral("hot"))
                break;
        }
    return worst;
}

QString compact(const QJsonValue& value) {
    return QString::fromUtf8(value.isArray()
                                 ? QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact)
                                 : QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
}

} // namespace

std::optional<BarFormat> barFormatNamed(const QString& name) {
    if (name == QStringLiteral("waybar"))
        return BarFormat::waybar;
    if (name == QStringLiteral("i3bar"))
        return BarFormat::i3bar;
    if (name == QStringLiteral("plain"))
        return BarFormat::plain;
    return std::nullopt;
}

std::optional<std::vector<SensorType>> barItemsNamed(const QString& list) {
    static constexpr auto all = allCases<SensorType>();
    std::vector<SensorType> kinds;
    for (const QString& name : list.split(u',', Qt::SkipEmptyParts)) {
        const auto found = std::find_if(all.begin(), all.end(), [&](SensorType type) {
            const std::string_view word = sensorKeyWord(type);
            return name.trimmed().compare(QString::fromLatin1(word.data(), qsizetype(word.size())),
                                          Qt::CaseInsensitive) == 0;
        });
        if (found == all.end())
            return std::nullopt;
        kinds.push_back(*found);
    }
    if (kinds.empty())
        return std::nullopt;
    return kinds;
}

QString barPreamble(BarFormat format) {
    return format == BarFormat::i3bar ? QStringLiteral("{\"version\":1}\n[") : QString();
}

QString barLine(BarFormat format, const std::vector<SensorType>& kinds,
                const MenuBarReadings& readings) {
    QStringList texts, tips;
    QJsonArray blocks;
    for (const SensorType type : kinds) {
        const QString icon = menuBarIcon(type), value = menuBarValueText(type, readings);
        const QString text = icon.isEmpty() ? value : icon + u' ' + value;
        texts.push_back(text);
        tips.push_back(menuBarToolTip(type, readings));
        QJsonObject block{{"name", trayItemId(type)}, {"full_text", text}};
        if (const auto celsius = temperatureOf(type, readings);
            celsius && !temperatureClass(*celsius).isEmpty())
            block.insert("color", temperatureColor(*celsius, QColor()).name());
        blocks.push_back(block);
    }
    const QString joined = texts.join(QStringLiteral("  "));
    switch (format) {
    case BarFormat::waybar:
        return compact(QJsonObject{{"text", joined},
                                   {"tooltip", tips.join(u'\n')},
                                   {"class", worstClass(kinds, readings)},
                                   {"percentage", percentageOf(kinds.front(), readings)}});
    case BarFormat::i3bar:
        return compact(blocks) + u',';
    case BarFormat::plain:
        break;
    }
    return joined;
}
