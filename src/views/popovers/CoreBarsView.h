#pragma once

#include <QColor>
#include <QWidget>

#include <vector>

/// The per-core usages (0...1), in processor order, in one of two arrangements:
/// - a strip: one small vertical bar per core, filled from the bottom, spread evenly across
///   the width (the main popover);
/// - a list (the CPU detail): one row per core with "CPU n", a small bar and the percentage.
///   With more than `listedCores` cores it becomes a compact grid, filled column by column,
///   of at most `listedCores` rows, so the popover stays short on any machine.
class CoreBarsView : public QWidget {
    Q_OBJECT
public:
    static constexpr std::size_t listedCores = 16;

    /// A strip `height` pixels high.
    CoreBarsView(int height, QWidget* parent = nullptr);
    /// A list whose height follows the number of cores.
    static CoreBarsView* list(QWidget* parent);

    void setCores(std::vector<double> cores);
    void setColor(const QColor& color);

    const std::vector<double>& cores() const { return cores_; }
    QColor color() const { return color_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Grid {
        int columns = 1;
        int rows = 0;
        int rowHeight = 0;
        bool numbered = true; ///< room for the core's number in each cell
    };
    Grid grid() const;
    int listHeight() const;
    void paintStrip(QPainter& painter);
    void paintList(QPainter& painter);

    bool listed = false;
    std::vector<double> cores_;
    QColor color_;
};
