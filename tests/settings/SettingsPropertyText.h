#pragma once

// Reads and writes AppSettings properties as their stored text, so the probe
// process and the tests compare settings the same way whatever their type.
#include "settings/AppSettings.h"
#include "settings/StoredValue.h"

#include <QMetaProperty>
#include <optional>
#include <string>

namespace settings_text {

template <typename E> bool holds(const QMetaProperty& property) {
    return property.metaType() == QMetaType::fromType<E>();
}

template <typename E> std::optional<QVariant> enumValue(const std::string& text) {
    if (const auto value = fromRawValue<E>(text))
        return QVariant::fromValue(*value);
    return std::nullopt;
}

inline std::string toText(const QMetaProperty& property, const QVariant& value) {
    if (holds<AppearanceMode>(property))
        return std::string(rawValue(value.value<AppearanceMode>()));
    if (holds<DisplayMode>(property))
        return std::string(rawValue(value.value<DisplayMode>()));
    if (holds<ThemePreset>(property))
        return std::string(rawValue(value.value<ThemePreset>()));
    if (holds<PersistentStyle>(property))
        return std::string(rawValue(value.value<PersistentStyle>()));
    if (property.metaType().id() == QMetaType::Bool)
        return formatStoredBool(value.toBool());
    if (property.metaType().id() == QMetaType::Double)
        return formatStoredDouble(value.toDouble());
    return value.toString().toStdString();
}

inline std::optional<QVariant> fromText(const QMetaProperty& property, const std::string& text) {
    if (holds<AppearanceMode>(property))
        return enumValue<AppearanceMode>(text);
    if (holds<DisplayMode>(property))
        return enumValue<DisplayMode>(text);
    if (holds<ThemePreset>(property))
        return enumValue<ThemePreset>(text);
    if (holds<PersistentStyle>(property))
        return enumValue<PersistentStyle>(text);
    if (property.metaType().id() == QMetaType::Bool) {
        if (const auto value = parseStoredBool(text))
            return QVariant(*value);
        return std::nullopt;
    }
    if (property.metaType().id() == QMetaType::Double) {
        if (const auto value = parseStoredDouble(text))
            return QVariant(*value);
        return std::nullopt;
    }
    return QVariant(QString::fromStdString(text));
}

/// The setting `key` as text, or "<no such setting>".
inline std::string read(const AppSettings& settings, const char* key) {
    const QMetaObject* meta = settings.metaObject();
    const int index = meta->indexOfProperty(key);
    if (index < meta->propertyOffset())
        return "<no such setting>";
    const QMetaProperty property = meta->property(index);
    return toText(property, property.read(&settings));
}

/// Writes the setting `key` from its text through the typed setter.
inline bool write(AppSettings& settings, const char* key, const std::string& text) {
    const QMetaObject* meta = settings.metaObject();
    const int index = meta->indexOfProperty(key);
    if (index < meta->propertyOffset())
        return false;
    const QMetaProperty property = meta->property(index);
    const auto value = fromText(property, text);
    return value && property.write(&settings, *value);
}

/// The names of the settings in declaration order.
inline std::vector<std::string> names(const AppSettings& settings) {
    std::vector<std::string> result;
    const QMetaObject* meta = settings.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        result.emplace_back(meta->property(i).name());
    return result;
}

} // namespace settings_text
