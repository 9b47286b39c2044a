#include "tray/SymbolPath.h"
#include "tray/Symbols.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

QImage drawn(int size, const auto& paint) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return image;
}

// The share of the ink in either picture that the other lacks: 0 for the same picture.
double inkDifference(const QImage& a, const QImage& b) {
    long long differing = 0, ink = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const int alphaA = qAlpha(a.pixel(x, y)), alphaB = qAlpha(b.pixel(x, y));
            differing += std::abs(alphaA - alphaB);
            ink += std::max(alphaA, alphaB);
        }
    return ink > 0 ? double(differing) / double(ink) : 1.0;
}

} // namespace

// The app reads its icons itself rather than load an SVG library: each bundled icon must
// draw as a full SVG renderer draws it, at a tray's size and a popover's.
TEST(SymbolPath, EveryBundledIconDrawsAsAFullSvgRendererDrawsIt) {
    ASSERT_FALSE(symbolLines("cpu").isEmpty()); // which also loads the bundled icons
    const QStringList files = QDir(QStringLiteral(":/icons")).entryList();
    ASSERT_GE(files.size(), 19);
    for (const QString& file : files) {
        QFile source(QStringLiteral(":/icons/") + file);
        ASSERT_TRUE(source.open(QIODevice::ReadOnly)) << file.toStdString();
        const QByteArray svg = source.readAll();
        const QPainterPath lines = symbolPath(svg);
        // Edges are smoothed a little differently; a misread line differs by far more.
        for (const auto [size, tolerance] : {std::pair{22, 0.08}, std::pair{64, 0.04}}) {
            const QImage ours = drawn(size, [&](QPainter& painter) {
                painter.scale(size / 24.0, size / 24.0);
                painter.strokePath(
                    lines, QPen(Qt::black, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            });
            const QImage reference = drawn(size, [&](QPainter& painter) {
                QSvgRenderer(svg).render(&painter, QRectF(0, 0, size, size));
            });
            EXPECT_LT(inkDifference(ours, reference), tolerance)
                << file.toStdString() << " at " << size << " px";
        }
    }
}

TEST(SymbolPath, ReadsCompactNumbersAndArcsAndStopsAtWhatItCannotRead) {
    const struct {
        const char* name;
        const char* svg;
        QRectF bounds;
    } cases[] = {
        {"nothing", "", {}},
        {"not SVG", "<html><body>cpu</body></html>", {}},
        {"relative lines", "<svg><path d=\"M2 2h20v20\"/></svg>", {2, 2, 20, 20}},
        {"a sign or a second point starts a number", "<path d=\"M1.5.5l2-.5\"/>", {1.5, 0, 2, 0.5}},
        {"sweep 0 goes the other way round, below",
         "<path d=\"M2 12a10 10 0 0 0 20 0\"/>",
         {2, 12, 20, 10}},
        {"radii too small grow to reach the end",
         "<path d=\"M2 12A1 1 0 0 1 22 12\"/>",
         {2, 2, 20, 10}},
        {"a rounded rectangle and a circle",
         "<rect x=\"4\" y=\"4\" width=\"8\" height=\"8\" "
         "rx=\"2\"/><circle cx=\"18\" cy=\"18\" r=\"2\"/>",
         {4, 4, 16, 16}},
        {"a pair cut short ends the path", "<path d=\"M2 2L20 20L5\"/>", {2, 2, 18, 18}},
        {"an unknown command ends the path", "<path d=\"M2 2L20 20Q1 1 3 3\"/>", {2, 2, 18, 18}},
    };
    for (const auto& c : cases) {
        const QRectF bounds = symbolPath(QByteArrayView(c.svg)).boundingRect();
        EXPECT_NEAR(bounds.left(), c.bounds.left(), 0.01) << c.name;
        EXPECT_NEAR(bounds.top(), c.bounds.top(), 0.01) << c.name;
        EXPECT_NEAR(bounds.width(), c.bounds.width(), 0.01) << c.name;
        EXPECT_NEAR(bounds.height(), c.bounds.height(), 0.01) << c.name;
    }
}
