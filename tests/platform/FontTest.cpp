#include "GraphicsTestSupport.h"

#include "platform/graphics/Font.h"
#include "platform/graphics/FontFamily.h"
#include "platform/graphics/GraphicsPath.h"

using namespace gfx;

namespace {

// The fonts the tests install: Liberation stands in for the Windows faces.
const QString Sans = QStringLiteral("Liberation Sans");

bool allFiguresClosed(const GraphicsPath& path)
{
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    for (std::size_t i = 0; i < types.size(); ++i) {
        const bool lastOfFigure = i + 1 == types.size() || (types[i + 1] & 0x7) == GraphicsPath::Start;
        if (lastOfFigure && !(types[i] & GraphicsPath::CloseFlag))
            return false;
    }
    return !types.empty();
}

int figuresOf(const GraphicsPath& path)
{
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    return int(std::count(types.begin(), types.end(), std::uint8_t(GraphicsPath::Start)));
}

} // namespace

TEST(FontFamily, FindsInstalledFamiliesAndMetricTwinsAndNothingElse)
{
    EXPECT_EQ(FontFamily(Sans).GetFamilyName(), Sans);
    // A label set in Arial keeps its widths with the metric-compatible face.
    EXPECT_EQ(FontFamily(QStringLiteral("Arial")).GetFamilyName(), Sans);
    EXPECT_EQ(FontFamily(QStringLiteral("times new roman")).GetFamilyName(), QStringLiteral("Liberation Serif"));
    EXPECT_FALSE(FontFamily(QStringLiteral("No Such Face 1234")).IsAvailable());
    EXPECT_FALSE(FontFamily(QString()).IsAvailable());
    EXPECT_TRUE(FontFamily::GenericSansSerif().IsAvailable());
}

TEST(Font, MetricsAreThoseOfTheFaceWithoutKerningAndScaleToAnySize)
{
    Bitmap canvas(4, 4);
    Graphics graphics(canvas);
    const Font font(FontFamily(Sans), 50, FontStyleRegular);
    ASSERT_TRUE(font.IsAvailable());
    // GDI+ gives 50 x 2355 / 2048 for the line spacing of Arial and its twin.
    EXPECT_NEAR(font.GetHeight(graphics), 57.495, 0.02);
    // Characters one by one: "AV" is as wide as "A" and "V" apart, kerning or not.
    const double a = font.Advance(u"A"), v = font.Advance(u"V");
    EXPECT_NEAR(a, 50 * 1366 / 2048.0, 0.01);
    EXPECT_DOUBLE_EQ(font.Advance(u"AV"), a + v);
    const QRectF box = graphics.MeasureDriverString(QStringLiteral("AV"), font, QPointF(10, 100), 5);
    EXPECT_DOUBLE_EQ(box.left(), 10);
    EXPECT_DOUBLE_EQ(box.width(), a + v);
    EXPECT_NEAR(box.top(), 100 - font.Ascent(), 1e-9);

    // 10,000 points at 300 dpi: far beyond what font engines measure, still in proportion.
    const Font huge(FontFamily(Sans), 41666, FontStyleRegular);
    EXPECT_NEAR(huge.Ascent() / font.Ascent(), 41666 / 50.0, 1e-6);
    EXPECT_NEAR(huge.Advance(u"AV") / font.Advance(u"AV"), 41666 / 50.0, 1e-6);
    const QRectF h = huge.Outline(u"H", QPointF()).boundingRect();
    const QRectF small = font.Outline(u"H", QPointF()).boundingRect();
    EXPECT_NEAR(h.height() / small.height(), 41666 / 50.0, 1e-3);

    // Sizes that make no font.
    EXPECT_FALSE(Font(FontFamily(Sans), std::nanf(""), 0).IsAvailable());
    EXPECT_FALSE(Font(FontFamily(Sans), -1, 0).IsAvailable());
    EXPECT_FALSE(Font(FontFamily(QStringLiteral("No Such Face 1234")), 50, 0).IsAvailable());
    const Font zero(FontFamily(Sans), 0, 0);
    EXPECT_EQ(zero.GetHeight(graphics), 0.0f);
    EXPECT_TRUE(zero.Outline(u"H", QPointF()).isEmpty());
}

