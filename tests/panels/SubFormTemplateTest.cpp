#include "TestSupport.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CTemplateSelector.h"
#include "panels/CSubForm1_1.h"
#include "panels/CSubForm1_2.h"
#include "platform/Profile.h"
#include "view/Canvas.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>

namespace {

template <class T>
T* Control(const QWidget* parent, int id)
{
    for (T* child : parent->findChildren<T*>()) {
        if (ControlId(child) == id)
            return child;
    }
    ADD_FAILURE() << "no control " << id;
    return nullptr;
}

// The template panels beside the real canvas, over the program's templates; the tray's
// standard disc is current, and no diameter is in the printer's profile yet.
class SubFormTemplate : public Canvas {
protected:
    void SetUp() override
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QFile::remove(Profile::FilePath());
        Canvas::SetUp();
        for (const char* key : {"OuterDia", "InnerDia", "BusDia"})
            ASSERT_EQ(diameterKept(key), -1);
        doc->SetModifiedFlag(false);
    }
    void TearDown() override
    {
        Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1);
        Canvas::TearDown();
    }

    int diameterKept(const char* key) const { return Profile::GetInt(doc->PrinterSection(), QLatin1String(key), -1); }
    int templateNamed(const QString& start) const
    {
        for (size_t i = 0; i < templates.size(); ++i) {
            if (templates[i].TemplateName.startsWith(start))
                return int(i);
        }
        ADD_FAILURE() << start.toStdString();
        return 0;
    }
    // Types over an edit's text, as the user does after selecting it.
    static void type(QLineEdit* edit, const QString& text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    // Clicks the button that opens the selection, and chooses a template there with OK.
    void selectTemplate(QWidget* panel, const QString& start)
    {
        QTimer::singleShot(0, [start] {
            auto* dialog = qobject_cast<CTemplateSelector*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            auto* list = Control<QTreeWidget>(dialog, 1130);
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                QTreeWidgetItem* item = list->topLevelItem(i);
                if (item->text(0).startsWith(start)) {
                    list->scrollToItem(item);
                    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
                    break; // the first row of that name: later ones may be other products of the maker
                }
            }
            dialog->accept();
        });
        QTest::mouseClick(Control<QPushButton>(panel, 1057), Qt::LeftButton);
    }
    static QStringList entries(const QComboBox* combo)
    {
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i)
            texts << combo->itemText(i);
        return texts;
    }
};

TEST_F(SubFormTemplate, TypedSizesShowCustomAndOnlyChosenOnesAreKeptForThePrinter)
{
    CSubForm1_1 panel;
    panel.SetView(view.get());
    panel.show();
    auto* size = Control<QComboBox>(&panel, 1056);
    EXPECT_EQ(entries(size).first(), QStringLiteral("Standard CD/DVD"));
    EXPECT_EQ(entries(size).last(), QStringLiteral("Custom"));
    EXPECT_EQ(size->currentText(), QStringLiteral("Standard CD/DVD"));
    EXPECT_EQ(Control<QLineEdit>(&panel, 1016)->text(), QStringLiteral("4.650"));
    // Showing the sizes is no change.
    EXPECT_FALSE(doc->IsModified());

    type(Control<QLineEdit>(&panel, 1016), QStringLiteral("2.36"));
    EXPECT_EQ(size->currentText(), QStringLiteral("Custom"));
    EXPECT_DOUBLE_EQ(doc->GetOuterDia(), 2.36);
    EXPECT_EQ(Control<QSlider>(&panel, 1015)->value(), 2360);
    EXPECT_TRUE(doc->IsModified());
    EXPECT_EQ(diameterKept("OuterDia"), -1);
    // All three must match a size of the tray.
    type(Control<QLineEdit>(&panel, 1016), QStringLiteral("4.65"));
    EXPECT_EQ(size->currentText(), QStringLiteral("Standard CD/DVD"));

    // A size chosen from the list writes all three, and keeps them for the printer.
    QTest::keyClick(size, Qt::Key_Down);
    EXPECT_EQ(size->currentText(), QStringLiteral("FullFace CD/DVD"));
    EXPECT_DOUBLE_EQ(doc->GetOuterDia(), 4.72);
    EXPECT_DOUBLE_EQ(doc->GetInnerDia(), 0.91);
    EXPECT_EQ(diameterKept("OuterDia"), 4720);
    EXPECT_EQ(diameterKept("InnerDia"), 910);
    EXPECT_EQ(diameterKept("BusDia"), 4720);
    // From then on, typed ones too.
    type(Control<QLineEdit>(&panel, 1013), QStringLiteral("1.2"));
    EXPECT_EQ(diameterKept("InnerDia"), 1200);
    EXPECT_EQ(size->currentText(), QStringLiteral("Custom"));

    // A slider moved by the keyboard keeps its value as well; its steps stop short of the ends.
    auto* edge = Control<QSlider>(&panel, 1033);
    for (Qt::Key key : {Qt::Key_End, Qt::Key_Left})
        QTest::keyClick(edge, key);
    EXPECT_EQ(Control<QLineEdit>(&panel, 1035)->text(), QStringLiteral("4.719"));
    for (Qt::Key key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_PageDown})
        QTest::keyClick(edge, key);
    EXPECT_EQ(edge->value(), 2002);
    EXPECT_DOUBLE_EQ(doc->GetBusDia(), 2.002);
    EXPECT_NE(diameterKept("BusDia"), -1);
}

