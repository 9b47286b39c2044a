#pragma once

#include <QColor>
#include <QWidget>

#include <optional>
#include <vector>

class ColoredProgressBar;
class QLabel;
class QVBoxLayout;

/// Rows of a name on the left and a figure on the right, each with an optional bar below:
/// the top processes, the mounted file systems. "—" stands in while there are none.
class FigureRowsView : public QWidget {
    Q_OBJECT
public:
    struct Row {
        QString name;
        QString figure;
        std::optional<double> fraction; ///< a bar under the row, filled 0...1
    };

    /// `keptRows` rows always take their room, so the popover does not jump as rows come
    /// and go; `maxRows` caps how many are shown.
    FigureRowsView(int keptRows, int maxRows, QWidget* parent = nullptr);

    void setRows(const std::vector<Row>& rows, const QColor& accent);
    /// How many rows show a figure.
    int rowCount() const { return shown; }
    QString nameAt(int row) const;
    QString figureAt(int row) const;

private:
    struct Line {
        QWidget* widget;
        QLabel* name;
        QLabel* figure;
        ColoredProgressBar* bar;
    };
    void addLine();

    int keptRows;
    int maxRows;
    QVBoxLayout* column;
    QLabel* emptyMark;
    std::vector<Line> lines;
    int shown = 0;
};
