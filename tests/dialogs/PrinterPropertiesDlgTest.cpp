#include "dialogs/CPrinterPropertiesDlg.h"
#include "platform/MessageBox.h"
#include "printing/DEVMODE.h"

#include "../printing/PrivateCups.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {

// Answers the dialog that the next call opens, once it shows.
void whenShown(std::function<void(CPrinterPropertiesDlg&)> answer, int attempts = 500)
{
    QTimer::singleShot(10, [answer, attempts] {
        if (auto* dialog = qobject_cast<CPrinterPropertiesDlg*>(QApplication::activeModalWidget()))
            answer(*dialog);
        else if (attempts > 0)
            whenShown(answer, attempts - 1);
        else
            ADD_FAILURE() << "no dialog showed";
    });
}

QComboBox* list(const QWidget& dialog, const QString& name)
{
    for (QComboBox* combo : dialog.findChildren<QComboBox*>())
        if (combo->accessibleName() == name)
            return combo;
    ADD_FAILURE() << "no list named " << name.toStdString();
    return nullptr;
}

// Picks an entry with the arrow keys, as a user does in a closed list.
void choose(QComboBox* combo, const QString& text)
{
    const int row = combo->findText(text);
    ASSERT_GE(row, 0) << text.toStdString();
    combo->setFocus();
    for (int keys = combo->count(); combo->currentIndex() != row && keys > 0; --keys)
        QTest::keyClick(combo, combo->currentIndex() < row ? Qt::Key_Down : Qt::Key_Up);
}

void press(const QWidget& dialog, QDialogButtonBox::StandardButton which)
{
    QPushButton* button = dialog.findChild<QDialogButtonBox*>()->button(which);
    QTest::mouseClick(button, Qt::LeftButton);
}

class PrinterPropertiesDlgTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
        cups.UseAgain();
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages << text;
            return int(MessageBox::IdOk);
        });
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        cups.UseAgain();
    }

    PrivateCups& cups = PrivateCups::Instance();
    QStringList messages;
};

TEST_F(PrinterPropertiesDlgTest, ChoicesGoIntoTheRecordOnOkOnly)
{
    SpoolerPrinter pdf;
    ASSERT_TRUE(Spooler::GetPrinter("PDF", &pdf));
    QByteArray record = DEVMODE::For(pdf);
    DEVMODE::SetCopies(record, 3);
    const QByteArray before = record;

    // The record's choice shows; a size picked from the list is forgotten
    // on Cancel and kept on OK, the hidden PageRegion following it, with every other line as
    // it was.
    const auto pickLetter = [](CPrinterPropertiesDlg& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "PDF printer Properties");
        QComboBox* size = list(dialog, "Page Size");
        ASSERT_NE(size, nullptr);
        EXPECT_EQ(size->currentText().toStdString(), "A4");
        choose(size, "US Letter");
        EXPECT_EQ(size->currentText().toStdString(), "US Letter");
    };
    whenShown([&](CPrinterPropertiesDlg& dialog) {
        pickLetter(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_FALSE(CPrinterPropertiesDlg::Run(nullptr, "PDF", "PDF printer", &record));
    EXPECT_EQ(record.toStdString(), before.toStdString());

    whenShown([&](CPrinterPropertiesDlg& dialog) {
        pickLetter(dialog);
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(CPrinterPropertiesDlg::Run(nullptr, "PDF", "PDF printer", &record));
    QByteArray expected = before;
    DEVMODE::SetOption(expected, "PageSize", "Letter");
    DEVMODE::SetOption(expected, "PageRegion", "Letter");
    EXPECT_EQ(record.toStdString(), expected.toStdString());

    whenShown([&](CPrinterPropertiesDlg& dialog) {
        EXPECT_EQ(list(dialog, "Page Size")->currentText().toStdString(), "US Letter");
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(CPrinterPropertiesDlg::Run(nullptr, "PDF", "PDF printer", &record));
    EXPECT_EQ(record.toStdString(), expected.toStdString());
    EXPECT_TRUE(messages.isEmpty());

    // A queue that is gone, or a spooler that is, is said so, and nothing opens.
    EXPECT_FALSE(CPrinterPropertiesDlg::Run(nullptr, "Nowhere", "Nowhere", &record));
    Spooler::UseServer("127.0.0.1:1");
    EXPECT_FALSE(CPrinterPropertiesDlg::Run(nullptr, "PDF", "PDF printer", &record));
    EXPECT_EQ(record.toStdString(), expected.toStdString());
    ASSERT_EQ(messages.size(), 2);
    EXPECT_TRUE(messages[0].startsWith("Can't read the options of Nowhere: ")) << messages[0].toStdString();
    EXPECT_TRUE(messages[1].startsWith("Can't read the options of PDF printer: ")) << messages[1].toStdString();
}

} // namespace
