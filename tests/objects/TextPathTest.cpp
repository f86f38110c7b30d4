// Text along an ellipse and along a spiral, measured on the glyph outlines: where each
// character lands (its angle about the centre, counter-clockwise on the label, and its
// distance from the centre), in which order and which way round.
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double LineHeight = 57.5; // Liberation Sans at 12 points and 300 units to the inch

// A circle of radius 400 about the label's centre.
std::unique_ptr<CDrawText> curved(const QString& content, int kind, int justify, float angle = 90)
{
    auto text = std::make_unique<CDrawText>(CRect(-400, 400, 400, -400));
    text->m_fontName = QStringLiteral("Liberation Sans");
    text->m_text = content;
    text->m_textPathKind = kind;
    text->m_justify = justify;
    text->m_angle = angle;
    text->Layout();
    return text;
}

struct Glyph {
    double angle; // degrees, counter-clockwise from +x
    double radius;
};

// The glyphs in the order they were laid out; an H is one figure. The outline is relative to
// the object's corner (-400, -400).
std::vector<Glyph> glyphs(const CDrawText& text)
{
    std::vector<Glyph> result;
    const std::vector<QPointF> points = text.m_textPath.GetPathPoints();
    const std::vector<std::uint8_t> types = text.m_textPath.GetPathTypes();
    QRectF box;
    const auto flush = [&] {
        if (box.isNull())
            return;
        const QPointF c = box.center() - QPointF(400, 400);
        result.push_back({std::atan2(c.y(), c.x()) * 180 / Pi, std::hypot(c.x(), c.y())});
        box = QRectF();
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        if ((types[i] & 0x7) == 0)
            flush();
        box |= QRectF(points[i], QSizeF(1e-9, 1e-9));
    }
    flush();
    return result;
}

// Only the first and the last character are H; the blanks between have no outline.
QString ends(int blanks)
{
    return QStringLiteral("H") + QString(blanks, QChar(u' ')) + QStringLiteral("H");
}

class TextPath : public ::testing::Test {
protected:
    void SetUp() override { ResetDefaultProperties(); }
    void TearDown() override { ResetDefaultProperties(); }
};

} // namespace

TEST_F(TextPath, EllipseTextRunsClockwiseOrCounterClockwiseAndJustifiesAtTheHandle)
{
    // Glyph 0 is the first H placed; which character it is depends on the run. With the handle
    // at the top (90 degrees), each case names the character next to the handle and the side
    // the rest of the line lies on.
    struct Case {
        int kind, justify;
        bool firstCharacterAtHandle; // else the last one
        bool restClockwise;          // the rest of the line lies clockwise of it
    };
    const Case cases[] = {
        {CDrawText::CurvedCW, CDrawText::Left, true, true},    // starts at the handle, reads on clockwise
        {CDrawText::CurvedCW, CDrawText::Right, false, false}, // ends at the handle
        {CDrawText::CurvedCCW, CDrawText::Left, false, true},
        {CDrawText::CurvedCCW, CDrawText::Right, true, false},
    };
    for (const Case& c : cases) {
        // An H at the first character only, then one at the last character only.
        const auto first = glyphs(*curved(QStringLiteral("H") + QString(12, QChar(u' ')), c.kind, c.justify));
        const auto last = glyphs(*curved(QString(12, QChar(u' ')) + QStringLiteral("H"), c.kind, c.justify));
        ASSERT_EQ(first.size(), 1u);
        ASSERT_EQ(last.size(), 1u);
        const Glyph& atHandle = c.firstCharacterAtHandle ? first[0] : last[0];
        const Glyph& away = c.firstCharacterAtHandle ? last[0] : first[0];
        // Next to the handle: half an advance (about 2.8 degrees) to the side of the line.
        const double offset = atHandle.angle - 90;
        EXPECT_GT(std::abs(offset), 1.0) << c.kind << "/" << c.justify;
        EXPECT_LT(std::abs(offset), 5.0) << c.kind << "/" << c.justify;
        EXPECT_EQ(offset < 0, c.restClockwise) << c.kind << "/" << c.justify;
        // Twelve blanks further on (about 25 degrees at this radius).
        EXPECT_NEAR(std::abs(away.angle - atHandle.angle), 25, 5) << c.kind << "/" << c.justify;
        EXPECT_EQ(away.angle < atHandle.angle, c.restClockwise) << c.kind << "/" << c.justify;
        // In the band of one line inside the ellipse.
        for (const Glyph& g : {first[0], last[0]}) {
            EXPECT_GT(g.radius, 400 - LineHeight);
            EXPECT_LT(g.radius, 400);
        }
    }

    // Centred text is centred on the handle: its two ends lie symmetrically about it.
    for (int kind : {CDrawText::CurvedCW, CDrawText::CurvedCCW}) {
        for (int blanks : {10, 11}) {
            const auto both = glyphs(*curved(ends(blanks), kind, CDrawText::Centered, 30));
            ASSERT_EQ(both.size(), 2u);
            EXPECT_NEAR((both[0].angle + both[1].angle) / 2, 30, 0.5) << kind << "/" << blanks;
        }
    }
}

