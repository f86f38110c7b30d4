#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "platform/graphics/Font.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <cmath>

namespace {

const QString Sans = QStringLiteral("Liberation Sans");

class CDrawTextTest : public ::testing::Test {
protected:
    void SetUp() override { ResetDefaultProperties(); }
    void TearDown() override
    {
        ResetDefaultProperties();
        CDrawText::s_angleChanged = nullptr;
    }

    static std::unique_ptr<CDrawText> straight(const QString& content, int justify = CDrawText::Left,
                                               const CRect& at = CRect(-100, 50, 100, -50))
    {
        auto text = std::make_unique<CDrawText>(at);
        text->m_fontName = Sans;
        text->m_text = content;
        text->m_justify = justify;
        text->Layout();
        return text;
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
    for (const QPointF& p : text.m_textPath.GetPathPoints()) {
        if ((p.y() > middle) == upper)
            bounds |= QRectF(p, QSizeF(1e-9, 1e-9));
    }
    return bounds;
}

QPointF centreOf(const CRect& r)
{
    return QPointF((r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0);
}

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

// Centre of the pixels darker than the threshold in every channel.
QPointF darkCentroid(const QImage& image, int threshold = 128)
{
    double sx = 0, sy = 0;
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (qRed(p) < threshold && qGreen(p) < threshold && qBlue(p) < threshold) {
                sx += x;
                sy += y;
                ++n;
            }
        }
    return n ? QPointF(sx / n, sy / n) : QPointF(-1, -1);
}

QImage drawn(CDrawText& text, int size = 400)
{
    ShapeCanvas canvas(size);
    text.Draw(canvas.graphics(), 300, 300, nullptr);
    return canvas.image();
}

} // namespace

TEST_F(CDrawTextTest, NewTextsTakeTheDefaultsAndCopiesTakeEveryField)
{
    g_defaultProperties.m_fontSize = 20;
    g_defaultProperties.m_justify = CDrawText::Right;
    g_defaultProperties.m_edgeSize = 4;
    const CDrawText fresh;
    EXPECT_EQ(fresh.m_text, QStringLiteral("Text"));
    EXPECT_EQ(fresh.m_fontName, QStringLiteral("Arial"));
    EXPECT_EQ(fresh.m_fontSize, 20);
    EXPECT_EQ(fresh.m_justify, CDrawText::Right);
    EXPECT_EQ(fresh.m_edgeSize, 4);
    EXPECT_EQ(fresh.m_angle, 90.0f);
    EXPECT_EQ(fresh.m_textColor, gfx::Color(255, 0, 0, 0));
    EXPECT_EQ(fresh.m_edgeColor.GetValue(), 0u);
    EXPECT_TRUE(fresh.m_textPath.IsEmpty());

    auto source = straight(QStringLiteral("Copy me\r\ntwice"));
    source->m_textPathKind = CDrawText::CurvedCW | CDrawText::AspectLock;
    source->m_position = CRect(-300, 300, 300, -300);
    source->m_aux1 = QStringLiteral("a1");
    source->m_auxColor1 = gfx::Color(0x11223344u);
    source->m_auxByte1 = 5;
    source->m_auxInt1 = 6;
    source->m_auxByte2 = 7;
    source->m_aux2 = QStringLiteral("a2");
    source->m_auxColor2 = gfx::Color(0x55667788u);
    source->m_auxByte3 = 8;
    source->m_auxInt2 = 9;
    source->m_fontStyle = gfx::FontStyleItalic;
    source->m_tracking = 3;
    source->m_leading = -4;
    source->SetEffects(gfx::Color(255, 1, 2, 3), CDrawText::Neon, 5, 6, 7, 1, 8, 9, 10, 11);
    source->m_fillColor1 = gfx::Color(255, 9, 9, 9);
    source->Layout();

    const std::unique_ptr<CDrawObj> copy = source->Clone();
    const auto& c = dynamic_cast<const CDrawText&>(*copy);
    EXPECT_EQ(c.m_position, source->m_position);
    EXPECT_EQ(c.m_text, source->m_text);
    EXPECT_EQ(c.m_textPathKind, source->m_textPathKind);
    EXPECT_EQ(c.m_fontStyle, source->m_fontStyle);
    EXPECT_EQ(c.m_fillColor1, source->m_fillColor1);
    EXPECT_EQ(std::tie(c.m_aux1, c.m_auxByte1, c.m_auxInt1, c.m_auxByte2, c.m_aux2, c.m_auxByte3, c.m_auxInt2),
              std::tie(source->m_aux1, source->m_auxByte1, source->m_auxInt1, source->m_auxByte2, source->m_aux2,
                       source->m_auxByte3, source->m_auxInt2));
    EXPECT_EQ(c.m_auxColor1, source->m_auxColor1);
    EXPECT_EQ(c.m_auxColor2, source->m_auxColor2);
    EXPECT_EQ(std::tie(c.m_edgeColor, c.m_textStyle, c.m_edgeSize, c.m_edgeBlur, c.m_edgeTransparency, c.m_shadowOn,
                       c.m_shadowX, c.m_shadowY, c.m_shadowBlur, c.m_shadowTransparency, c.m_tracking, c.m_leading),
              std::tie(source->m_edgeColor, source->m_textStyle, source->m_edgeSize, source->m_edgeBlur,
                       source->m_edgeTransparency, source->m_shadowOn, source->m_shadowX, source->m_shadowY,
                       source->m_shadowBlur, source->m_shadowTransparency, source->m_tracking, source->m_leading));
    // The copy lays itself out: the same glyphs in the same places.
    EXPECT_EQ(c.m_textPath.GetPathPoints(), source->m_textPath.GetPathPoints());
    EXPECT_FLOAT_EQ(c.m_ringWidth, source->m_ringWidth);

    // CopyProperties takes the rectangle too, from any object, and lays out again.
    CDrawText target(CRect(0, 10, 10, 0));
    target.m_fontName = Sans;
    CDrawRect rect(CRect(-50, 50, 50, -50));
    rect.m_fillColor1 = gfx::Color(255, 1, 1, 1);
    target.CopyProperties(rect);
    EXPECT_EQ(target.m_fillColor1, rect.m_fillColor1);
    EXPECT_EQ(target.m_text, QStringLiteral("Text"));
    EXPECT_EQ(centreOf(target.m_position), QPointF(0, 0));
    EXPECT_FALSE(target.m_textPath.IsEmpty());
}

TEST_F(CDrawTextTest, SettersLayOutExceptForEffects)
{
    auto text = straight(QStringLiteral("abc"));
    const CRect before = text->m_position;
    text->SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Outline, 9, 0, 0, 1, 5, 5, 0, 0);
    EXPECT_EQ(text->m_position, before);
    text->SetTextProperties(QStringLiteral("abcdef"), CDrawText::Straight, CDrawText::Left, gfx::Color(255, 1, 2, 3),
                            0, 90, 0, 0);
    EXPECT_GT(text->m_position.Width(), before.Width());
    const CRect wider = text->m_position;
    text->SetFont(Sans, 24, gfx::FontStyleBold);
    EXPECT_GT(text->m_position.Width(), wider.Width());
    EXPECT_GT(std::abs(text->m_position.Height()), std::abs(wider.Height()));
    text->SetTextColor(gfx::RGB(10, 20, 30));
    EXPECT_EQ(text->m_textColor, gfx::Color(255, 10, 20, 30));
}

