#include "FigureRowsView.h"

#include "ColoredProgressBar.h"
#include "PopoverStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Names are cut in the middle past this width, so the figure always keeps its room.
constexpr int nameWidth = 190;

} // namespace

FigureRowsView::FigureRowsView(int keptRows, int maxRows, QWidget* parent)
    : QWidget(parent), keptRows(keptRows), maxRows(maxRows) {
    column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    emptyMark = PopoverStyle::secondaryLabel(QStringLiteral("—"), this);
    column->addWidget(emptyMark);
    while (static_cast<int>(lines.size()) < keptRows)
        addLine();
}

void FigureRowsView::setRows(const std::vector<Row>& rows, const QColor& accent) {
    shown = std::min(static_cast<int>(rows.size()), maxRows);
    while (static_cast<int>(lines.size()) < shown)
        addLine();
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const Line& line = lines[i];
        const bool filled = i < shown;
        // Kept rows stay in the layout, blank, so the height holds.
        line.widget->setVisible(filled || i < keptRows - (rows.empty() ? 1 : 0));
        const Row empty;
        const Row& row = filled ? rows[i] : empty;
        line.name->setText(
            line.name->fontMetrics().elidedText(row.name, Qt::ElideMiddle, nameWidth));
        line.name->setToolTip(row.name);
        line.figure->setText(row.figure);
        line.bar->setVisible(row.fraction.has_value());
        line.bar->setColor(accent);
        line.bar->setValue(row.fraction.value_or(0.0));
    }
    emptyMark->setVisible(shown == 0);
}

QString FigureRowsView::nameAt(int row) const {
    return row < shown ? lines[row].name->toolTip() : QString();
}

QString FigureRowsView::figureAt(int row) const {
    return row < shown ? lines[row].figure->text() : QString();
}

void FigureRowsView::addLine() {
    auto* widget = new QWidget(this);
    auto* rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(2);
    auto* text = new QHBoxLayout;
    auto* name = PopoverStyle::label({}, 10, QFont::Normal, widget);
    auto* figure = PopoverStyle::label({}, 10, QFont::Medium, widget);
    name->setMinimumHeight(name->fontMetrics().height()); // a blank kept row keeps its height
    text->addWidget(name);
    text->addStretch();
    text->addWidget(figure);
    auto* bar = new ColoredProgressBar(4, widget);
    bar->hide();
    rows->addLayout(text);
    rows->addWidget(bar);
    column->addWidget(widget);
    lines.push_back({widget, name, figure, bar});
}
