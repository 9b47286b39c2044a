#include "SettingsBinding.h"

#include <QAbstractButton>

namespace SettingsBinding {

void follow(QObject* control, AppSettings& settings, std::function<void()> update) {
    update();
    QObject::connect(&settings, &AppSettings::objectWillChange, control, std::move(update));
}

void bindToggle(QAbstractButton* toggle, AppSettings& settings, BoolGetter get, BoolSetter set,
                std::function<void()> afterWrite) {
    follow(toggle, settings, [toggle, &settings, get] {
        const QSignalBlocker quiet(toggle);
        toggle->setChecked((settings.*get)());
    });
    QObject::connect(toggle, &QAbstractButton::toggled, &settings,
                     [&settings, set, afterWrite = std::move(afterWrite)](bool on) {
                         (settings.*set)(on);
                         if (afterWrite)
                             afterWrite();
                     });
}

void bindStylePicker(QComboBox* picker, AppSettings& settings, TextGetter get, TextSetter set) {
    picker->addItem(QStringLiteral("Default"), QString());
    for (const PersistentStyle style : allCases<PersistentStyle>()) {
        const std::string_view label = rawValue(style);
        const QString text = QString::fromUtf8(label.data(), qsizetype(label.size()));
        picker->addItem(text, text);
    }
    follow(picker, settings, [picker, &settings, get] {
        const QSignalBlocker quiet(picker);
        picker->setCurrentIndex(std::max(0, picker->findData((settings.*get)())));
    });
    QObject::connect(picker, &QComboBox::currentIndexChanged, &settings,
                     [picker, &settings, set](int index) {
                         if (index >= 0)
                             (settings.*set)(picker->itemData(index).toString());
                     });
}

} // namespace SettingsBinding
