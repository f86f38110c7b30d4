#include "printing/PrivateCups.h"

#include "controls/CNumSpinCtrl.h"
#include "dialogs/CPrintPos.h"
#include "dialogs/CPrintPosButton.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "printing/AppPrinter.h"
#include "printing/CPrintView.h"
#include "templates/CTemplateFile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <functional>

namespace {

// The calibration dialog over the program's own templates, for the "Raw" queue of the printing
// tests' own scheduler, with an empty profile and the messages kept instead of shown.
class PrintPos : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cups.Running()) << cups.Failure().toStdString();
        cups.UseAgain();
        cups.RawPrinter().Clear();
        QFile::remove(Profile::FilePath());
        AppPrinter::SelectPrinter({}, {});
        MessageBox::SetPresenter([this](const QString& text, int style) {
            messages << text;
            return MessageBox::DefaultAnswer(style);
        });
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates/"));
        ASSERT_FALSE(templates.empty());
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        doc.SetTemplate(0);
        ASSERT_TRUE(doc.IsPrinterTemplate());
        doc.GetPrinter().Load(QStringLiteral("Raw"));
        ASSERT_EQ(doc.PrinterSection(), QStringLiteral("Raw"));
        Units(1);
    }
    void TearDown() override
    {
        Units(1);
        MessageBox::SetPresenter(nullptr);
        EXPECT_TRUE(messages.isEmpty()) << messages.join('\n').toStdString();
    }

    static void Units(int units) { Profile::WriteInt(QStringLiteral("Settings"), QStringLiteral("Units"), units); }
    int Offset(const char* key) const { return Profile::GetInt(QStringLiteral("Raw"), QString::fromLatin1(key), -1); }
    void SetOffsets(int x, int y)
    {
        Profile::WriteInt(QStringLiteral("Raw"), QStringLiteral("XOffset"), x);
        Profile::WriteInt(QStringLiteral("Raw"), QStringLiteral("YOffset"), y);
    }

    // Opens the dialog as the menu does; the step runs on it while it shows, and answers it.
    int Run(const std::function<void(CPrintPos&)>& step)
    {
        QTimer::singleShot(0, [&step] {
            auto* dialog = qobject_cast<CPrintPos*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            step(*dialog);
        });
        return CPrintPos::Run(view);
    }

    static QLineEdit* Edit(const QWidget& dialog, const QString& name)
    {
        for (QLineEdit* edit : dialog.findChildren<QLineEdit*>()) {
            if (edit->accessibleName() == name)
                return edit;
        }
        ADD_FAILURE() << name.toStdString();
        return nullptr;
    }
    static QPushButton* Button(const QWidget& dialog, const QString& text)
    {
        for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
            if (button->text() == text)
                return button;
        }
        ADD_FAILURE() << text.toStdString();
        return nullptr;
    }
    static void Type(QLineEdit* edit, const QString& text)
    {
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    static bool ButtonsEnabled(const QWidget& dialog)
    {
        int enabled = 0;
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            enabled += button->isEnabled() ? 1 : 0;
        return enabled == 3;
    }

    PrivateCups& cups = PrivateCups::Instance();
    QStringList messages;
    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
    CPrintView view{doc};
};

TEST_F(PrintPos, ShowsTheOffsetsInTheUsersUnitsAndOkAloneStoresThem)
{
    SetOffsets(27375, 27000);
    EXPECT_EQ(Run([&](CPrintPos& dialog) {
                  EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Calibrate Print Position"));
                  QStringList labels;
                  for (const QLabel* label : dialog.findChildren<QLabel*>())
                      labels << label->text();
                  EXPECT_TRUE(labels.contains(QStringLiteral("Raw"))) << "the printer's name";
                  EXPECT_EQ(labels.count(QStringLiteral("inches")), 2);
                  EXPECT_EQ(Edit(dialog, "X Offset")->text(), QStringLiteral("0.00375"));
                  EXPECT_EQ(Edit(dialog, "Y Offset")->text(), QStringLiteral("0."));
                  Type(Edit(dialog, "Y Offset"), QStringLiteral("0.1"));
                  dialog.reject();
              }),
              QDialog::Rejected);
    EXPECT_EQ(Offset("XOffset"), 27375) << "Cancel writes nothing";
    EXPECT_EQ(Offset("YOffset"), 27000);

    // Millimetres: shown with three decimals; a typed value is stored in inches, and one beyond
    // the range at its end.
    Units(0);
    EXPECT_EQ(Run([&](CPrintPos& dialog) {
                  EXPECT_EQ(Edit(dialog, "X Offset")->text(), QStringLiteral("0.095"));
                  Type(Edit(dialog, "X Offset"), QStringLiteral("6.858"));
                  Type(Edit(dialog, "Y Offset"), QStringLiteral("-9"));
                  QTest::mouseClick(Button(dialog, "OK"), Qt::LeftButton);
              }),
              QDialog::Accepted);
    EXPECT_EQ(Offset("XOffset"), int(std::trunc((6.858 / 25.4 + 0.27) * 100000)));
    EXPECT_EQ(Offset("YOffset"), 0);

    // Without a printer the dialog doesn't open.
    doc.GetPrinter().PrinterName.clear();
    EXPECT_EQ(CPrintPos::Run(view), QDialog::Rejected);
    EXPECT_EQ(messages, QStringList{CPrintPos::NoPrinterMessage});
    messages.clear();
}