TEST_F(SubFormTemplate, OnlyTheOuterDiameterFitsTheCanvasAnew)
{
    CSubForm1_1 panel;
    panel.SetView(view.get());
    panel.show();
    view->ZoomIn(nullptr, 2.0);
    const double zoomed = view->GetZoom();
    ASSERT_GT(zoomed, 1.5);
    type(Control<QLineEdit>(&panel, 1013), QStringLiteral("1.2"));
    type(Control<QLineEdit>(&panel, 1035), QStringLiteral("3.5"));
    EXPECT_EQ(view->GetZoom(), zoomed);
    EXPECT_DOUBLE_EQ(doc->GetBusDia(), 3.5);

    type(Control<QLineEdit>(&panel, 1016), QStringLiteral("4.7"));
    EXPECT_EQ(view->GetZoom(), 0.99);
    EXPECT_EQ(view->GetTotalLogicalSize().cx, 1410);
}

TEST_F(SubFormTemplate, MetricUnitsShowMillimetresWithTheirLimits)
{
    Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), 0);
    doc->SetOuterDia(4.72, false);
    doc->SetModifiedFlag(false);
    CSubForm1_1 panel;
    panel.SetView(view.get());
    panel.show();
    auto* outer = Control<QLineEdit>(&panel, 1016);
    EXPECT_EQ(outer->text(), QStringLiteral("119.9"));
    EXPECT_EQ(Control<QLabel>(&panel, 1252)->text(), QStringLiteral("mm"));
    EXPECT_FALSE(doc->IsModified());

    // The spin stops at 120 mm; the slider, in thousandths of an inch, at its end.
    auto* spin = Control<CNumSpinCtrl>(&panel, 1235);
    for (int i = 0; i < 3; ++i)
        QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(spin->width() / 2, spin->height() / 4));
    EXPECT_EQ(outer->text(), QStringLiteral("120.0"));
    EXPECT_NEAR(doc->GetOuterDia(), 120.0 / 25.4, 1e-12);
    EXPECT_EQ(Control<QSlider>(&panel, 1015)->value(), 4720);

    // Back in inches at the next refresh.
    Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1);
    panel.LoadUnits();
    panel.LoadFromDocument();
    EXPECT_EQ(outer->text(), QStringLiteral("4.724"));
    EXPECT_EQ(Control<QLabel>(&panel, 1252)->text(), QStringLiteral("inches"));
}

