// Text along an ellipse and along a spiral, measured on the glyph outlines: where each
// character lands (its angle about the centre, counter-clockwise on the label, and its
// distance from the centre), in which order and which way round.
#include "ShapeCanvas.h"

#include <cmath>

namespace {

constexpr double LineHeight = 57.5; // Liberation Sans at 12 points and 300 units to the inch

// A circle of radius 400 about the label's centre.
std::unique_ptr<CDrawText> curved(const QString& content, int kind, int justify, float angle = 90, int leading = 0)
{
    ResetDefaultProperties();
    auto text = makeText(content, CRect(-400, 400, 400, -400), kind, justify);
    text->m_angle = angle;
    text->m_leading = leading;
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
        const QPointF c = box.center() - QPointF(400, 400);
        if (!box.isNull())
            result.push_back({std::atan2(c.y(), c.x()) * 180 / M_PI, std::hypot(c.x(), c.y())});
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

QString blanks(int n)
{
    return QString(n, QChar(u' '));
}

} // namespace

TEST(TextPath, EllipseTextRunsClockwiseOrCounterClockwiseAndJustifiesAtTheHandle)
{
    // With the handle at the top (90 degrees), each case names the character next to the handle
    // and the side the rest of the line lies on.
    const struct {
        int kind, justify;
        bool firstCharacterAtHandle; // else the last one
        bool restClockwise;
    } cases[] = {
        {CDrawText::CurvedCW, CDrawText::Left, true, true}, // starts at the handle, reads on clockwise
        {CDrawText::CurvedCW, CDrawText::Right, false, false},
        {CDrawText::CurvedCCW, CDrawText::Left, false, true},
        {CDrawText::CurvedCCW, CDrawText::Right, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.kind << "/" << c.justify);
        // An H at the first character only, then one at the last character only.
        const auto first = glyphs(*curved(QStringLiteral("H") + blanks(12), c.kind, c.justify));
        const auto last = glyphs(*curved(blanks(12) + QStringLiteral("H"), c.kind, c.justify));
        ASSERT_TRUE(first.size() == 1 && last.size() == 1);
        const Glyph& atHandle = c.firstCharacterAtHandle ? first[0] : last[0];
        const Glyph& away = c.firstCharacterAtHandle ? last[0] : first[0];
        // Next to the handle: half an advance (about 2.8 degrees) to the side of the line.
        EXPECT_NEAR(std::abs(atHandle.angle - 90), 3, 2);
        EXPECT_EQ(atHandle.angle < 90, c.restClockwise);
        // Twelve blanks further on (about 25 degrees at this radius).
        EXPECT_NEAR(std::abs(away.angle - atHandle.angle), 25, 5);
        EXPECT_EQ(away.angle < atHandle.angle, c.restClockwise);
        // In the band of one line inside the ellipse.
        for (const Glyph& g : {first[0], last[0]})
            EXPECT_NEAR(g.radius, 400 - LineHeight / 2, LineHeight / 2);
    }
    // Centred text is centred on the handle: its two ends lie symmetrically about it.
    for (int kind : {CDrawText::CurvedCW, CDrawText::CurvedCCW})
        for (int n : {10, 11}) {
            const auto both = glyphs(*curved("H" + blanks(n) + "H", kind, CDrawText::Centered, 30));
            ASSERT_EQ(both.size(), 2u);
            EXPECT_NEAR((both[0].angle + both[1].angle) / 2, 30, 0.5) << kind << "/" << n;
        }
}

TEST(TextPath, LinesStepInwardClockwiseAndOutwardCounterClockwiseByTheLinePitch)
{
    // Leading 20: the pitch is the line height plus 20; the first line outermost clockwise,
    // innermost counter-clockwise, and the ring spans all lines without the last leading.
    const double pitch = LineHeight + 20;
    auto cw = curved(QStringLiteral("H\r\nH\r\nH"), CDrawText::CurvedCW, CDrawText::Centered, 90, 20);
    auto ccw = curved(QStringLiteral("H\r\nH\r\nH"), CDrawText::CurvedCCW, CDrawText::Centered, 90, 20);
    const auto a = glyphs(*cw), b = glyphs(*ccw);
    ASSERT_TRUE(a.size() == 3 && b.size() == 3);
    for (int k : {0, 1}) {
        EXPECT_NEAR(a[k].radius - a[k + 1].radius, pitch, 1) << k;
        EXPECT_NEAR(b[k + 1].radius - b[k].radius, pitch, 1) << k;
    }
    EXPECT_NEAR(b[0].radius, a[2].radius, 2);
    EXPECT_NEAR(cw->m_ringWidth, 3 * pitch - 20, 0.05);
}

TEST(TextPath, SpiralsLoseOneLineHeightOfDiameterPerTurn)
{
    for (int kind : {CDrawText::SpiralCW, CDrawText::SpiralCCW}) {
        auto text = curved(QString(110, QChar(u'H')), kind, CDrawText::Left);
        const auto path = glyphs(*text);
        ASSERT_EQ(path.size(), 110u);
        // Follow the glyphs round, the angle unwrapped: the radius shrinks by half a line height
        // per turn.
        double turned = 0;
        for (std::size_t k = 1; k < path.size(); ++k) {
            const double step = std::remainder(path[k].angle - path[k - 1].angle, 360.0);
            EXPECT_EQ(step < 0, kind == CDrawText::SpiralCW) << k; // clockwise, or the other way
            turned += std::abs(step);
            EXPECT_NEAR(path[0].radius - path[k].radius, turned / 360 * LineHeight / 2, 2.5) << kind << "/" << k;
        }
        EXPECT_GT(turned, 360);
        EXPECT_GT(text->m_ringWidth, 2 * LineHeight - 1); // the ring takes in the turns made
        // Right-justified, a spiral lays out nothing.
        EXPECT_TRUE(curved(QStringLiteral("Nothing"), kind, CDrawText::Right)->m_textPath.IsEmpty());
    }
    // A centred clockwise spiral overprints its lines; the counter-clockwise one steps outward.
    const auto twice = glyphs(*curved(QStringLiteral("HHH\r\nHHH"), CDrawText::SpiralCW, CDrawText::Centered));
    ASSERT_EQ(twice.size(), 6u);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(twice[k].angle, twice[k + 3].angle, 1e-3);
        EXPECT_NEAR(twice[k].radius, twice[k + 3].radius, 1e-3);
    }
    const auto apart = glyphs(*curved(QStringLiteral("HHH\r\nHHH"), CDrawText::SpiralCCW, CDrawText::Centered));
    ASSERT_EQ(apart.size(), 6u);
    EXPECT_NEAR(apart[3].radius - apart[0].radius, LineHeight, 1.5);
}
