#include "dialogs/CDataFieldDlg.h"
#include "dialogs/CDataFieldListDlg.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {

// A control by the name a screen reader gives it.
template <typename T = QWidget>
T* named(const QWidget* parent, const QString& name)
{
    for (T* widget : parent->findChildren<T*>()) {
        if (widget->accessibleName() == name)
            return widget;
    }
    ADD_FAILURE() << "no control named " << name.toStdString();
    return nullptr;
}

void click(const QWidget* parent, const QString& name)
{
    auto* button = named<QAbstractButton>(parent, name);
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled()) << name.toStdString();
    // A radio button or check box takes a click on its mark or its words, not on the room
    // beside them.
    const bool pushButton = qobject_cast<QPushButton*>(button) != nullptr;
    const QPoint pos = pushButton ? button->rect().center() : QPoint(button->height() / 2, button->height() / 2);
    QTest::mouseClick(button, Qt::LeftButton, {}, pos);
}

// Replaces what an edit holds, as typing over all of it does.
void type(const QWidget* parent, const QString& name, const QString& text)
{
    auto* edit = named<QLineEdit>(parent, name);
    ASSERT_NE(edit, nullptr);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

// Answers the modal dialog that the next step opens, once it shows: a click's own event
// processing may run the timer before the dialog is there.
template <typename Dialog>
void whenShown(std::function<void(Dialog&)> answer, int attempts = 500)
{
    QTimer::singleShot(attempts == 500 ? 0 : 10, [answer, attempts] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
            answer(*dialog);
        else if (attempts > 0)
            whenShown(answer, attempts - 1);
        else
            ADD_FAILURE() << "no dialog showed";
    });
}

class DataFieldDialogs : public ::testing::Test {
protected:
    void SetUp() override
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        g_dataFields.clear();
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages << text;
            return int(MessageBox::IdOk);
        });
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        g_dataFields.clear();
    }

    QStringList messages;
};

TEST_F(DataFieldDialogs, AKindEnablesItsControlsTakesThemOverAndOkChecksNothing)
{
    g_dataFields.resize(2);
    CDataFieldDlg dialog;
    dialog.show();
    EXPECT_EQ(dialog.m_field.Tag, QStringLiteral("/*TAG3*/"));
    EXPECT_EQ(dialog.m_field.Type, -1);
    for (const char* name : {"OK", "Two digit", "Disc Number", "Serial Number Value", "Data File Name", "Browse"})
        EXPECT_FALSE(named(&dialog, QString::fromLatin1(name))->isEnabled()) << name;

    click(&dialog, QStringLiteral("Disc"));
    EXPECT_TRUE(named(&dialog, QStringLiteral("OK"))->isEnabled());
    EXPECT_TRUE(named(&dialog, QStringLiteral("Disc Total"))->isEnabled());
    EXPECT_FALSE(named(&dialog, QStringLiteral("Two digit"))->isEnabled());
    EXPECT_FALSE(named(&dialog, QStringLiteral("Browse"))->isEnabled());
    type(&dialog, QStringLiteral("Disc Number"), QStringLiteral("7"));
    type(&dialog, QStringLiteral("Disc Total"), QStringLiteral("3"));
    type(&dialog, QStringLiteral("Field Label:"), QString());
    click(&dialog, QStringLiteral("OK"));
    EXPECT_EQ(dialog.result(), QDialog::Accepted) << "an empty label and a disc above the total pass";
    EXPECT_EQ(dialog.m_field.Type, DATAFIELD::Disc);
    EXPECT_EQ(dialog.m_field.DiscNumber, 7u);
    EXPECT_EQ(dialog.m_field.DiscTotal, 3u);
    EXPECT_TRUE(dialog.m_field.Tag.isEmpty());

    // A serial number beyond 32 bits shows short and stays whole until its edit changes; a
    // kind chosen anew takes over what its controls show.
    DATAFIELD serial;
    serial.Type = DATAFIELD::SerialNumber;
    serial.Serial = (std::uint64_t(1) << 32) + 5;
    serial.DiscNumber = 9;
    CDataFieldDlg untouched(serial);
    untouched.show();
    EXPECT_EQ(named<QLineEdit>(&untouched, QStringLiteral("Serial Number Value"))->text(), QStringLiteral("5"));
    click(&untouched, QStringLiteral("OK"));
    EXPECT_EQ(untouched.m_field.Serial, serial.Serial);
    CDataFieldDlg retyped(serial);
    retyped.show();
    type(&retyped, QStringLiteral("Serial Number Value"), QStringLiteral("12345678901234"));
    EXPECT_EQ(retyped.m_field.Serial, 12345678901234u);
    click(&retyped, QStringLiteral("Disc"));
    EXPECT_EQ(retyped.m_field.Type, DATAFIELD::Disc);
    EXPECT_EQ(retyped.m_field.DiscNumber, 9u);
    click(&retyped, QStringLiteral("Cancel"));
    EXPECT_EQ(retyped.result(), QDialog::Rejected);
}