TEST_F(CDrawTextTest, StraightBoxFitsItsContentAboutTheCentreWithRoomForTheGlyphs)
{
    auto text = straight(QStringLiteral("HH"), CDrawText::Left, CRect(100, 300, 140, 200));
    const QPointF centre = centreOf(CRect(100, 300, 140, 200));
    const CRect narrow = text->m_position;
    EXPECT_NEAR(centreOf(narrow).x(), centre.x(), 1);
    EXPECT_NEAR(centreOf(narrow).y(), centre.y(), 1);
    EXPECT_TRUE(QRectF(narrow.left, narrow.bottom, narrow.Width(), -narrow.Height()).contains(placedBounds(*text)));

    text->m_text = QStringLiteral("HHHH\r\nH\r\nHH");
    text->Layout();
    EXPECT_NEAR(centreOf(text->m_position).x(), centre.x(), 1);
    EXPECT_NEAR(centreOf(text->m_position).y(), centre.y(), 1);
    EXPECT_GT(text->m_position.Width(), narrow.Width());
    // Three lines at the font's line height (57.5 at 12 points).
    EXPECT_NEAR(std::abs(text->m_position.Height()), 3 * 57.5, 3);

    // An empty text is one empty line: no glyphs, a box about a point size wide.
    text->m_text.clear();
    text->Layout();
    EXPECT_TRUE(text->m_textPath.IsEmpty());
    EXPECT_GE(text->m_position.Width(), 12);
    EXPECT_LE(text->m_position.Width(), 16);
}

