#pragma once

#include "FormPage.h"
#include "SettingsBinding.h"

#include <functional>

class AppSettings;
class FormSection;

/// The "Monitors" tab: which sections the main popover shows, and which tray items
/// exist with their styles.
class MonitorsSettingsView : public FormPage {
    Q_OBJECT
public:
    /// `syncStatusItems` runs after every change of an item switch.
    MonitorsSettingsView(AppSettings& settings, std::function<void()> syncStatusItems,
                         QWidget* parent = nullptr);

private:
    struct ItemRow {
        const char* label;
        const char* persistKey;
        SettingsBinding::BoolGetter isOn;
        SettingsBinding::BoolSetter setOn;
        const char* styleKey;
        SettingsBinding::TextGetter style;
        SettingsBinding::TextSetter setStyle;
    };

    void addPopoverSections();
    void addPersistentItems();
    QWidget* addItemRow(FormSection* section, const ItemRow& item);

    AppSettings& settings;
    std::function<void()> syncStatusItems;
};
