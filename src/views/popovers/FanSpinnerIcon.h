#pragma once

#include "SymbolLabel.h"

#include <chrono>

class QTimer;

/// The fan symbol, turning while the fans do. Its angle is taken from the clock, so
/// every copy of it stands at the same angle at the same moment. It is redrawn at
/// the display's frame rate only while it is visible and spinning.
class FanSpinnerIcon : public SymbolLabel {
    Q_OBJECT
public:
    FanSpinnerIcon(int size, QWidget* parent = nullptr);

    void setSpinning(bool spinning);
    /// Seconds per full turn.
    void setDuration(double seconds);

    bool isSpinning() const { return isSpinning_; }
    double duration() const { return duration_; }
    /// The angle in degrees of the last frame.
    double currentAngle() const { return currentAngle_; }
    /// Whether frames are being drawn.
    bool isAnimating() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void updateAnimation();
    void nextFrame();

    bool isSpinning_ = false;
    double duration_ = 2.0;
    std::chrono::system_clock::time_point lastDate;
    double currentAngle_ = 0.0;
    QTimer* frameTimer;
};
