#include "CoreBarsView.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

CoreBarsView::CoreBarsView(int height, QWidget* parent) : QWidget(parent) {
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CoreBarsView::setCores(std::vector<double> cores) {
    if (cores == cores_)
        return;
    cores_ = std::move(cores);
    update();
}

void CoreBarsView::setColor(const QColor& color) {
    if (color == color_)
        return;
    color_ = color;
    update();
}

QSize CoreBarsView::sizeHint() const {
    return {120, height()};
}

void CoreBarsView::paintEvent(QPaintEvent*) {
    if (cores_.empty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto count = static_cast<qreal>(cores_.size());
    const qreal slot = width() / count;
    // Gaps shrink with many cores so every bar keeps some width.
    const qreal gap = std::min(2.0, slot * 0.25);
    const qreal barWidth = slot - gap;
    const qreal radius = std::min(2.0, barWidth / 2.0);
    QColor track = palette().color(QPalette::PlaceholderText);
    track.setAlphaF(0.15f);
    for (std::size_t i = 0; i < cores_.size(); ++i) {
        const double usage = std::isnan(cores_[i]) ? 0.0 : std::clamp(cores_[i], 0.0, 1.0);
        const QRectF bar(slot * static_cast<qreal>(i) + gap / 2.0, 0.0, barWidth, height());
        painter.setBrush(track);
        painter.drawRoundedRect(bar, radius, radius);
        if (usage <= 0.0)
            continue;
        const qreal filled = bar.height() * usage;
        painter.setBrush(color_);
        painter.drawRoundedRect(QRectF(bar.left(), bar.bottom() - filled, barWidth, filled), radius,
                                radius);
    }
}
