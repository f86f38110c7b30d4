#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "platform/HandleImages.h"
#include "platform/graphics/Font.h"

#include <cmath>
#include <functional>

namespace {

const CRect Box(-100, 50, 100, -50);

class CDrawTextTest : public ::testing::Test {
protected:
    void SetUp() override { ResetDefaultProperties(); }
    void TearDown() override
    {
        ResetDefaultProperties();
        CDrawText::s_angleChanged = nullptr;
    }
};

// The outline in label coordinates: Draw places m_textPath at the normalised corner.
QRectF placedBounds(const CDrawText& text)
{
    const CRect n = text.m_position.Normalized();
    return text.m_textPath.GetBounds().translated(n.left, n.top);
}

// Bounds of the outline's points above (upper) or below the box's middle line.
QRectF halfBounds(const CDrawText& text, bool upper)
{
    const double middle = std::abs(text.m_position.Height()) / 2.0;
    QRectF bounds;
    for (const QPointF& p : text.m_textPath.GetPathPoints())
        if ((p.y() > middle) == upper)
            bounds |= QRectF(p, QSizeF(1e-9, 1e-9));
    return bounds;
}

QPointF centreOf(const CRect& r)
{
    return QPointF((r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0);
}

// Centre of the pixels darker than 128 in every channel.
QPointF darkCentroid(const QImage& image)
{
    QPointF sum;
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (near(image.pixel(x, y), Qt::black, 127)) {
                sum += QPointF(x, y);
                ++n;
            }
    return n ? sum / n : QPointF(-1, -1);
}

} // namespace

TEST_F(CDrawTextTest, NewTextsTakeTheDefaultsAndCopiesTakeEveryField)
{
    g_defaultProperties.m_fontSize = 20;
    g_defaultProperties.m_justify = CDrawText::Right;
    EXPECT_EQ(std::pair(CDrawText().m_fontSize, CDrawText().m_justify), std::pair(20, int(CDrawText::Right)));

    auto source = makeText(QStringLiteral("Copy me\r\ntwice"), CRect(-300, 300, 300, -300));
    source->m_textPathKind = CDrawText::CurvedCW | CDrawText::AspectLock;
    std::tie(source->m_aux1, source->m_aux2, source->m_auxColor1, source->m_auxColor2) =
        std::tuple(QStringLiteral("a1"), QStringLiteral("a2"), gfx::Color(0x11223344u), gfx::Color(0x55667788u));
    std::tie(source->m_auxByte1, source->m_auxInt1, source->m_auxByte2, source->m_auxByte3, source->m_auxInt2) =
        std::tuple(5, 6, 7, 8, 9);
    std::tie(source->m_fontStyle, source->m_tracking, source->m_leading) = std::tuple(gfx::FontStyleItalic, 3, -4);
    source->SetEffects(gfx::Color(255, 1, 2, 3), CDrawText::Neon, 5, 6, 7, 1, 8, 9, 10, 11);
    source->m_fillColor1 = gfx::Color(255, 9, 9, 9);
    source->Layout();
    const std::unique_ptr<CDrawObj> copy = source->Clone();
    EXPECT_EQ(stored(*copy), stored(*source));
    // The copy lays itself out: the same glyphs in the same places.
    EXPECT_EQ(dynamic_cast<const CDrawText&>(*copy).m_textPath.GetPathPoints(), source->m_textPath.GetPathPoints());

    // CopyProperties takes the rectangle too, from any object, and lays out again.
    CDrawText target(CRect(0, 10, 10, 0));
    target.m_fontName = QStringLiteral("Liberation Sans");
    CDrawRect rect(CRect(-50, 50, 50, -50));
    rect.m_fillColor1 = gfx::Color(255, 1, 1, 1);
    target.CopyProperties(rect);
    EXPECT_EQ(target.m_fillColor1, rect.m_fillColor1);
    EXPECT_EQ(centreOf(target.m_position), QPointF(0, 0));
    EXPECT_FALSE(target.m_textPath.IsEmpty());
}

TEST_F(CDrawTextTest, SettersLayOutExceptForEffects)
{
    auto text = makeText(QStringLiteral("abc"));
    const CRect before = text->m_position;
    text->SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Outline, 9, 0, 0, 1, 5, 5, 0, 0);
    EXPECT_EQ(text->m_position, before);
    text->SetTextProperties(QStringLiteral("abcdef"), CDrawText::Straight, CDrawText::Left, gfx::Color(255, 1, 2, 3),
                            0, 90, 0, 0);
    const CRect wider = text->m_position;
    EXPECT_GT(wider.Width(), before.Width());
    text->SetFont(text->m_fontName, 24, gfx::FontStyleBold);
    EXPECT_GT(text->m_position.Width(), wider.Width());
}

