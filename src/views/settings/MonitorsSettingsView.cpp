#include "MonitorsSettingsView.h"

#include "FormSection.h"
#include "ToggleSwitch.h"

#include <QComboBox>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>

#include <array>

namespace {

constexpr int stylePickerWidth = 130;
constexpr qreal offItemOpacity = 0.3;

struct PopoverToggle {
    const char* label;
    const char* key;
    SettingsBinding::BoolGetter get;
    SettingsBinding::BoolSetter set;
};

constexpr std::array<PopoverToggle, 6> popoverToggles{{
    {"CPU Usage", "showCPU", &AppSettings::showCPU, &AppSettings::setShowCPU},
    {"Memory Usage", "showMemory", &AppSettings::showMemory, &AppSettings::setShowMemory},
    {"Disk Usage", "showDisk", &AppSettings::showDisk, &AppSettings::setShowDisk},
    {"Network Throughput", "showNetwork", &AppSettings::showNetwork, &AppSettings::setShowNetwork},
    {"Temperature", "showTemperature", &AppSettings::showTemperature,
     &AppSettings::setShowTemperature},
    {"Fan Speed", "showFan", &AppSettings::showFan, &AppSettings::setShowFan},
}};

// Labels take this much room at least, so the switches beside them stand in one column.
constexpr int labelColumnWidth = 132;

// A row's controls set beside its label: the switch first, anything else at the far end.
QWidget* besideLabel(ToggleSwitch* toggle, QWidget* trailing = nullptr) {
    auto* controls = new QWidget;
    controls->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* line = new QHBoxLayout(controls);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(toggle);
    line->addStretch(1);
    if (trailing)
        line->addWidget(trailing);
    return controls;
}

} // namespace

MonitorsSettingsView::MonitorsSettingsView(AppSettings& settings,
                                           std::function<void()> syncStatusItems, QWidget* parent)
    : FormPage(parent), settings(settings), syncStatusItems(std::move(syncStatusItems)) {
    addPopoverSections();
    addPersistentItems();
}

void MonitorsSettingsView::addPopoverSections() {
    FormSection* section = addSection(QStringLiteral("Popover Sections"));
    for (const PopoverToggle& item : popoverToggles) {
        auto* toggle = new ToggleSwitch;
        toggle->setObjectName(QString::fromLatin1(item.key));
        toggle->setAccessibleName(QString::fromUtf8(item.label));
        SettingsBinding::bindToggle(toggle, settings, item.get, item.set);
        section->addRow(QString::fromUtf8(item.label), besideLabel(toggle), labelColumnWidth);
    }
}

