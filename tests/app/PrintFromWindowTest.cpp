#include "../printing/PrintSupport.h"

#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "app/CSendrillDlg.h"
#include "app/CommandIds.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CAdjustColorButton.h"
#include "dialogs/CMyPrintDialog.h"
#include "dialogs/CPrintStatus.h"
#include "dialogs/CPrinterPropertiesDlg.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/Profile.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

template <typename Widget>
Widget* withId(QWidget* parent, int id)
{
    for (Widget* widget : parent->findChildren<Widget*>()) {
        if (ControlId(widget) == id)
            return widget;
    }
    ADD_FAILURE() << "no control " << id;
    return nullptr;
}

QPushButton* button(QWidget* parent, const QString& text)
{
    for (QPushButton* push : parent->findChildren<QPushButton*>()) {
        if (push->text().remove('&') == text)
            return push;
    }
    ADD_FAILURE() << "no button " << text.toStdString();
    return nullptr;
}

// Replaces an edit's text as typed: all of it selected, then key by key.
void type(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    edit->selectAll();
    for (const QChar c : text)
        QTest::keyClick(edit, c.toLatin1());
}

// The designer on the tests' own scheduler, whose default queue "Raw" becomes its printer, with
// a red square on the label and a disc counter among the data fields.
class PrintFromWindow : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        Branding::Assign();
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        g_dataFields.clear();
        DATAFIELD disc;
        disc.Tag = "/*TAG1*/";
        disc.Type = DATAFIELD::Disc;
        disc.DiscNumber = 1;
        disc.DiscTotal = 99;
        g_dataFields.push_back(disc);

        app.m_strInstallDir = Folders::InstallDirectory();
        dlg = std::make_unique<CSendrillDlg>(app);
        ASSERT_TRUE(dlg->OnInitDialog());
        // Installed once started: the start itself takes the spooler's default printer.
        CPrinterSettings::SetSetupDialog(CMyPrintDialog::RunSetup);
        dlg->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dlg.get()));
        ASSERT_EQ(doc().GetPrinter().PrinterName, "Raw") << messages.join("\n").toStdString();
        addRedSquare(doc());
    }
    void TearDown() override
    {
        dlg.reset();
        CPrinterSettings::SetSetupDialog(nullptr);
        g_dataFields.clear();
        PrintingTest::TearDown();
    }

    CDrawDoc& doc() const { return *dlg->GetDocument(); }
    // Runs the command with its modal dialogs answered in turn, each answer being given the
    // next dialog that comes up modal (an answer may open and answer dialogs of its own).
    void command(int id, std::vector<std::function<void(QWidget*)>> answers)
    {
        auto next = std::make_shared<std::function<void()>>();
        auto remaining = std::make_shared<std::vector<std::function<void(QWidget*)>>>(std::move(answers));
        auto answered = std::make_shared<QPointer<QWidget>>();
        *next = [next, remaining, answered] {
            if (remaining->empty())
                return;
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || modal == *answered) {
                QTimer::singleShot(10, *next);
                return;
            }
            *answered = modal;
            auto answer = remaining->front();
            remaining->erase(remaining->begin());
            answer(modal);
            QTimer::singleShot(0, *next);
        };
        QTimer::singleShot(0, *next);
        dlg->OnCommand(id);
        EXPECT_TRUE(remaining->empty()) << remaining->size() << " dialogs never came";
    }

    CSendrillApp app;
    std::unique_ptr<CSendrillDlg> dlg;
};

TEST_F(PrintFromWindow, TheDialogPrintsTheChosenCopiesInTheColoursTyped)
{
    command(CommandIds::FilePrint, {
        [&](QWidget* print) {
            ASSERT_TRUE(qobject_cast<CMyPrintDialog*>(print));
            EXPECT_EQ(withId<QComboBox>(print, 1139)->currentText(), "Raw") << "the document's printer";
            EXPECT_FALSE(withId<CAdjustColorButton>(print, 1168)->GetBitmap().isNull());

            // The slider's small steps must fit twice before the end; the typed values are kept
            // as typed, past the slider's end too.
            QSlider* gamma = withId<QSlider>(print, 1162);
            auto* gammaEdit = withId<QLineEdit>(print, 1163);
            EXPECT_EQ(gammaEdit->text(), "1.00");
            gamma->setFocus();
            QTest::keyClick(gamma, Qt::Key_End);
            EXPECT_EQ(gammaEdit->text(), "3.00");
            QTest::keyClick(gamma, Qt::Key_Left);
            QTest::keyClick(gamma, Qt::Key_Right);
            EXPECT_EQ(gammaEdit->text(), "2.95");
            type(gammaEdit, "9.99");
            EXPECT_EQ(gamma->value(), 300);
            EXPECT_EQ(Profile::GetString("Raw", "Gamma"), "9.99");
            type(gammaEdit, "1");
            type(withId<QLineEdit>(print, 1165), "0");

            auto* copies = print->findChild<QSpinBox*>();
            copies->setFocus();
            copies->selectAll();
            QTest::keyClick(copies, Qt::Key_2);
            print->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        },
    });

    // One job of two pages, a counter per disc, the set-up kept for the document's printer.
    const QByteArray pdf = received(1);
    EXPECT_EQ(PrintOutput::PageCount(pdf), 2);
    EXPECT_EQ(g_dataFields[0].DiscNumber, 3u);
    EXPECT_TRUE(dlg->isEnabled());
    EXPECT_EQ(Profile::GetString("Raw", "Saturation"), "0");
    const QByteArray setUp = doc().GetPrinter().hDevMode.value_or(QByteArray());
    EXPECT_EQ(DEVMODE::Copies(setUp), 1) << "the queue always gets one copy";

    // No saturation: the red square printed grey.
    const QImage page = PrintOutput::Render(pdf, 40);
    bool red = false;
    bool grey = false;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor c = page.pixelColor(x, y);
            red = red || (c.red() > 200 && c.green() < 80);
            grey = grey || (c.red() < 120 && std::abs(c.red() - c.green()) < 12 && std::abs(c.red() - c.blue()) < 12);
        }
    }
    EXPECT_FALSE(red);
    EXPECT_TRUE(grey);
}

