// Each fill kind and line kind drawn by the program on a small label and compared with a
// picture that was checked by eye once. Run with TESSARELLE_UPDATE_REFERENCES=1 to write the
// pictures anew (then look at them before committing).
#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "objects/CDrawRect.h"
#include "objects/DefaultProperties.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <functional>
#include <vector>

namespace {

constexpr int ChannelTolerance = 8;
constexpr double DifferingShare = 0.005;

QString referenceFolder()
{
    return QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/reference");
}

bool updating()
{
    return qEnvironmentVariableIntValue("TESSARELLE_UPDATE_REFERENCES") == 1;
}

// Pixels that differ by more than the tolerance in any channel.
int differingPixels(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        const QRgb* ra = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const QRgb* rb = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            if (std::abs(qRed(ra[x]) - qRed(rb[x])) > ChannelTolerance
                || std::abs(qGreen(ra[x]) - qGreen(rb[x])) > ChannelTolerance
                || std::abs(qBlue(ra[x]) - qBlue(rb[x])) > ChannelTolerance
                || std::abs(qAlpha(ra[x]) - qAlpha(rb[x])) > ChannelTolerance)
                ++count;
        }
    }
    return count;
}

void compareWithReference(const QString& name, QImage rendered)
{
    rendered = rendered.convertToFormat(QImage::Format_ARGB32);
    const QString path = referenceFolder() + "/" + name + ".png";
    if (updating()) {
        QDir().mkpath(referenceFolder());
        ASSERT_TRUE(rendered.save(path)) << path.toStdString();
        return;
    }
    QImage reference(path);
    ASSERT_FALSE(reference.isNull()) << "no reference " << path.toStdString()
                                     << "; run with TESSARELLE_UPDATE_REFERENCES=1";
    reference = reference.convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(reference.size(), rendered.size());
    const int differing = differingPixels(reference, rendered);
    if (differing > rendered.width() * rendered.height() * DifferingShare) {
        const QString actual = QDir::tempPath() + "/" + name + ".actual.png";
        rendered.save(actual);
        ADD_FAILURE() << name.toStdString() << ": " << differing << " pixels differ; drawn now: "
                      << actual.toStdString();
    }
}

std::unique_ptr<CDrawRect> shape(int code, const CRect& position)
{
    auto rect = std::make_unique<CDrawRect>(position);
    rect->m_shape = code;
    rect->m_lineColor1 = gfx::Color(255, 0, 0, 0);
    rect->m_lineWidth = 2;
    return rect;
}

QImage render(const std::vector<std::unique_ptr<CDrawRect>>& objects)
{
    ShapeCanvas canvas;
    for (const auto& object : objects)
        object->Draw(canvas.graphics(), 300, 300, nullptr);
    return canvas.image();
}

// A 16 by 16 picture with four coloured quarters and a dark mark in its top left corner, so
// that turns and flips show.
QString quarterPicture(const TestFolder& folder)
{
    QImage picture(16, 16, QImage::Format_RGB32);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const QRgb quarter[] = {qRgb(230, 60, 60), qRgb(60, 160, 60), qRgb(60, 60, 230), qRgb(240, 200, 40)};
            picture.setPixel(x, y, x < 4 && y < 4 ? qRgb(20, 20, 20) : quarter[(y / 8) * 2 + x / 8]);
        }
    }
    const QString path = folder.path() + "/quarters.png";
    picture.save(path);
    return path;
}

class ShapeReference : public ::testing::Test {
protected:
    void SetUp() override { ResetDefaultProperties(); }
    void TearDown() override { ResetDefaultProperties(); }
};

} // namespace

TEST_F(ShapeReference, SolidFillsWithTransparency)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    objects.push_back(shape(CDrawRect::Rectangle, CRect(-90, 90, 30, -30)));
    objects.back()->m_fillColor1 = gfx::Color(255, 220, 40, 40);
    objects.back()->m_lineWidth = 4;
    objects.push_back(shape(CDrawRect::Ellipse, CRect(-30, 30, 90, -90)));
    objects.back()->m_fillColor1 = gfx::Color(255, 30, 60, 220);
    objects.back()->m_transparency = 50;
    objects.push_back(shape(CDrawRect::RoundRectangle, CRect(-80, -40, -20, -90)));
    objects.back()->m_fillColor1 = gfx::Color(255, 20, 160, 20);
    objects.back()->m_cornerSize = CPoint(30, 30);
    compareWithReference("fill_solid", render(objects));
}

TEST_F(ShapeReference, HatchFills)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    const int styles[] = {5, 39, 47, 52};
    for (int i = 0; i < 4; ++i) {
        const int x = -90 + (i % 2) * 95, y = 90 - (i / 2) * 95;
        objects.push_back(shape(i == 3 ? CDrawRect::Halo : CDrawRect::Rectangle, CRect(x, y, x + 85, y - 85)));
        objects.back()->m_fillKind = 1;
        objects.back()->m_hatchStyle = styles[i];
        objects.back()->m_fillColor1 = gfx::Color(255, 20, 20, 120);
        objects.back()->m_fillColor2 = gfx::Color(255, 250, 230, 120);
        objects.back()->m_ringX = objects.back()->m_ringY = 20;
    }
    objects[1]->m_transparency = 70;
    compareWithReference("fill_hatch", render(objects));
}

