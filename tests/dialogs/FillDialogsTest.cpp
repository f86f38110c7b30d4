#include "view/Canvas.h"

#include "TestSupport.h"
#include "controls/CColourPicker.h"
#include "controls/CColourPopupWnd.h"
#include "controls/CHatchWellWnd.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CEffectDlg.h"
#include "dialogs/CFillPropertySheet.h"
#include "objects/CDrawObj.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>

namespace {

// The fill dialogs as the canvas's commands and the pickers open them, answered by the test.
class FillDialogs : public Canvas {
protected:
    void SetUp() override
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        Canvas::SetUp();
    }

    template <class T>
    static T* find(QWidget* parent, int id)
    {
        for (T* widget : parent->findChildren<T*>()) {
            if (ControlId(widget) == id)
                return widget;
        }
        ADD_FAILURE() << "no control " << id;
        return nullptr;
    }
    template <class T>
    static T* modal()
    {
        auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget());
        EXPECT_NE(dialog, nullptr);
        return dialog;
    }
    static void chooseColour(CColourPicker* picker, int cell)
    {
        QTest::mouseClick(picker, Qt::LeftButton);
        auto* popup = qobject_cast<CColourPopupWnd*>(QApplication::activePopupWidget());
        ASSERT_NE(popup, nullptr);
        QTest::mouseMove(popup, popup->CellRect(cell).center());
        QTest::mouseClick(popup, Qt::LeftButton, {}, popup->CellRect(cell).center());
    }
    static void choosePattern(QWidget* dialog, int style)
    {
        auto* well = find<CHatchWellWnd>(dialog, 1087);
        QTest::mouseMove(well, well->CellRect(style).center());
        QTest::mouseClick(well, Qt::LeftButton, {}, well->CellRect(style).center());
    }
    static void type(QLineEdit* edit, const QString& text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    static void press(QWidget* dialog, QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(which), Qt::LeftButton);
    }
    // Answers the next file dialog with the file.
    static void answerFileDialog(const QString& path)
    {
        QTimer::singleShot(0, [path] {
            auto* dialog = modal<QFileDialog>();
            ASSERT_NE(dialog, nullptr);
            dialog->selectFile(path);
            static_cast<QDialog*>(dialog)->accept();
        });
    }
    CDrawObj* drawRectangle(int x)
    {
        tool(CDrawTool::Rectangle);
        drag(at(x - 100, 100), at(x + 100, -100));
        return object(objects().GetCount() - 1);
    }

    TestFolder folder;
};

const gfx::Color Red(255, 255, 0, 0);

TEST_F(FillDialogs, TheGradientSheetReadsTransparencyBackAndWritesTheChoiceOnOk)
{
    CDrawObj* rect = drawRectangle(0);
    rect->m_fillKind = 4;
    rect->m_gradientStyle = 1;
    rect->m_fillColor1 = gfx::Color(0, 255, 0, 0); // fully transparent
    rect->m_fillColor2 = gfx::Color(255, 0, 0, 0); // black

    QTimer::singleShot(0, [] {
        auto* sheet = modal<CFillPropertySheet>();
        ASSERT_NE(sheet, nullptr);
        EXPECT_EQ(sheet->windowTitle(), QStringLiteral("Properties"));
        EXPECT_EQ(find<QLineEdit>(sheet, 1139)->text(), QStringLiteral("99")) << "alpha 0 reads as 99";
        EXPECT_EQ(find<QLineEdit>(sheet, 1138)->text(), QStringLiteral("0"));
        EXPECT_TRUE(find<QRadioButton>(sheet, 1218)->isChecked()) << "Vertical";
        EXPECT_TRUE(find<QRadioButton>(sheet, 1215)->isChecked()) << "a black second colour is one colour";
        EXPECT_TRUE(find<QScrollBar>(sheet, 1170)->isVisible());
        EXPECT_FALSE(find<CColourPicker>(sheet, 1047)->isVisible());

        QTest::mouseClick(find<QRadioButton>(sheet, 1216), Qt::LeftButton);
        EXPECT_TRUE(find<CColourPicker>(sheet, 1047)->isVisible());
        EXPECT_FALSE(find<QScrollBar>(sheet, 1170)->isVisible());
        chooseColour(find<CColourPicker>(sheet, 1047), 16); // "Red"
        type(find<QLineEdit>(sheet, 1138), QStringLiteral("40"));
        EXPECT_EQ(find<QScrollBar>(sheet, 1169)->value(), 40) << "the scroll bar follows its edit";
        QTest::mouseClick(find<QRadioButton>(sheet, 1222), Qt::LeftButton); // "Fro&m center"
        press(sheet, QDialogButtonBox::Ok);
    });
    view->OnFillGradient();

    EXPECT_EQ(rect->m_fillKind, 3);
    EXPECT_EQ(rect->m_gradientSwap, 1);
    EXPECT_EQ(rect->m_fillColor1, gfx::Color(2, 255, 0, 0)) << "99 per cent, as read back";
    EXPECT_EQ(rect->m_fillColor2, gfx::Color(153, 255, 0, 0));
    undo();
    EXPECT_EQ(rect->m_fillKind, 4);
    EXPECT_EQ(rect->m_fillColor1, gfx::Color(0, 255, 0, 0));
}

