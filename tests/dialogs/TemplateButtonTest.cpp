#include "TestSupport.h"
#include "dialogs/CTemplateButton.h"
#include "document/CDrawDoc.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

// A 10 by 10 inch sheet shown at 20 pixels an inch: a rectangle 4 by 1 inches turned upright
// about (5, 5), a disc of 2 inches on the same centre, and a disc alone near the corner.
const QByteArray Sheet = "SHEET\nTurned\n\n10\n10\n2\n0\n0\n"
                         "RECT\n1\nCard\n5\n5\n4\n1\n90\nENDOBJECT\n"
                         "DISC\n2\nCentre\n5\n5\n2\n0.5\nENDOBJECT\n"
                         "DISC\n2\nCorner\n1.5\n1.5\n2\n0.5\nENDOBJECT\nEND\n";

const QColor Highlight(251, 242, 204);
const QColor Paper(255, 255, 255);

class TemplateButton : public ::testing::Test {
protected:
    void SetUp() override
    {
        CTemplateFile file;
        ASSERT_TRUE(file.LoadTemplate(folder.write(QStringLiteral("turned.tmp"), Sheet)));
        templates.push_back(file);
        doc.SetTemplates(&templates);
        button.SetDocument(&doc);
        button.SetTemplateIndex(0);
        button.resize(200, 200);
        button.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&button));
    }
    int selected(int area) const { return templates[0].Objects[size_t(area)].Selected; }
    QColor pixel(int x, int y) { return button.grab().toImage().pixelColor(x, y); }

    TestFolder folder;
    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
    CTemplateButton button;
};

TEST_F(TemplateButton, ClicksToggleEveryAreaInTheirUnrotatedBoxes)
{
    // Drawn turned: the card stands upright, where its unturned box is paper.
    EXPECT_EQ(pixel(100, 70), Highlight);
    EXPECT_EQ(pixel(70, 100), Paper);

    // Hit through the unturned box (60..140 across, 90..110 down), though nothing shows there.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(70, 100));
    EXPECT_EQ(selected(0), 0);
    EXPECT_EQ(selected(1), 1);
    // Where the card shows turned, beyond its unturned box, nothing is hit.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(100, 70));
    EXPECT_EQ(selected(0), 0);
    EXPECT_EQ(pixel(100, 70), Paper);

    // Both areas under the mouse toggle, not only the top one; the right and bottom edges of a
    // box are outside it.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(100, 100));
    EXPECT_EQ(selected(0), 1);
    EXPECT_EQ(selected(1), 0);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(10, 30));
    EXPECT_EQ(selected(2), 0);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(50, 30));
    EXPECT_EQ(selected(2), 0);

    // Disabled, the areas are drawn plain and clicks change nothing.
    button.setEnabled(false);
    EXPECT_EQ(pixel(100, 70), Paper);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(100, 100));
    EXPECT_EQ(selected(0), 1);
    EXPECT_EQ(selected(1), 0);
}

TEST_F(TemplateButton, DrawsNothingButGreyForAPaperWithoutSize)
{
    templates[0].PaperWidth = 0;
    button.update();
    EXPECT_EQ(countPixels(button.grab().toImage(), QColor(192, 192, 192)), 200 * 200);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(100, 100));
    EXPECT_EQ(selected(0), 1);
}

} // namespace
