#include "views/menubar/Sparkline.h"
#include "ImageProbe.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

const QColor blue(0x00, 0x00, 0xFF);

// With the default 40 × 18 points, a value at 0.46875 of the scale puts the 1-point line
// exactly on pixel row 9: y = 18 - (16 × 0.46875 + 1) = 9.5 is that row's centre.
constexpr double onRowNine = 0.46875;

TEST(Sparkline, FewerThanTwoSamplesGiveATransparentImageOfTheFullSize) {
    const struct {
        const char* name;
        std::vector<double> history;
        double width;
    } cases[] = {
        {"empty history", {}, 40.0},
        {"one sample", {0.5}, 40.0},
        {"one point wide", std::vector<double>(60, 0.5), 1.0},
        {"less than a point wide", std::vector<double>(60, 0.5), 0.5},
    };
    for (const auto& c : cases) {
        const QImage image = sparklineImage(c.history, 1.0, blue, c.width, 18.0);
        ASSERT_FALSE(image.isNull()) << c.name;
        EXPECT_EQ(image.size(), QSize(static_cast<int>(std::ceil(c.width)), 18)) << c.name;
        EXPECT_TRUE(fullyTransparent(image)) << c.name;
    }
}

TEST(Sparkline, StrokeSitsOnTheValueWithAFillOfAlphaPointThreeBelowAndNothingAbove) {
    const std::vector<double> history(60, onRowNine);
    const QImage image = sparklineImage(history, 1.0, blue, 40.0, 18.0);
    ASSERT_EQ(image.size(), QSize(40, 18));
    for (int x : {0, 20, 39}) {
        SCOPED_TRACE(x);
        const QColor stroke = image.pixelColor(x, 9);
        EXPECT_EQ(stroke.alpha(), 255);
        EXPECT_TRUE(looksLike(stroke, blue, 255, 2));
        const QColor fill = image.pixelColor(x, 14);
        EXPECT_NEAR(fill.alpha(), 77, 1);
        EXPECT_TRUE(looksLike(fill, blue, 76, 3));
        EXPECT_EQ(image.pixelColor(x, 17).alpha(), fill.alpha()) << "fill reaches the bottom";
        EXPECT_EQ(image.pixelColor(x, 7).alpha(), 0);
        EXPECT_EQ(image.pixelColor(x, 0).alpha(), 0);
    }
}

TEST(Sparkline, TwoSamplesDrawOneStraightSegmentAcrossTheFullWidth) {
    // From 0 at the left (y = 17) to the full scale at the right (y = 1).
    const QImage image = sparklineImage(std::vector<double>{0.0, 1.0}, 1.0, blue, 40.0, 18.0);
    for (int x : {0, 10, 20, 30, 39}) {
        const double lineY = 17.0 - 16.0 * (x + 0.5) / 40.0;
        const QColor onLine = colourAt(image, {x + 0.5, lineY});
        EXPECT_GT(onLine.alpha(), 150) << x;
        if (lineY >= 2.0) {
            EXPECT_EQ(colourAt(image, {x + 0.5, lineY - 2.0}).alpha(), 0) << x;
        }
    }
}

TEST(Sparkline, DrawsOnlyTheLastWidthSamples) {
    std::vector<double> history(50, 1.0); // older samples would pull the line to the top
    history.insert(history.end(), 10, onRowNine);
    const QImage image = sparklineImage(history, 1.0, blue, 10.0, 18.0);
    for (int x = 0; x < 10; ++x) {
        EXPECT_EQ(image.pixelColor(x, 9).alpha(), 255) << x;
        EXPECT_EQ(image.pixelColor(x, 5).alpha(), 0) << x;
    }
}

TEST(Sparkline, ValuesAreClampedAndTheScaleHasAFloor) {
    const struct {
        const char* name;
        double value;
        double scaleMaximum;
        int lineRow; // the pixel row the line covers most
    } cases[] = {
        {"at the floor of 0.001", 0.001 * onRowNine, 0.0, 9},
        {"negative scale uses the floor", 0.001 * onRowNine, -5.0, 9},
        {"above the scale stays at the top", 5.0, 1.0, 1},
        {"infinite stays at the top", INFINITY, 1.0, 1},
        {"negative lies at the bottom", -3.0, 1.0, 16},
        {"NaN lies at the bottom", std::nan(""), 1.0, 16},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QImage image =
            sparklineImage(std::vector<double>(5, c.value), c.scaleMaximum, blue, 40.0, 18.0);
        int strongestRow = -1;
        int strongest = -1;
        for (int y = 0; y < 18; ++y) {
            // Rows the stroke touches are more opaque than the fill.
            const int alpha = image.pixelColor(20, y).alpha();
            if (alpha > strongest) {
                strongest = alpha;
                strongestRow = y;
            }
        }
        EXPECT_GE(strongest, 127);
        EXPECT_NEAR(strongestRow, c.lineRow, 1);
    }
}

TEST(Sparkline, ImageFollowsTheDevicePixelRatioAndRefusesSizesItCannotDraw) {
    const std::vector<double> history(60, onRowNine);
    const QImage sharp = sparklineImage(history, 1.0, blue, 40.0, 18.0, 2.0);
    EXPECT_EQ(sharp.size(), QSize(80, 36));
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
    EXPECT_EQ(colourAt(sharp, {20.0, 9.5}).alpha(), 255);

    for (double bad : std::initializer_list<double>{0.0, -40.0, NAN, INFINITY, 1e9})
        EXPECT_TRUE(sparklineImage(history, 1.0, blue, bad, 18.0).isNull()) << bad;
    EXPECT_TRUE(sparklineImage(history, 1.0, blue, 40.0, NAN).isNull());
}

TEST(Sparkline, LastSamplesAndSampleCount) {
    const std::vector<double> history{1, 2, 3, 4, 5};
    EXPECT_EQ(lastSamples(history, 3), (std::vector<double>{3, 4, 5}));
    EXPECT_EQ(lastSamples(history, 9), history);
    EXPECT_TRUE(lastSamples(history, 0).empty());
    EXPECT_EQ(sparklineSampleCount(40.9), 40u);
    EXPECT_EQ(sparklineSampleCount(-1.0), 0u);
    EXPECT_EQ(sparklineSampleCount(NAN), 0u);
}

} // namespace
