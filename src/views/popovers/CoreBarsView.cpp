#include "CoreBarsView.h"

#include "PopoverStyle.h"
#include "PopoverText.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int rowGap = 2;
constexpr int barThickness = 6;
// A grid this many columns wide leaves each cell too narrow for a number beside its bar.
constexpr int numberedColumns = 8;

double shown(double usage) {
    return std::isnan(usage) ? 0.0 : std::clamp(usage, 0.0, 1.0);
}

} // namespace

CoreBarsView::CoreBarsView(int height, QWidget* parent) : QWidget(parent) {
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

CoreBarsView* CoreBarsView::list(QWidget* parent) {
    auto* view = new CoreBarsView(0, parent);
    view->listed = true;
    view->setFont(PopoverStyle::font(view->font(), 9));
    return view;
}

void CoreBarsView::setCores(std::vector<double> cores) {
    if (cores == cores_)
        return;
    cores_ = std::move(cores);
    if (listed)
        setFixedHeight(listHeight());
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

void CoreBarsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange && listed)
        setFixedHeight(listHeight());
    QWidget::changeEvent(event);
}

CoreBarsView::Grid CoreBarsView::grid() const {
    const int count = static_cast<int>(cores_.size());
    const int lineHeight = fontMetrics().height();
    if (cores_.size() <= listedCores)
        return {1, count, lineHeight, true};
    const int maxRows = static_cast<int>(listedCores);
    const int columns = std::max(4, (count + maxRows - 1) / maxRows);
    const int rows = (count + columns - 1) / columns;
    const bool numbered = columns <= numberedColumns;
    return {columns, rows, numbered ? lineHeight : barThickness, numbered};
}

int CoreBarsView::listHeight() const {
    const Grid shape = grid();
    return shape.rows == 0 ? 0 : shape.rows * shape.rowHeight + (shape.rows - 1) * rowGap;
}

void CoreBarsView::paintEvent(QPaintEvent*) {
    if (cores_.empty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (listed)
        paintList(painter);
    else
        paintStrip(painter);
}

void CoreBarsView::paintStrip(QPainter& painter) {
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
        const double usage = shown(cores_[i]);
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

void CoreBarsView::paintList(QPainter& painter) {
    const Grid shape = grid();
    const QFontMetrics metrics = fontMetrics();
    const bool single = shape.columns == 1;
    const qreal cellWidth = static_cast<qreal>(width()) / shape.columns;
    const qreal columnGap = single ? 0.0 : 8.0;
    const int labelWidth = metrics.horizontalAdvance(single ? QStringLiteral("CPU ") +
                                                                  QString::number(cores_.size() - 1)
                                                            : QString::number(cores_.size() - 1));
    const int percentWidth = single ? metrics.horizontalAdvance(QStringLiteral("100%")) : 0;
    QColor track = palette().color(QPalette::PlaceholderText);
    track.setAlphaF(0.15f);
    const QColor labelColor = palette().color(QPalette::PlaceholderText);
    const QColor valueColor = palette().color(QPalette::Text);

    for (std::size_t i = 0; i < cores_.size(); ++i) {
        const int column = static_cast<int>(i) / shape.rows;
        const int row = static_cast<int>(i) % shape.rows;
        const QRectF cell(column * cellWidth, row * (shape.rowHeight + rowGap),
                          cellWidth - columnGap, shape.rowHeight);
        QRectF bar = cell;
        if (shape.numbered) {
            const QString label =
                (single ? QStringLiteral("CPU ") : QString()) + QString::number(i);
            painter.setPen(labelColor);
            painter.drawText(QRectF(cell.left(), cell.top(), labelWidth, cell.height()),
                             Qt::AlignRight | Qt::AlignVCenter, label);
            bar.setLeft(cell.left() + labelWidth + 6);
        }
        if (single) {
            painter.setPen(valueColor);
            painter.drawText(
                QRectF(cell.right() - percentWidth, cell.top(), percentWidth, cell.height()),
                Qt::AlignRight | Qt::AlignVCenter, percentText(shown(cores_[i])));
            bar.setRight(cell.right() - percentWidth - 8);
        }
        const qreal thickness = std::min<qreal>(barThickness, cell.height());
        bar = QRectF(bar.left(), cell.center().y() - thickness / 2.0, bar.width(), thickness);
        const qreal radius = thickness / 2.0;
        painter.setPen(Qt::NoPen);
        painter.setBrush(track);
        painter.drawRoundedRect(bar, radius, radius);
        const double usage = shown(cores_[i]);
        if (usage <= 0.0)
            continue;
        painter.setBrush(color_);
        painter.drawRoundedRect(
            QRectF(bar.left(), bar.top(), std::max(bar.width() * usage, thickness), thickness),
            radius, radius);
    }
}
