#include "controls/CColourPicker.h"
#include "controls/CColourPopupWnd.h"
#include "controls/CToolTipDialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {

constexpr int PickerId = 1001;

// A fill picker in a shown window, as a panel holds it.
class ColourPicker : public ::testing::Test {
protected:
    void SetUp() override
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        picker = new CColourPicker(&window);
        SetControlId(picker, PickerId);
        picker->setGeometry(10, 10, 80, 24);
        window.resize(200, 100);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    // Clicks the picker and answers its open popup.
    CColourPopupWnd* Open()
    {
        // What the last popup's closing set off (the window's activation) settles first, as it
        // does before a user can click again.
        QCoreApplication::processEvents();
        QTest::mouseClick(picker, Qt::LeftButton);
        auto* popup = qobject_cast<CColourPopupWnd*>(QApplication::activePopupWidget());
        EXPECT_NE(popup, nullptr);
        return popup;
    }

    // Moves over the cell and clicks it; a dialog the click opens is answered by the given code,
    // queued once the move is done.
    static void Click(CColourPopupWnd* popup, int cell, std::function<void()> answer = {})
    {
        const QPoint point = popup->CellRect(cell).center();
        QTest::mouseMove(popup, point);
        if (answer)
            QTimer::singleShot(0, answer);
        QTest::mouseClick(popup, Qt::LeftButton, {}, point);
    }

    QWidget window;
    CColourPicker* picker = nullptr;
};

TEST_F(ColourPicker, CellChosenByMouseOrKeysReachesTheSignalAndTheFill)
{
    QSignalSpy dropDown(picker, &CColourPicker::DropDown);
    QSignalSpy chosen(picker, &CColourPicker::SelEndOK);
    CColourPicker::EffectFill picture;
    picture.m_fillKind = 2;
    picture.m_pictureFile = QStringLiteral("/somewhere/sky.jpg");
    picker->SetFill(picture);

    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    ASSERT_EQ(dropDown.size(), 1);
    EXPECT_EQ(dropDown[0][1].toInt(), PickerId);
    Click(popup, 13);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].value<gfx::COLORREF>(), gfx::RGB(0, 0, 255));
    EXPECT_EQ(chosen[0][1].toInt(), PickerId);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(0, 0, 255));
    EXPECT_EQ(picker->GetFill().m_fillKind, 0);
    EXPECT_TRUE(picker->GetFill().m_pictureFile.isEmpty());
    EXPECT_FALSE(picker->IsPopupOpen());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);

    // The next popup starts on the chosen cell; the keys walk the grid from there.
    popup = Open();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->GetCurrentCell(), 13);
    QTest::keyClick(popup, Qt::Key_Right);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(128, 0, 128)); // "Violet", cell 22

    // Past the grid's end comes "More Colors...", and after it the grid's start again.
    popup = Open();
    ASSERT_TRUE(popup);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_EQ(popup->GetCurrentCell(), CColourPopupWnd::CustomCell);
    QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_EQ(popup->GetCurrentCell(), 0);
    QTest::keyClick(popup, Qt::Key_Left);
    EXPECT_EQ(popup->GetCurrentCell(), CColourPopupWnd::CustomCell);
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(chosen.size(), 2);
}

TEST_F(ColourPicker, EscapeAndClickOutsidePutTheColourBackWhileTracking)
{
    QSignalSpy chosen(picker, &CColourPicker::SelEndOK);
    picker->SetTrackSelection(true);
    picker->SetColour(gfx::RGB(255, 0, 0));

    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    for (int cell : {0, 9, 26}) {
        QTest::mouseMove(popup, popup->CellRect(cell).center());
        EXPECT_EQ(picker->GetColour(), CColourPopupWnd::TableColour(cell));
    }
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(255, 0, 0));
    EXPECT_FALSE(picker->IsPopupOpen());

    popup = Open();
    ASSERT_TRUE(popup);
    QTest::mouseMove(popup, popup->CellRect(3).center());
    EXPECT_TRUE(popup->isVisible());
    const QPoint outside(popup->width() + 20, popup->height() / 2);
    QTest::mouseClick(popup, Qt::LeftButton, {}, outside);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(255, 0, 0));
    EXPECT_EQ(chosen.size(), 0);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ColourPicker, ClearIsWhiteWithoutFillUnlikeTheWhiteCell)
{
    QSignalSpy chosen(picker, &CColourPicker::SelEndOK);
    CColourPicker::EffectFill gradient;
    gradient.m_fillKind = 4;
    gradient.m_color1 = gfx::Color(255, 0, 0);
    gradient.m_color2 = gfx::Color(0, 0, 255);
    picker->SetFill(gradient);

    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    Click(popup, CColourPopupWnd::ClearCell);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(255, 255, 255));
    EXPECT_TRUE(picker->IsNoFill());
    EXPECT_EQ(picker->GetFill().m_fillKind, 0);
    EXPECT_EQ(picker->GetFill().m_color1, gfx::Color(255, 255, 255));
    EXPECT_EQ(picker->GetFill().m_color2, gfx::Color(255, 255, 255));

    popup = Open();
    ASSERT_TRUE(popup);
    Click(popup, 39);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(255, 255, 255));
    EXPECT_FALSE(picker->IsNoFill());
}

