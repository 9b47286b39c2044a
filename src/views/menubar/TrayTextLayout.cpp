#include "TrayTextLayout.h"

#include <QPainter>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

// Text is measured once at this size and scaled, so any icon size lays out the same way.
constexpr qreal referencePixels = 64.0;
constexpr qreal smallUnitScale = 0.6;
constexpr qreal pieceGap = 0.2; // em, between icon and value and between two values
constexpr qreal lineGap = 0.1;  // em
// A more broken-up layout must draw the number this much larger to be chosen.
constexpr qreal betterBy = 1.15;

QFont atReferenceSize(QFont font) {
    font.setPixelSize(static_cast<int>(referencePixels));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(false);
    return font;
}

struct ValueSegment {
    QString number;
    QString unit;
};

// "1.5M" → "1.5" and "M"; "—" has no digits and is all number.
ValueSegment splitNumber(const QString& segment) {
    qsizetype lastDigit = -1;
    for (qsizetype i = 0; i < segment.size(); ++i)
        if (segment[i].isDigit())
            lastDigit = i;
    if (lastDigit < 0)
        return {segment, {}};
    return {segment.left(lastDigit + 1), segment.mid(lastDigit + 1)};
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

    auto segmentPieces = [&](const ValueSegment& segment, qreal unitScale, qreal gap) {
        Line line{{TitleRun::Kind::value, segment.number, 1.0, gap, valueColour}};
        if (!segment.unit.isEmpty())
            line.push_back({TitleRun::Kind::value, segment.unit, unitScale, 0.0, valueColour});
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
        return Candidate{{{TitleRun::Kind::value, segments[0].number, 1.0, 0.0, valueColour}},
                         {{TitleRun::Kind::value, segments[0].unit, 1.0, 0.0, valueColour}}};
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
    // Values change every tick; a bound keeps a long session from growing the cache.
    constexpr qsizetype cacheLimit = 512;
    auto& cache = kind == TitleRun::Kind::icon ? iconMeasures : valueMeasures;
    if (const auto found = cache.constFind(text); found != cache.constEnd())
        return *found;
    if (cache.size() >= cacheLimit)
        cache.clear();
    const QFontMetricsF& metrics = metricsFor(kind);
    return *cache.insert(text, {metrics.horizontalAdvance(text), metrics.tightBoundingRect(text)});
}

TrayTextLayout::Extent TrayTextLayout::lineExtent(const Line& line) const {
    Extent extent{0.0, std::numeric_limits<qreal>::max(), std::numeric_limits<qreal>::lowest()};
    for (const Piece& piece : line) {
        const Measure size = measure(piece.kind, piece.text);
        QRectF ink = size.ink;
        // Values are as tall as digits whatever their glyphs, so "—" is not drawn giant.
        if (piece.kind == TitleRun::Kind::value)
            ink = ink.united(digitBounds);
        extent.width += piece.gapBefore * referencePixels + size.advance * piece.scale;
        extent.top = std::min(extent.top, ink.top() * piece.scale);
        extent.bottom = std::max(extent.bottom, ink.bottom() * piece.scale);
    }
    extent.width /= referencePixels;
    extent.top /= referencePixels;
    extent.bottom /= referencePixels;
    return extent;
}

std::vector<PlacedText> TrayTextLayout::place(const std::vector<TitleRun>& title,
                                              const QRectF& box) const {
    if (box.width() <= 0.0 || box.height() <= 0.0)
        return {};

    const Candidate* chosen = nullptr;
    std::vector<Extent> chosenExtents;
    qreal chosenEm = 0.0;
    const std::vector<Candidate> all = candidates(title);
    for (const Candidate& candidate : all) {
        std::vector<Extent> extents;
        qreal widest = 0.0;
        qreal height = lineGap * static_cast<qreal>(candidate.size() - 1);
        for (const Line& line : candidate) {
            extents.push_back(lineExtent(line));
            widest = std::max(widest, extents.back().width);
            height += extents.back().bottom - extents.back().top;
        }
        if (widest <= 0.0 || height <= 0.0)
            continue;
        const qreal em = std::min(box.width() / widest, box.height() / height);
        if (!chosen || em > chosenEm * betterBy) {
            chosen = &candidate;
            chosenExtents = std::move(extents);
            chosenEm = em;
        }
    }
    if (!chosen)
        return {};

    qreal blockHeight = lineGap * static_cast<qreal>(chosen->size() - 1);
    for (const Extent& extent : chosenExtents)
        blockHeight += extent.bottom - extent.top;
    qreal y = box.top() + (box.height() - blockHeight * chosenEm) / 2.0;

    std::vector<PlacedText> placed;
    for (std::size_t i = 0; i < chosen->size(); ++i) {
        const Extent& extent = chosenExtents[i];
        const qreal baseline = y - extent.top * chosenEm;
        qreal x = box.left() + (box.width() - extent.width * chosenEm) / 2.0;
        for (const Piece& piece : (*chosen)[i]) {
            x += piece.gapBefore * chosenEm;
            placed.push_back({piece.kind, piece.text, QPointF(x, baseline), chosenEm * piece.scale,
                              piece.colour});
            x += measure(piece.kind, piece.text).advance / referencePixels * chosenEm * piece.scale;
        }
        y += (extent.bottom - extent.top + lineGap) * chosenEm;
    }
    return placed;
}

void TrayTextLayout::paint(QPainter& painter, const std::vector<PlacedText>& pieces) const {
    for (const PlacedText& piece : pieces) {
        painter.save();
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setFont(fontFor(piece.kind));
        painter.setPen(piece.colour);
        painter.translate(piece.origin);
        const qreal factor = piece.pixelSize / referencePixels;
        painter.scale(factor, factor);
        painter.drawText(QPointF(0.0, 0.0), piece.text);
        painter.restore();
    }
}