TEST_F(DataFieldDialogs, TheListChangesAtOnceWithItsQuirksAndInsertsATagAtTheCaret)
{
    QPlainTextEdit target;
    target.setPlainText(QStringLiteral("Hello World"));
    QTextCursor caret = target.textCursor();
    caret.setPosition(6);
    target.setTextCursor(caret);
    CDataFieldListDlg list(&target);
    list.show();
    auto* lines = list.findChild<QListWidget*>();
    ASSERT_NE(lines, nullptr);
    for (const char* name : {"Edit", "Delete", "Insert Data Field in Text"})
        EXPECT_FALSE(named(&list, QString::fromLatin1(name))->isEnabled()) << name;

    const auto addField = [&list](const QString& kind) {
        whenShown<CDataFieldDlg>([kind](CDataFieldDlg& dialog) {
            click(&dialog, kind);
            click(&dialog, QStringLiteral("OK"));
        });
        click(&list, QStringLiteral("Add"));
    };
    addField(QStringLiteral("Year"));
    addField(QStringLiteral("Disc"));
    ASSERT_EQ(g_dataFields.size(), 2u);
    EXPECT_EQ(lines->currentRow(), 1) << "the added field is selected";
    EXPECT_TRUE(named(&list, QStringLiteral("Edit"))->isEnabled());

    lines->setCurrentRow(0);
    click(&list, QStringLiteral("Delete"));
    EXPECT_TRUE(messages.isEmpty()) << "Delete asks nothing";
    ASSERT_EQ(g_dataFields.size(), 1u);
    EXPECT_EQ(g_dataFields[0].Type, DATAFIELD::Disc);
    EXPECT_FALSE(named(&list, QStringLiteral("Delete"))->isEnabled()) << "nothing is selected after a delete";
    // The new default tag counts the fields present: it is the one left's.
    addField(QStringLiteral("Time"));
    ASSERT_EQ(g_dataFields.size(), 2u);
    EXPECT_EQ(g_dataFields[0].Tag, QStringLiteral("/*TAG2*/"));
    EXPECT_EQ(g_dataFields[1].Tag, QStringLiteral("/*TAG2*/"));

    // An edited label stands in the list of fields, not on its line; a cancelled edit is lost.
    lines->setCurrentRow(0);
    whenShown<CDataFieldDlg>([](CDataFieldDlg& dialog) {
        type(&dialog, QStringLiteral("Field Label:"), QStringLiteral("/*COPIES*/"));
        click(&dialog, QStringLiteral("OK"));
    });
    click(&list, QStringLiteral("Edit"));
    EXPECT_EQ(g_dataFields[0].Tag, QStringLiteral("/*COPIES*/"));
    EXPECT_EQ(lines->item(0)->text(), QStringLiteral("/*TAG2*/"));
    whenShown<CDataFieldDlg>([](CDataFieldDlg& dialog) {
        click(&dialog, QStringLiteral("Year"));
        click(&dialog, QStringLiteral("Cancel"));
    });
    click(&list, QStringLiteral("Edit"));
    EXPECT_EQ(g_dataFields[0].Type, DATAFIELD::Disc);

    click(&list, QStringLiteral("Insert Data Field in Text"));
    EXPECT_EQ(target.toPlainText(), QStringLiteral("Hello /*COPIES*/World"));
    EXPECT_FALSE(target.document()->isUndoAvailable()) << "the edit's own undo can't take the tag back";
    click(&list, QStringLiteral("Close"));
    EXPECT_FALSE(list.isVisible());
}

TEST_F(DataFieldDialogs, BrowseStartsInTheDocumentsFolderAndFillsTheFileName)
{
    const QString documents = Folders::GetSpecialFolder(QStringLiteral("Personal"));
    QDir().mkpath(documents);
    const QString path = QDir(documents).filePath(QStringLiteral("discs.csv"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("one,two,three,");
    file.close();

    CDataFieldDlg dialog;
    dialog.show();
    click(&dialog, QStringLiteral("Data File"));
    whenShown<QFileDialog>([documents, path](QFileDialog& files) {
        EXPECT_EQ(QDir(files.directory()).canonicalPath(), QDir(documents).canonicalPath());
        files.selectFile(path);
        static_cast<QDialog&>(files).accept();
    });
    click(&dialog, QStringLiteral("Browse"));
    EXPECT_EQ(dialog.m_field.FileName, path);
    EXPECT_EQ(named<QLineEdit>(&dialog, QStringLiteral("Data File Name"))->text(), path);
    QFile::remove(path);
}

} // namespace