TEST_F(PrintPos, ThePreviewShowsTheLetterUnderTheArrowAndTheSpinsStepByClicks)
{
    CPrintPos dialog(view);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    CPrintPosButton* preview = nullptr;
    for (CPrintPosButton* button : dialog.findChildren<CPrintPosButton*>()) {
        if (button->Horizontal)
            preview = button;
    }
    ASSERT_NE(preview, nullptr);
    const auto spins = dialog.findChildren<CNumSpinCtrl*>();
    ASSERT_EQ(spins.size(), 2);
    CNumSpinCtrl* xSpin = spins[0]->GetBuddy() == Edit(dialog, "X Offset") ? spins[0] : spins[1];
    CNumSpinCtrl* ySpin = xSpin == spins[0] ? spins[1] : spins[0];

    // The cell under the arrow's point: red just before it, blue just after; its letter is G when
    // the letter's outline crosses the middle column above the arrow (H has its stems either side).
    const auto letterCrossesMiddle = [&] {
        const QImage image = preview->grab().toImage();
        const int middle = image.width() / 2;
        EXPECT_EQ(image.pixelColor(middle - 4, 4), QColor(255, 0, 0));
        EXPECT_EQ(image.pixelColor(middle + 4, 4), QColor(0, 0, 255));
        int white = 0;
        for (int y = 0; y < image.height() / 2 - 45; ++y)
            white += image.pixelColor(middle, y) == QColor(Qt::white) ? 1 : 0;
        return white > 0;
    };
    EXPECT_TRUE(letterCrossesMiddle()) << "G";

    // Half a letter: the arrow on the edge between two cells, green before yellow.
    const auto up = [](CNumSpinCtrl* spin, int clicks) {
        for (int i = 0; i < clicks; ++i)
            QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(spin->width() / 2, 2));
    };
    up(xSpin, 8);
    const QImage half = preview->grab().toImage();
    EXPECT_EQ(half.pixelColor(half.width() / 2 - 4, 4), QColor(0, 255, 0));
    EXPECT_EQ(half.pixelColor(half.width() / 2 + 4, 4), QColor(255, 255, 0));
    up(xSpin, 8);
    EXPECT_EQ(Edit(dialog, "X Offset")->text(), QStringLiteral("0.06"));
    EXPECT_FALSE(letterCrossesMiddle()) << "H";

    // The Y axis runs the other way round: its up arrow lowers the value.
    up(ySpin, 1);
    EXPECT_EQ(Edit(dialog, "Y Offset")->text(), QStringLiteral("-0.00375"));
    dialog.reject();
}

TEST_F(PrintPos, TheAlignmentPrintRunsBothPicturesWithoutCorrectionWhileTheWindowGoesOn)
{
    SetOffsets(30000, 20000);
    QStringList seen;
    EXPECT_EQ(Run([&](CPrintPos& dialog) {
                  QLineEdit* x = Edit(dialog, "X Offset");
                  QPushButton* print = Button(dialog, "Print Alignment Image");
                  // While a job is waited for, the dialog takes typing; only its buttons are out of use.
                  QTimer during;
                  QObject::connect(&during, &QTimer::timeout, [&] {
                      if (!seen.isEmpty() || print->text() != QStringLiteral("Printing..."))
                          return;
                      seen << x->text() << (ButtonsEnabled(dialog) ? "enabled" : "disabled");
                      Type(x, QStringLiteral("0.0225"));
                      dialog.reject();
                  });
                  during.start(5);
                  QTest::mouseClick(print, Qt::LeftButton);
                  during.stop();
                  EXPECT_EQ(print->text(), QStringLiteral("Print Alignment Image"));
                  EXPECT_TRUE(ButtonsEnabled(dialog));
                  EXPECT_EQ(x->text(), QStringLiteral("0.0225"));
                  EXPECT_TRUE(dialog.isVisible()) << "Escape and Cancel wait for the print";
                  dialog.reject();
              }),
              QDialog::Rejected);
    EXPECT_EQ(seen, QStringList({"0.", "disabled"}));
    EXPECT_EQ(messages, QStringList{CPrintPos::TurnDiscMessage});
    messages.clear();
    // Both pictures printed; Cancel leaves the offsets at no correction.
    EXPECT_TRUE(cups.RawPrinter().WaitForJobs(2, 30000)) << cups.ErrorLog().toStdString();
    EXPECT_EQ(Offset("XOffset"), 27000);
    EXPECT_EQ(Offset("YOffset"), 27000);
}

TEST_F(PrintPos, AStoppedQueueEndsThePrintWithTheFailureAndGivesTheButtonsBack)
{
    ASSERT_TRUE(cups.Run(QStringLiteral("cupsdisable"), {QStringLiteral("Raw")}));
    EXPECT_EQ(Run([&](CPrintPos& dialog) {
                  QTest::mouseClick(Button(dialog, "Print Alignment Image"), Qt::LeftButton);
                  EXPECT_TRUE(ButtonsEnabled(dialog));
                  dialog.reject();
              }),
              QDialog::Rejected);
    EXPECT_EQ(messages, QStringList{CPrintPos::PrintErrorMessage}) << "no second print";
    messages.clear();
    cups.Run(QStringLiteral("cancel"), {QStringLiteral("-a"), QStringLiteral("Raw")});
    EXPECT_TRUE(cups.Run(QStringLiteral("cupsenable"), {QStringLiteral("Raw")}));
}

} // namespace
