// Each text style and each path kind drawn and compared with a picture checked by eye.
#include "ShapeCanvas.h"

namespace {

using Texts = std::vector<std::unique_ptr<CDrawText>>;

const gfx::Color Blue(255, 20, 40, 160), Red(255, 160, 30, 30);

CDrawText& add(Texts& texts, const QString& content, const CRect& at, int kind = CDrawText::Straight,
               int justify = CDrawText::Centered, float angle = 90, gfx::Color colour = Blue)
{
    auto& text = *texts.emplace_back(makeText(content, at, kind, justify));
    text.m_angle = angle;
    text.m_textColor = colour;
    return text;
}

// Lays the texts out at the point size and compares them with the picture of the name; glyph
// edges are antialiased, and a font engine update may move a few of their pixels.
void compare(const QString& name, Texts& texts, int points)
{
    for (auto& text : texts) {
        text->m_fontSize = points;
        text->Layout();
    }
    compareWithReference(name, ShapeCanvas::render(texts, 400), 0.01);
}

} // namespace

TEST(TextReference, StraightCurvedAndSpiral)
{
    ResetDefaultProperties();
    Texts straight;
    add(straight, QStringLiteral("Left\r\naligned text"), CRect(-190, 190, -10, 110), CDrawText::Straight,
        CDrawText::Left);
    add(straight, QStringLiteral("Right\r\naligned text"), CRect(10, 190, 190, 110), CDrawText::Straight,
        CDrawText::Right);
    add(straight, QStringLiteral("Centred\r\nand turned"), CRect(-100, 60, 100, -60), CDrawText::Straight,
        CDrawText::Centered, 60)
        .m_leading = 20;
    CDrawText& tracked = add(straight, QStringLiteral("T r a c k"), CRect(-150, -140, 150, -180));
    tracked.m_tracking = 15;
    tracked.m_fontStyle = gfx::FontStyleBold | gfx::FontStyleUnderline;
    compare("text_straight", straight, 8);

    Texts paths;
    const CRect outer(-195, 195, 195, -195), inner(-110, 110, 110, -110);
    add(paths, QStringLiteral("Clockwise around\r\nthe top"), outer, CDrawText::CurvedCW);
    add(paths, QStringLiteral("Counter-clockwise below"), outer, CDrawText::CurvedCCW, CDrawText::Centered, 270);
    add(paths, QStringLiteral("ends at the handle"), inner, CDrawText::CurvedCW, CDrawText::Right, 0, Red);
    add(paths, QStringLiteral("starts at it"), inner, CDrawText::CurvedCCW, CDrawText::Right, 180, Red);
    compare("text_paths", paths, 9);

    Texts spirals;
    add(spirals, QStringLiteral("A spiral clockwise, in and in"), CRect(-198, 100, -2, -96), CDrawText::SpiralCW,
        CDrawText::Left);
    add(spirals, QStringLiteral("The other way round, and in"), CRect(2, 100, 198, -96), CDrawText::SpiralCCW,
        CDrawText::Left, 90, Red);
    compare("text_spirals", spirals, 6);
}

TEST(TextReference, SixStylesWithShadow)
{
    ResetDefaultProperties();
    Texts texts;
    const char* names[] = {"Normal", "Outline", "Embossed", "Chiseled", "Glowing", "Neon"};
    for (int style = 0; style < 6; ++style) {
        const int y = 170 - style * 64;
        CDrawText& t = add(texts, QString::fromLatin1(names[style]), CRect(-150, y, 150, y - 40));
        t.m_fontStyle = gfx::FontStyleBold;
        t.SetEffects(gfx::Color(255, 250, 200, 20), std::uint8_t(style), 3, 160, 0, style % 2, 8, 6, 96, 40);
        t.m_fillColor1 = gfx::Color(255, 255, 255, 255);
    }
    compare("text_styles", texts, 16);
}