TEST_F(CDrawTextTest, StraightBoxFitsItsContentAboutTheCentre)
{
    auto text = makeText(QStringLiteral("HH"), CRect(100, 300, 140, 200));
    const CRect narrow = text->m_position;
    EXPECT_LT(QLineF(centreOf(narrow), QPointF(120, 250)).length(), 1.5);
    EXPECT_TRUE(QRectF(narrow.left, narrow.bottom, narrow.Width(), -narrow.Height()).contains(placedBounds(*text)));
    text->m_text = QStringLiteral("HHHH\r\nH\r\nHH");
    text->Layout();
    EXPECT_LT(QLineF(centreOf(text->m_position), QPointF(120, 250)).length(), 1.5);
    EXPECT_GT(text->m_position.Width(), narrow.Width());
    EXPECT_NEAR(std::abs(text->m_position.Height()), 3 * 57.5, 3); // 57.5: the line height at 12 points
    // An empty text is one empty line: no glyphs, a box about a point size wide.
    text->m_text.clear();
    text->Layout();
    EXPECT_TRUE(text->m_textPath.IsEmpty());
    EXPECT_NEAR(text->m_position.Width(), 14, 2);
}

TEST_F(CDrawTextTest, JustificationLeadingAndTracking)
{
    // Short lines shift by what the widest leaves over, less the point size kept free at the end.
    const QString content = QStringLiteral("HHHHHH\r\nH");
    auto left = makeText(content, Box, CDrawText::Straight, CDrawText::Left);
    auto centred = makeText(content, Box, CDrawText::Straight, CDrawText::Centered);
    auto right = makeText(content, Box, CDrawText::Straight, CDrawText::Right);
    const double spare =
        left->m_position.Width() - gfx::Font(gfx::FontFamily(left->m_fontName), 50, 0).Advance(u"H") - 12;
    const double l = halfBounds(*left, false).left(), c = halfBounds(*centred, false).left();
    EXPECT_NEAR(halfBounds(*right, false).left() - l, spare, 0.01);
    EXPECT_NEAR(c - l, spare / 2, 0.01);
    EXPECT_NEAR(l, 50 / 6.0 + 2.5, 2.5); // a sixth of an em and the H's side bearing in
    // Centred lines lose their blanks first.
    auto padded = makeText(QStringLiteral("HHHHHH\r\n   H   "), Box, CDrawText::Straight, CDrawText::Centered);
    EXPECT_NEAR(halfBounds(*padded, false).left(), c, 0.01);
    // The first line is the upper one.
    auto order = makeText(QStringLiteral("I\r\nWWWW"));
    EXPECT_LT(halfBounds(*order, true).width(), halfBounds(*order, false).width() / 2);

    auto tight = makeText(QStringLiteral("H\r\nH")), spaced = makeText(QStringLiteral("H\r\nH"));
    spaced->m_leading = 40;
    spaced->Layout();
    const auto gap = [](const CDrawText& t) { return halfBounds(t, true).bottom() - halfBounds(t, false).bottom(); };
    EXPECT_NEAR(gap(*spaced) - gap(*tight), 40, 0.5);
    EXPECT_NEAR(std::abs(spaced->m_position.Height()) - std::abs(tight->m_position.Height()), 80, 2);
    auto plain = makeText(QStringLiteral("HH")), tracked = makeText(QStringLiteral("HH"));
    tracked->m_tracking = 20;
    tracked->Layout();
    EXPECT_NEAR(tracked->m_textPath.GetBounds().width() - plain->m_textPath.GetBounds().width(), 20, 0.01);
    EXPECT_NEAR(tracked->m_position.Width() - plain->m_position.Width(), 40, 2);
    // A negative leading beyond the line height leaves a pitch of 0.1: the lines overprint.
    tight->m_leading = -1000;
    tight->Layout();
    EXPECT_LE(std::abs(tight->m_position.Height()), 2);
    EXPECT_LE(tight->m_textPath.GetBounds().height(), 50 * 1409 / 2048.0 + 1.5);
}