TEST_F(FillDialogs, ThePatternSheetChangesNothingOnCancelAndEverySelectedShapeOnOk)
{
    CDrawObj* left = drawRectangle(-200);
    CDrawObj* right = drawRectangle(200);
    view->SelectAll();
    const QByteArray before = saved();

    QTimer::singleShot(0, [] {
        auto* sheet = modal<CFillPropertySheet>();
        ASSERT_NE(sheet, nullptr);
        choosePattern(sheet, 4);
        chooseColour(find<CColourPicker>(sheet, 1088), 16);
        press(sheet, QDialogButtonBox::Cancel);
    });
    view->OnFillPattern();
    EXPECT_EQ(saved(), before);

    QTimer::singleShot(0, [] {
        auto* sheet = modal<CFillPropertySheet>();
        ASSERT_NE(sheet, nullptr);
        choosePattern(sheet, 42);
        EXPECT_EQ(find<QLabel>(sheet, 1164)->text(), QStringLiteral("Birds"));
        chooseColour(find<CColourPicker>(sheet, 1088), 16);
        press(sheet, QDialogButtonBox::Ok);
    });
    view->OnFillPattern();
    for (CDrawObj* object : {left, right}) {
        EXPECT_EQ(object->m_fillKind, 1);
        EXPECT_EQ(object->m_hatchStyle, 42);
        EXPECT_EQ(object->m_fillColor1, Red);
    }
    undo();
    EXPECT_EQ(saved(), before) << "one step for both";
}

TEST_F(FillDialogs, APictureThatDoesNotLoadIsRefusedAndAGoodOneIsPlacedAsChosen)
{
    const QString broken = folder.write(QStringLiteral("broken.png"), "no picture at all");
    const QString good = folder.path() + QStringLiteral("/tiny.png");
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(good));

    CEffectDlg dialog;
    dialog.m_nPageMask = CEffectDlg::PicturePage;
    QTimer::singleShot(0, [this, &broken, &good] {
        auto* effects = modal<CEffectDlg>();
        ASSERT_NE(effects, nullptr);
        answerFileDialog(broken);
        QTest::mouseClick(find<QPushButton>(effects, 1094), Qt::LeftButton);
        EXPECT_EQ(messages, std::vector<QString>{QStringLiteral("Not valid image file!")});
        EXPECT_TRUE(find<QLabel>(effects, 1079)->isVisible()) << "the placeholder shows";
        EXPECT_FALSE(find<QWidget>(effects, 1097)->isVisible());

        answerFileDialog(good);
        QTest::mouseClick(find<QPushButton>(effects, 1098), Qt::LeftButton);
        EXPECT_TRUE(find<QWidget>(effects, 1097)->isVisible());
        EXPECT_EQ(find<QLabel>(effects, 1164)->text(), QStringLiteral("tiny.png"));
        auto* placement = find<QComboBox>(effects, 1096);
        placement->setFocus();
        QTest::keyClick(placement, Qt::Key_End); // "Stretch"
        press(effects, QDialogButtonBox::Ok);
    });
    ASSERT_EQ(dialog.DoModal(), QDialog::Accepted);
    EXPECT_EQ(dialog.m_pictureFile, good);
    EXPECT_EQ(dialog.m_fillKind, 2);
    EXPECT_EQ(dialog.m_wrapMode, 4);
    EXPECT_EQ(dialog.m_pictureScale, 2);
}

} // namespace
