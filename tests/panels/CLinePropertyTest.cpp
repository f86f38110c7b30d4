#include "view/Canvas.h"

#include "controls/CArrowPicker.h"
#include "controls/CArrowWnd.h"
#include "controls/CColourPicker.h"
#include "controls/CColourPopupWnd.h"
#include "controls/CLinePicker.h"
#include "controls/CLineWnd.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CEffectDlg.h"
#include "objects/CDrawRect.h"
#include "objects/CDrawText.h"
#include "panels/CLineProperty.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <functional>
#include <QTabWidget>
#include <QTimer>

namespace {

// The shape panel beside the real canvas, as the main window shows it: the panel follows the
// selection and the tool as the window tells it to.
class LinePanel : public Canvas {
protected:
    void SetUp() override
    {
        Canvas::SetUp();
        panel = std::make_unique<CLineProperty>();
        panel->SetView(view.get());
        panel->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(panel.get()));
    }
    void TearDown() override
    {
        panel.reset();
        Canvas::TearDown();
    }

    template <class T>
    T* control(int id) const
    {
        for (T* widget : panel->findChildren<T*>()) {
            if (ControlId(widget) == id)
                return widget;
        }
        ADD_FAILURE() << "no control " << id;
        return nullptr;
    }
    // Opens a picker's popup with a click and clicks the popup's cell; a dialog the choice
    // opens is answered by the function given.
    template <class Popup, class Picker>
    void choose(Picker* picker, int cell, std::function<void()> answer = {})
    {
        QTest::mouseClick(picker, Qt::LeftButton);
        auto* popup = qobject_cast<Popup*>(QApplication::activePopupWidget());
        ASSERT_NE(popup, nullptr);
        QRect rect;
        if constexpr (std::is_same_v<Popup, CLineWnd>)
            rect = popup->RowRect(cell);
        else
            rect = popup->CellRect(cell);
        QTest::mouseMove(popup, rect.center());
        if (answer)
            QTimer::singleShot(0, answer);
        QTest::mouseClick(popup, Qt::LeftButton, {}, rect.center());
    }
    void chooseColour(int pickerId, int cell, std::function<void()> answer = {})
    {
        choose<CColourPopupWnd>(control<CColourPicker>(pickerId), cell, std::move(answer));
    }
    void type(int editId, const QString& text)
    {
        QLineEdit* edit = control<QLineEdit>(editId);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    // The selection as a tool's press leaves it, with the panel showing its last object.
    void selectAllShown()
    {
        view->SelectAll();
        panel->LoadFromObject(view->m_selection.back());
    }

    std::unique_ptr<CLineProperty> panel;
};

const gfx::Color Red(255, 255, 0, 0);
const gfx::Color Blue(255, 0, 0, 255);

TEST_F(LinePanel, APickedFillReachesEverySelectedShapeAndTheDefaultsInOneStep)
{
    tool(CDrawTool::Rectangle);
    drag(at(-400, 100), at(-200, -100));
    drag(at(-100, 100), at(100, -100));
    tool(CDrawTool::Ellipse);
    drag(at(200, 100), at(400, -100));
    tool(CDrawTool::Text);
    click(at(0, -300));
    ASSERT_EQ(objects().GetCount(), 4);
    const gfx::Color textFill = object(3)->m_fillColor1;
    selectAllShown();

    chooseColour(1001, 16); // "Red"
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(object(i)->m_fillColor1, Red) << i;
    EXPECT_EQ(object(3)->m_fillColor1, textFill) << "a text keeps its own look";
    EXPECT_EQ(g_defaultProperties.m_fillColor1, Red);

    undo();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(object(i)->m_fillColor1, gfx::Color(255, 255, 255, 255)) << i;
    EXPECT_EQ(objects().GetCount(), 4) << "one undo takes back the fill, and only the fill";

    // Defaults puts the program's own look on every selected shape, again in one step.
    redo();
    QTest::mouseClick(control<QPushButton>(1079), Qt::LeftButton);
    EXPECT_EQ(object(0)->m_fillColor1, gfx::Color(255, 255, 255, 255));
    undo();
    EXPECT_EQ(object(0)->m_fillColor1, Red);
}

TEST_F(LinePanel, TheFillPickersEffectsButtonBringsAGradientToTheSelection)
{
    tool(CDrawTool::Rectangle);
    drag(at(-100, 100), at(100, -100));
    CDrawObj* rect = object(0);
    panel->LoadFromObject(rect);

    chooseColour(1001, CColourPopupWnd::EffectCell, [] {
        auto* effects = qobject_cast<CEffectDlg*>(QApplication::activeModalWidget());
        ASSERT_NE(effects, nullptr);
        auto* tabs = effects->findChild<QTabWidget*>();
        ASSERT_EQ(tabs->count(), 3);
        EXPECT_EQ(tabs->tabText(0), QStringLiteral("Picture"));
        tabs->setCurrentIndex(1);
        for (QRadioButton* radio : effects->findChildren<QRadioButton*>()) {
            if (ControlId(radio) == 1220) // "Diagonal &down"
                QTest::mouseClick(radio, Qt::LeftButton);
        }
        QTest::mouseClick(effects->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });

    EXPECT_EQ(rect->m_fillKind, 4);
    EXPECT_EQ(rect->m_gradientStyle, 3);
    EXPECT_EQ(g_defaultProperties.m_fillKind, 4);
    undo();
    EXPECT_EQ(rect->m_fillKind, 0);
}

TEST_F(LinePanel, WithNothingSelectedThePanelIsTheLookOfTheNextShape)
{
    tool(CDrawTool::Ellipse);
    panel->LoadForTool(0x102);
    EXPECT_EQ(control<QComboBox>(1086)->currentText(), QStringLiteral("Ellipse"));
    EXPECT_TRUE(control<QCheckBox>(1227)->isChecked());

    chooseColour(1001, 13); // "Blue"
    type(1068, QStringLiteral("7"));
    type(1076, QStringLiteral("30"));
    choose<CLineWnd>(control<CLinePicker>(1057), 2);
    EXPECT_FALSE(g_undoManager.CanUndo(doc.get(), 1)) << "nothing selected, nothing to undo";

    drag(at(-100, 100), at(100, -100));
    ASSERT_EQ(objects().GetCount(), 1);
    const auto* ellipse = dynamic_cast<CDrawRect*>(object(0));
    ASSERT_NE(ellipse, nullptr);
    EXPECT_EQ(ellipse->m_shape, 2 | CDrawRect::AspectLock);
    EXPECT_EQ(ellipse->m_fillColor1, Blue);
    EXPECT_EQ(ellipse->m_lineWidth, 7);
    EXPECT_EQ(ellipse->m_transparency, 30);
    EXPECT_EQ(ellipse->m_dashStyle, 2);
    EXPECT_EQ(control<QSlider>(1237)->value(), 30) << "the slider follows the edit";
}

TEST_F(LinePanel, ArrowHeadsAndCapsMapBetweenPickersAndObjects)
{
    tool(CDrawTool::Arrow);
    drag(at(-200, 0), at(200, 0));
    CDrawObj* arrow = object(0);
    arrow->m_startArrow = 242; // Stealth
    arrow->m_endArrow = 17;    // a square, which the picker doesn't offer
    panel->LoadFromObject(arrow);

    auto* start = control<CArrowPicker>(1038);
    auto* end = control<CArrowPicker>(1040);
    EXPECT_EQ(start->GetIndex(), 3);
    EXPECT_EQ(end->GetIndex(), 0);
    EXPECT_TRUE(start->isEnabled());
    EXPECT_FALSE(control<CColourPicker>(1001)->isEnabled()) << "a line has no fill";
    EXPECT_FALSE(control<QComboBox>(1086)->isEnabled());
    EXPECT_FALSE(control<QPushButton>(1152)->isEnabled());

    choose<CArrowWnd>(end, 5); // "Oval"
    EXPECT_EQ(arrow->m_endArrow, 18);
    EXPECT_EQ(arrow->m_startArrow, 242);
    choose<CArrowWnd>(end, 0);
    EXPECT_EQ(arrow->m_endArrow, 16);

    // Caps: a tool's defaults show the stored cap; a choice stores the cap of its entry.
    click(at(0, 500));
    g_defaultProperties.m_dashCap = 3;
    panel->LoadForTool(CDrawTool::Arrow);
    auto* cap = control<QComboBox>(1081);
    EXPECT_EQ(cap->currentText(), QStringLiteral("Triangle End"));
    cap->setFocus();
    QTest::keyClick(cap, Qt::Key_Up);
    EXPECT_EQ(g_defaultProperties.m_dashCap, 2) << "Round End";
    QTest::keyClick(cap, Qt::Key_Up);
    EXPECT_EQ(g_defaultProperties.m_dashCap, 0) << "Flat End";
    g_defaultProperties.m_dashCap = 1; // a cap no entry stands for
    panel->LoadForTool(CDrawTool::Arrow);
    EXPECT_EQ(cap->currentText(), QStringLiteral("Flat End"));
}

TEST_F(LinePanel, CenterMovesShapesToTheDiscCentreKeepingSizeAndDirection)
{
    tool(CDrawTool::Rectangle);
    // Drawn from right to left: the rectangle keeps a negative width.
    drag(at(500, 300), at(200, 100));
    CDrawObj* rect = object(0);
    const CRect before = rect->GetRect();
    ASSERT_LT(before.Width(), 0);
    panel->LoadFromObject(rect);

    QTest::mouseClick(control<QPushButton>(1152), Qt::LeftButton);
    const CRect after = rect->GetRect();
    EXPECT_EQ(after.Width(), before.Width() / 2 * 2);
    EXPECT_EQ(after.Height(), before.Height() / 2 * 2);
    EXPECT_EQ(after.left, -(before.Width() / 2));
    EXPECT_EQ(after.top, -(before.Height() / 2));
    undo();
    EXPECT_EQ(rect->GetRect(), before);
}

} // namespace
