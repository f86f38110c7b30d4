#include "printing/PrivateCups.h"

#include "dialogs/CMyPrintDialog.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "printing/AppPrinter.h"
#include "printing/DEVMODE.h"
#include "printing/DiscTray.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

const QString NoTray = QStringLiteral("This printer has no disc tray; the label prints on its paper.");

QComboBox* listNamed(QWidget* dialog, const QString& name)
{
    for (QComboBox* list : dialog->findChildren<QComboBox*>())
        if (list->accessibleName() == name)
            return list;
    ADD_FAILURE() << name.toStdString();
    return nullptr;
}

QPushButton* buttonNamed(QWidget* dialog, const QString& text)
{
    for (QPushButton* button : dialog->findChildren<QPushButton*>())
        if (button->text().remove('&') == text)
            return button;
    ADD_FAILURE() << text.toStdString();
    return nullptr;
}

// The print dialog of a disc template: the tray of a queue that has one is in the record that
// Properties shows, where the user's own choice then stands; a queue without one gets a note.
TEST(CMyPrintDialog, PutsTheDiscTrayIntoThePrintersSetUpOrSaysThereIsNone)
{
    PrivateCups& cups = PrivateCups::Instance();
    ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
    cups.UseAgain();
    QFile::remove(Profile::FilePath());
    AppPrinter::SelectPrinter({}, {});
    QStringList messages;
    MessageBox::SetPresenter([&messages](const QString& text, int style) {
        messages << text;
        return MessageBox::DefaultAnswer(style);
    });
    QString output;
    const QString uri = QStringLiteral("socket://127.0.0.1:%1").arg(cups.RawPrinter().Port());
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "EpsonCD", "-E", "-v", uri, "-D", "Epson CD", "-m",
                                     "gutenprint.5.3://escp2-r260/expert"}, &output)) << output.toStdString();

    std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    doc.OnNewDocument();
    doc.SetTemplate(0);
    ASSERT_TRUE(doc.IsPrinterTemplate());

    CMyPrintDialog dialog(CMyPrintDialog::Print);
    dialog.SetDocument(&doc);
    QString shownFirst;
    QTimer::singleShot(0, [&] {
        QLabel* note = nullptr;
        for (QLabel* label : dialog.findChildren<QLabel*>())
            if (label->text() == NoTray)
                note = label;
        ASSERT_NE(note, nullptr);
        EXPECT_TRUE(note->isVisible()) << "the default queue, Raw, has no tray";

        auto* printer = dialog.findChild<QComboBox*>();
        printer->setCurrentIndex(printer->findText("Epson CD"));
        EXPECT_FALSE(note->isVisible());
        QTimer::singleShot(0, [&] {
            QWidget* properties = QApplication::activeModalWidget();
            ASSERT_NE(properties, &dialog);
            QComboBox* source = listNamed(properties, "Media Source");
            QComboBox* size = listNamed(properties, "Media Size");
            if (source && size) {
                shownFirst = source->currentData().toString() + ' ' + size->currentData().toString();
                source->setCurrentIndex(source->findData("Manual"));
            }
            properties->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        QTest::mouseClick(buttonNamed(&dialog, "Properties"), Qt::LeftButton);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    ASSERT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(shownFirst, "CD CDCustom");

    // The user's source stands, here and when the job puts the tray in once more.
    QByteArray record = dialog.m_pd.hDevMode.value_or(QByteArray());
    EXPECT_EQ(DEVMODE::Option(record, "InputSlot"), "Manual");
    QList<SpoolerChoice> offered;
    ASSERT_TRUE(Spooler::GetOptionChoices("EpsonCD", &offered));
    EXPECT_FALSE(DiscTray::Apply(record, offered, doc));
    EXPECT_EQ(DEVMODE::Option(record, "InputSlot"), "Manual");

    cups.Run("lpadmin", {"-x", "EpsonCD"});
    MessageBox::SetPresenter(nullptr);
    EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();
}

} // namespace