TEST(GraphicsPathAddString, GlyphsSitOnTheBaselineOneSixthEmInAsClosedFigures)
{
    const FontFamily family(Sans);
    const Font font(family, 60, FontStyleRegular);
    GraphicsPath path;
    path.AddString(QStringLiteral("H"), family, FontStyleRegular, 60, QPointF(100, 200));
    ASSERT_TRUE(allFiguresClosed(path));
    const QRectF bounds = path.GetBounds();
    // The H stands on the baseline an ascent below the origin, after the padding and its side
    // bearing (under a tenth of an em).
    EXPECT_NEAR(bounds.bottom(), 200 + font.Ascent(), 0.01);
    EXPECT_GT(bounds.left(), 100 + 10.0);
    EXPECT_LT(bounds.left(), 100 + 10.0 + 6.0);
    EXPECT_NEAR(bounds.height(), 60 * 1409 / 2048.0, 0.5); // the cap height

    // A second line one line spacing lower; underline reaches below the baseline.
    GraphicsPath two;
    two.AddString(QStringLiteral("H\r\nH"), family, FontStyleRegular, 60, QPointF(0, 0));
    EXPECT_NEAR(two.GetBounds().bottom(), font.Ascent() + font.LineSpacing(), 0.01);
    GraphicsPath underlined;
    underlined.AddString(QStringLiteral("H"), family, FontStyleUnderline, 60, QPointF(0, 0));
    EXPECT_GT(underlined.GetBounds().bottom(), font.Ascent() + 1);
    EXPECT_EQ(figuresOf(underlined), figuresOf(path) + 1);

    // Nothing for a face that isn't there, or no size.
    GraphicsPath none;
    none.AddString(QStringLiteral("H"), FontFamily(QStringLiteral("No Such Face 1234")), 0, 60, QPointF());
    none.AddString(QStringLiteral("H"), family, 0, 0, QPointF());
    EXPECT_TRUE(none.IsEmpty());
}

TEST(GraphicsMeasureString, PadsBothEndsAndLeavesOutTrailingBlanks)
{
    Bitmap canvas(4, 4);
    Graphics graphics(canvas);
    const Font font(FontFamily(Sans), 48, FontStyleRegular);
    const QRectF box = graphics.MeasureString(QStringLiteral("Hi  "), font, QPointF(3, 4));
    EXPECT_EQ(box.topLeft(), QPointF(3, 4));
    EXPECT_NEAR(box.width(), font.Advance(u"Hi") + 2 * 8.0, 1e-9);
    EXPECT_NEAR(box.height(), font.LineSpacing(), 1e-9);
    EXPECT_NEAR(graphics.MeasureString(QStringLiteral("a\nbb"), font, QPointF()).height(), 2 * font.LineSpacing(),
                1e-9);
}

TEST(BitmapLockModes, ReadLocksLeaveTheBitmapAndWriteLocksReplaceIt)
{
    Bitmap bitmap(2, 1);
    bitmap.image().fill(qRgba(10, 20, 30, 255));
    BitmapData read = bitmap.LockBits(ImageLockMode::Read);
    ASSERT_NE(read.Scan0, nullptr);
    EXPECT_EQ(read.Scan0[0], 30); // blue first
    read.Scan0[0] = 99;
    bitmap.UnlockBits(read);
    EXPECT_EQ(pixelAt(bitmap, 0, 0), QColor(10, 20, 30));

    BitmapData write = bitmap.LockBits(ImageLockMode::Write);
    for (int i = 0; i < 8; ++i)
        write.Scan0[i] = i % 4 == 3 ? 255 : 7;
    bitmap.UnlockBits(write);
    EXPECT_EQ(pixelAt(bitmap, 1, 0), QColor(7, 7, 7));
}
