#include "TrayTextLayout.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

// Pieces change with the values; a bound keeps a long session from growing the caches.
constexpr qsizetype cacheLimit = 512;
// Text is measured once at this size and scaled, so any icon size lays out the same way.
constexpr qreal referencePixels = 64.0;
constexpr qreal smallUnitScale = 0.6;
constexpr qreal pieceGap = 0.2; // em, between icon and value and between two values
constexpr qreal lineGap = 0.15; // em
// A more broken-up layout must draw the number this much larger to be chosen.
constexpr qreal betterBy = 1.15;
// Values are narrowed so three digits stand 9 px tall in a 22 px square; rates with their
// arrow more, for 7 px digits on each line of the combined network item.
constexpr qreal narrowed = 0.8;
constexpr qreal narrowedPair = 0.7;

QFont atReferenceSize(QFont font) {
    font.setPixelSize(static_cast<int>(referencePixels));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(false);
    return font;
}

struct ValueSegment {
    QString prefix;
    QString number;
    QString unit;
};

// "↓1.5M" → "↓", "1.5" and "M"; "—" has no digits and is all number.
ValueSegment splitNumber(const QString& segment) {
    qsizetype firstDigit = -1;
    qsizetype lastDigit = -1;
    for (qsizetype i = 0; i < segment.size(); ++i) {
        if (!segment[i].isDigit())
            continue;
        if (firstDigit < 0)
            firstDigit = i;
        lastDigit = i;
    }
    if (lastDigit < 0)
        return {{}, segment, {}};
    return {segment.left(firstDigit), segment.mid(firstDigit, lastDigit + 1 - firstDigit),
            segment.mid(lastDigit + 1)};
}

} // namespace

TrayTextLayout::TrayTextLayout(const TrayIconFonts& fonts)
    : valueFont(atReferenceSize(fonts.value)), iconFont(atReferenceSize(fonts.icon)),
      valueMetrics(valueFont), iconMetrics(iconFont),
      digitBounds(valueMetrics.tightBoundingRect(QStringLiteral("0123456789"))) {}

const QFont& TrayTextLayout::fontFor(TitleRun::Kind kind) const {
    return kind == TitleRun::Kind::icon ? iconFont : valueFont;
}

const QFontMetricsF& TrayTextLayout::metricsFor(TitleRun::Kind kind) const {
    return kind == TitleRun::Kind::icon ? iconMetrics : valueMetrics;
}