TEST_F(ShapeReference, PictureFills)
{
    TestFolder folder;
    const QString picture = quarterPicture(folder);
    std::vector<std::unique_ptr<CDrawRect>> objects;
    // Tile, flip both ways, Center, Fit on an ellipse.
    const int wraps[] = {0, 3, 4, 4};
    const int scales[] = {0, 0, 0, 1};
    for (int i = 0; i < 4; ++i) {
        const int x = -90 + (i % 2) * 95, y = 90 - (i / 2) * 95;
        objects.push_back(shape(i == 3 ? CDrawRect::Ellipse : CDrawRect::Rectangle, CRect(x, y, x + 85, y - 85)));
        objects.back()->m_fillKind = 2;
        objects.back()->m_pictureFile = picture;
        objects.back()->m_wrapMode = wraps[i];
        objects.back()->m_pictureScale = std::uint8_t(scales[i]);
    }
    compareWithReference("fill_picture", render(objects));
}

TEST_F(ShapeReference, GradientFills)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    // The four linear shadings in the corners, a path gradient from the corner and one from the
    // centre in the middle row.
    for (int style = 0; style < 4; ++style) {
        const int x = -95 + (style % 2) * 130, y = 95 - (style / 2) * 130;
        objects.push_back(shape(CDrawRect::Rectangle, CRect(x, y, x + 60, y - 60)));
        objects.back()->m_fillKind = 4;
        objects.back()->m_gradientStyle = style;
        objects.back()->m_fillColor1 = gfx::Color(255, 250, 250, 40);
        objects.back()->m_fillColor2 = gfx::Color(255, 40, 40, 200);
    }
    objects.push_back(shape(CDrawRect::Ellipse, CRect(-95, 30, -5, -30)));
    objects.back()->m_fillKind = 3;
    objects.back()->m_fillColor1 = gfx::Color(255, 255, 255, 255);
    objects.back()->m_fillColor2 = gfx::Color(255, 200, 0, 0);
    objects.push_back(shape(CDrawRect::RoundRectangle, CRect(5, 30, 95, -30)));
    objects.back()->m_fillKind = 3;
    objects.back()->m_gradientSwap = 1;
    objects.back()->m_fillColor1 = gfx::Color(255, 255, 255, 255);
    objects.back()->m_fillColor2 = gfx::Color(128, 0, 120, 0);
    compareWithReference("fill_gradient", render(objects));
}

TEST_F(ShapeReference, DashedAndGradientOutlines)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    for (int dash = 1; dash <= 4; ++dash) {
        const int inset = dash * 14;
        objects.push_back(shape(dash % 2 ? CDrawRect::Rectangle : CDrawRect::Ellipse,
                                CRect(-95 + inset, 95 - inset, 95 - inset, -95 + inset)));
        objects.back()->m_flags = 1;
        objects.back()->m_dashStyle = dash;
        objects.back()->m_dashCap = dash == 2 ? 2 : dash == 4 ? 3 : 0; // flat, round, flat, triangle
        objects.back()->m_lineWidth = std::uint8_t(2 + dash);
        objects.back()->m_lineColor1 = gfx::Color(255, 40 * dash, 20, 160);
    }
    objects.push_back(shape(CDrawRect::RoundRectangle, CRect(-30, 30, 30, -30)));
    objects.back()->m_flags = 1;
    objects.back()->m_lineKind = 4;
    objects.back()->m_lineWidth = 10;
    objects.back()->m_lineColor1 = gfx::Color(255, 230, 0, 0);
    objects.back()->m_lineColor2 = gfx::Color(255, 0, 0, 230);
    objects.back()->m_lineGradientMode = 0;
    objects.back()->m_cornerSize = CPoint(20, 20);
    compareWithReference("line_dash_gradient", render(objects));
}

TEST_F(ShapeReference, ArrowHeads)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    const std::pair<int, int> ends[] = {{16, 20}, {20, 241}, {241, 19}, {242, 18}, {17, 242}, {19, 16}};
    for (int i = 0; i < 6; ++i) {
        const int y = 80 - i * 32;
        objects.push_back(shape(CDrawRect::ArrowLine, CRect(-70, y, 70, y - 10)));
        objects.back()->m_lineWidth = 3;
        objects.back()->m_startArrow = ends[i].first;
        objects.back()->m_endArrow = ends[i].second;
        objects.back()->m_startArrowSize = 4;
        objects.back()->m_endArrowSize = 5;
    }
    // A plain line ignores the arrow fields.
    objects.push_back(shape(CDrawRect::Line, CRect(-90, -90, -90, 90)));
    compareWithReference("line_arrows", render(objects));
}

TEST_F(ShapeReference, ArcAndHaloRings)
{
    std::vector<std::unique_ptr<CDrawRect>> objects;
    objects.push_back(shape(CDrawRect::Halo, CRect(-95, 95, 5, -5)));
    objects.back()->m_fillColor1 = gfx::Color(255, 240, 160, 20);
    objects.back()->m_ringX = 15;
    objects.back()->m_ringY = 30;
    objects.push_back(shape(CDrawRect::Arc, CRect(-5, 95, 95, -5)));
    objects.back()->m_fillColor1 = gfx::Color(255, 20, 160, 200);
    objects.back()->m_startAngle = 30;
    objects.back()->m_endAngle = 300;
    objects.back()->m_ringX = objects.back()->m_ringY = 25;
    objects.push_back(shape(CDrawRect::Arc, CRect(-95, 5, 95, -95)));
    objects.back()->m_fillKind = 4;
    objects.back()->m_gradientStyle = 0;
    objects.back()->m_fillColor1 = gfx::Color(255, 250, 0, 0);
    objects.back()->m_fillColor2 = gfx::Color(255, 0, 0, 250);
    objects.back()->m_startAngle = 200;
    objects.back()->m_endAngle = 20;
    objects.back()->m_ringX = 30;
    objects.back()->m_ringY = 20;
    compareWithReference("shape_rings", render(objects));
}