TEST_F(CDrawTextTest, AngleTurnsTheTextAboutTheCentreAndItsHandleLeads)
{
    for (float angle : {90.0f, 0.0f, 45.0f, 180.0f, 270.0f}) {
        auto text = makeText(QStringLiteral("H      ")); // only the first character has an outline
        text->m_angle = angle;
        text->Layout();
        const QPointF c = centreOf(text->m_position), handle(text->GetHandle(1).x, text->GetHandle(1).y);
        const QPointF first = placedBounds(*text).center();
        EXPECT_LT(QLineF(first, handle).length(), QLineF(first, 2 * c - handle).length()) << angle;
    }
    // 0 reads downward, the handle on top.
    auto upright = makeText(QStringLiteral("HHHHHH"), Box, CDrawText::Straight, CDrawText::Centered);
    upright->m_angle = 0;
    upright->Layout();
    EXPECT_GT(upright->m_textPath.GetBounds().height(), 3 * upright->m_textPath.GetBounds().width());
    EXPECT_GT(upright->GetHandle(1).y, centreOf(upright->m_position).y() + 50);
}

TEST_F(CDrawTextTest, HandlesTurnTheTextAndTellThePanel)
{
    QStringList told;
    CDrawText::s_angleChanged = [&](const CDrawText&, const QString& value) { told << value; };
    auto text = makeText(QStringLiteral("Turn"));
    const CRect n = text->m_position.Normalized();
    const CPoint c = n.CenterPoint();
    EXPECT_EQ(text->GetHandleCount(), 1);
    EXPECT_EQ(text->GetHandle(1), CPoint(c.x - n.Width() / 2, c.y));
    text->MoveHandleTo(1, CPoint(c.x, c.y + 100), nullptr);
    EXPECT_FLOAT_EQ(text->m_angle, 0);
    text->MoveHandleTo(1, CPoint(c.x - 100, c.y - 100), nullptr);
    EXPECT_NEAR(text->m_angle, 135, 1e-4);
    EXPECT_EQ(told, (QStringList{QStringLiteral("0.0"), QStringLiteral("135.0")}));
    // The handle follows toward the point it was dragged to.
    const CPoint h1 = text->GetHandle(1), centre = text->m_position.Normalized().CenterPoint();
    EXPECT_TRUE(h1.x < centre.x && h1.y < centre.y);

    // Curved text: base handles and handle 9 on the ellipse, by the ellipse's parameter.
    auto curved = makeText(QStringLiteral("Text"), CRect(-200, 100, 200, -100), CDrawText::CurvedCW);
    EXPECT_EQ(curved->GetHandleCount(), 9);
    EXPECT_EQ(curved->GetHandle(9), CPoint(0, 100));
    EXPECT_EQ(curved->GetHandle(3), CPoint(200, 100));
    curved->MoveHandleTo(9, CPoint(100, 100), nullptr);
    EXPECT_NEAR(curved->m_angle, std::atan2(400.0, 200.0) * 180 / M_PI, 1e-3);
    EXPECT_NEAR(curved->GetHandle(9).x, curved->GetHandle(9).y, 1); // on the ray toward (100, 100)
    EXPECT_EQ(told.size(), 3);

    // The tracker: squares (or the rotate picture) and the dotted frame, for states 1 and 2.
    for (int state : {0, 1, 2}) {
        ShapeCanvas canvas(600);
        curved->DrawTracker(canvas.graphics(), state, 300, 300);
        const QImage image = canvas.image();
        EXPECT_EQ(countPixels(image, QColor(0, 0, 255), 60) > 100, state != 0) << state;
        EXPECT_EQ(countPixels(image, QColor(255, 0, 0), 60) > 100, state != 0) << state;
    }
    // With the handle pictures loaded, handle 9 shows and picks as the rotate picture turned
    // with the text, in place of its squares; the other handles keep theirs.
    ASSERT_TRUE(HandleImages::Load());
    const CPoint h9 = curved->GetHandle(9), h3 = curved->GetHandle(3);
    EXPECT_EQ(curved->GetHandleRect(9, nullptr), CRect(h9.x - 9, h9.y - 9, h9.x + 10, h9.y + 10));
    EXPECT_EQ(curved->GetHandleRect(3, nullptr), CRect(h3.x - 12, h3.y - 12, h3.x + 12, h3.y + 12));
    const auto glyphAt9 = [&](float angle) {
        curved->m_angle = angle;
        ShapeCanvas canvas(600);
        curved->DrawTracker(canvas.graphics(), 1, 300, 300);
        const QPoint at = ShapeCanvas::device(curved->GetHandle(9).x, curved->GetHandle(9).y, 600);
        return canvas.image().copy(at.x() - 14, at.y() - 14, 28, 28);
    };
    // Angles where handle 9 meets none of the frame's handles. Where neither dotted frame lies
    // over it, the picture's ink differs between the two angles only if the picture turned.
    const QImage upright = glyphAt9(30), turned = glyphAt9(120);
    const auto ink = [](QRgb p) { return qGray(p) < 100 && std::abs(qRed(p) - qBlue(p)) < 40; };
    const auto framed = [](QRgb p) { return std::abs(qRed(p) - qBlue(p)) >= 40; };
    int inked = 0, moved = 0;
    for (int y = 0; y < upright.height(); ++y)
        for (int x = 0; x < upright.width(); ++x) {
            const QRgb a = upright.pixel(x, y), b = turned.pixel(x, y);
            inked += ink(a);
            moved += !framed(a) && !framed(b) && ink(a) != ink(b);
        }
    EXPECT_GT(inked, 20);
    EXPECT_LT(countPixels(upright, QColor(0, 0, 255), 60), 40) << "no square under the picture";
    EXPECT_GT(moved, 8) << "an unturned picture leaves none";
    HandleImages::Release();

    // Resizing: free without the lock, about the centre in proportion with it.
    curved->MoveHandleTo(3, CPoint(300, 120), nullptr);
    EXPECT_EQ(curved->m_position, CRect(-200, 120, 300, -100));
    curved->m_textPathKind |= CDrawText::AspectLock;
    std::tie(curved->m_position, curved->m_aspect) = std::pair(CRect(-200, 100, 200, -100), 2.0);
    curved->MoveHandleTo(3, CPoint(300, 10), nullptr);
    EXPECT_EQ(curved->m_position, CRect(-300, 150, 300, -150));
}

