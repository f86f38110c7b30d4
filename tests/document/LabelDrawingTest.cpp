#include "DocumentFixture.h"

#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "platform/Profile.h"
#include "platform/graphics/DeviceContext.h"

#include <QImage>
#include <QPainter>
#include <array>
#include <random>
#include <tuple>

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Green = 0xFF00FF00;
constexpr QRgb White = 0xFFFFFFFF;
constexpr QRgb Transparent = 0x00000000;

// The phase (device row modulo 8) of a horizontal hatch over the given column: the rows of the
// first line, and the one 8 rows further down, black; -1 when there is no such line.
int hatchPhase(const QImage& image, int column)
{
    for (int y = 0; y + 8 < image.height(); ++y)
        if (image.pixel(column, y) == 0xFF000000 && image.pixel(column, y + 8) == 0xFF000000)
            return y % 8;
    return -1;
}

} // namespace

class LabelDrawing : public DocumentFixture {
protected:
    void SetUp() override
    {
        DocumentFixture::SetUp();
        addTemplate(OneDiscSheet);
        useTemplate(0);
    }

    // A 20 by 10 picture: left half red, right half blue, top row green.
    QString writePicture()
    {
        QImage image(20, 10, QImage::Format_ARGB32);
        for (int y = 0; y < 10; ++y)
            for (int x = 0; x < 20; ++x)
                image.setPixel(x, y, y == 0 ? Green : x < 10 ? Red : Blue);
        image.save(path("picture.png"));
        return path("picture.png");
    }

    QImage background(int originY = 100)
    {
        LabelCanvas canvas(100, originY);
        doc.DrawBackground(canvas.graphics, 40, 40, 0);
        return canvas.image();
    }
};

TEST_F(LabelDrawing, LabelPathsOfDiscsCardsAndRectangles)
{
    // Disc radius 232.5 and hole radius 35 at 100 units per inch; the bleed of 13 units grows
    // the disc and shrinks the hole.
    gfx::GraphicsPath withBleed, without;
    doc.BuildLabelPath(100, 100, withBleed, 0, true);
    doc.BuildLabelPath(100, 100, without, 0, false);
    for (const auto& [x, inside, insideWithBleed] : {std::tuple{230, true, true}, {240, false, true},
                                                     {250, false, false}, {30, false, true}, {0, false, false}}) {
        EXPECT_EQ(without.IsVisible(QPointF(x, 0)), inside) << x;
        EXPECT_EQ(withBleed.IsVisible(QPointF(x, 0)), insideWithBleed) << x;
    }

    // A business-card disc is cut by two chords 120 units from the centre.
    addTemplate("SHEET\nCards\n\n4\n4\n1\n0\n0\nBUSDISC\n1\nCard\n2\n2\n3.15\n0.9\n0\n2.4\nENDOBJECT\nEND\n");
    useTemplate(1);
    gfx::GraphicsPath card;
    doc.BuildLabelPath(100, 100, card, 0, false);
    for (const auto& [x, y, inside] : {std::tuple{150, 0, true}, {0, 115, true}, {0, 125, false}, {0, -125, false}})
        EXPECT_EQ(card.IsVisible(QPointF(x, y)), inside) << x << ", " << y;

    // A rectangle has no hole.
    addTemplate("SHEET\nCard\n\n4\n4\n1\n0\n0\nRECT\n1\nCard\n2\n2\n3\n1\n0\nENDOBJECT\nEND\n");
    useTemplate(2);
    gfx::GraphicsPath rect;
    doc.BuildLabelPath(100, 100, rect, 0, false);
    EXPECT_EQ(rect.GetBounds(), QRectF(-150, -50, 300, 100));
    EXPECT_TRUE(rect.IsVisible(QPointF(0, 0)));
}