TEST_F(SubFormTemplate, ChoosingASheetListsItsLabelsAndStartsOnTheFirst)
{
    CSubForm1_1 tray;
    tray.SetView(view.get());
    tray.show();
    QSignalSpy trayChanged(&tray, &CSubForm1_1::templateChanged);
    selectTemplate(&tray, QStringLiteral("Data Becker"));
    EXPECT_EQ(trayChanged.count(), 1);
    EXPECT_EQ(doc->GetTemplate(), templateNamed(QStringLiteral("Data Becker")));

    // The window then shows the sheet's panel.
    CSubForm1_2 sheet;
    sheet.SetView(view.get());
    sheet.show();
    auto* labels = Control<QComboBox>(&sheet, 1245);
    EXPECT_EQ(entries(labels),
              (QStringList{QStringLiteral("Top Disc"), QStringLiteral("Middle Disc"), QStringLiteral("Bottom Disc")}));
    QTest::keyClick(labels, Qt::Key_Down);
    QTest::keyClick(labels, Qt::Key_Down);
    EXPECT_EQ(doc->GetCurLabel(), 2);

    QSignalSpy sheetChanged(&sheet, &CSubForm1_2::templateChanged);
    selectTemplate(&sheet, QStringLiteral("Avery L7676"));
    EXPECT_EQ(sheetChanged.count(), 1);
    EXPECT_EQ(entries(labels), (QStringList{QStringLiteral("Top Disc"), QStringLiteral("Bottom Disc")}));
    EXPECT_EQ(labels->currentIndex(), 0);
    EXPECT_EQ(doc->GetCurLabel(), 0);
    EXPECT_EQ(view->GetTotalLogicalSize().cx, 1381);

    // A run of areas of one label is one entry.
    selectTemplate(&sheet, QStringLiteral("Avery 5931"));
    EXPECT_EQ(entries(labels), (QStringList{QStringLiteral("Disc"), QStringLiteral("Spine")}));
    QTest::keyClick(labels, Qt::Key_Down);
    EXPECT_EQ(doc->GetCurLabel(), 1);
    EXPECT_EQ(view->GetTotalLogicalSize().cx, 65);
    selectTemplate(&sheet, QStringLiteral("Neato"));
    EXPECT_EQ(entries(labels), QStringList{QStringLiteral("Business Card Disc")});
    EXPECT_EQ(doc->GetCurLabel(), 0);
}

TEST_F(SubFormTemplate, ImpossibleDiametersAreTakenAndTheCanvasStaysUsable)
{
    CSubForm1_1 panel;
    panel.SetView(view.get());
    panel.show();
    auto* outer = Control<QLineEdit>(&panel, 1016);
    type(outer, QStringLiteral("0"));
    EXPECT_EQ(doc->GetOuterDia(), 0.0);
    EXPECT_EQ(Control<QSlider>(&panel, 1015)->value(), 2000);
    EXPECT_EQ(Control<QComboBox>(&panel, 1056)->currentText(), QStringLiteral("Custom"));
    canvas()->repaint();

    type(outer, QStringLiteral("99"));
    EXPECT_EQ(doc->GetOuterDia(), 99.0);
    EXPECT_EQ(Control<QSlider>(&panel, 1015)->value(), 4720);
    canvas()->repaint();

    // Letters can't be typed, but they can be pasted: they read as no size at all.
    auto* inner = Control<QLineEdit>(&panel, 1013);
    type(inner, QStringLiteral("x"));
    EXPECT_EQ(inner->text(), QStringLiteral("1.650"));
    QApplication::clipboard()->setText(QStringLiteral("nan"));
    inner->selectAll();
    QTest::keyClick(inner, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(doc->GetInnerDia(), 0.0);

    // The canvas still takes a drawing.
    tool(CDrawTool::Rectangle);
    drag(at(-3000, 3000), at(3000, -3000));
    EXPECT_EQ(objects().GetCount(), 1);
}

} // namespace
