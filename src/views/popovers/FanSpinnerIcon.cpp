#include "FanSpinnerIcon.h"

#include "SpinnerMotion.h"

#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {

constexpr double fallbackFrameRate = 60.0;

} // namespace

FanSpinnerIcon::FanSpinnerIcon(int size, QWidget* parent)
    : SymbolLabel(QStringLiteral("fan.fill"), size, {}, parent), frameTimer(new QTimer(this)) {
    frameTimer->setTimerType(Qt::PreciseTimer);
    connect(frameTimer, &QTimer::timeout, this, [this] {
        nextFrame();
        update();
    });
}

void FanSpinnerIcon::setSpinning(bool spinning) {
    if (spinning == isSpinning_)
        return;
    isSpinning_ = spinning;
    nextFrame();
    updateAnimation();
    update();
}

void FanSpinnerIcon::setDuration(double seconds) {
    duration_ = seconds;
}

bool FanSpinnerIcon::isAnimating() const {
    return frameTimer->isActive();
}

void FanSpinnerIcon::updateAnimation() {
    if (!isSpinning_ || !isVisible()) {
        frameTimer->stop();
        return;
    }
    const QScreen* display = screen();
    double rate = display ? display->refreshRate() : fallbackFrameRate;
    if (!(rate >= 1.0))
        rate = fallbackFrameRate;
    frameTimer->start(std::max(1, static_cast<int>(std::lround(1000.0 / rate))));
}

void FanSpinnerIcon::nextFrame() {
    lastDate = std::chrono::system_clock::now();
    currentAngle_ = spinnerAngle(isSpinning_, duration_, secondsSinceReferenceDate(lastDate));
}

void FanSpinnerIcon::paintEvent(QPaintEvent* event) {
    const QPixmap icon = pixmap();
    if (icon.isNull() || currentAngle_ == 0.0) {
        SymbolLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(QRectF(rect()).center());
    painter.rotate(currentAngle_);
    const QSizeF size = icon.deviceIndependentSize();
    painter.drawPixmap(QPointF(-size.width() / 2, -size.height() / 2), icon);
}

void FanSpinnerIcon::showEvent(QShowEvent* event) {
    SymbolLabel::showEvent(event);
    nextFrame();
    updateAnimation();
}

void FanSpinnerIcon::hideEvent(QHideEvent* event) {
    SymbolLabel::hideEvent(event);
    frameTimer->stop();
}