TEST_F(LabelDrawing, SolidMissingAndPlacedPictureBackgrounds)
{
    doc.SetBackColor(gfx::RGB(0, 0, 255));
    expectPixels(background(), {{0, 0, Blue}, {199, 199, Blue}});

    // A picture that does not load leaves the white ground and reports nothing.
    doc.SetImageFile(path("missing.png"));
    expectPixels(background(), {{100, 100, White}});
    doc.SetImageFile(folder.write("garbage.png", QByteArray(5000, '\x7f')));
    expectPixels(background(), {{100, 100, White}});
    EXPECT_TRUE(messages.empty());

    doc.SetImageFile(writePicture());
    doc.SetWrapMode(4);
    doc.SetFitMode(0); // Center: pixel for unit, upright, centred
    expectPixels(background(), {{95, 100, Red}, {105, 100, Blue}, {95, 95, Green}, {80, 100, White}, {100, 110, White}});
    doc.SetBackgroundAdjust(30, 20, 1.0); // the offset moves the picture left and up
    expectPixels(background(), {{65, 80, Red}, {75, 80, Blue}, {95, 100, White}});
    doc.SetBackgroundAdjust(0, 0, 1.0);
    doc.SetFitMode(2); // Stretch to the label with its bleed: 186 + 2 x 5.2 units
    expectPixels(background(), {{1, 100, White}, {15, 100, Red}, {185, 100, Blue}, {198, 100, White}});
    doc.SetFitMode(1); // Fit covers the target with the proportions kept: 393 by 196
    expectPixels(background(), {{1, 100, Red}, {198, 100, Blue}, {1, 1, White}});

    // Tiles repeat from the origin, flipped every other one.
    doc.SetWrapMode(0);
    expectPixels(background(), {{115, 100, Red}, {125, 100, Blue}});
    doc.SetWrapMode(1);
    expectPixels(background(), {{95, 100, Red}, {115, 100, Blue}, {125, 100, Red}});
    doc.SetWrapMode(2);
    expectPixels(background(), {{95, 95, Green}, {95, 94, Green}, {95, 104, Red}});
}

TEST_F(LabelDrawing, HatchFollowsThePictureOffsetAndTheLabelNotTheScreen)
{
    doc.SetHatchStyle(0); // horizontal lines
    doc.SetBackColor(gfx::RGB(0, 0, 0));
    doc.SetBackColor2(gfx::RGB(255, 255, 255));
    const int phase = hatchPhase(background(), 50);
    ASSERT_NE(phase, -1);
    doc.SetBackgroundAdjust(0, 3, 1.0); // the pattern moves up with the offset
    EXPECT_EQ(hatchPhase(background(), 50), (phase + 8 - 3) % 8);
    doc.SetBackgroundAdjust(0, 0, 1.0); // moving the label on the device moves the pattern with it
    EXPECT_EQ(hatchPhase(background(105), 50), (phase + 5) % 8);
}

TEST_F(LabelDrawing, ViewShowsMaskPerforationsAndTheGridOverTheLabel)
{
    // A perforation straight down the middle of the disc, given from the area's top-left corner.
    templates.clear();
    addTemplate("SHEET\nPerforated\n\n6\n6\n1\n0\n0\n"
                "DISC\n1\nDisc\n3\n3\n4.65\n0.7\nPERF\n0\n2.325\n0\n2.325\n4.65\nENDPERF\nENDOBJECT\nEND\n");
    useTemplate(0);
    RecordingView view;
    auto darkness = [](const QImage& image, int x, int y) { return 255 - qGreen(image.pixel(x, y)); };

    LabelCanvas plain;
    doc.DrawLabel(plain.graphics, 40, 40, &view, 0, true);
    // Grey outside the label and in the hole, white on it.
    EXPECT_NEAR(plain.image().pixelColor(2, 2).red(), 159, 2);
    EXPECT_EQ(plain.image().pixelColor(2, 2).red(), plain.image().pixelColor(2, 2).blue());
    EXPECT_NEAR(plain.image().pixelColor(106, 100).red(), 159, 2);
    EXPECT_EQ(plain.image().pixel(160, 100), 0xFFFFFFFF);
    int dark = 0, light = 0;
    for (int y = 10; y < 80; ++y) // the ring above the hole: dashed, not solid
        (std::max(darkness(plain.image(), 99, y), darkness(plain.image(), 100, y)) > 100 ? dark : light)++;
    EXPECT_GT(dark, 20);
    EXPECT_GT(light, 10);
    EXPECT_EQ(darkness(plain.image(), 130, 40), 0);

    // The grid in inches: a heavy line every half inch (20 units here), a light one every tenth.
    doc.m_bShowGrid = true;
    LabelCanvas grid;
    doc.DrawLabel(grid.graphics, 40, 40, &view, 0, true);
    auto lineAt = [&](int x) { return std::max(darkness(grid.image(), x - 1, 62), darkness(grid.image(), x, 62)); };
    EXPECT_GT(lineAt(120), lineAt(124)); // half inch: heavy and light together
    EXPECT_GT(lineAt(124), lineAt(122)); // a tenth: light only; between lines: nothing
    EXPECT_EQ(lineAt(122), 0);
    // Printing passes no view: no mask, grid or perforation.
    LabelCanvas print;
    doc.DrawLabel(print.graphics, 40, 40, nullptr, 0, true);
    expectPixels(print.image(), {{2, 2, White}, {120, 60, White}, {100, 40, White}});

    // The grid of an absurdly large label is left out rather than drawn for ever.
    addTemplate(DiscPrinter);
    useTemplate(1);
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), 2000000000); // two million inches
    doc.DrawLabel(plain.graphics, 300, 300, &view, 0, true);
}

