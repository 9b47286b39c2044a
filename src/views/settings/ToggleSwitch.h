#pragma once

#include <QAbstractButton>

/// An on/off switch: a pill-shaped track with a round knob, filled with the
/// palette's highlight colour while on.
class ToggleSwitch : public QAbstractButton {
    Q_OBJECT
public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
