#pragma once

#include "FormPage.h"
#include "SettingsBinding.h"

class AppSettings;
class FormSection;

/// The "Appearance" tab: theme presets, the six metric colours and the size of
/// the tray graphs, and where the tray text goes.
class AppearanceSettingsView : public FormPage {
    Q_OBJECT
public:
    explicit AppearanceSettingsView(AppSettings& settings, QWidget* parent = nullptr);

private:
    struct GraphSize {
        const char* label;
        const char* key;
        double minimum;
        double step;
        int steps;
        double (AppSettings::*get)() const;
        void (AppSettings::*set)(double);
    };

    void addThemePresets();
    void addCustomColors();
    void addGraphSize();
    void addTrayText();
    void addGraphSizeRow(FormSection* section, const GraphSize& size);

    AppSettings& settings;
};