using Rendering = DocumentFixture;

TEST_F(Rendering, SheetAreasAreClippedToTheirOutlineWithBleed)
{
    addTemplate("SHEET\nTwo Discs and a Card\n\n8\n6\n2\n0\n0\n"
                "DISC\n1\nLeft\n2\n3\n3\n1\nENDOBJECT\n"
                "DISC\n1\nRight\n6\n3\n3\n1\nENDOBJECT\nEND\n");
    useTemplate(0);
    doc.SetCurLabel(0);
    doc.SetBackColor(gfx::RGB(255, 0, 0));

    const auto sheet = doc.RenderBitmap(100, 100, true, false);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->image().size(), QSize(800, 600));
    // Both areas print label 1: radius 150 plus 13 of bleed, hole 50 minus 13.
    for (const int x : {200, 600})
        expectPixels(sheet->image(), {{x + 100, 300, Red}, {x + 160, 300, Red}, {x + 40, 300, Red},
                                      {x, 300, Transparent}, {x, 300 - 168, Transparent}});
    expectPixels(sheet->image(), {{400, 300, Transparent}});

    // An area that is not selected does not print; fillWhite grounds the sheet.
    templates[0].Objects[1].Selected = 0;
    expectPixels(doc.RenderBitmap(100, 100, true, true)->image(), {{300, 300, Red}, {700, 300, White}});
}

TEST_F(Rendering, RotatedRectangleAreaAndPrinterTemplates)
{
    addTemplate("SHEET\nSpine\n\n6\n6\n2\n0\n0\n"
                "DISC\n1\nDisc\n1.5\n1.5\n2.5\n0.5\nENDOBJECT\n"
                "RECT\n2\nSpine\n4.5\n3\n3\n0.5\n90\nENDOBJECT\nEND\n");
    addTemplate(DiscPrinter);
    useTemplate(0);
    doc.SetCurLabel(1);
    doc.SetBackColor(gfx::RGB(0, 0, 255));
    // The spine stands upright after its quarter turn: 50 by 300, plus 13 of bleed around; the
    // disc shows label 1, still white.
    expectPixels(doc.RenderBitmap(100, 100, true, false)->image(),
                 {{450, 460, Blue}, {485, 300, Blue}, {491, 300, Transparent}, {450, 466, Transparent},
                  {230, 150, White}});

    // A printer template prints only the area closest to the typed sizes, with those sizes, no
    // bleed, centred on the area: here the business-card disc, cut off by its chord.
    useTemplate(1);
    doc.SetOuterDia(3.15, false);
    doc.SetInnerDia(0.9, false);
    doc.SetBusDia(2.4, false);
    doc.SetCurLabel(0);
    doc.SetBackColor(gfx::RGB(255, 0, 0));
    expectPixels(doc.RenderBitmap(100, 100, true, false)->image(),
                 {{386, 236, Red}, {396, 236, Transparent}, {236, 111, Transparent}, {236, 121, Red}});
}

class PrintedColour : public DocumentFixture {
protected:
    void SetUp() override
    {
        DocumentFixture::SetUp();
        addTemplate("SHEET\nSquare\n\n1\n1\n1\n0\n0\nRECT\n1\nAll\n0.5\n0.5\n1\n1\n0\nENDOBJECT\nEND\n");
        useTemplate(0);
    }

    // Prints the sheet on a 300-dpi page the way the print mapping sets it up.
    QImage printed(bool imageOnly = false)
    {
        QImage page(300, 300, QImage::Format_ARGB32_Premultiplied);
        page.fill(imageOnly ? Qt::black : Qt::white);
        QPainter painter(&page);
        gfx::DeviceContext dc(painter, 300, 300, true);
        dc.SetWindowExt(300, -300);
        dc.SetViewportExt(300, 300);
        doc.Draw(dc, nullptr, true, imageOnly);
        painter.end();
        return page;
    }
    QColor printedCentre() { return printed().pixelColor(150, 150); }
};

