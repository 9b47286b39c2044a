#pragma once

#include "ButtonModel.h"
#include "TrayIconFonts.h"
#include "TrayTextLayout.h"

#include <QImage>
#include <QRectF>

/// Paints a tray item's button model into a square icon, since tray hosts give every item
/// a square slot and shrink anything wider. `textOnly` fills the square's width with the
/// title; `graphOnly` fills it with the graph; `graphAndText` puts the value above the graph.
/// Sparklines keep their proportions (graphWidth : graphHeight), draw graphWidth samples and
/// keep their scale, fill and stroke; line widths grow with the icon (1 pixel at 22).
/// Needs a QGuiApplication; main thread only.
class TrayIconComposer {
public:
    explicit TrayIconComposer(const TrayIconFonts& fonts = TrayIconFonts::systemDefault());

    /// A `pixelSize` × `pixelSize` icon in logical pixels, `pixelSize` × `devicePixelRatio`
    /// physical pixels. Null for a size or ratio that is not positive.
    QImage compose(const ButtonModel& model, int pixelSize, qreal devicePixelRatio = 1.0) const;

private:
    void paintGraph(QPainter& painter, const MenuBarGraph& graph, const QRectF& box,
                    qreal unit) const;

    TrayTextLayout text;
};

/// `TrayIconComposer` with the system's fonts.
QImage composeTrayIcon(const ButtonModel& model, int pixelSize, qreal devicePixelRatio = 1.0);
