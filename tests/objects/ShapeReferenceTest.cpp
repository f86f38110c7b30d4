// Each fill kind and line kind drawn on a small label and compared with a picture checked by eye.
#include "ShapeCanvas.h"
#include "TestSupport.h"

namespace {

using Shapes = std::vector<std::unique_ptr<CDrawRect>>;

// A shape with a black outline 2 wide, filled with the two colours in the given way.
CDrawRect& add(Shapes& shapes, int code, const CRect& at, gfx::Color fill1 = gfx::Color(255, 255, 255, 255),
               int fillKind = 0, gfx::Color fill2 = gfx::Color(255, 0, 0, 0))
{
    ResetDefaultProperties();
    auto& rect = *shapes.emplace_back(std::make_unique<CDrawRect>(at));
    rect.m_shape = code;
    rect.m_lineWidth = 2;
    rect.m_fillKind = fillKind;
    rect.m_fillColor1 = fill1;
    rect.m_fillColor2 = fill2;
    return rect;
}

void compare(const QString& name, const Shapes& shapes)
{
    compareWithReference(name, ShapeCanvas::render(shapes), 0.005);
}

// A 16 by 16 picture with four coloured quarters and a dark mark in its top left corner, so that
// turns and flips show.
QString quarterPicture(const TestFolder& folder)
{
    QImage picture(16, 16, QImage::Format_RGB32);
    const QRgb quarter[] = {qRgb(230, 60, 60), qRgb(60, 160, 60), qRgb(60, 60, 230), qRgb(240, 200, 40)};
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            picture.setPixel(x, y, x < 4 && y < 4 ? qRgb(20, 20, 20) : quarter[(y / 8) * 2 + x / 8]);
    const QString path = folder.path() + "/quarters.png";
    picture.save(path);
    return path;
}

// The corner of cell i of a 2 by 2 grid of 85-unit squares.
CRect cell(int i)
{
    const int x = -90 + (i % 2) * 95, y = 90 - (i / 2) * 95;
    return CRect(x, y, x + 85, y - 85);
}

} // namespace

TEST(ShapeReference, Fills)
{
    Shapes solid;
    add(solid, CDrawRect::Rectangle, CRect(-90, 90, 30, -30), gfx::Color(255, 220, 40, 40)).m_lineWidth = 4;
    add(solid, CDrawRect::Ellipse, CRect(-30, 30, 90, -90), gfx::Color(255, 30, 60, 220)).m_transparency = 50;
    add(solid, CDrawRect::RoundRectangle, CRect(-80, -40, -20, -90), gfx::Color(255, 20, 160, 20)).m_cornerSize =
        CPoint(30, 30);
    compare("fill_solid", solid);

    Shapes hatch;
    const int styles[] = {5, 39, 47, 52};
    for (int i = 0; i < 4; ++i) {
        CDrawRect& r = add(hatch, i == 3 ? CDrawRect::Halo : CDrawRect::Rectangle, cell(i),
                           gfx::Color(255, 20, 20, 120), 1, gfx::Color(255, 250, 230, 120));
        r.m_hatchStyle = styles[i];
        r.m_ringX = r.m_ringY = 20;
    }
    hatch[1]->m_transparency = 70;
    compare("fill_hatch", hatch);

    // Tile, flip both ways, Center, Fit on an ellipse.
    TestFolder folder;
    const QString quarters = quarterPicture(folder);
    Shapes pictures;
    const int wraps[] = {0, 3, 4, 4};
    for (int i = 0; i < 4; ++i) {
        CDrawRect& r = add(pictures, i == 3 ? CDrawRect::Ellipse : CDrawRect::Rectangle, cell(i));
        r.m_fillKind = 2;
        r.m_pictureFile = quarters;
        r.m_wrapMode = wraps[i];
        r.m_pictureScale = i == 3;
    }
    compare("fill_picture", pictures);

    // The four linear shadings in the corners, path gradients from the corner and from the centre.
    Shapes gradients;
    for (int style = 0; style < 4; ++style) {
        const int x = -95 + (style % 2) * 130, y = 95 - (style / 2) * 130;
        add(gradients, CDrawRect::Rectangle, CRect(x, y, x + 60, y - 60), gfx::Color(255, 250, 250, 40), 4,
            gfx::Color(255, 40, 40, 200))
            .m_gradientStyle = style;
    }
    add(gradients, CDrawRect::Ellipse, CRect(-95, 30, -5, -30), gfx::Color(255, 255, 255, 255), 3,
        gfx::Color(255, 200, 0, 0));
    add(gradients, CDrawRect::RoundRectangle, CRect(5, 30, 95, -30), gfx::Color(255, 255, 255, 255), 3,
        gfx::Color(128, 0, 120, 0))
        .m_gradientSwap = 1;
    compare("fill_gradient", gradients);
}

