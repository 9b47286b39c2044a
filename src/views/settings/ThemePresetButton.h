#pragma once

#include "settings/Enumerations.h"

#include <QAbstractButton>

/// One theme preset: its preview gradient with the preset's label below; the
/// selected preset gets a ring in the highlight colour.
class ThemePresetButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ThemePresetButton(ThemePreset preset, QWidget* parent = nullptr);

    ThemePreset preset() const { return preset_; }
    bool isSelected() const { return selected; }
    void setSelected(bool selected);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ThemePreset preset_;
    bool selected = false;
};