void MonitorsSettingsView::addPersistentItems() {
    FormSection* section = addSection(QStringLiteral("Persistent Panel Items"));

    auto* defaultStyle = new QComboBox;
    defaultStyle->setObjectName(QStringLiteral("persistentDisplayStyle"));
    defaultStyle->setFixedWidth(stylePickerWidth);
    SettingsBinding::bindEnumPicker(defaultStyle, settings, &AppSettings::persistentDisplayStyle,
                                    &AppSettings::setPersistentDisplayStyle);
    section->addRow(QStringLiteral("Default Style"), defaultStyle);

    auto* showIcons = new ToggleSwitch;
    showIcons->setObjectName(QStringLiteral("persistShowIcons"));
    showIcons->setAccessibleName(QStringLiteral("Show Icons"));
    SettingsBinding::bindToggle(showIcons, settings, &AppSettings::persistShowIcons,
                                &AppSettings::setPersistShowIcons);
    section->addRow(QStringLiteral("Show Icons"), besideLabel(showIcons), labelColumnWidth);

    using S = AppSettings;
    addItemRow(section, {"CPU %", "persistCPU", &S::persistCPU, &S::setPersistCPU, "styleCPU",
                         &S::styleCPU, &S::setStyleCPU});
    addItemRow(section, {"Memory %", "persistMemory", &S::persistMemory, &S::setPersistMemory,
                         "styleMemory", &S::styleMemory, &S::setStyleMemory});
    addItemRow(section, {"Disk %", "persistDisk", &S::persistDisk, &S::setPersistDisk, "styleDisk",
                         &S::styleDisk, &S::setStyleDisk});

    auto* combined = new ToggleSwitch;
    combined->setObjectName(QStringLiteral("networkCombined"));
    combined->setAccessibleName(QStringLiteral("Combine Network Upload/Download"));
    SettingsBinding::bindToggle(combined, settings, &S::networkCombined, &S::setNetworkCombined,
                                syncStatusItems);
    section->addRow(QStringLiteral("Combine Network Upload/Download"), besideLabel(combined),
                    labelColumnWidth);

    QWidget* network =
        addItemRow(section, {"Network", "persistNetwork", &S::persistNetwork, &S::setPersistNetwork,
                             "styleNetwork", &S::styleNetwork, &S::setStyleNetwork});
    QWidget* download = addItemRow(section, {"Network ↓", "persistNetworkIn", &S::persistNetworkIn,
                                             &S::setPersistNetworkIn, "styleNetworkIn",
                                             &S::styleNetworkIn, &S::setStyleNetworkIn});
    QWidget* upload = addItemRow(section, {"Network ↑", "persistNetworkOut", &S::persistNetworkOut,
                                           &S::setPersistNetworkOut, "styleNetworkOut",
                                           &S::styleNetworkOut, &S::setStyleNetworkOut});
    // Only the rows are swapped; the hidden rows' settings keep their values.
    SettingsBinding::follow(network, settings, [this, network, download, upload] {
        const bool isCombined = settings.networkCombined();
        network->setVisible(isCombined);
        download->setVisible(!isCombined);
        upload->setVisible(!isCombined);
    });

    addItemRow(section, {"CPU Temp", "persistCPUTemp", &S::persistCPUTemp, &S::setPersistCPUTemp,
                         "styleCPUTemp", &S::styleCPUTemp, &S::setStyleCPUTemp});
    addItemRow(section, {"GPU Temp", "persistGPUTemp", &S::persistGPUTemp, &S::setPersistGPUTemp,
                         "styleGPUTemp", &S::styleGPUTemp, &S::setStyleGPUTemp});
    addItemRow(section, {"Fan Speed", "persistFan", &S::persistFan, &S::setPersistFan, "styleFan",
                         &S::styleFan, &S::setStyleFan});

    section->addFootnote(
        QStringLiteral("Each enabled sensor gets its own panel item. Click to see details."));
    section->addFootnote(QStringLiteral(
        "Temperature and fan readings use the sensor helper for accurate sensor data."));
}

QWidget* MonitorsSettingsView::addItemRow(FormSection* section, const ItemRow& item) {
    const QString label = QString::fromUtf8(item.label);
    auto* toggle = new ToggleSwitch;
    toggle->setObjectName(QString::fromLatin1(item.persistKey));
    toggle->setAccessibleName(label);
    SettingsBinding::bindToggle(toggle, settings, item.isOn, item.setOn, syncStatusItems);

    auto* picker = new QComboBox;
    picker->setObjectName(QString::fromLatin1(item.styleKey));
    picker->setAccessibleName(label + QStringLiteral(" style"));
    picker->setFixedWidth(stylePickerWidth);
    SettingsBinding::bindStylePicker(picker, settings, item.style, item.setStyle);
    auto* fade = new QGraphicsOpacityEffect(picker);
    picker->setGraphicsEffect(fade);
    SettingsBinding::follow(fade, settings, [this, fade, isOn = item.isOn] {
        fade->setOpacity((settings.*isOn)() ? 1.0 : offItemOpacity);
    });
    return section->addRow(label, besideLabel(toggle, picker), labelColumnWidth);
}
