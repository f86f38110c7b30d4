#include "TestSupport.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CTemplateButton.h"
#include "dialogs/CTemplateSelector.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/Profile.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
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
    return nullptr;
}

// The selection dialog over the program's own templates, opened as the panels open it.
class TemplateSelector : public ::testing::Test {
protected:
    void SetUp() override
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
        ASSERT_GT(templates.size(), 3u);
        doc.SetTemplates(&templates);
        doc.SetTemplate(Find(QStringLiteral("Data Becker")));
    }
    void TearDown() override { Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1); }

    int Find(const QString& name) const
    {
        for (size_t i = 0; i < templates.size(); ++i) {
            if (templates[i].TemplateName.startsWith(name))
                return int(i);
        }
        ADD_FAILURE() << name.toStdString();
        return 0;
    }
    static QTreeWidgetItem* Row(QTreeWidget* list, const QString& start)
    {
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            if (list->topLevelItem(i)->text(0).startsWith(start))
                return list->topLevelItem(i);
        }
        return nullptr;
    }
    static void ClickRow(QTreeWidget* list, QTreeWidgetItem* item)
    {
        list->scrollToItem(item);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
    }
    static bool BleedShown(const CTemplateSelector& dialog)
    {
        return Control<QLineEdit>(&dialog, 1248)->isVisible();
    }
    // Opens the dialog modally; the step runs on it while it shows, and answers it.
    int Run(const std::function<void(CTemplateSelector&)>& step)
    {
        CTemplateSelector dialog;
        dialog.SetDocument(&doc);
        QTimer::singleShot(0, [&dialog, &step] {
            ASSERT_EQ(QApplication::activeModalWidget(), &dialog);
            step(dialog);
        });
        return dialog.exec();
    }

    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
};

TEST_F(TemplateSelector, OpensOnTheCurrentTemplateAndFiltersWithoutChangingTheChoice)
{
    CTemplateSelector dialog;
    dialog.SetDocument(&doc);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    auto* list = Control<QTreeWidget>(&dialog, 1130);
    ASSERT_EQ(list->topLevelItemCount(), int(templates.size()));
    EXPECT_EQ(list->columnCount(), 1);
    EXPECT_EQ(list->headerItem()->text(0), QStringLiteral("Template"));
    ASSERT_EQ(list->selectedItems().size(), 1);
    EXPECT_TRUE(list->selectedItems().front()->text(0).startsWith(QStringLiteral("Data Becker")));
    EXPECT_EQ(Control<CTemplateButton>(&dialog, 1244)->GetTemplateIndex(), Find(QStringLiteral("Data Becker")));
    EXPECT_EQ(Row(list, QStringLiteral("Data Becker"))->toolTip(0),
              QStringLiteral("8.268 x 11.693 inches, 3 label areas"));
    EXPECT_EQ(Row(list, QStringLiteral("Canon"))->toolTip(0), QStringLiteral("5.315 x 11.614 inches, 1 label area"));

    // Words in any case and order; the row chosen stays chosen while it is hidden.
    QLineEdit* filter = nullptr;
    for (QLineEdit* edit : dialog.findChildren<QLineEdit*>()) {
        if (edit->accessibleName() == QStringLiteral("Filter"))
            filter = edit;
    }
    ASSERT_NE(filter, nullptr);
    QTest::keyClicks(filter, QStringLiteral("a4 LABELS avery dvd"));
    QStringList shown;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        if (!list->topLevelItem(i)->isHidden())
            shown << list->topLevelItem(i)->text(0);
    }
    EXPECT_EQ(shown, QStringList{QStringLiteral("Avery L7676 CD/DVD Labels (A4)")});
    EXPECT_EQ(dialog.TemplateIndex, Find(QStringLiteral("Data Becker")));

    ClickRow(list, Row(list, QStringLiteral("Avery L7676")));
    EXPECT_EQ(dialog.TemplateIndex, Find(QStringLiteral("Avery L7676")));
    EXPECT_EQ(Control<CTemplateButton>(&dialog, 1244)->GetTemplateIndex(), Find(QStringLiteral("Avery L7676")));
    // Closed without OK, the document keeps its template.
    dialog.reject();
    EXPECT_EQ(doc.GetTemplate(), Find(QStringLiteral("Data Becker")));
}

TEST_F(TemplateSelector, BleedControlsFollowTheDocumentsTemplateAtTheNextOpening)
{
    Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), 0);
    const int tray = Find(QStringLiteral("Disc Printer Tray"));
    // On a sheet: choosing the tray leaves the bleed showing, and a bleed of 20 mm is taken
    // as typed, beyond the spin's 10 mm.
    EXPECT_EQ(Run([&](CTemplateSelector& dialog) {
                  EXPECT_TRUE(BleedShown(dialog));
                  EXPECT_EQ(Control<QLineEdit>(&dialog, 1248)->text(), QStringLiteral("3.3"));
                  auto* list = Control<QTreeWidget>(&dialog, 1130);
                  ClickRow(list, Row(list, QStringLiteral("Disc Printer Tray")));
                  EXPECT_TRUE(BleedShown(dialog));
                  auto* bleed = Control<QLineEdit>(&dialog, 1248);
                  bleed->selectAll();
                  QTest::keyClicks(bleed, QStringLiteral("20"));
                  dialog.accept();
              }),
              QDialog::Accepted);
    EXPECT_EQ(doc.GetTemplate(), tray);
    EXPECT_EQ(Profile::GetInt(doc.PrinterSection(), QStringLiteral("TemplateBleed"), 0), 787);

    // Now on the tray, there is no bleed; choosing a sheet doesn't bring it back yet.
    EXPECT_EQ(Run([&](CTemplateSelector& dialog) {
                  EXPECT_FALSE(BleedShown(dialog));
                  auto* list = Control<QTreeWidget>(&dialog, 1130);
                  ClickRow(list, Row(list, QStringLiteral("Herma")));
                  EXPECT_FALSE(BleedShown(dialog));
                  dialog.accept();
              }),
              QDialog::Accepted);
    EXPECT_EQ(doc.GetTemplate(), Find(QStringLiteral("Herma")));
    // The bleed not touched stays exactly as it was, though shown rounded to 20.0 mm.
    EXPECT_EQ(Profile::GetInt(doc.PrinterSection(), QStringLiteral("TemplateBleed"), 0), 787);

    EXPECT_EQ(Run([&](CTemplateSelector& dialog) {
                  EXPECT_TRUE(BleedShown(dialog));
                  dialog.reject();
              }),
              QDialog::Rejected);
}

TEST_F(TemplateSelector, WorksWithASingleTemplate)
{
    std::vector<CTemplateFile> one(templates.begin(), templates.begin() + 1);
    doc.SetTemplates(&one);
    doc.SetTemplate(0);
    EXPECT_EQ(Run([&](CTemplateSelector& dialog) {
                  auto* list = Control<QTreeWidget>(&dialog, 1130);
                  EXPECT_EQ(list->topLevelItemCount(), 1);
                  EXPECT_EQ(list->selectedItems().size(), 1);
                  dialog.accept();
              }),
              QDialog::Accepted);
    EXPECT_EQ(doc.GetTemplate(), 0);
}

} // namespace
