#include "SettingsCommand.h"

#include "settings/AppSettings.h"

#include <QMetaProperty>

#include <optional>

namespace {

std::optional<QMetaProperty> findProperty(const AppSettings& settings, const QString& key) {
    const QMetaObject* meta = settings.metaObject();
    const int index = meta->indexOfProperty(key.toLatin1().constData());
    // objectName and the other QObject properties are not settings.
    if (index < QObject::staticMetaObject.propertyCount())
        return std::nullopt;
    return meta->property(index);
}

std::optional<QVariant> parseValue(const QMetaProperty& property, const QString& text) {
    switch (property.metaType().id()) {
    case QMetaType::Bool:
        if (text == QLatin1String("true") || text == QLatin1String("false"))
            return QVariant(text == QLatin1String("true"));
        return std::nullopt;
    case QMetaType::Double: {
        bool ok = false;
        const double value = text.toDouble(&ok);
        return ok ? std::optional<QVariant>(value) : std::nullopt;
    }
    case QMetaType::QString:
        return QVariant(text);
    default:
        return std::nullopt;
    }
}

std::string shown(const QVariant& value) {
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? "true" : "false";
    return value.toString().toStdString();
}

} // namespace

std::string answerSettingsCommand(AppSettings& settings, std::string_view line) {
    const QString text = QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size()));
    const QString verb = text.section(QLatin1Char(' '), 0, 0);
    const QString key = text.section(QLatin1Char(' '), 1, 1);
    const auto property = findProperty(settings, key);
    if (!property)
        return "error unknown setting '" + key.toStdString() + "'";

    if (verb == QLatin1String("set")) {
        // Text values may hold spaces ("Graph & Text"): the value is the rest of the line.
        const QString valueText = text.section(QLatin1Char(' '), 2);
        const auto value = parseValue(*property, valueText);
        if (!value)
            return "error '" + valueText.toStdString() + "' is no value for " + key.toStdString();
        property->write(&settings, *value);
    } else if (verb != QLatin1String("get")) {
        return "error unknown command '" + verb.toStdString() + "'";
    }
    return key.toStdString() + "=" + shown(property->read(&settings));
}
