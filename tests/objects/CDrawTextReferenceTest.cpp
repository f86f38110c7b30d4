// Each text style and each path kind drawn by the program and compared with a picture that was
// checked by eye once. Run with TESSARELLE_UPDATE_REFERENCES=1 to write the pictures anew (then
// look at them before committing).
#include "ShapeCanvas.h"

#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

namespace {

constexpr int ChannelTolerance = 8;
// Glyph edges are antialiased; a font engine update may move a few of their pixels.
constexpr double DifferingShare = 0.01;
constexpr int CanvasSize = 400;

QString referenceFolder()
{
    return QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/reference");
}

int differingPixels(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > ChannelTolerance || std::abs(qGreen(p) - qGreen(q)) > ChannelTolerance
                || std::abs(qBlue(p) - qBlue(q)) > ChannelTolerance
                || std::abs(qAlpha(p) - qAlpha(q)) > ChannelTolerance)
                ++count;
        }
    }
    return count;
}

void compareWithReference(const QString& name, QImage rendered)
{
    rendered = rendered.convertToFormat(QImage::Format_ARGB32);
    const QString path = referenceFolder() + "/" + name + ".png";
    if (qEnvironmentVariableIntValue("TESSARELLE_UPDATE_REFERENCES") == 1) {
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

std::unique_ptr<CDrawText> text(const QString& content, const CRect& position, int kind = CDrawText::Straight,
                                int justify = CDrawText::Centered)
{
    auto object = std::make_unique<CDrawText>(position);
    object->m_fontName = QStringLiteral("Liberation Sans");
    object->m_text = content;
    object->m_textPathKind = kind;
    object->m_justify = justify;
    object->m_textColor = gfx::Color(255, 20, 40, 160);
    object->Layout();
    return object;
}

QImage render(const std::vector<std::unique_ptr<CDrawText>>& objects)
{
    ShapeCanvas canvas(CanvasSize);
    for (const auto& object : objects)
        object->Draw(canvas.graphics(), 300, 300, nullptr);
    return canvas.image();
}

class TextReference : public ::testing::Test {
protected:
    void SetUp() override { ResetDefaultProperties(); }
    void TearDown() override { ResetDefaultProperties(); }
};

} // namespace

TEST_F(TextReference, StraightTextTurnedJustifiedAndSpaced)
{
    std::vector<std::unique_ptr<CDrawText>> objects;
    objects.push_back(text(QStringLiteral("Left\r\naligned text"), CRect(-190, 190, -10, 110), CDrawText::Straight,
                           CDrawText::Left));
    objects.push_back(text(QStringLiteral("Right\r\naligned text"), CRect(10, 190, 190, 110), CDrawText::Straight,
                           CDrawText::Right));
    objects.push_back(text(QStringLiteral("Centred\r\nand turned"), CRect(-100, 60, 100, -60)));
    objects.back()->m_angle = 60;
    objects.back()->m_leading = 20;
    objects.push_back(text(QStringLiteral("T r a c k"), CRect(-150, -140, 150, -180)));
    objects.back()->m_tracking = 15;
    objects.back()->m_fontStyle = gfx::FontStyleBold | gfx::FontStyleUnderline;
    for (auto& object : objects) {
        object->m_fontSize = 8;
        object->Layout();
    }
    compareWithReference("text_straight", render(objects));
}

TEST_F(TextReference, CurvedPathsBothWays)
{
    std::vector<std::unique_ptr<CDrawText>> objects;
    objects.push_back(text(QStringLiteral("Clockwise around\r\nthe top"), CRect(-195, 195, 195, -195),
                           CDrawText::CurvedCW));
    objects.push_back(text(QStringLiteral("Counter-clockwise below"), CRect(-195, 195, 195, -195),
                           CDrawText::CurvedCCW));
    objects.back()->m_angle = 270;
    objects.push_back(text(QStringLiteral("ends at the handle"), CRect(-110, 110, 110, -110), CDrawText::CurvedCW,
                           CDrawText::Right));
    objects.back()->m_angle = 0;
    objects.back()->m_textColor = gfx::Color(255, 160, 30, 30);
    objects.push_back(text(QStringLiteral("starts at it"), CRect(-110, 110, 110, -110), CDrawText::CurvedCCW,
                           CDrawText::Right));
    objects.back()->m_angle = 180;
    objects.back()->m_textColor = gfx::Color(255, 160, 30, 30);
    for (auto& object : objects) {
        object->m_fontSize = 9;
        object->Layout();
    }
    compareWithReference("text_paths", render(objects));
}

TEST_F(TextReference, SpiralsInward)
{
    std::vector<std::unique_ptr<CDrawText>> objects;
    objects.push_back(text(QStringLiteral("A spiral clockwise, in and in"), CRect(-198, 100, -2, -96),
                           CDrawText::SpiralCW, CDrawText::Left));
    objects.push_back(text(QStringLiteral("The other way round, and in"), CRect(2, 100, 198, -96),
                           CDrawText::SpiralCCW, CDrawText::Left));
    objects.back()->m_textColor = gfx::Color(255, 160, 30, 30);
    for (auto& object : objects) {
        object->m_fontSize = 6;
        object->Layout();
    }
    compareWithReference("text_spirals", render(objects));
}

TEST_F(TextReference, SixStylesWithShadow)
{
    std::vector<std::unique_ptr<CDrawText>> objects;
    const char* names[] = {"Normal", "Outline", "Embossed", "Chiseled", "Glowing", "Neon"};
    for (int style = 0; style < 6; ++style) {
        const int y = 170 - style * 64;
        objects.push_back(text(QString::fromLatin1(names[style]), CRect(-150, y, 150, y - 40)));
        CDrawText& t = *objects.back();
        t.m_fontSize = 16;
        t.m_fontStyle = gfx::FontStyleBold;
        t.SetEffects(gfx::Color(255, 250, 200, 20), std::uint8_t(style), 3, 160, 0, style % 2, 8, 6, 96, 40);
        t.m_fillColor1 = gfx::Color(255, 255, 255, 255);
        t.Layout();
    }
    compareWithReference("text_styles", render(objects));
}