TEST_F(CDrawTextTest, PickingAndBoundsFollowTheShapeOfTheText)
{
    auto ring = makeText(QStringLiteral("Text"), CRect(-200, 200, 200, -200), CDrawText::CurvedCW);
    EXPECT_NEAR(ring->m_ringWidth, 57.5, 0.1);
    EXPECT_TRUE(picks(*ring, 0, 190));
    EXPECT_FALSE(picks(*ring, 0, 0));
    EXPECT_FALSE(picks(*ring, 0, 120));

    // Straight text turned upright is picked by its turned rectangle, within its own one.
    auto upright = makeText(QStringLiteral("HHHHHHHH"));
    upright->m_angle = 0;
    upright->Layout();
    const CRect n = upright->m_position.Normalized();
    const CPoint c = n.CenterPoint();
    EXPECT_TRUE(picks(*upright, c.x, c.y + 20));
    EXPECT_FALSE(picks(*upright, c.x + n.Width() / 2 - 5, c.y));
    EXPECT_FALSE(picks(*upright, c.x, c.y + n.Width() / 2 - 5));

    // Bounds: a square that holds the box at any angle, grown by the shadow and the blurs.
    auto plain = makeText(QStringLiteral("HHHH"));
    const CRect square = plain->GetDrawBounds(plain->m_position);
    const CRect base = plain->CDrawObj::GetDrawBounds(plain->m_position.Normalized());
    EXPECT_EQ(square.Width(), square.Height());
    EXPECT_NEAR(square.Width(), std::hypot(base.Width(), base.Height()), 2);
    EXPECT_NEAR(centreOf(square).x(), centreOf(plain->m_position).x(), 1);
    plain->SetEffects(gfx::Color(), 0, 1, 64, 0, 1, -5, 7, 160, 0);
    const CRect grown = plain->GetDrawBounds(plain->m_position);
    EXPECT_EQ(grown.Width() - square.Width(), 2 * (5 + 10 + 4));
    EXPECT_EQ(grown.Height() - square.Height(), 2 * (7 + 10 + 4));
}

