#pragma once

#include <QColor>
#include <QWidget>

#include <vector>

/// A line graph of one history, oldest sample at the left edge and newest at the right,
/// each value as a share of `maxValue`, with the area under the line filled; optionally a
/// second history on the same scale, in a colour of its own (uploads under downloads).
/// It spans the width it is given; its height is fixed.
class SparklineView : public QWidget {
    Q_OBJECT
public:
    SparklineView(int height, QWidget* parent = nullptr);

    void setData(std::vector<double> data);
    void setColor(const QColor& color);
    void setMaxValue(double maxValue);
    void setSecondData(std::vector<double> data, const QColor& color);

    const std::vector<double>& data() const { return data_; }
    QColor color() const { return color_; }
    double maxValue() const { return maxValue_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> data_;
    QColor color_;
    std::vector<double> secondData_;
    QColor secondColor_;
    double maxValue_ = 1.0;
};

/// Every value of `history` times `factor` (a fraction history as percentages).
std::vector<double> scaledHistory(const std::vector<double>& history, double factor);
/// The largest value of `history`, at least 1.0, so a silent link draws a flat line.
double rateScaleMaximum(const std::vector<double>& history);
