#include "FanSliderRow.h"

#include "FanControlText.h"
#include "FanDetailsLine.h"
#include "PopoverStyle.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
constexpr int minimumPercent = 20;
} // namespace

FanSliderRow::FanSliderRow(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    auto* line = new QHBoxLayout;
    line->setSpacing(8);
    name = PopoverStyle::secondaryLabel({}, this);
    slider_ = new QSlider(Qt::Horizontal, this);
    // The daemon never sets a fan below 20 % (it must not stop one); the slider does not
    // offer what would not happen.
    slider_->setRange(minimumPercent, 100);
    slider_->setSingleStep(1);
    slider_->setPageStep(10);
    value = new QLabel(this);
    value->setFont(PopoverStyle::font(QFontDatabase::systemFont(QFontDatabase::FixedFont), 10));
    line->addWidget(name);
    line->addWidget(slider_, 1);
    line->addWidget(value);
    column->addLayout(line);
    details = new FanDetailsLine(this);
    column->addWidget(details);

    connect(slider_, &QSlider::valueChanged, this, &FanSliderRow::sliderMoved);
    connect(slider_, &QSlider::sliderPressed, this, [this] { throttle.reset(); });
    connect(slider_, &QSlider::sliderReleased, this, [this] { emit driveDue(drive()); });
}

void FanSliderRow::setFan(const FanInfo& shown, double percent) {
    const bool sameFan = showsFan && shown.id == fan.id;
    fan = shown;
    showsFan = true;
    if (!sameFan) {
        percent_ = std::max<double>(percent, minimumPercent);
        const QSignalBlocker quiet(slider_);
        slider_->setValue(static_cast<int>(std::lround(percent_)));
    }
    name->setText(QStringLiteral("Fan ") + QString::number(fan.id + 1));
    slider_->setAccessibleName(name->text() + QStringLiteral(" speed"));
    details->setFan(fan);
    showValue();
}

void FanSliderRow::sliderMoved(int position) {
    percent_ = position;
    showValue();
    emit percentChanged(fan.id, percent_);
    if (!slider_->isSliderDown() || throttle.allow(CommandThrottle::Clock::now()))
        emit driveDue(drive());
}

void FanSliderRow::showValue() {
    value->setText(sliderValueText(drive(), percent_));
}

FanDrive FanSliderRow::drive() const {
    return fanDrive(fan, percent_);
}
