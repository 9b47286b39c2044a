#pragma once

#include "MenuBarAppearance.h"
#include "MenuBarReadings.h"
#include "tray/SensorType.h"

#include <QColor>
#include <QImage>

#include <vector>

/// The graph of one tray item as plain values, so it can be drawn at any size:
/// a sparkline of recent samples or a ring gauge of one fraction.
struct MenuBarGraph {
    enum class Kind { sparkline, ringGauge };

    Kind kind = Kind::sparkline;
    std::vector<double> samples; ///< sparkline: the samples drawn, oldest first
    double scaleMaximum = 1.0;   ///< sparkline: the value drawn at full height
    double fraction = 0.0;       ///< ring gauge: share of the ring, may be NaN or infinite
    QColor colour;
    double width = 40.0;  ///< graphWidth in points (a ring gauge is `height` wide)
    double height = 18.0; ///< graphHeight in points

    bool operator==(const MenuBarGraph&) const = default;

    /// The picture as a menu bar draws it: a `width` × `height` sparkline or a `height` ×
    /// `height` gauge, in points. Transparent for a sparkline of fewer than two samples,
    /// null when the size cannot be drawn.
    QImage image(qreal devicePixelRatio = 1.0) const;
};

/// The item's graph: CPU and memory histories against 1.0, network histories against their
/// largest value (at least 1.0; the combined item draws downloads on the scale of both),
/// CPU temperature history against 110 °C; ring gauges for the disk's used fraction, the
/// GPU temperature ÷ 110 and fan speed ÷ maximum fan speed.
MenuBarGraph menuBarGraph(SensorType type, const MenuBarReadings& readings,
                          const MenuBarAppearance& appearance);
