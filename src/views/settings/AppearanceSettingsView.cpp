#include "AppearanceSettingsView.h"

#include "ColorWell.h"
#include "FormSection.h"
#include "ThemePresetButton.h"
#include "settings/HexColor.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int presetColumns = 4;
constexpr int valueFieldWidth = 40;
constexpr int graphSizeLabelWidth = 50;

struct ColourRow {
    const char* label;
    const char* key;
    SettingsBinding::TextGetter get;
    SettingsBinding::TextSetter set;
};

constexpr std::array<ColourRow, 6> colourRows{{
    {"CPU", "cpuColorHex", &AppSettings::cpuColorHex, &AppSettings::setCpuColorHex},
    {"Memory", "memoryColorHex", &AppSettings::memoryColorHex, &AppSettings::setMemoryColorHex},
    {"Disk", "diskColorHex", &AppSettings::diskColorHex, &AppSettings::setDiskColorHex},
    {"Network", "networkColorHex", &AppSettings::networkColorHex, &AppSettings::setNetworkColorHex},
    {"Temperature", "temperatureColorHex", &AppSettings::temperatureColorHex,
     &AppSettings::setTemperatureColorHex},
    {"Fan", "fanColorHex", &AppSettings::fanColorHex, &AppSettings::setFanColorHex},
}};

// The value as a whole number, truncated; a hand-edited value too large for an
// integer shows the nearest one instead of overflowing.
QString wholeNumberText(double value) {
    constexpr double limit = 9.2e18;
    return QString::number(static_cast<long long>(std::clamp(value, -limit, limit)));
}

} // namespace

AppearanceSettingsView::AppearanceSettingsView(AppSettings& settings, QWidget* parent)
    : FormPage(parent), settings(settings) {
    addThemePresets();
    addCustomColors();
    addGraphSize();
    addTrayText();
}

void AppearanceSettingsView::addTrayText() {
    auto* picker = new QComboBox;
    picker->setObjectName(QStringLiteral("persistTextPlacement"));
    SettingsBinding::bindEnumPicker(picker, settings, &AppSettings::persistTextPlacement,
                                    &AppSettings::setPersistTextPlacement);
    addSection(QStringLiteral("Panel"))->addRow(QStringLiteral("Tray text"), picker);
}

void AppearanceSettingsView::addThemePresets() {
    auto* grid = new QWidget;
    auto* layout = new QGridLayout(grid);
    layout->setContentsMargins(0, 2, 0, 2);
    layout->setHorizontalSpacing(10);
    layout->setVerticalSpacing(10);
    int index = 0;
    for (const ThemePreset preset : allCases<ThemePreset>()) {
        auto* button = new ThemePresetButton(preset, grid);
        connect(button, &ThemePresetButton::clicked, this,
                [this, preset] { settings.applyTheme(preset); });
        SettingsBinding::follow(button, settings, [this, button] {
            button->setSelected(settings.themePreset() == button->preset());
        });
        layout->addWidget(button, index / presetColumns, index % presetColumns);
        ++index;
    }
    addSection(QStringLiteral("Theme Presets"))->addRow(grid);
}

void AppearanceSettingsView::addCustomColors() {
    FormSection* section = addSection(QStringLiteral("Custom Colors"));
    for (const ColourRow& row : colourRows) {
        auto* well = new ColorWell;
        well->setObjectName(QString::fromLatin1(row.key));
        well->setAccessibleName(QString::fromLatin1(row.label));
        SettingsBinding::follow(well, settings, [this, well, get = row.get] {
            well->setColor(toQColor(colorFromHex((settings.*get)())));
        });
        connect(well, &ColorWell::colorChosen, this, [this, set = row.set](const QColor& colour) {
            (settings.*set)(hexFromColor(colorFromQColor(colour)));
        });
        section->addRow(QString::fromLatin1(row.label), well);
    }
}

void AppearanceSettingsView::addGraphSize() {
    FormSection* section = addSection(QStringLiteral("Graph Size"));
    addGraphSizeRow(section, {"Width", "graphWidth", 20, 5, 12, &AppSettings::graphWidth,
                              &AppSettings::setGraphWidth});
    addGraphSizeRow(section, {"Height", "graphHeight", 12, 2, 6, &AppSettings::graphHeight,
                              &AppSettings::setGraphHeight});
}

void AppearanceSettingsView::addGraphSizeRow(FormSection* section, const GraphSize& size) {
    auto* controls = new QWidget;
    controls->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* line = new QHBoxLayout(controls);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(10);

    // The slider moves in whole steps: position i is minimum + i × step.
    auto* slider = new QSlider(Qt::Horizontal, controls);
    slider->setObjectName(QString::fromLatin1(size.key));
    slider->setAccessibleName(QString::fromLatin1(size.label));
    slider->setRange(0, size.steps);
    slider->setPageStep(1);
    line->addWidget(slider, 1);

    auto* value = new QLabel(controls);
    value->setObjectName(QString::fromLatin1(size.key) + QStringLiteral("Value"));
    value->setFixedWidth(valueFieldWidth);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    line->addWidget(value);

    SettingsBinding::follow(slider, settings, [this, slider, value, size] {
        const double current = (settings.*size.get)();
        const QSignalBlocker quiet(slider);
        const double position = std::round((current - size.minimum) / size.step);
        slider->setValue(int(std::clamp(position, 0.0, double(size.steps))));
        value->setText(wholeNumberText(current));
    });
    connect(slider, &QSlider::valueChanged, this, [this, size](int position) {
        (settings.*size.set)(size.minimum + position * size.step);
    });
    section->addRow(QString::fromLatin1(size.label), controls, graphSizeLabelWidth);
}
