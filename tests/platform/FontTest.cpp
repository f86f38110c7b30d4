#include "GraphicsTestSupport.h"

#include "platform/graphics/Font.h"
#include "platform/graphics/FontFamily.h"

using namespace gfx;

namespace {

// The fonts the tests install: Liberation stands in for the Windows faces.
const QString Sans = QStringLiteral("Liberation Sans");
const QString Missing = QStringLiteral("No Such Face 1234");

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

} // namespace

TEST(Font, FamiliesAndTwinsMetricsWithoutKerningAndAnySize)
{
    EXPECT_EQ(FontFamily(Sans).GetFamilyName(), Sans);
    // A label set in Arial keeps its widths with the metric-compatible face.
    EXPECT_EQ(FontFamily(QStringLiteral("Arial")).GetFamilyName(), Sans);
    EXPECT_EQ(FontFamily(QStringLiteral("times new roman")).GetFamilyName(), QStringLiteral("Liberation Serif"));
    EXPECT_FALSE(FontFamily(Missing).IsAvailable());
    EXPECT_FALSE(FontFamily(QString()).IsAvailable());
    EXPECT_TRUE(FontFamily::GenericSansSerif().IsAvailable());

    Bitmap canvas(4, 4);
    Graphics graphics(canvas);
    const Font font(FontFamily(Sans), 50, FontStyleRegular);
    ASSERT_TRUE(font.IsAvailable());
    // GDI+ gives 50 x 2355 / 2048 for the line spacing of Arial and its twin.
    EXPECT_NEAR(font.GetHeight(graphics), 57.495, 0.02);
    // Characters one by one: "AV" is as wide as "A" and "V" apart, kerning or not.
    const double a = font.Advance(u"A"), v = font.Advance(u"V");
    EXPECT_NEAR(a, 50 * 1366 / 2048.0, 0.01);
    const QRectF box = graphics.MeasureDriverString(QStringLiteral("AV"), font, QPointF(10, 100), 5);
    EXPECT_EQ(box.topLeft(), QPointF(10, 100 - font.Ascent()));
    EXPECT_DOUBLE_EQ(box.width(), a + v);

    // 10,000 points at 300 dpi: far beyond what font engines measure, still in proportion.
    const Font huge(FontFamily(Sans), 41666, FontStyleRegular);
    EXPECT_NEAR(huge.Ascent() / font.Ascent(), 41666 / 50.0, 1e-6);
    EXPECT_NEAR(huge.Advance(u"AV") / font.Advance(u"AV"), 41666 / 50.0, 1e-6);
    EXPECT_NEAR(huge.Outline(u"H", QPointF()).boundingRect().height()
                    / font.Outline(u"H", QPointF()).boundingRect().height(),
                41666 / 50.0, 1e-3);

    // Sizes that make no font.
    EXPECT_FALSE(Font(FontFamily(Sans), std::nanf(""), 0).IsAvailable());
    EXPECT_FALSE(Font(FontFamily(Sans), -1, 0).IsAvailable());
    EXPECT_FALSE(Font(FontFamily(Missing), 50, 0).IsAvailable());
    const Font zero(FontFamily(Sans), 0, 0);
    EXPECT_EQ(zero.GetHeight(graphics), 0.0f);
    EXPECT_TRUE(zero.Outline(u"H", QPointF()).isEmpty());

    // MeasureString pads both ends by a sixth of an em and leaves out trailing blanks.
    const Font font48(FontFamily(Sans), 48, FontStyleRegular);
    const QRectF padded = graphics.MeasureString(QStringLiteral("Hi  "), font48, QPointF(3, 4));
    EXPECT_EQ(padded.topLeft(), QPointF(3, 4));
    EXPECT_NEAR(padded.width(), font48.Advance(u"Hi") + 2 * 8.0, 1e-9);
    EXPECT_NEAR(padded.height(), font48.LineSpacing(), 1e-9);
    EXPECT_NEAR(graphics.MeasureString(QStringLiteral("a\nbb"), font48, QPointF()).height(), 2 * font48.LineSpacing(),
                1e-9);
}

TEST(GraphicsPathAddString, GlyphsSitOnTheBaselineOneSixthEmInAsClosedFigures)
{
    const FontFamily family(Sans);
    const Font font(family, 60, FontStyleRegular);
    const auto add = [&](const QString& text, int style, const FontFamily& face = FontFamily(Sans), float size = 60) {
        GraphicsPath path;
        path.AddString(text, face, style, size, QPointF(100, 200));
        return path;
    };
    const GraphicsPath path = add(QStringLiteral("H"), FontStyleRegular);
    ASSERT_TRUE(allFiguresClosed(path));
    const QRectF bounds = path.GetBounds();
    // The H stands on the baseline an ascent below the origin (100, 200), after the padding and its side
    // bearing (under a tenth of an em).
    EXPECT_NEAR(bounds.bottom(), 200 + font.Ascent(), 0.01);
    EXPECT_GT(bounds.left(), 110.0);
    EXPECT_LT(bounds.left(), 116.0);
    EXPECT_NEAR(bounds.height(), 60 * 1409 / 2048.0, 0.5); // the cap height

    // A second line one line spacing lower; underline reaches below the baseline.
    EXPECT_NEAR(add(QStringLiteral("H\r\nH"), 0).GetBounds().bottom(), 200 + font.Ascent() + font.LineSpacing(), 0.01);
    const GraphicsPath underlined = add(QStringLiteral("H"), FontStyleUnderline);
    EXPECT_GT(underlined.GetBounds().bottom(), 200 + font.Ascent() + 1);
    EXPECT_EQ(figuresOf(underlined), figuresOf(path) + 1);
    // Nothing for a face that isn't there, or no size.
    EXPECT_TRUE(add(QStringLiteral("H"), 0, FontFamily(Missing)).IsEmpty());
    EXPECT_TRUE(add(QStringLiteral("H"), 0, family, 0).IsEmpty());
}