std::vector<TrayTextLayout::Candidate>
TrayTextLayout::candidates(const std::vector<TitleRun>& title) const {
    std::optional<Piece> icon;
    QString value;
    QColor valueColour;
    for (const TitleRun& run : title) {
        const QString text = run.text.trimmed();
        if (text.isEmpty())
            continue;
        if (run.kind == TitleRun::Kind::icon) {
            icon = Piece{TitleRun::Kind::icon, text, 1.0, 0.0, run.colour};
        } else {
            value = value.isEmpty() ? text : value + u' ' + text;
            valueColour = run.colour;
        }
    }

    std::vector<ValueSegment> segments;
    for (const QString& part : value.split(u' ', Qt::SkipEmptyParts))
        segments.push_back(splitNumber(part));
    const bool hasUnit = std::any_of(segments.begin(), segments.end(),
                                     [](const ValueSegment& s) { return !s.unit.isEmpty(); });

    const bool arrowed = std::any_of(segments.begin(), segments.end(),
                                     [](const ValueSegment& s) { return !s.prefix.isEmpty(); });
    const qreal width = segments.size() > 1 || arrowed ? narrowedPair : narrowed;
    auto segmentPieces = [&](const ValueSegment& segment, qreal unitScale, qreal gap) {
        Line line;
        if (!segment.prefix.isEmpty())
            line.push_back(
                {TitleRun::Kind::value, segment.prefix, smallUnitScale, gap, valueColour, width});
        line.push_back({TitleRun::Kind::value, segment.number, 1.0,
                        segment.prefix.isEmpty() ? gap : 0.0, valueColour, width});
        if (!segment.unit.isEmpty())
            line.push_back(
                {TitleRun::Kind::value, segment.unit, unitScale, 0.0, valueColour, width});
        return line;
    };
    auto oneLine = [&](qreal unitScale) {
        Line line;
        for (std::size_t i = 0; i < segments.size(); ++i) {
            Line pieces = segmentPieces(segments[i], unitScale, i == 0 ? 0.0 : pieceGap);
            line.insert(line.end(), pieces.begin(), pieces.end());
        }
        return Candidate{line};
    };
    auto linePerSegment = [&](qreal unitScale) {
        Candidate lines;
        for (const ValueSegment& segment : segments)
            lines.push_back(segmentPieces(segment, unitScale, 0.0));
        return lines;
    };
    auto unitBelow = [&] {
        Line number = segmentPieces({segments[0].prefix, segments[0].number, {}}, 1.0, 0.0);
        return Candidate{number,
                         {{TitleRun::Kind::value, segments[0].unit, 1.0, 0.0, valueColour, width}}};
    };

    // Simplest first; the icon goes in front of the first line or on a line of its own.
    std::vector<Candidate> values;
    if (!segments.empty()) {
        values.push_back(oneLine(1.0));
        if (hasUnit)
            values.push_back(oneLine(smallUnitScale));
        if (segments.size() == 1 && hasUnit)
            values.push_back(unitBelow());
        if (segments.size() > 1) {
            values.push_back(linePerSegment(1.0));
            if (hasUnit)
                values.push_back(linePerSegment(smallUnitScale));
        }
    }
    if (!icon)
        return values;
    if (values.empty())
        return {Candidate{Line{*icon}}};

    std::vector<Candidate> result;
    for (bool ownLine : {false, true}) {
        for (const Candidate& lines : values) {
            Candidate candidate = lines;
            if (ownLine) {
                candidate.insert(candidate.begin(), Line{*icon});
            } else {
                candidate.front().front().gapBefore = pieceGap;
                candidate.front().insert(candidate.front().begin(), *icon);
            }
            result.push_back(std::move(candidate));
        }
    }
    return result;
}

TrayTextLayout::Measure TrayTextLayout::measure(TitleRun::Kind kind, const QString& text) const {
    auto& cache = kind == TitleRun::Kind::icon ? iconMeasures : valueMeasures;
    if (const auto found = cache.constFind(text); found != cache.constEnd())
        return *found;
    if (cache.size() >= cacheLimit)
        cache.clear();
    const QFontMetricsF& metrics = metricsFor(kind);
    return *cache.insert(text, {metrics.horizontalAdvance(text), metrics.tightBoundingRect(text)});
}

const QList<QGlyphRun>& TrayTextLayout::glyphs(TitleRun::Kind kind, const QString& text) const {
    auto& cache = kind == TitleRun::Kind::icon ? iconGlyphs : valueGlyphs;
    if (const auto found = cache.constFind(text); found != cache.constEnd())
        return *found;
    if (cache.size() >= cacheLimit)
        cache.clear();
    QTextLayout layout(text, fontFor(kind));
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    QList<QGlyphRun> runs = layout.glyphRuns();
    // The layout puts its first baseline at the line's ascent; pieces are drawn from theirs.
    for (QGlyphRun& run : runs) {
        QList<QPointF> positions = run.positions();
        for (QPointF& position : positions)
            position.ry() -= line.ascent();
        run.setPositions(positions);
    }
    return *cache.insert(text, runs);
}

TrayTextLayout::Extent TrayTextLayout::lineExtent(const Line& line) const {
    Extent extent{0.0, std::numeric_limits<qreal>::max(), std::numeric_limits<qreal>::lowest()};
    for (const Piece& piece : line) {
        const Measure size = measure(piece.kind, piece.text);
        QRectF ink = size.ink;
        // Values are as tall as digits whatever their glyphs, so "—" is not drawn giant.
        if (piece.kind == TitleRun::Kind::value)
            ink = ink.united(digitBounds);
        extent.width +=
            piece.gapBefore * referencePixels + size.advance * piece.scale * piece.widthScale;
        extent.top = std::min(extent.top, ink.top() * piece.scale);
        extent.bottom = std::max(extent.bottom, ink.bottom() * piece.scale);
    }
    extent.width /= referencePixels;
    extent.top /= referencePixels;
    extent.bottom /= referencePixels;
    return extent;
}

