#include "AlertsSection.h"

#include "FormSection.h"
#include "SettingsBinding.h"
#include "ToggleSwitch.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

#include <cmath>

namespace {

using DoubleGetter = double (AppSettings::*)() const;
using DoubleSetter = void (AppSettings::*)(double);

struct AlertRow {
    const char* label;
    const char* key; ///< the switch's setting, also the controls' name
    SettingsBinding::BoolGetter on;
    SettingsBinding::BoolSetter setOn;
    DoubleGetter level; ///< null: the condition has a fixed level
    DoubleSetter setLevel;
    int lowest, highest;
    const char* unit;
    DoubleGetter seconds;
    DoubleSetter setSeconds;
};

const AlertRow rows[] = {
    {"CPU temperature", "alertCPUTemp", &AppSettings::alertCPUTemp, &AppSettings::setAlertCPUTemp,
     &AppSettings::alertCPUTempLimit, &AppSettings::setAlertCPUTempLimit, 50, 110, " °C",
     &AppSettings::alertCPUTempSeconds, &AppSettings::setAlertCPUTempSeconds},
    {"CPU load", "alertCPU", &AppSettings::alertCPU, &AppSettings::setAlertCPU,
     &AppSettings::alertCPULimit, &AppSettings::setAlertCPULimit, 10, 100, " %",
     &AppSettings::alertCPUSeconds, &AppSettings::setAlertCPUSeconds},
    {"Memory pressure high", "alertMemory", &AppSettings::alertMemory, &AppSettings::setAlertMemory,
     nullptr, nullptr, 0, 0, "", &AppSettings::alertMemorySeconds,
     &AppSettings::setAlertMemorySeconds},
    {"Root volume full", "alertDisk", &AppSettings::alertDisk, &AppSettings::setAlertDisk,
     &AppSettings::alertDiskLimit, &AppSettings::setAlertDiskLimit, 50, 100, " %",
     &AppSettings::alertDiskSeconds, &AppSettings::setAlertDiskSeconds},
};

QSpinBox* numberBox(AppSettings& settings, DoubleGetter get, DoubleSetter set, int lowest,
                    int highest, const QString& unit, const QString& name) {
    auto* box = new QSpinBox;
    box->setRange(lowest, highest);
    box->setSuffix(unit);
    box->setFixedWidth(76); // one column of boxes whatever the unit
    box->setAccessibleName(name);
    SettingsBinding::follow(box, settings, [box, &settings, get] {
        const QSignalBlocker quiet(box);
        box->setValue(static_cast<int>(std::lround((settings.*get)())));
    });
    QObject::connect(box, &QSpinBox::valueChanged, &settings,
                     [&settings, set](int value) { (settings.*set)(value); });
    return box;
}

} // namespace

void fillAlertsSection(FormSection& section, AppSettings& settings) {
    for (const AlertRow& row : rows) {
        const QString label = QString::fromUtf8(row.label);
        auto* controls = new QWidget;
        auto* line = new QHBoxLayout(controls);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(6);
        if (row.level) {
            line->addWidget(numberBox(settings, row.level, row.setLevel, row.lowest, row.highest,
                                      QString::fromUtf8(row.unit),
                                      label + QStringLiteral(" level")));
            line->addWidget(new QLabel(QStringLiteral("for")));
        }
        auto* seconds = numberBox(settings, row.seconds, row.setSeconds, 0, 3600,
                                  QStringLiteral(" s"), label + QStringLiteral(" duration"));
        seconds->setObjectName(QString::fromLatin1(row.key) + QStringLiteral("Seconds"));
        line->addWidget(seconds);
        auto* toggle = new ToggleSwitch;
        toggle->setObjectName(QString::fromLatin1(row.key));
        toggle->setAccessibleName(label);
        SettingsBinding::bindToggle(toggle, settings, row.on, row.setOn);
        line->addWidget(toggle);
        section.addRow(label, controls);
    }
    section.addFootnote(QStringLiteral("Fans handed back to automatic control are always "
                                       "reported. Alerts are desktop notifications; a click "
                                       "opens the reading's details."));
}
