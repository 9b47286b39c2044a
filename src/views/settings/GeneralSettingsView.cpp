#include "GeneralSettingsView.h"

#include "AlertsSection.h"
#include "FormSection.h"
#include "SettingsBinding.h"
#include "ToggleSwitch.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>

#include <array>
#include <iostream>

namespace {

struct IntervalChoice {
    const char* label;
    double seconds;
};

constexpr std::array<IntervalChoice, 4> intervalChoices{{
    {"1 second", 1.0},
    {"2 seconds", 2.0},
    {"5 seconds", 5.0},
    {"10 seconds", 10.0},
}};

} // namespace

GeneralSettingsView::GeneralSettingsView(AppSettings& settings, LaunchAtLogin launchAtLogin,
                                         SensorHelperActions helperActions, QWidget* parent)
    : FormPage(parent), settings(settings), launchAtLogin(std::move(launchAtLogin)),
      helperActions(std::move(helperActions)) {
    addUpdateInterval();
    addDisplayMode();
    addAppearance();
    addStartup();
    fillAlertsSection(*addSection(QStringLiteral("Alerts")), settings);
    if (this->helperActions.isInstalled && this->helperActions.uninstall)
        addSensorHelper();
}

QString GeneralSettingsView::appearanceExplanation(AppearanceMode mode) {
    switch (mode) {
    case AppearanceMode::system:
        return QStringLiteral("Follows your desktop's appearance setting, including auto-switch "
                              "by time of day.");
    case AppearanceMode::light:
        return QStringLiteral("Always use light appearance for all Vorlune windows.");
    case AppearanceMode::dark:
        return QStringLiteral("Always use dark appearance for all Vorlune windows.");
    }
    return {};
}

void GeneralSettingsView::addUpdateInterval() {
    auto* picker = new QComboBox;
    picker->setObjectName(QStringLiteral("updateInterval"));
    for (const IntervalChoice& choice : intervalChoices)
        picker->addItem(QString::fromLatin1(choice.label), choice.seconds);
    SettingsBinding::follow(picker, settings, [picker, this] {
        const QSignalBlocker quiet(picker);
        // A value none of the choices hold selects nothing.
        picker->setCurrentIndex(picker->findData(settings.updateInterval()));
    });
    connect(picker, &QComboBox::currentIndexChanged, this, [picker, this](int index) {
        if (index >= 0)
            settings.setUpdateInterval(picker->itemData(index).toDouble());
    });
    addSection(QStringLiteral("Update Interval"))->addRow(QStringLiteral("Refresh every"), picker);
}

void GeneralSettingsView::addDisplayMode() {
    auto* picker = new QComboBox;
    picker->setObjectName(QStringLiteral("displayMode"));
    SettingsBinding::bindEnumPicker(picker, settings, &AppSettings::displayMode,
                                    &AppSettings::setDisplayMode);
    addSection(QStringLiteral("Display Mode"))->addRow(QStringLiteral("Panel style"), picker);
}

void GeneralSettingsView::addAppearance() {
    auto* picker = new QComboBox;
    picker->setObjectName(QStringLiteral("appearanceMode"));
    SettingsBinding::bindEnumPicker(picker, settings, &AppSettings::appearanceMode,
                                    &AppSettings::setAppearanceMode);
    connect(picker, &QComboBox::currentIndexChanged, this, [this] {
        if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            settings.applyAppearance(*application);
    });

    auto* explanation = new QLabel;
    explanation->setObjectName(QStringLiteral("appearanceExplanation"));
    explanation->setWordWrap(true);
    explanation->setForegroundRole(QPalette::PlaceholderText);
    SettingsBinding::follow(explanation, settings, [explanation, this] {
        explanation->setText(appearanceExplanation(settings.appearanceMode()));
    });

    FormSection* section = addSection(QStringLiteral("Appearance"));
    section->addRow(QStringLiteral("Mode"), picker);
    section->addRow(explanation);
}

void GeneralSettingsView::addStartup() {
    launchToggle = new ToggleSwitch;
    launchToggle->setObjectName(QStringLiteral("launchAtLogin"));
    launchToggle->setAccessibleName(QStringLiteral("Launch at login"));
    launchToggle->setChecked(launchAtLogin.isEnabled());
    connect(launchToggle, &ToggleSwitch::toggled, this, &GeneralSettingsView::setLaunchAtLogin);
    addSection(QStringLiteral("Startup"))->addRow(QStringLiteral("Launch at login"), launchToggle);
}

void GeneralSettingsView::addSensorHelper() {
    helperState = new QLabel;
    helperState->setObjectName(QStringLiteral("sensorHelperState"));
    uninstallButton = new QPushButton(QStringLiteral("Uninstall helper"));
    uninstallButton->setObjectName(QStringLiteral("uninstallHelper"));
    connect(uninstallButton, &QPushButton::clicked, this, [this] {
        uninstallButton->setEnabled(false);
        helperState->setText(QStringLiteral("Removing..."));
        helperActions.uninstall([self = QPointer(this)](bool) {
            if (self)
                self->refreshSensorHelper();
        });
    });
    auto* line = new QHBoxLayout;
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(helperState);
    line->addWidget(uninstallButton);
    auto* row = new QWidget;
    row->setLayout(line);
    addSection(QStringLiteral("Fan Control"))->addRow(QStringLiteral("Sensor helper"), row);
    refreshSensorHelper();
}

void GeneralSettingsView::refreshSensorHelper() {
    if (!helperState)
        return;
    const bool installed = helperActions.isInstalled();
    helperState->setText(installed ? QStringLiteral("Installed") : QStringLiteral("Not installed"));
    uninstallButton->setVisible(installed);
    uninstallButton->setEnabled(true);
}

void GeneralSettingsView::showEvent(QShowEvent* event) {
    refreshSensorHelper();
    // The entry can change behind our back (another tool, a previous run).
    const QSignalBlocker quiet(launchToggle);
    launchToggle->setChecked(launchAtLogin.isEnabled());
    FormPage::showEvent(event);
}

void GeneralSettingsView::setLaunchAtLogin(bool on) {
    // A failure is only reported on standard output; the switch keeps what the user chose.
    if (const auto error = launchAtLogin.setEnabled(on))
        std::cout << "Failed to set launch at login: " << error->toStdString() << std::endl;
}
