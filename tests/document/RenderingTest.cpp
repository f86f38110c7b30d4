#include "DocumentFixture.h"

#include "platform/Profile.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"

#include <QImage>
#include <QPainter>

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Transparent = 0x00000000;

QRgb at(const gfx::Bitmap& bitmap, int x, int y)
{
    return bitmap.image().pixel(x, y);
}

} // namespace

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
    EXPECT_EQ(sheet->GetWidth(), 800u);
    EXPECT_EQ(sheet->GetHeight(), 600u);
    // Both areas print label 1: radius 150 plus 13 of bleed, hole 50 minus 13.
    for (const int centreX : {200, 600}) {
        EXPECT_EQ(at(*sheet, centreX + 100, 300), Red);
        EXPECT_EQ(at(*sheet, centreX + 160, 300), Red);
        EXPECT_EQ(at(*sheet, centreX + 40, 300), Red);
        EXPECT_EQ(at(*sheet, centreX, 300), Transparent);
        EXPECT_EQ(at(*sheet, centreX, 300 - 168), Transparent);
    }
    EXPECT_EQ(at(*sheet, 400, 300), Transparent);

    // An area that is not selected does not print; fillWhite grounds the sheet.
    templates[0].Objects[1].Selected = 0;
    const auto one = doc.RenderBitmap(100, 100, true, true);
    EXPECT_EQ(at(*one, 300, 300), Red);
    EXPECT_EQ(at(*one, 700, 300), 0xFFFFFFFF);
}

TEST_F(Rendering, RotatedRectangleAreaAndDifferentLabels)
{
    addTemplate("SHEET\nSpine\n\n6\n6\n2\n0\n0\n"
                "DISC\n1\nDisc\n1.5\n1.5\n2.5\n0.5\nENDOBJECT\n"
                "RECT\n2\nSpine\n4.5\n3\n3\n0.5\n90\nENDOBJECT\nEND\n");
    useTemplate(0);
    doc.SetCurLabel(1);
    doc.SetBackColor(gfx::RGB(0, 0, 255));

    const auto sheet = doc.RenderBitmap(100, 100, true, false);
    ASSERT_NE(sheet, nullptr);
    // The spine stands upright after its quarter turn: 50 by 300, plus 13 of bleed around.
    EXPECT_EQ(at(*sheet, 450, 300 + 160), 0xFF0000FF);
    EXPECT_EQ(at(*sheet, 450 + 35, 300), 0xFF0000FF);
    EXPECT_EQ(at(*sheet, 450 + 41, 300), Transparent);
    EXPECT_EQ(at(*sheet, 450, 300 + 166), Transparent);
    // The disc shows label 1, still white.
    EXPECT_EQ(at(*sheet, 150 + 80, 150), 0xFFFFFFFF);
}

TEST_F(Rendering, PrinterTemplatePrintsOnlyTheClosestArea)
{
    addTemplate(DiscPrinter);
    useTemplate(0);
    doc.SetOuterDia(3.15, false);
    doc.SetInnerDia(0.9, false);
    doc.SetBusDia(2.4, false);
    doc.SetBackColor(gfx::RGB(255, 0, 0));

    const auto sheet = doc.RenderBitmap(100, 100, true, false);
    ASSERT_NE(sheet, nullptr);
    // The business-card disc, drawn with the typed sizes and no bleed, centred on its area.
    EXPECT_EQ(at(*sheet, 236 + 150, 236), Red);
    EXPECT_EQ(at(*sheet, 236 + 160, 236), Transparent);
    EXPECT_EQ(at(*sheet, 236, 236 - 125), Transparent); // cut off by the chord
    EXPECT_EQ(at(*sheet, 236, 236 - 115), Red);
}

TEST_F(Rendering, ViewShowsAGreyMaskOutsideTheLabel)
{
    addTemplate(OneDiscSheet);
    useTemplate(0);
    RecordingView view;
    gfx::Bitmap bitmap(200, 200);
    gfx::Graphics graphics(bitmap);
    graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, 100, 100));
    doc.DrawLabel(graphics, 40, 40, &view, 0, true);
    const QColor outside = bitmap.image().pixelColor(2, 2);
    EXPECT_NEAR(outside.red(), 159, 2);
    EXPECT_EQ(outside.red(), outside.blue());
    EXPECT_EQ(bitmap.image().pixel(100 + 60, 100), 0xFFFFFFFF); // on the label
    EXPECT_NEAR(bitmap.image().pixelColor(100, 100).red(), 159, 2); // the hole is masked too

    // Printing passes no view: no mask.
    gfx::Bitmap print(200, 200);
    gfx::Graphics printGraphics(print);
    printGraphics.SetTransform(gfx::Matrix(1, 0, 0, -1, 100, 100));
    doc.DrawLabel(printGraphics, 40, 40, nullptr, 0, true);
    EXPECT_EQ(print.image().pixel(2, 2), 0xFFFFFFFF);
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
    QColor printedCentre()
    {
        QImage page(300, 300, QImage::Format_ARGB32_Premultiplied);
        page.fill(Qt::white);
        QPainter painter(&page);
        gfx::DeviceContext dc(painter, 300, 300, true);
        dc.SetWindowExt(300, -300);
        dc.SetViewportExt(300, 300);
        doc.Draw(dc, nullptr, true, false);
        painter.end();
        return page.pixelColor(150, 150);
    }
};

TEST_F(PrintedColour, SaturationAndGammaOfThePrinterApply)
{
    doc.SetBackColor(gfx::RGB(255, 0, 0));
    EXPECT_EQ(printedCentre(), QColor(255, 0, 0)); // 1.0 and 1.0: untouched

    Profile::WriteString(QString(), QStringLiteral("Saturation"), QStringLiteral("0"));
    const QColor grey = printedCentre();
    EXPECT_EQ(grey.red(), grey.green());
    EXPECT_EQ(grey.green(), grey.blue());
    EXPECT_NEAR(grey.red(), 79, 1); // 0.3086 of full red

    Profile::WriteString(QString(), QStringLiteral("Saturation"), QStringLiteral("1.0"));
    Profile::WriteString(QString(), QStringLiteral("Gamma"), QStringLiteral("2.0"));
    doc.SetBackColor(gfx::RGB(128, 128, 128));
    EXPECT_NEAR(printedCentre().red(), 64, 1); // above 1 darkens
}

TEST_F(PrintedColour, ImageOnlyPrintsThePictureCentredOnThePaper)
{
    TestFolder pictures;
    QImage picture(100, 60, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    picture.save(pictures.path() + "/p.png");
    doc.SetImageFile(pictures.path() + "/p.png");

    QImage page(300, 300, QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::black);
    QPainter painter(&page);
    gfx::DeviceContext dc(painter, 300, 300, true);
    dc.SetWindowExt(300, -300);
    dc.SetViewportExt(300, 300);
    doc.Draw(dc, nullptr, true, true);
    painter.end();
    EXPECT_EQ(page.pixelColor(150, 150), QColor(Qt::blue));
    // 100 by 60 around the middle of the page, nothing beyond.
    EXPECT_NE(page.pixelColor(150, 110), QColor(Qt::blue));
    EXPECT_EQ(page.pixelColor(150, 175), QColor(Qt::blue));
    EXPECT_NE(page.pixelColor(90, 150), QColor(Qt::blue));
    EXPECT_EQ(page.pixelColor(105, 150), QColor(Qt::blue));
}