std::optional<TrayTextLayout::Fit> TrayTextLayout::fitOf(const std::vector<Candidate>& all,
                                                         std::size_t index,
                                                         const QRectF& box) const {
    Fit fit{index, {}, 0.0};
    qreal widest = 0.0;
    qreal height = lineGap * static_cast<qreal>(all[index].size() - 1);
    for (const Line& line : all[index]) {
        fit.extents.push_back(lineExtent(line));
        widest = std::max(widest, fit.extents.back().width);
        height += fit.extents.back().bottom - fit.extents.back().top;
    }
    if (widest <= 0.0 || height <= 0.0)
        return std::nullopt;
    fit.em = std::min(box.width() / widest, box.height() / height);
    return fit;
}

std::optional<TrayTextLayout::Fit> TrayTextLayout::bestFit(const std::vector<Candidate>& all,
                                                           const QRectF& box) const {
    std::optional<Fit> chosen;
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::optional<Fit> fit = fitOf(all, i, box);
        if (fit && (!chosen || fit->em > chosen->em * betterBy))
            chosen = std::move(fit);
    }
    return chosen;
}

std::vector<PlacedText> TrayTextLayout::place(const std::vector<TitleRun>& title, const QRectF& box,
                                              const std::vector<TitleRun>* sizing) const {
    if (box.width() <= 0.0 || box.height() <= 0.0)
        return {};
    const std::vector<Candidate> all = candidates(title);
    std::optional<Fit> chosen;
    if (sizing) {
        // The layout the widest text takes, at its size: a "—" or a short value where the
        // widest has a unit falls back to the simplest layout, never larger than that size.
        if (const std::optional<Fit> widest = bestFit(candidates(*sizing), box)) {
            chosen = fitOf(all, widest->index < all.size() ? widest->index : 0, box);
            if (!chosen && !all.empty())
                chosen = fitOf(all, 0, box);
            if (chosen)
                chosen->em = std::min(chosen->em, widest->em);
        }
    }
    if (!chosen)
        chosen = bestFit(all, box);
    if (!chosen)
        return {};
    const Candidate& lines = all[chosen->index];
    const qreal em = chosen->em;

    qreal blockHeight = lineGap * static_cast<qreal>(lines.size() - 1);
    for (const Extent& extent : chosen->extents)
        blockHeight += extent.bottom - extent.top;
    qreal y = box.top() + (box.height() - blockHeight * em) / 2.0;

    std::vector<PlacedText> placed;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Extent& extent = chosen->extents[i];
        const qreal baseline = y - extent.top * em;
        qreal x = box.left() + (box.width() - extent.width * em) / 2.0;
        for (const Piece& piece : lines[i]) {
            x += piece.gapBefore * em;
            placed.push_back({piece.kind, piece.text, QPointF(x, baseline), em * piece.scale,
                              piece.colour, piece.widthScale});
            x += measure(piece.kind, piece.text).advance / referencePixels * em * piece.scale *
                 piece.widthScale;
        }
        y += (extent.bottom - extent.top + lineGap) * em;
    }
    return placed;
}

void TrayTextLayout::paint(QPainter& painter, const std::vector<PlacedText>& pieces) const {
    for (const PlacedText& piece : pieces) {
        painter.save();
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setPen(piece.colour);
        painter.translate(piece.origin);
        const qreal factor = piece.pixelSize / referencePixels;
        painter.scale(factor * piece.widthScale, factor);
        for (const QGlyphRun& run : glyphs(piece.kind, piece.text))
            painter.drawGlyphRun(QPointF(0.0, 0.0), run);
        painter.restore();
    }
}