TEST_F(CDrawTextTest, JustificationShiftsShortLinesByWhatTheWidestLeavesOver)
{
    const QString content = QStringLiteral("HHHHHH\r\nH");
    auto left = straight(content, CDrawText::Left);
    auto centred = straight(content, CDrawText::Centered);
    auto right = straight(content, CDrawText::Right);
    const gfx::Font font(gfx::FontFamily(Sans), 50, 0);
    const double w = left->m_position.Width();
    // What the box leaves beside the short line, less the point size kept free at the end.
    const double spare = w - font.Advance(u"H") - 12;
    const double l = halfBounds(*left, false).left(), c = halfBounds(*centred, false).left(),
                 r = halfBounds(*right, false).left();
    EXPECT_NEAR(r - l, spare, 0.01);
    EXPECT_NEAR(c - l, spare / 2, 0.01);
    // Left text starts a sixth of an em (and the H's side bearing) into the box.
    EXPECT_GT(l, 50 / 6.0);
    EXPECT_LT(l, 50 / 6.0 + 5);
    // Centred lines lose their blanks first.
    auto padded = straight(QStringLiteral("HHHHHH\r\n   H   "), CDrawText::Centered);
    EXPECT_NEAR(halfBounds(*padded, false).left(), c, 0.01);
}

TEST_F(CDrawTextTest, LinesRunDownwardAndLeadingAndTrackingAddSpace)
{
    // The first line is the upper one.
    auto order = straight(QStringLiteral("I\r\nWWWW"));
    EXPECT_LT(halfBounds(*order, true).width(), halfBounds(*order, false).width() / 2);

    auto tight = straight(QStringLiteral("H\r\nH"));
    auto spaced = straight(QStringLiteral("H\r\nH"));
    spaced->m_leading = 40;
    spaced->Layout();
    const auto gap = [](const CDrawText& t) { return halfBounds(t, true).bottom() - halfBounds(t, false).bottom(); };
    EXPECT_NEAR(gap(*spaced) - gap(*tight), 40, 0.5);
    EXPECT_NEAR(std::abs(spaced->m_position.Height()) - std::abs(tight->m_position.Height()), 80, 2);

    auto plain = straight(QStringLiteral("HH"));
    auto tracked = straight(QStringLiteral("HH"));
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
        // Only the first character has an outline.
        auto text = straight(QStringLiteral("H      "), CDrawText::Left);
        text->m_angle = angle;
        text->Layout();
        const QPointF c = centreOf(text->m_position);
        const QPointF handle(text->GetHandle(1).x, text->GetHandle(1).y);
        const QPointF first = placedBounds(*text).center();
        EXPECT_LT(distance(first, handle), distance(first, 2 * c - handle)) << angle;
    }
    // 90 is level and 0 reads downward, the handle on top.
    auto level = straight(QStringLiteral("HHHHHH"), CDrawText::Centered);
    EXPECT_GT(level->m_textPath.GetBounds().width(), 3 * level->m_textPath.GetBounds().height());
    level->m_angle = 0;
    level->Layout();
    EXPECT_GT(level->m_textPath.GetBounds().height(), 3 * level->m_textPath.GetBounds().width());
    EXPECT_GT(level->GetHandle(1).y, centreOf(level->m_position).y() + 50);
    // Turned about the centre.
    level->m_angle = 33;
    level->Layout();
    EXPECT_NEAR(placedBounds(*level).center().x(), centreOf(level->m_position).x(), 3);
    EXPECT_NEAR(placedBounds(*level).center().y(), centreOf(level->m_position).y(), 6);
}