TEST_F(CDrawTextTest, TransparencyAndShadowPaintInTheirPlaces)
{
    // How each style looks is held by the reference pictures (CDrawTextReferenceTest).
    auto text = makeText(QStringLiteral("HHH"), CRect(-100, 40, 100, -40), CDrawText::Straight, CDrawText::Centered);
    text->m_fontStyle = gfx::FontStyleBold;
    text->Layout();
    const QImage opaque = drawn(*text, 400);
    const QPointF glyphs = darkCentroid(opaque);
    text->m_textTransparency = 50; // blends with the white label
    EXPECT_GT(countPixels(drawn(*text, 400), QColor(128, 128, 128), 10), countPixels(opaque, Qt::black, 10) / 2);
    // The text itself invisible, its hard shadow 30 right and 20 down on the label.
    text->m_textTransparency = 100;
    text->SetEffects(gfx::Color(), CDrawText::Normal, 1, 0, 0, 1, 30, 20, 0, 0);
    const QPointF shadow = darkCentroid(drawn(*text, 400)) - glyphs;
    EXPECT_NEAR(shadow.x(), 30, 1.5);
    EXPECT_NEAR(shadow.y(), 20, 1.5);
}

TEST_F(CDrawTextTest, BadInputEndsSafely)
{
    // A face that doesn't exist draws in the system's sans-serif face.
    auto missing = makeText(QStringLiteral("Fallback")), generic = makeText(QStringLiteral("Fallback"));
    missing->m_fontName = QStringLiteral("No Such Face 1234");
    missing->Layout();
    generic->m_fontName = gfx::FontFamily::GenericSansSerif().GetFamilyName();
    generic->Layout();
    EXPECT_FALSE(missing->m_textPath.IsEmpty());
    EXPECT_EQ(missing->m_textPath.GetPathPoints(), generic->m_textPath.GetPathPoints());

    // 1500 points would need a 60-million-pixel shadow; the shadow is left out instead.
    for (int size : {0, 10000, -5, 1500}) {
        for (int kind : {CDrawText::Straight, CDrawText::CurvedCW, CDrawText::SpiralCCW}) {
            auto text = makeText(QStringLiteral("Size"), Box, kind);
            text->m_fontSize = size;
            text->SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Glowing, 3, 255, 0, 1, 4, 4, 255, 0);
            text->Layout();
            EXPECT_LT(text->m_position.Width(), std::numeric_limits<int>::max() / 2);
            drawn(*text, 100);
        }
    }
    // 100,000 characters lay out at most MaxLaidOutCharacters glyphs, straight or curved.
    for (int kind : {CDrawText::Straight, CDrawText::CurvedCW, CDrawText::SpiralCW}) {
        auto text = makeText(QString(100000, QChar(u'H')), CRect(-500, 500, 500, -500), kind);
        const std::vector<std::uint8_t> types = text->m_textPath.GetPathTypes();
        EXPECT_EQ(std::count(types.begin(), types.end(), 0), CDrawText::MaxLaidOutCharacters) << kind;
    }
    // An ellipse smaller than its lines, and a pitch of nothing.
    auto tiny = makeText(QStringLiteral("tiny\r\nring\r\nof text"), CRect(-3, 3, 3, -3), CDrawText::CurvedCCW);
    tiny->m_leading = -500;
    tiny->SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Neon, 3, 255, 0, 1, 4, 4, 255, 0);
    tiny->Layout();
    EXPECT_FALSE(tiny->m_textPath.IsEmpty());
    drawn(*tiny, 100);
}