TEST(ShapeReference, LinesArrowsAndRings)
{
    Shapes dashed;
    for (int dash = 1; dash <= 4; ++dash) {
        const int inset = dash * 14;
        CDrawRect& r = add(dashed, dash % 2 ? CDrawRect::Rectangle : CDrawRect::Ellipse,
                           CRect(-95 + inset, 95 - inset, 95 - inset, -95 + inset));
        r.m_flags = 1;
        r.m_dashStyle = dash;
        r.m_dashCap = dash == 2 ? 2 : dash == 4 ? 3 : 0; // flat, round, flat, triangle
        r.m_lineWidth = std::uint8_t(2 + dash);
        r.m_lineColor1 = gfx::Color(255, 40 * dash, 20, 160);
    }
    CDrawRect& gradient = add(dashed, CDrawRect::RoundRectangle, CRect(-30, 30, 30, -30));
    gradient.m_flags = 1;
    gradient.m_lineKind = 4;
    gradient.m_lineWidth = 10;
    gradient.m_lineColor1 = gfx::Color(255, 230, 0, 0);
    gradient.m_lineColor2 = gfx::Color(255, 0, 0, 230);
    gradient.m_lineGradientMode = 0;
    gradient.m_cornerSize = CPoint(20, 20);
    compare("line_dash_gradient", dashed);

    Shapes arrows;
    const std::pair<int, int> ends[] = {{16, 20}, {20, 241}, {241, 19}, {242, 18}, {17, 242}, {19, 16}};
    for (int i = 0; i < 6; ++i) {
        CDrawRect& r = add(arrows, CDrawRect::ArrowLine, CRect(-70, 80 - i * 32, 70, 70 - i * 32));
        r.m_lineWidth = 3;
        std::tie(r.m_startArrow, r.m_endArrow) = ends[i];
        r.m_startArrowSize = 4;
        r.m_endArrowSize = 5;
    }
    add(arrows, CDrawRect::Line, CRect(-90, -90, -90, 90)); // a plain line ignores the arrow fields
    compare("line_arrows", arrows);

    Shapes rings;
    CDrawRect& halo = add(rings, CDrawRect::Halo, CRect(-95, 95, 5, -5), gfx::Color(255, 240, 160, 20));
    std::tie(halo.m_ringX, halo.m_ringY) = std::pair(15.0f, 30.0f);
    CDrawRect& arc = add(rings, CDrawRect::Arc, CRect(-5, 95, 95, -5), gfx::Color(255, 20, 160, 200));
    std::tie(arc.m_startAngle, arc.m_endAngle, arc.m_ringX, arc.m_ringY) = std::tuple(30.0f, 300.0f, 25.0f, 25.0f);
    CDrawRect& shaded = add(rings, CDrawRect::Arc, CRect(-95, 5, 95, -95), gfx::Color(255, 250, 0, 0), 4,
                            gfx::Color(255, 0, 0, 250));
    shaded.m_gradientStyle = 0;
    std::tie(shaded.m_startAngle, shaded.m_endAngle, shaded.m_ringX, shaded.m_ringY) =
        std::tuple(200.0f, 20.0f, 30.0f, 20.0f);
    compare("shape_rings", rings);
}