TEST_F(CDrawTextTest, HandlesTurnTheTextAndTellThePanel)
{
    QStringList told;
    CDrawText::s_angleChanged = [&](const CDrawText&, const QString& value) { told << value; };
    auto text = straight(QStringLiteral("Turn"));
    const CRect n = text->m_position.Normalized();
    const CPoint c = n.CenterPoint();
    EXPECT_EQ(text->GetHandleCount(), 1);
    EXPECT_EQ(text->GetHandle(1), CPoint(c.x - n.Width() / 2, c.y));
    EXPECT_EQ(text->GetHandle(2), CPoint(0, 0));
    EXPECT_EQ(text->GetHandleCursor(1), Qt::SizeAllCursor);

    text->MoveHandleTo(1, CPoint(c.x, c.y + 100), nullptr);
    EXPECT_FLOAT_EQ(text->m_angle, 0);
    text->MoveHandleTo(1, CPoint(c.x - 100, c.y - 100), nullptr);
    EXPECT_NEAR(text->m_angle, 135, 1e-4);
    EXPECT_EQ(told, (QStringList{QStringLiteral("0.0"), QStringLiteral("135.0")}));
    // The handle follows toward the point it was dragged to.
    const CRect m = text->m_position.Normalized();
    EXPECT_LT(text->GetHandle(1).x, m.CenterPoint().x);
    EXPECT_LT(text->GetHandle(1).y, m.CenterPoint().y);

    // Curved text: base handles and handle 9 on the ellipse, by the ellipse's parameter.
    CDrawText curved(CRect(-200, 100, 200, -100));
    curved.m_fontName = Sans;
    curved.m_textPathKind = CDrawText::CurvedCW;
    curved.Layout();
    EXPECT_EQ(curved.GetHandleCount(), 9);
    EXPECT_EQ(curved.GetHandle(9), CPoint(0, 100));
    EXPECT_EQ(curved.GetHandle(3), CPoint(200, 100));
    curved.MoveHandleTo(9, CPoint(100, 100), nullptr);
    EXPECT_NEAR(curved.m_angle, std::atan2(400.0, 200.0) * 180 / 3.141592653589793, 1e-3);
    const CPoint h = curved.GetHandle(9);
    EXPECT_NEAR(h.x, h.y, 1); // on the ray toward (100, 100)
    EXPECT_EQ(told.size(), 3);
    const Qt::CursorShape cursors[] = {Qt::SizeBDiagCursor, Qt::SizeVerCursor, Qt::SizeFDiagCursor,
                                       Qt::SizeHorCursor, Qt::SizeBDiagCursor, Qt::SizeVerCursor,
                                       Qt::SizeFDiagCursor, Qt::SizeHorCursor, Qt::SizeAllCursor};
    for (int handle = 1; handle <= 9; ++handle)
        EXPECT_EQ(curved.GetHandleCursor(handle), cursors[handle - 1]) << handle;

    // Resizing: free without the lock, about the centre in proportion with it.
    curved.MoveHandleTo(3, CPoint(300, 120), nullptr);
    EXPECT_EQ(curved.m_position, CRect(-200, 120, 300, -100));
    curved.m_textPathKind |= CDrawText::AspectLock;
    curved.m_position = CRect(-200, 100, 200, -100);
    curved.m_aspect = 2;
    curved.MoveHandleTo(3, CPoint(300, 10), nullptr);
    EXPECT_EQ(curved.m_position, CRect(-300, 150, 300, -150));
}