TEST_F(PrintedColour, SaturationAndGammaOfThePrinterApplyAndImageOnlyPrintsThePicture)
{
    doc.SetBackColor(gfx::RGB(255, 0, 0));
    EXPECT_EQ(printedCentre(), QColor(255, 0, 0)); // 1.0 and 1.0: untouched

    Profile::WriteString(QString(), QStringLiteral("Saturation"), QStringLiteral("0"));
    const QColor grey = printedCentre();
    EXPECT_EQ(std::tuple(grey.red(), grey.green()), std::tuple(grey.blue(), grey.blue()));
    EXPECT_NEAR(grey.red(), 79, 1); // 0.3086 of full red

    Profile::WriteString(QString(), QStringLiteral("Saturation"), QStringLiteral("1.0"));
    Profile::WriteString(QString(), QStringLiteral("Gamma"), QStringLiteral("2.0"));
    doc.SetBackColor(gfx::RGB(128, 128, 128));
    EXPECT_NEAR(printedCentre().red(), 64, 1); // above 1 darkens

    // Printing the image only puts the picture centred on the paper, untouched.
    Profile::WriteString(QString(), QStringLiteral("Gamma"), QStringLiteral("1.0"));
    QImage picture(100, 60, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    picture.save(path("p.png"));
    doc.SetImageFile(path("p.png"));
    // 100 by 60 around the middle of the page, nothing beyond.
    const QImage page = printed(true);
    for (const auto& [x, y, inside] : {std::tuple{150, 150, true}, {150, 110, false}, {150, 175, true},
                                       {90, 150, false}, {105, 150, true}})
        EXPECT_EQ(page.pixelColor(x, y) == QColor(Qt::blue), inside) << x << ", " << y;
}

namespace {

// A placeable Windows metafile of one red rectangle, 100 by 100 units at 1440 to the inch.
QByteArray redMetafile()
{
    QByteArray bytes;
    auto words = [&bytes](std::initializer_list<int> values) {
        for (int v : values)
            bytes.append(char(v & 0xFF)).append(char((v >> 8) & 0xFF));
    };
    words({0xCDD7, 0x9AC6, 0, 0, 0, 100, 100, 1440, 0, 0});
    int checksum = 0;
    for (int i = 0; i < 10; ++i)
        checksum ^= uchar(bytes[2 * i]) | uchar(bytes[2 * i + 1]) << 8;
    words({checksum, 1, 9, 0x0300, 9 + 31, 0, 1, 7, 0, 0, 5, 0, 0x020B, 0, 0, 5, 0, 0x020C, 100, 100});
    words({7, 0, 0x02FC, 0, 0x00FF, 0, 0, 4, 0, 0x012D, 0, 7, 0, 0x041B, 100, 100, 0, 0, 3, 0, 0});
    return bytes;
}

} // namespace

TEST_F(LabelDrawing, ARepaintInPiecesPaintsWhatARepaintOfTheWholePaints)
{
    // Shapes of every kind, fill and outline, polys, texts with blurred effects and thick edges,
    // and pictures (a metafile mirrors everything drawn after it), with one selected. A piece of
    // the view leaves out the objects that can't reach it; the pieces must still add up to the
    // whole.
    QImage picture(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            picture.setPixel(x, y, qRgb(x * 6, y * 8, 90));
    picture.save(path("picture.png"));
    std::mt19937 random(5);
    std::uniform_int_distribution<int> place(-650, 550), size(20, 300), channel(0, 255);
    const auto colour = [&] { return gfx::Color(255, channel(random), channel(random), channel(random)); };
    const int shapes[] = {CDrawRect::Rectangle, CDrawRect::RoundRectangle, CDrawRect::Ellipse, CDrawRect::Arc,
                          CDrawRect::Halo,      CDrawRect::Line,           CDrawRect::ArrowLine};
    for (int i = 0; i < 120; ++i) {
        const int x = place(random), y = place(random), w = size(random), h = size(random);
        std::unique_ptr<CDrawObj> object;
        if (i % 6 == 5) {
            auto poly = std::make_unique<CDrawPoly>(CRect(x, y, x, y));
            poly->m_polyKind = std::uint8_t(i / 6 % 4);
            for (int p = 0; p < 5; ++p)
                poly->AddPoint(CPoint(x + size(random) - 150, y + size(random) - 150), nullptr);
            object = std::move(poly);
        } else {
            auto rect = std::make_unique<CDrawRect>(CRect(x, y + h, x + w, y));
            rect->m_shape = shapes[i % 7];
            rect->m_startArrow = ShapeAppearance::ArrowCodeAt(i % 6);
            rect->m_endArrow = ShapeAppearance::ArrowCodeAt(i / 6 % 6);
            rect->m_startArrowSize = std::uint8_t(i % 5);
            rect->m_endArrowSize = std::uint8_t(i % 7);
            object = std::move(rect);
        }
        object->m_fillKind = std::array{0, 1, 3, 4}[i % 4];
        object->m_fillColor1 = colour();
        object->m_fillColor2 = colour();
        object->m_lineColor1 = colour();
        object->m_hatchStyle = i % 53;
        object->m_transparency = std::uint8_t(i % 3 * 30);
        object->m_lineWidth = std::uint8_t(1 + i % 25);
        object->m_dashStyle = i % 3 == 0 ? i / 3 % 5 : 0;
        object->m_dashCap = i % 4 == 1 ? 2 : 0;
        doc.Add(std::move(object));
        if (i != 60)
            continue;
        // Midway, the pictures: stretched, centred, tiled from the origin, and a metafile.
        const QString png = path("picture.png"), wmf = folder.write("red.wmf", redMetafile());
        for (const auto& [file, at, scale, wrap] :
             {std::tuple{png, CRect(-500, 300, -300, 150), 1, 4}, {png, CRect(200, -200, 400, -400), 0, 4},
              {png, CRect(0, 250, 180, 0), 0, 0}, {wmf, CRect(-100, -300, 100, -500), 1, 4}}) {
            auto framed = std::make_unique<CDrawRect>(at);
            framed->m_fillKind = 2;
            framed->m_pictureFile = file;
            framed->m_pictureScale = std::uint8_t(scale);
            framed->m_wrapMode = wrap;
            doc.Add(std::move(framed));
        }
    }
    const struct {
        int kind, style, edge, blur, shadow;
        CRect at;
    } texts[] = {{CDrawText::Straight, CDrawText::Glowing, 12, 220, 160, CRect(-400, 100, 0, -40)},
                 {CDrawText::CurvedCW, CDrawText::Outline, 40, 0, 0, CRect(-640, 640, 640, -640)},
                 {CDrawText::SpiralCCW, CDrawText::Embossed, 6, 0, 90, CRect(-300, 300, 300, -300)},
                 {CDrawText::Straight, CDrawText::Neon, 8, 90, 0, CRect(150, 500, 450, 380)}};
    for (const auto& t : texts) {
        auto text = std::make_unique<CDrawText>(t.at);
        text->m_text = QStringLiteral("Pieces and the whole, gy");
        text->m_fontSize = 28;
        text->m_textPathKind = t.kind;
        text->m_angle = 70;
        text->SetEffects(colour(), std::uint8_t(t.style), std::uint8_t(t.edge), std::uint8_t(t.blur), 0,
                         t.shadow != 0, 25, -30, std::uint8_t(t.shadow), 20);
        text->Layout();
        doc.Add(std::move(text));
    }
    RecordingView view(&doc);
    view.selected = doc.GetObjects().GetAt(30);

    // As the screen paints: the label fitted into 330 pixels, painted through any clip the
    // window's painter brings.
    const auto paint = [&](const QRect& clip) {
        QImage image(330, 330, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::gray);
        QPainter painter(&image);
        if (!clip.isNull())
            painter.setClipRect(clip);
        gfx::DeviceContext dc(painter, 96, 96, false);
        const CSize label = doc.GetLogicalSize(300, 300, doc.FindLabelObject());
        dc.SetWindowExt(label.cx, -label.cy);
        dc.OffsetWindowOrg(-label.cx / 2, label.cy / 2);
        dc.SetViewportExt(330, 330);
        doc.Draw(dc, &view, true, false);
        return image;
    };
    const QImage whole = paint(QRect());
    QImage pieces(whole.size(), whole.format());
    const int edges[] = {0, 61, 143, 150, 237, 330};
    for (int i = 0; i + 1 < int(std::size(edges)); ++i)
        for (int j = 0; j + 1 < int(std::size(edges)); ++j) {
            const QRect piece(QPoint(edges[i], edges[j]), QPoint(edges[i + 1] - 1, edges[j + 1] - 1));
            const QImage painted = paint(piece);
            QPainter copy(&pieces);
            copy.setCompositionMode(QPainter::CompositionMode_Source);
            copy.drawImage(piece.topLeft(), painted, piece);
        }
    // Qt steps a smoothed picture's sampling and a thin line's coverage from where a clipped span
    // starts, so a piece may be a level or two off; an object left out where it reaches the piece
    // loses whole pixels.
    int differing = 0;
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x) {
            const QRgb a = whole.pixel(x, y), b = pieces.pixel(x, y);
            differing += std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                   std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))})
                         > 6;
        }
    EXPECT_EQ(differing, 0);
}
