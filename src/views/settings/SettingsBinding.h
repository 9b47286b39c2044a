#pragma once

#include "settings/AppSettings.h"
#include "settings/Enumerations.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QString>

#include <functional>

class QAbstractButton;

// Ties one control to one setting: the control shows the stored value (again after
// every change of the settings) and writes the setting as soon as the user changes it.
namespace SettingsBinding {

using BoolGetter = bool (AppSettings::*)() const;
using BoolSetter = void (AppSettings::*)(bool);
using TextGetter = QString (AppSettings::*)() const;
using TextSetter = void (AppSettings::*)(const QString&);

/// Runs `update` now and after every change notice while `control` lives.
void follow(QObject* control, AppSettings& settings, std::function<void()> update);

/// A checkable button; `afterWrite` runs after each write.
void bindToggle(QAbstractButton* toggle, AppSettings& settings, BoolGetter get, BoolSetter set,
                std::function<void()> afterWrite = {});

/// A per-item style picker: "Default" (stored as the empty string), then the three
/// PersistentStyle labels. A stored value that is none of them shows as "Default",
/// which is how the item draws.
void bindStylePicker(QComboBox* picker, AppSettings& settings, TextGetter get, TextSetter set);

/// A picker of every case of E, labelled with the raw values in case order.
template <typename E>
void bindEnumPicker(QComboBox* picker, AppSettings& settings, E (AppSettings::*get)() const,
                    void (AppSettings::*set)(E)) {
    for (const E value : allCases<E>()) {
        const std::string_view label = rawValue(value);
        picker->addItem(QString::fromUtf8(label.data(), qsizetype(label.size())));
    }
    follow(picker, settings, [picker, &settings, get] {
        const QSignalBlocker quiet(picker);
        picker->setCurrentIndex(static_cast<int>((settings.*get)()));
    });
    QObject::connect(picker, &QComboBox::currentIndexChanged, &settings,
                     [&settings, set](int index) {
                         if (index >= 0)
                             (settings.*set)(allCases<E>()[std::size_t(index)]);
                     });
}

} // namespace SettingsBinding