TEST_F(CDrawTextTest, PickingAndBoundsFollowTheShapeOfTheText)
{
    CDrawText ring(CRect(-200, 200, 200, -200));
    ring.m_fontName = Sans;
    ring.m_textPathKind = CDrawText::CurvedCW;
    ring.Layout();
    EXPECT_NEAR(ring.m_ringWidth, 57.5, 0.1);
    EXPECT_TRUE(picks(ring, 0, 190));
    EXPECT_FALSE(picks(ring, 0, 0));
    EXPECT_FALSE(picks(ring, 0, 120));

    // Straight text turned upright is picked by its turned rectangle.
    auto upright = straight(QStringLiteral("HHHHHHHH"));
    upright->m_angle = 0;
    upright->Layout();
    const CRect n = upright->m_position.Normalized();
    const CPoint c = n.CenterPoint();
    EXPECT_TRUE(picks(*upright, c.x, c.y + 20));
    EXPECT_FALSE(picks(*upright, c.x + n.Width() / 2 - 5, c.y));
    // Only within its own rectangle, though: the turned ends beyond it aren't picked.
    EXPECT_FALSE(picks(*upright, c.x, c.y + n.Width() / 2 - 5));
    EXPECT_TRUE(upright->IsInside(CRect(c.x - 300, c.y + 300, c.x + 300, c.y - 300)));
    EXPECT_FALSE(upright->IsInside(CRect(c.x - 300, c.y + 300, c.x + 300, c.y)));

    // Bounds: a square that holds the box at any angle, grown by the shadow and the blurs.
    auto plain = straight(QStringLiteral("HHHH"));
    const CRect square = plain->GetDrawBounds(plain->m_position);
    EXPECT_EQ(square.Width(), square.Height());
    EXPECT_NEAR(centreOf(square).x(), centreOf(plain->m_position).x(), 1);
    const CRect base = plain->CDrawObj::GetDrawBounds(plain->m_position).Normalized();
    EXPECT_NEAR(square.Width(), std::hypot(base.Width(), base.Height()), 2);
    plain->SetEffects(gfx::Color(), 0, 1, 64, 0, 1, -5, 7, 160, 0);
    const CRect grown = plain->GetDrawBounds(plain->m_position);
    EXPECT_EQ(grown.Width() - square.Width(), 2 * (5 + 10 + 4));
    EXPECT_EQ(grown.Height() - square.Height(), 2 * (7 + 10 + 4));
}

TEST_F(CDrawTextTest, StylesPaintWithTheirOwnColours)
{
    auto text = straight(QStringLiteral("HHH"), CDrawText::Centered, CRect(-100, 40, 100, -40));
    text->m_fontStyle = gfx::FontStyleBold;
    text->m_textColor = gfx::Color(255, 0, 0, 255);
    text->Layout();
    EXPECT_GT(countPixels(drawn(*text), QColor(0, 0, 255), 10), 500);
    // Half transparent text blends with the white label.
    text->m_textTransparency = 50;
    EXPECT_GT(countPixels(drawn(*text), QColor(128, 128, 255), 10), 500);
    text->m_textTransparency = 0;

    // Embossed and Chiseled show the object's fill colour, never the text colour.
    text->m_fillColor1 = gfx::Color(255, 0, 200, 0);
    text->m_edgeColor = gfx::Color(255, 200, 0, 0);
    for (int style : {CDrawText::Embossed, CDrawText::Chiseled}) {
        text->m_textStyle = std::uint8_t(style);
        const QImage image = drawn(*text);
        EXPECT_GT(countPixels(image, QColor(0, 200, 0), 10), 300) << style;
        EXPECT_EQ(countPixels(image, QColor(0, 0, 255), 60), 0) << style;
    }

    // Neon shows only the blurred edge. Blue isn't blurred, so the halo around a white edge is
    // yellow over the white label; Glowing adds the text on top.
    text->m_textStyle = CDrawText::Neon;
    text->m_edgeColor = gfx::Color(255, 255, 255, 255);
    text->m_edgeSize = 4;
    text->m_edgeBlur = 128;
    QImage image = drawn(*text);
    EXPECT_EQ(countPixels(image, QColor(0, 0, 255), 60), 0);
    int yellow = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qBlue(image.pixel(x, y)) + 40 < qRed(image.pixel(x, y)))
                ++yellow;
    EXPECT_GT(yellow, 200);
    text->m_textStyle = CDrawText::Glowing;
    EXPECT_GT(countPixels(drawn(*text), QColor(0, 0, 255), 10), 500);
}