TEST_F(PrintFromWindow, CancelInTheStatusWindowStopsTheJobAfterTheDiscBeingPrinted)
{
    // Pressed as soon as the status window is there: the job looks between pages.
    QTimer canceller;
    QObject::connect(&canceller, &QTimer::timeout, [] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* status = qobject_cast<CPrintStatus*>(window); status && status->isVisible())
                status->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        }
    });
    canceller.start(0);
    command(CommandIds::FilePrint, {
        [](QWidget* print) {
            withId<QComboBox>(print, 1139);
            auto* copies = print->findChild<QSpinBox*>();
            copies->setValue(5);
            print->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        },
    });
    canceller.stop();
    EXPECT_EQ(g_dataFields[0].DiscNumber, 2u) << "one disc printed";
    EXPECT_TRUE(cups.RawPrinter().Jobs().isEmpty());
    EXPECT_TRUE(dlg->isEnabled());
}

TEST_F(PrintFromWindow, SetUpPropertiesPrintToFileAndQueuesThatFail)
{
    // Printer Setup: printer and Properties, nothing of the print; the choice is remembered.
    command(CommandIds::PrinterSetup, {
        [](QWidget* setup) {
            EXPECT_EQ(setup->findChild<CAdjustColorButton*>(), nullptr);
            EXPECT_EQ(setup->findChild<QSpinBox*>(), nullptr);
            withId<QComboBox>(setup, 1139)->setCurrentText("PDF printer");
            setup->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        },
    });
    EXPECT_EQ(Profile::GetString("Settings", "PrinterName"), "PDF printer");
    EXPECT_EQ(doc().PrinterSection(), "PDF printer");
    EXPECT_TRUE(QFile::exists(CPrinterSettings::DataDirectory() + "PDF printer"));

    // Print to file on the paper chosen under Properties: one page in the file, whatever the
    // copies, nothing sent.
    const QString path = folder.path() + "/label.prn";
    command(CommandIds::FilePrint, {
        [](QWidget* print) {
            EXPECT_EQ(withId<QComboBox>(print, 1139)->currentText(), "PDF printer");
            QTimer::singleShot(0, [] {
                QWidget* properties = QApplication::activeModalWidget();
                ASSERT_TRUE(qobject_cast<CPrinterPropertiesDlg*>(properties));
                for (QComboBox* list : properties->findChildren<QComboBox*>()) {
                    if (list->accessibleName() == "Page Size")
                        list->setCurrentText("US Letter");
                }
                properties->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
            });
            QTest::mouseClick(button(print, "Properties"), Qt::LeftButton);
            print->findChild<QSpinBox*>()->setValue(3);
            print->findChild<QCheckBox*>()->setChecked(true);
            print->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        },
        [&](QWidget* files) {
            auto* dialog = qobject_cast<QFileDialog*>(files);
            ASSERT_TRUE(dialog);
            dialog->selectFile(path);
            QMetaObject::invokeMethod(dialog, "accept");
        },
    });
    QSizeF paper;
    EXPECT_EQ(PrintOutput::PageCount(readFile(path), &paper), 1);
    EXPECT_EQ(paper, QSizeF(612, 792)) << "Letter, not the queue's A4";
    EXPECT_EQ(g_dataFields[0].DiscNumber, 2u);

    // A queue deleted while the dialog is open: the job can't start, and says so.
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Gone", "-E", "-v", "socket://127.0.0.1:9"}));
    command(CommandIds::FilePrint, {
        [&](QWidget* print) {
            withId<QComboBox>(print, 1139)->setCurrentText("Gone");
            ASSERT_TRUE(cups.Run("lpadmin", {"-x", "Gone"}));
            print->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        },
    });
    EXPECT_EQ(messages, QStringList{"Could not start print job."});
    messages.clear();
    EXPECT_TRUE(dlg->isEnabled());

    // No spooler at all: told, and nothing else happens.
    Spooler::UseServer("127.0.0.1:1");
    command(CommandIds::FilePrint, {});
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith("The print spooler can't be reached")) << messages[0].toStdString();
    messages.clear();
    EXPECT_EQ(g_dataFields[0].DiscNumber, 2u);
    EXPECT_TRUE(cups.RawPrinter().Jobs().isEmpty());
}

} // namespace
