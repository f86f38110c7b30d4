#include "controls/CHatchWellWnd.h"
#include "platform/graphics/HatchBrush.h"

#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

namespace {

class HatchWell : public ::testing::Test {
protected:
    void SetUp() override
    {
        well = new CHatchWellWnd(&window);
        well->setGeometry(QRect(QPoint(0, 0), well->sizeHint()));
        window.resize(well->size());
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    QWidget window;
    CHatchWellWnd* well = nullptr;
};

TEST_F(HatchWell, EveryCellShowsTheLabelsOwnHatchInThePagesColours)
{
    const gfx::Color foreground(200, 10, 10);
    const gfx::Color background(240, 240, 100);
    well->SetColours(foreground, background);
    const QImage shown = well->grab().toImage().convertToFormat(QImage::Format_ARGB32);

    for (int style = 0; style < gfx::HatchStyleTotal; ++style) {
        const QImage tile =
            gfx::HatchBrush(style, foreground, background).Tile().convertToFormat(QImage::Format_ARGB32);
        const QRect inside = well->CellRect(style).adjusted(5, 5, -5, -5);
        int wrong = 0;
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                wrong += shown.pixel(x, y) != tile.pixel(x % 8, y % 8);
        }
        EXPECT_EQ(wrong, 0) << "style " << style;
    }

    QHelpEvent help(QEvent::ToolTip, well->CellRect(37).center(), well->mapToGlobal(well->CellRect(37).center()));
    QCoreApplication::sendEvent(well, &help);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("CruvedWaves"));
    QToolTip::hideText();
}

TEST_F(HatchWell, ClickAndKeysChooseEscapeKeepsTheChoice)
{
    QSignalSpy chosen(well, &CHatchWellWnd::SelEndOK);
    QSignalSpy cancelled(well, &CHatchWellWnd::SelEndCancel);

    const QPoint birds = well->CellRect(42).center();
    QTest::mouseMove(well, birds);
    QTest::mouseClick(well, Qt::LeftButton, {}, birds);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 42);
    EXPECT_EQ(well->GetHatchStyle(), 42);

    well->setFocus();
    QTest::keyClick(well, Qt::Key_Down);
    QTest::keyClick(well, Qt::Key_Escape);
    ASSERT_EQ(cancelled.size(), 1);
    EXPECT_EQ(cancelled[0][0].toInt(), 42);
    EXPECT_EQ(well->GetHatchStyle(), 42);

    // From the last pattern the keys wrap to the first.
    well->SetHatchStyle(52);
    QTest::keyClick(well, Qt::Key_Right);
    QTest::keyClick(well, Qt::Key_Space);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(well->GetHatchStyle(), 0);
}

} // namespace