TEST_F(CDrawTextTest, ShadowFallsByItsOffsetRightAndDown)
{
    auto text = straight(QStringLiteral("HHH"), CDrawText::Centered, CRect(-100, 40, 100, -40));
    text->m_fontStyle = gfx::FontStyleBold;
    text->Layout();
    const QPointF glyphs = darkCentroid(drawn(*text));
    // The text itself invisible, its hard shadow 30 right and 20 up in the offset's terms.
    text->m_textTransparency = 100;
    text->SetEffects(gfx::Color(), CDrawText::Normal, 1, 0, 0, 1, 30, 20, 0, 0);
    const QPointF shadow = darkCentroid(drawn(*text));
    EXPECT_NEAR(shadow.x() - glyphs.x(), 30, 1.5);
    EXPECT_NEAR(shadow.y() - glyphs.y(), 20, 1.5); // downward on the label
    // A blurred shadow is grey, and stays centred on the same place.
    text->m_shadowBlur = 255;
    const QImage blurred = drawn(*text);
    EXPECT_EQ(countPixels(blurred, QColor(0, 0, 0), 30), 0);
    EXPECT_NEAR(darkCentroid(blurred, 240).x() - glyphs.x(), 30, 3);
    EXPECT_NEAR(darkCentroid(blurred, 240).y() - glyphs.y(), 20, 3);
}

TEST_F(CDrawTextTest, BadInputEndsSafely)
{
    // A face that doesn't exist draws in the system's sans-serif face.
    auto missing = straight(QStringLiteral("Fallback"));
    missing->m_fontName = QStringLiteral("No Such Face 1234");
    missing->Layout();
    auto generic = straight(QStringLiteral("Fallback"));
    generic->m_fontName = gfx::FontFamily::GenericSansSerif().GetFamilyName();
    generic->Layout();
    EXPECT_FALSE(missing->m_textPath.IsEmpty());
    EXPECT_EQ(missing->m_textPath.GetPathPoints(), generic->m_textPath.GetPathPoints());

    QElapsedTimer clock;
    clock.start();
    for (int size : {0, 10000, -5}) {
        for (int kind : {CDrawText::Straight, CDrawText::CurvedCW, CDrawText::SpiralCCW}) {
            auto text = straight(QStringLiteral("Size"));
            text->m_textPathKind = kind;
            text->m_fontSize = size;
            text->SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Glowing, 3, 255, 0, 1, 4, 4, 255, 0);
            text->Layout();
            EXPECT_LT(text->m_position.Width(), std::numeric_limits<int>::max() / 2);
            drawn(*text, 100);
        }
    }
    // 100,000 characters lay out at most MaxLaidOutCharacters glyphs, straight or curved.
    for (int kind : {CDrawText::Straight, CDrawText::CurvedCW, CDrawText::SpiralCW}) {
        auto text = straight(QString(100000, QChar(u'H')));
        text->m_textPathKind = kind;
        text->m_position = CRect(-500, 500, 500, -500);
        text->Layout();
        const std::vector<std::uint8_t> types = text->m_textPath.GetPathTypes();
        EXPECT_EQ(std::count(types.begin(), types.end(), 0), CDrawText::MaxLaidOutCharacters) << kind;
    }
    // An ellipse smaller than its lines, and a pitch of nothing.
    CDrawText tiny(CRect(-3, 3, 3, -3));
    tiny.m_fontName = Sans;
    tiny.m_text = QStringLiteral("tiny\r\nring\r\nof text");
    tiny.m_textPathKind = CDrawText::CurvedCCW;
    tiny.m_leading = -500;
    tiny.SetEffects(gfx::Color(255, 0, 0, 0), CDrawText::Neon, 3, 255, 0, 1, 4, 4, 255, 0);
    tiny.Layout();
    EXPECT_FALSE(tiny.m_textPath.IsEmpty());
    drawn(tiny, 100);
    EXPECT_LT(clock.elapsed(), 20000);
}
