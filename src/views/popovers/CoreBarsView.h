#pragma once

#include <QColor>
#include <QWidget>

#include <vector>

/// One small vertical bar per logical processor, each filled from the bottom to its
/// usage (0...1), spread evenly across the width.
class CoreBarsView : public QWidget {
    Q_OBJECT
public:
    CoreBarsView(int height, QWidget* parent = nullptr);

    void setCores(std::vector<double> cores);
    void setColor(const QColor& color);

    const std::vector<double>& cores() const { return cores_; }
    QColor color() const { return color_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> cores_;
    QColor color_;
};
