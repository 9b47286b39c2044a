#include "SparklineView.h"

#include "views/menubar/Sparkline.h"

#include <QPainter>

#include <algorithm>

SparklineView::SparklineView(int height, QWidget* parent) : QWidget(parent) {
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SparklineView::setData(std::vector<double> data) {
    if (data == data_)
        return;
    data_ = std::move(data);
    update();
}

void SparklineView::setColor(const QColor& color) {
    if (color == color_)
        return;
    color_ = color;
    update();
}

void SparklineView::setMaxValue(double maxValue) {
    if (maxValue == maxValue_)
        return;
    maxValue_ = maxValue;
    update();
}

void SparklineView::setSecondData(std::vector<double> data, const QColor& color) {
    if (data == secondData_ && color == secondColor_)
        return;
    secondData_ = std::move(data);
    secondColor_ = color;
    update();
}

QSize SparklineView::sizeHint() const {
    return {120, height()};
}

void SparklineView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor track = palette().color(QPalette::PlaceholderText);
    track.setAlphaF(0.08f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(QRectF(rect()), 4, 4);
    const QRectF graph = QRectF(rect()).adjusted(1, 1, -1, -1);
    paintSparkline(painter, graph, data_, maxValue_, color_, 1.5);
    if (!secondData_.empty())
        paintSparkline(painter, graph, secondData_, maxValue_, secondColor_, 1.5);
}

std::vector<double> scaledHistory(const std::vector<double>& history, double factor) {
    std::vector<double> scaled;
    scaled.reserve(history.size());
    for (double value : history)
        scaled.push_back(value * factor);
    return scaled;
}

double rateScaleMaximum(const std::vector<double>& history) {
    double largest = 1.0;
    for (double value : history)
        largest = std::max(largest, value);
    return largest;
}
