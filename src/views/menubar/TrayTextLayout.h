#pragma once

#include "ButtonModel.h"
#include "TrayIconFonts.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QHash>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

class QPainter;

/// One piece of a title placed in a tray icon.
struct PlacedText {
    TitleRun::Kind kind = TitleRun::Kind::value;
    QString text;
    QPointF origin;        ///< start of the baseline, in the icon's logical pixels
    qreal pixelSize = 0.0; ///< em size the piece is drawn at
    QColor colour;
    qreal widthScale = 1.0; ///< glyphs narrowed to this share of their width
};

/// Lays an item's title runs out to fill a box as large as they can. It tries, from the
/// simplest: one line; the unit after the number at a smaller size; the icon on a line of its
/// own; the unit on the next line; one line per value of a two-value text ("↓1.2M" over
/// "↑5K"). A later layout is taken only when it draws the number clearly larger. Numbers are
/// never broken; values are drawn narrowed (two values side by side more so), and an arrow
/// before a number is drawn small, like a unit. Needs a QGuiApplication (fonts).
class TrayTextLayout {
public:
    explicit TrayTextLayout(const TrayIconFonts& fonts);

    /// Places `title` in `box`. With `sizing` (the widest title the item can show), the
    /// layout and size are those `sizing` gets, so the text keeps one size whatever the
    /// value; only a title wider than `sizing` is drawn smaller, to fit.
    std::vector<PlacedText> place(const std::vector<TitleRun>& title, const QRectF& box,
                                  const std::vector<TitleRun>* sizing = nullptr) const;
    void paint(QPainter& painter, const std::vector<PlacedText>& pieces) const;

private:
    struct Piece {
        TitleRun::Kind kind;
        QString text;
        qreal scale;
        qreal gapBefore;
        QColor colour;
        qreal widthScale = 1.0;
    };
    using Line = std::vector<Piece>;
    using Candidate = std::vector<Line>;
    struct Extent {
        qreal width = 0.0;
        qreal top = 0.0;
        qreal bottom = 0.0;
    };

    std::vector<Candidate> candidates(const std::vector<TitleRun>& title) const;
    struct Measure {
        qreal advance;
        QRectF ink;
    };

    Extent lineExtent(const Line& line) const;
    struct Fit {
        std::size_t index = 0;
        std::vector<Extent> extents;
        qreal em = 0.0;
    };
    /// The em size of each candidate in `box` and the one chosen; nullopt when none fits.
    std::optional<Fit> bestFit(const std::vector<Candidate>& all, const QRectF& box) const;
    std::optional<Fit> fitOf(const std::vector<Candidate>& all, std::size_t index,
                             const QRectF& box) const;
    Measure measure(TitleRun::Kind kind, const QString& text) const;
    /// The shaped glyphs of `text`, with the baseline at y = 0.
    const QList<QGlyphRun>& glyphs(TitleRun::Kind kind, const QString& text) const;
    const QFont& fontFor(TitleRun::Kind kind) const;
    const QFontMetricsF& metricsFor(TitleRun::Kind kind) const;

    QFont valueFont;
    QFont iconFont;
    QFontMetricsF valueMetrics;
    QFontMetricsF iconMetrics;
    QRectF digitBounds;
    // Shaping dominates layout time and the same pieces ("%", "42") recur every tick.
    mutable QHash<QString, Measure> valueMeasures;
    mutable QHash<QString, Measure> iconMeasures;
    // Shaping again for every paint cost more than the rest of a picture; each distinct
    // piece is shaped once and its glyphs drawn from then on.
    mutable QHash<QString, QList<QGlyphRun>> valueGlyphs;
    mutable QHash<QString, QList<QGlyphRun>> iconGlyphs;
};
