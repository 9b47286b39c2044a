#pragma once

#include "CommandThrottle.h"
#include "monitors/FanDrive.h"
#include "monitors/ThermalReadings.h"

#include <QWidget>

class FanDetailsLine;
class QLabel;
class QSlider;

/// One fan under manual control: "Fan " and its 1-based number, a slider over 20–100 %,
/// the percentage (with its target speed when the fan reports a maximum) in a
/// monospaced font, and the fan's figures.
class FanSliderRow : public QWidget {
    Q_OBJECT
public:
    /// While the slider is dragged, commands go out at most this often.
    static constexpr std::chrono::milliseconds dragCommandGap{200};

    explicit FanSliderRow(QWidget* parent = nullptr);

    /// Shows `fan`. The slider is set to `percent` only when the row did not show
    /// this fan before, so a published reading never moves it under the user's hand.
    void setFan(const FanInfo& fan, double percent);

    long long fanId() const { return fan.id; }
    double percent() const { return percent_; }
    QSlider* slider() const { return slider_; }

signals:
    /// The user moved the slider.
    void percentChanged(long long fanId, double percent);
    /// The fan should now be driven as `drive` says (a share of its maximum, or a duty):
    /// when the slider is let go or moved without dragging, and at most every
    /// dragCommandGap while it is dragged.
    void driveDue(const FanDrive& drive);

private:
    void sliderMoved(int value);
    void showValue();
    FanDrive drive() const;

    FanInfo fan;
    bool showsFan = false;
    double percent_ = 0.0;
    CommandThrottle throttle{dragCommandGap};
    QLabel* name;
    QSlider* slider_;
    QLabel* value;
    FanDetailsLine* details;
};
