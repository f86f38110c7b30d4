#include "controls/CArrowPicker.h"
#include "controls/CArrowWnd.h"
#include "controls/CLinePicker.h"
#include "controls/CLineWnd.h"
#include "controls/CToolTipDialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

// The dash and arrow pickers of the line panel, in a shown window.
class LineArrowPickers : public ::testing::Test {
protected:
    void SetUp() override
    {
        line = new CLinePicker(&window);
        SetControlId(line, 1057);
        line->setGeometry(10, 10, 110, 24);
        arrow = new CArrowPicker(&window);
        SetControlId(arrow, 1040);
        arrow->setGeometry(130, 10, 60, 34);
        window.resize(220, 60);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    template <class Popup>
    static Popup* Open(QWidget* picker)
    {
        // What the last popup's closing set off (the window's activation) settles first, as it
        // does before a user can click again.
        QCoreApplication::processEvents();
        QTest::mouseClick(picker, Qt::LeftButton);
        auto* popup = qobject_cast<Popup*>(QApplication::activePopupWidget());
        EXPECT_NE(popup, nullptr);
        return popup;
    }

    QWidget window;
    CLinePicker* line = nullptr;
    CArrowPicker* arrow = nullptr;
};

TEST_F(LineArrowPickers, LineRowFollowsTheMouseAndEscapeRestoresIt)
{
    QSignalSpy chosen(line, &CLinePicker::SelEndOK);
    auto* popup = Open<CLineWnd>(line);
    ASSERT_TRUE(popup);
    QTest::mouseMove(popup, popup->RowRect(1).center());
    QTest::mouseMove(popup, popup->RowRect(3).center());
    EXPECT_EQ(line->GetIndex(), 3);
    QTest::mouseClick(popup, Qt::LeftButton, {}, popup->RowRect(3).center());
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 3);
    EXPECT_EQ(chosen[0][1].toInt(), 1057);

    popup = Open<CLineWnd>(line);
    ASSERT_TRUE(popup);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_EQ(line->GetIndex(), 0); // past the last row to the first
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(line->GetIndex(), 3);
    EXPECT_EQ(chosen.size(), 1);
    EXPECT_FALSE(line->IsPopupOpen());

    // A value the panel set for a mixed selection stays until the user picks.
    line->SetIndex(-1);
    popup = Open<CLineWnd>(line);
    ASSERT_TRUE(popup);
    QTest::mouseClick(popup, Qt::LeftButton, {}, QPoint(-30, -30));
    EXPECT_EQ(line->GetIndex(), -1);
}

TEST_F(LineArrowPickers, ArrowCellsByKeysAndTheirHeads)
{
    // Each head draws differently, and every image shows its line.
    for (int i = 0; i < arrow->GetImageCount(); ++i) {
        EXPECT_FALSE(arrow->GetImage(i).isNull());
        for (int j = 0; j < i; ++j)
            EXPECT_NE(arrow->GetImage(i), arrow->GetImage(j)) << i << " and " << j;
        const QImage& image = arrow->GetImage(i);
        EXPECT_GT(qAlpha(image.pixel(8, image.height() / 2)), 128) << i;
    }

    QSignalSpy chosen(arrow, &CArrowPicker::SelEndOK);
    auto* popup = Open<CArrowWnd>(arrow);
    ASSERT_TRUE(popup);
    QTest::keyClick(popup, Qt::Key_Left);
    EXPECT_EQ(arrow->GetIndex(), 5); // wraps to the last head
    QTest::keyClick(popup, Qt::Key_Right);
    QTest::keyClick(popup, Qt::Key_Right);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 4);
    EXPECT_EQ(chosen[0][1].toInt(), 1040);

    popup = Open<CArrowWnd>(arrow);
    ASSERT_TRUE(popup);
    QTest::mouseMove(popup, popup->CellRect(2).center());
    QTest::mouseClick(popup, Qt::LeftButton, {}, popup->CellRect(2).center());
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(arrow->GetIndex(), 2);
}

} // namespace