TEST_F(CDrawTextTest, AKeptBlurIsComposedAgainAfterEveryChangeAndOnlyMovedByAMove)
{
    // A turned glowing text with a blurred shadow keeps both blurs between draws. After each
    // change it must paint exactly what a copy that never drew before paints, and differ from
    // what it painted before the change.
    auto text = makeText(QStringLiteral("Glow"), CRect(-80, 30, 80, -30));
    text->SetEffects(gfx::Color(255, 0, 160, 255), CDrawText::Glowing, 6, 160, 0, 1, 10, -8, 120, 20);
    text->m_angle = 80;
    text->Layout();
    auto other = makeText(QStringLiteral("Other"), CRect(-60, 20, 60, -20));
    other->SetEffects(gfx::Color(255, 255, 0, 0), CDrawText::Neon, 3, 60, 0, 1, -6, 6, 60, 0);
    const struct {
        const char* change;
        std::function<void()> apply;
    } changes[] = {
        {"edge colour written as an undo does", [&] { text->m_edgeColor = gfx::Color(255, 0, 200, 0); }},
        {"shadow transparency written", [&] { text->m_shadowTransparency = 60; }},
        {"effects set", [&] { text->SetEffects(text->m_edgeColor, CDrawText::Glowing, 9, 90, 10, 1, 10, -8, 40, 20); }},
        {"text set, as wide", [&] { text->SetTextProperties(QStringLiteral("woGl"), 0, 1, {}, 0, 80, 0, 0); }},
        {"font set", [&] { text->SetFont(QStringLiteral("Liberation Serif"), 14, 0); }},
        {"moved", [&] { text->MoveTo(CRect(-50, 60, 110, 0), nullptr); }},
        {"offset", [&] { text->Offset(-37, -21); }},
        {"turned by its handle", [&] { text->MoveHandleTo(1, CPoint(-100, 100), nullptr); }},
        {"properties copied", [&] { text->CopyProperties(*other); }},
        {"read from a file", [&] {
             auto source = makeText(QStringLiteral("Read"), CRect(-70, 25, 70, -25));
             source->SetEffects(gfx::Color(255, 90, 90, 90), CDrawText::Glowing, 4, 200, 0, 1, 5, 5, 200, 0);
             CArchive archive(stored(*source));
             text->Serialize(archive);
         }},
    };
    QImage before = drawn(*text, 300);
    for (const auto& c : changes) {
        SCOPED_TRACE(c.change);
        c.apply();
        const QImage kept = drawn(*text, 300);
        const QImage fresh = drawn(*text->Clone(), 300);
        EXPECT_TRUE(kept == fresh);
        EXPECT_FALSE(kept == before);
        before = kept;
    }
}