TEST_F(TextPath, LinesStepInwardClockwiseAndOutwardCounterClockwiseByTheLinePitch)
{
    // Leading 20: the pitch is the line height plus 20.
    const double pitch = LineHeight + 20;
    auto cw = curved(QStringLiteral("H\r\nH\r\nH"), CDrawText::CurvedCW, CDrawText::Centered);
    cw->m_leading = 20;
    cw->Layout();
    auto ccw = curved(QStringLiteral("H\r\nH\r\nH"), CDrawText::CurvedCCW, CDrawText::Centered);
    ccw->m_leading = 20;
    ccw->Layout();
    const auto a = glyphs(*cw), b = glyphs(*ccw);
    ASSERT_EQ(a.size(), 3u);
    ASSERT_EQ(b.size(), 3u);
    // The first line outermost clockwise, innermost counter-clockwise.
    EXPECT_NEAR(a[0].radius - a[1].radius, pitch, 1);
    EXPECT_NEAR(a[1].radius - a[2].radius, pitch, 1);
    EXPECT_NEAR(b[1].radius - b[0].radius, pitch, 1);
    EXPECT_NEAR(b[2].radius - b[1].radius, pitch, 1);
    EXPECT_NEAR(b[0].radius, a[2].radius, 2);
    // The ring spans all lines, without the last leading.
    EXPECT_NEAR(cw->m_ringWidth, 3 * pitch - 20, 0.05);
    EXPECT_NEAR(ccw->m_ringWidth, 3 * pitch - 20, 0.05);
}

TEST_F(TextPath, SpiralsLoseOneLineHeightOfDiameterPerTurn)
{
    for (int kind : {CDrawText::SpiralCW, CDrawText::SpiralCCW}) {
        auto text = curved(QString(110, QChar(u'H')), kind, CDrawText::Left);
        const auto path = glyphs(*text);
        ASSERT_EQ(path.size(), 110u);
        // Follow the glyphs round, the angle unwrapped.
        double turned = 0;
        bool checkedATurn = false;
        for (std::size_t k = 1; k < path.size(); ++k) {
            const double step = std::remainder(path[k].angle - path[k - 1].angle, 360.0);
            EXPECT_EQ(step < 0, kind == CDrawText::SpiralCW) << k; // clockwise, or the other way
            turned += std::abs(step);
            // The radius shrinks by half a line height per turn.
            EXPECT_NEAR(path[0].radius - path[k].radius, turned / 360 * LineHeight / 2, 2.5) << kind << "/" << k;
            checkedATurn = checkedATurn || turned > 360;
        }
        EXPECT_TRUE(checkedATurn);
        // The ring takes in the turns the line made.
        EXPECT_GT(text->m_ringWidth, 2 * LineHeight - 1);
    }

    // A right-justified spiral lays out nothing; a centred clockwise one overprints its lines.
    EXPECT_TRUE(curved(QStringLiteral("Nothing"), CDrawText::SpiralCW, CDrawText::Right)->m_textPath.IsEmpty());
    EXPECT_TRUE(curved(QStringLiteral("Nothing"), CDrawText::SpiralCCW, CDrawText::Right)->m_textPath.IsEmpty());
    const auto twice = glyphs(*curved(QStringLiteral("HHH\r\nHHH"), CDrawText::SpiralCW, CDrawText::Centered));
    ASSERT_EQ(twice.size(), 6u);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(twice[std::size_t(k)].angle, twice[std::size_t(k + 3)].angle, 1e-3);
        EXPECT_NEAR(twice[std::size_t(k)].radius, twice[std::size_t(k + 3)].radius, 1e-3);
    }
    // The counter-clockwise one steps outward instead.
    const auto apart = glyphs(*curved(QStringLiteral("HHH\r\nHHH"), CDrawText::SpiralCCW, CDrawText::Centered));
    ASSERT_EQ(apart.size(), 6u);
    EXPECT_NEAR(apart[3].radius - apart[0].radius, LineHeight, 1.5);
}
