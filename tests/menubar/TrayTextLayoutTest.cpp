#include "views/menubar/TrayTextLayout.h"
#include "ImageProbe.h"
#include "PinnedFonts.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <algorithm>
#include <optional>
#include <set>

namespace {

const QColor green(0x00, 0xC0, 0x00);

std::vector<TitleRun> title(const QString& icon, const QString& value) {
    std::vector<TitleRun> runs;
    if (!icon.isEmpty())
        runs.push_back({TitleRun::Kind::icon, icon + u' ', green});
    runs.push_back({TitleRun::Kind::value, value, green});
    return runs;
}

class TrayTextLayoutTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto fonts = pinnedFonts();
        ASSERT_TRUE(fonts) << "DejaVu Sans Mono and Symbola must be installed "
                              "(fonts-dejavu-core, fonts-symbola)";
        layout.emplace(*fonts);
    }
    std::optional<TrayTextLayout> layout;
};

struct TitleCase {
    const char* icon;
    const char* value;
    std::vector<const char*> numbers;
};

const TitleCase titleCases[] = {
    {"", "42%", {"42"}},
    {"\u2699", "42%", {"42"}},
    {"", "100%", {"100"}},
    {"\u229F", "100%", {"100"}},
    {"\u2193", "1023B", {"1023"}},
    {"\u2191", "1.5M", {"1.5"}},
    {"", "\u21931.5M \u2191512K", {"\u21931.5", "\u2191512"}},
    {"\U0001F321", "65\u00B0C", {"65"}},
    {"\U0001F321", "\u2014", {"\u2014"}},
    {"\u2388", "2400", {"2400"}},
    {"\u25C9", "43%", {"43"}},
};

TEST_F(TrayTextLayoutTest, NumbersStayWholeAndTheTextFillsItsBoxWithoutLeavingIt) {
    for (int side : {22, 44}) {
        for (const TitleCase& c : titleCases) {
            SCOPED_TRACE(QStringLiteral("%1 %2 at %3")
                             .arg(QString::fromUtf8(c.icon), QString::fromUtf8(c.value))
                             .arg(side)
                             .toStdString());
            const QRectF box(10.0, 10.0, side, side);
            const auto placed =
                layout->place(title(QString::fromUtf8(c.icon), QString::fromUtf8(c.value)), box);
            ASSERT_FALSE(placed.empty());
            for (const char* number : c.numbers) {
                const QString whole = QString::fromUtf8(number);
                const auto count =
                    std::count_if(placed.begin(), placed.end(),
                                  [&](const PlacedText& p) { return p.text.contains(whole); });
                EXPECT_EQ(count, 1) << "number " << number << " is not in one piece";
            }

            QImage image(side + 20, side + 20, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            {
                QPainter painter(&image);
                layout->paint(painter, placed);
            }
            const QRect ink = contentBounds(image, 40);
            ASSERT_FALSE(ink.isEmpty());
            EXPECT_TRUE(box.toAlignedRect().adjusted(-1, -1, 1, 1).contains(ink))
                << ink.x() << "," << ink.y() << " " << ink.width() << "x" << ink.height();
            EXPECT_GE(std::max(ink.width(), ink.height()), side * 3 / 4) << "does not fill";
        }
    }
}

TEST_F(TrayTextLayoutTest, AnIconGoesAboveAValueItWouldShrink) {
    const auto placed =
        layout->place(title(QString::fromUtf8("\u2699"), "42%"), QRectF(0, 0, 22, 22));
    ASSERT_GE(placed.size(), 2u);
    EXPECT_EQ(placed.front().kind, TitleRun::Kind::icon);
    EXPECT_LT(placed.front().origin.y(), placed.back().origin.y());
}

TEST_F(TrayTextLayoutTest, TwoValuesGoOnTwoLines) {
    const auto placed =
        layout->place(title({}, QString::fromUtf8("\u21931.5M \u2191512K")), QRectF(0, 0, 22, 22));
    std::set<qreal> baselines;
    for (const PlacedText& piece : placed)
        baselines.insert(piece.origin.y());
    EXPECT_EQ(baselines.size(), 2u);
}

TEST_F(TrayTextLayoutTest, AUnitNeverOutgrowsItsNumber) {
    const auto placed = layout->place(title({}, "1023B"), QRectF(0, 0, 22, 22));
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].text, "1023");
    EXPECT_EQ(placed[1].text, "B");
    EXPECT_LE(placed[1].pixelSize, placed[0].pixelSize);
    // A unit that keeps the number's size has moved to its own line.
    if (placed[1].pixelSize == placed[0].pixelSize) {
        EXPECT_GT(placed[1].origin.y(), placed[0].origin.y());
    }
}

TEST_F(TrayTextLayoutTest, NothingToPlaceGivesNothing) {
    EXPECT_TRUE(layout->place({}, QRectF(0, 0, 22, 22)).empty());
    EXPECT_TRUE(layout->place({{TitleRun::Kind::value, " ", green}}, QRectF(0, 0, 22, 22)).empty());
    EXPECT_TRUE(layout->place(title({}, "42%"), QRectF(0, 0, 0, 22)).empty());
}

TEST_F(TrayTextLayoutTest, SymbolaHasEveryIcon) {
    const QFontMetricsF metrics(pinnedFonts()->icon);
    for (char32_t icon :
         {U'\u2699', U'\u229F', U'\u25C9', U'\u2193', U'\u2191', U'\U0001F321', U'\u2388'})
        EXPECT_TRUE(metrics.inFontUcs4(icon)) << std::hex << static_cast<unsigned>(icon);
}

} // namespace