TEST_F(ColourPicker, MoreColorsTakesTheDialogsColourAndItsCancel)
{
    QSignalSpy chosen(picker, &CColourPicker::SelEndOK);
    picker->SetColour(gfx::RGB(10, 20, 30));
    auto answer = [](bool accept) {
        return [accept] {
            auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->currentColor(), QColor(10, 20, 30));
            dialog->setCurrentColor(QColor(75, 0, 130));
            accept ? dialog->accept() : dialog->reject();
        };
    };

    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    Click(popup, CColourPopupWnd::CustomCell, answer(false));
    EXPECT_EQ(chosen.size(), 0);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(10, 20, 30));

    popup = Open();
    ASSERT_TRUE(popup);
    // A colour outside the table starts the popup on the custom button.
    EXPECT_EQ(popup->GetCurrentCell(), CColourPopupWnd::CustomCell);
    Click(popup, CColourPopupWnd::CustomCell, answer(true));
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(picker->GetColour(), gfx::RGB(75, 0, 130));

    // The dialog's colour is the table's "Indigo", whose cell the next popup marks.
    popup = Open();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->GetCurrentCell(), 6);
    QTest::keyClick(popup, Qt::Key_Escape);
}

TEST_F(ColourPicker, EffectButtonRunsTheHandlerOnTheFill)
{
    QSignalSpy chosen(picker, &CColourPicker::SelEndOK);
    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    EXPECT_TRUE(popup->CellRect(CColourPopupWnd::EffectCell).isEmpty());
    QTest::keyClick(popup, Qt::Key_Escape);

    bool confirm = false;
    picker->SetEffectHandler([&confirm](CColourPicker& target) {
        CColourPicker::EffectFill fill = target.GetFill();
        fill.m_fillKind = 1;
        fill.m_hatchStyle = 42;
        if (confirm)
            target.SetFill(fill);
        return confirm;
    });
    popup = Open();
    ASSERT_TRUE(popup);
    Click(popup, CColourPopupWnd::EffectCell);
    EXPECT_EQ(chosen.size(), 0);
    EXPECT_EQ(picker->GetFill().m_fillKind, 0);

    confirm = true;
    popup = Open();
    ASSERT_TRUE(popup);
    Click(popup, CColourPopupWnd::EffectCell);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(picker->GetFill().m_fillKind, 1);
    EXPECT_EQ(picker->GetFill().m_hatchStyle, 42);
}

TEST_F(ColourPicker, PopupStaysOnTheScreenAndCaptionKeepsContrast)
{
    const QRect screen = window.screen()->availableGeometry();
    window.move(screen.right() - window.width() + 1, screen.bottom() - window.height() + 1);
    picker->move(window.width() - picker->width(), window.height() - picker->height());
    QCoreApplication::processEvents();

    CColourPopupWnd* popup = Open();
    ASSERT_TRUE(popup);
    const QRect placed = popup->geometry();
    EXPECT_TRUE(screen.contains(placed)) << placed.x() << "," << placed.y();
    EXPECT_LT(placed.bottom(), picker->mapToGlobal(QPoint(0, 0)).y());
    QTest::keyClick(popup, Qt::Key_Escape);

    // Red + green + blue below 385 takes a white caption.
    picker->SetColour(gfx::RGB(128, 128, 128));
    EXPECT_EQ(picker->GetTextColour(), gfx::RGB(255, 255, 255));
    picker->SetColour(gfx::RGB(129, 128, 128));
    EXPECT_EQ(picker->GetTextColour(), gfx::RGB(0, 0, 0));
}

} // namespace
