#include "TestSupport.h"
#include "app/CLabelPreview.h"
#include "document/CDrawDoc.h"
#include "platform/Profile.h"
#include "platform/graphics/DeviceContext.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>

namespace {

TEST(LabelPreview, FitFollowsTheNarrowerSideAndCentres)
{
    const struct {
        CSize label;
        QSize window;
        CSize deviceSize;
        CPoint viewportOrg;
    } cases[] = {
        {{470, 470}, {800, 400}, {396, 396}, {202, 2}}, // wide window: the height decides
        {{470, 470}, {300, 900}, {297, 297}, {1, 301}}, // tall window: the width decides
        {{470, 470}, {0, 0}, {}, {}},
        {{0, 470}, {800, 400}, {}, {}},
    };
    for (const auto& c : cases) {
        const CLabelPreview::Fit fit = CLabelPreview::FitLabel(c.label, c.window);
        EXPECT_EQ(fit.deviceSize, c.deviceSize) << c.window.width() << "x" << c.window.height();
        if (c.deviceSize.cx != 0) {
            EXPECT_EQ(fit.viewportOrg, c.viewportOrg);
        }
    }
    // A card wider than high, without a margin.
    const CLabelPreview::Fit card = CLabelPreview::FitLabel(CSize(340, 200), QSize(680, 680), 1.0);
    EXPECT_EQ(card.deviceSize, CSize(680, 400));
    EXPECT_EQ(card.viewportOrg, CPoint(0, 140));
}

TEST(LabelPreview, MappingPutsTheLabelCentreInTheMiddleWithYUp)
{
    QImage image(400, 400, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    gfx::DeviceContext dc(painter, 96, 96, false);
    const CSize logical(1410, 1410);
    CLabelPreview::PrepareMapping(dc, logical, CLabelPreview::FitLabel(CSize(470, 470), QSize(400, 400)));
    // 396 device pixels from a 2-pixel margin.
    EXPECT_EQ(dc.LPtoDP(CPoint(0, 0)), CPoint(200, 200));
    EXPECT_EQ(dc.LPtoDP(CPoint(-705, 705)), CPoint(2, 2));
    EXPECT_EQ(dc.LPtoDP(CPoint(705, -705)), CPoint(398, 398));
}

TEST(LabelPreview, ShowsAWhiteDiscInsideTheGreyMask)
{
    QFile::remove(Profile::FilePath());
    CDrawDoc doc;
    doc.OnNewDocument();
    QImage shot;
    {
        CLabelPreview view(doc);
        EXPECT_EQ(doc.Views(), std::vector<CView*>{&view});
        view.resize(400, 400);
        shot = view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    }
    // The view has left the document, which outlives it.
    EXPECT_TRUE(doc.Views().empty());

    EXPECT_EQ(shot.pixel(200 + 140, 200), qRgb(255, 255, 255));
    for (const QPoint corner : {QPoint(3, 3), QPoint(396, 396)}) {
        const QRgb mask = shot.pixel(corner);
        EXPECT_LT(qRed(mask), 230) << corner.x() << "," << corner.y();
        EXPECT_EQ(qRed(mask), qGreen(mask));
        EXPECT_EQ(qGreen(mask), qBlue(mask));
    }
    // The hole in the middle is masked as well.
    EXPECT_EQ(shot.pixel(200, 200), shot.pixel(3, 3));
}

} // namespace
