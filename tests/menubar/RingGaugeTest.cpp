#include "views/menubar/RingGauge.h"
#include "ImageProbe.h"
#include "views/menubar/MenuBarColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

const QColor blue(0x00, 0x00, 0xFF);

// The gauge at 18 points drawn at ratio 4: the 2-point ring is 8 pixels wide, so a point on
// its centre line lands well inside it.
QImage gauge(double fraction) {
    return ringGaugeImage(fraction, 18.0, blue, 4.0);
}

// The colour on the ring's centre line, `degrees` clockwise from twelve o'clock.
QColor onRing(const QImage& image, double degrees) {
    const double radians = degrees * std::numbers::pi / 180.0;
    const double radius = 8.0; // (18 - 2) / 2
    return colourAt(image, {9.0 + radius * std::sin(radians), 9.0 - radius * std::cos(radians)});
}

bool isArc(const QColor& colour) {
    return looksLike(colour, blue, 220, 30);
}

bool isTrack(const QColor& colour) {
    return std::abs(colour.alpha() - 77) <= 3 &&
           looksLike(colour, MenuBarColors::gaugeTrack, 70, 3);
}

TEST(RingGauge, StartsAtTwelveAndGrowsClockwise) {
    const struct {
        const char* name;
        double fraction;
        double degrees;
        bool arc;
    } cases[] = {
        {"an eighth reaches one o'clock", 0.125, 22.5, true},
        {"an eighth leaves eleven o'clock", 0.125, 337.5, false},
        {"an eighth stops before three", 0.125, 90.0, false},
        {"a half reaches three o'clock", 0.5, 90.0, true},
        {"a half reaches five o'clock", 0.5, 150.0, true},
        {"a half leaves seven o'clock", 0.5, 210.0, false},
        {"a half leaves nine o'clock", 0.5, 270.0, false},
        {"three quarters reach eight o'clock", 0.75, 240.0, true},
        {"three quarters leave ten o'clock", 0.75, 300.0, false},
        {"a full fraction closes the ring", 1.0, 345.0, true},
        {"above one is a full ring", 3.0, 345.0, true},
        {"an infinite fraction is a full ring", INFINITY, 300.0, true},
        {"zero is empty", 0.0, 22.5, false},
        {"0 / 0 is empty", NAN, 22.5, false},
        {"negative is empty", -0.5, 22.5, false},
        {"minus infinity is empty", -INFINITY, 180.0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QImage image = gauge(c.fraction);
        ASSERT_EQ(image.size(), QSize(72, 72));
        const QColor colour = onRing(image, c.degrees);
        if (c.arc)
            EXPECT_TRUE(isArc(colour)) << colour.name(QColor::HexArgb).toStdString();
        else
            EXPECT_TRUE(isTrack(colour)) << colour.name(QColor::HexArgb).toStdString();
    }
}

TEST(RingGauge, EmptyGaugeIsTheGreyTrackAlone) {
    for (double fraction : {0.0, static_cast<double>(NAN)}) {
        const QImage image = gauge(fraction);
        for (double degrees = 0.0; degrees < 360.0; degrees += 15.0)
            EXPECT_TRUE(isTrack(onRing(image, degrees))) << fraction << " at " << degrees;
        EXPECT_EQ(colourAt(image, {9.0, 9.0}).alpha(), 0) << "the centre stays clear";
        EXPECT_EQ(colourAt(image, {0.2, 0.2}).alpha(), 0) << "so do the corners";
    }
}

TEST(RingGauge, ImageIsSizeBySizeAndNullWhenItCannotBeDrawn) {
    const QImage image = ringGaugeImage(0.5, 18.0, blue);
    EXPECT_EQ(image.size(), QSize(18, 18));
    EXPECT_TRUE(ringGaugeImage(0.5, 0.0, blue).isNull());
    EXPECT_TRUE(ringGaugeImage(0.5, NAN, blue).isNull());
}

} // namespace
