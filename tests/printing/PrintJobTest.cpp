#include "PrintSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Profile.h"
#include "printing/CPrintView.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/RewriteStream.h"
#include "templates/CTemplateFile.h"

#include <QRegularExpression>

#include <optional>

namespace {

// A disc tray whose printed image starts half an inch from the left and an inch from the top.
const QByteArray Tray = "PRINTER\nTray\n\n4.724\n4.724\n0.5\n1\n"
                        "DISC\n1\nStandard\n2.362\n2.362\n4.65\n1.65\nENDOBJECT\nEND\n";

// The print view as the window layer will drive it: a print dialog that answers with the
// given records and flags, a file choice, and a status window that records what it shows.
class ScriptedView : public CPrintView {
public:
    using CPrintView::CPrintView;

    std::optional<PRINTDLG> dialog; // what the print dialog returns; none: cancelled
    std::optional<QString> printFile; // the file of a print to file; none: cancelled
    int stopAfterPage = 0;            // the cancel button, pressed during this page
    unsigned flagsShown = 0;
    QStringList status;
    QStringList progress;

protected:
    bool DoPrintDialog(PRINTDLG& pd) override
    {
        flagsShown = pd.Flags;
        if (!dialog)
            return false;
        pd.hDevMode = dialog->hDevMode;
        pd.hDevNames = dialog->hDevNames;
        pd.Flags |= dialog->Flags;
        return true;
    }
    bool GetPrintToFileName(QString* path) override
    {
        if (printFile)
            *path = *printFile;
        return printFile.has_value();
    }
    void BeginPrintStatus(const QString& title, const QString& text, int total) override
    {
        status << title << text << QString::number(total);
    }
    void SetPrintProgress(int, const QString& percent) override { progress << percent; }
    void EndPrintStatus() override { status << "closed"; }
    // A driver's stream would carry the disc printer's marker; this one adds it to the file.
    void OnEndPrinting(CPrintDC&, CPrintInfo&) override
    {
        QFile file(printFile.value_or(QString()));
        if (printFile && file.open(QIODevice::Append))
            file.write(QByteArray::fromHex("1B21000000000021"));
    }

public:
    bool AbortProc() override { return stopAfterPage == 0 || progress.size() < stopAfterPage; }
};

class PrintJobTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        g_dataFields.clear();
        DATAFIELD disc;
        disc.Tag = "/*TAG1*/";
        disc.Type = DATAFIELD::Disc;
        disc.DiscNumber = 1;
        disc.DiscTotal = 9;
        g_dataFields.push_back(disc);

        CTemplateFile tray;
        ASSERT_TRUE(tray.LoadTemplate(folder.write("tray.tmp", Tray)));
        templates.push_back(tray);
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        doc.SetTemplate(0);
        addRedSquare(doc);
        doc.SetModifiedFlag(false);
        doc.GetPrinter().Load("Raw");
        ASSERT_EQ(doc.GetPrinter().PrinterName, "Raw");
        ASSERT_TRUE(CPrinterSettings::GetPrinterHandles("Raw", &rawMode, &rawNames));
    }
    void TearDown() override
    {
        PrintingTest::TearDown();
        g_dataFields.clear();
    }

    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
    HGLOBAL rawMode, rawNames;
};

TEST_F(PrintJobTest, AnUnattendedLabelPrintsOneDiscAtTheCalibratedPlace)
{
    CPrintView view(doc);
    const int job = view.PrintJob(QString(), "Raw", false);
    ASSERT_GT(job, 0) << messages.join('\n').toStdString();
    EXPECT_EQ(finalState("Raw", job), Spooler::Completed);
    const QByteArray pdf = received(1);
    // The queue's paper, at its resolution.
    QSizeF size;
    EXPECT_EQ(PrintOutput::PageCount(pdf, &size), 1);
    const QSizeF off = size - CPrintDC::PaperOf(*rawMode).size(QPageSize::Point);
    EXPECT_TRUE(qAbs(off.width()) < 1 && qAbs(off.height()) < 1) << off.width() << " " << off.height();
    EXPECT_EQ(g_dataFields[0].DiscNumber, 2u);
    EXPECT_TRUE(doc.IsModified());

    // At 100 dots per inch: the template's origin (0.5, 1), the calibration's 0.0178, the disc's
    // centre 2.362 in, the square from 1 inch right of it; its middle row half an inch down.
    const QImage page = PrintOutput::Render(pdf, 100);
    ASSERT_FALSE(page.isNull());
    EXPECT_NEAR(PrintOutput::FirstRedColumn(page, 388), 388, 2);
    EXPECT_NEAR(PrintOutput::FirstRedColumn(page, 434), 388, 2);
    EXPECT_EQ(PrintOutput::FirstRedColumn(page, 332), -1) << "y grows upward";
    EXPECT_EQ(page.pixelColor(250, 388), QColor(Qt::white));

    // A calibrated tenth of an inch to the right and up; the vertical offset is scaled by the
    // horizontal resolution as well.
    Profile::WriteInt("Raw", "XOffset", 37000);
    Profile::WriteInt("Raw", "YOffset", 17000);
    const int second = view.PrintJob(QString(), "Raw", false);
    ASSERT_GT(second, job);
    const QImage moved = PrintOutput::Render(received(2), 100);
    EXPECT_NEAR(PrintOutput::FirstRedColumn(moved, 388), 398, 2);
    EXPECT_NEAR(PrintOutput::FirstRedColumn(moved, 332), 398, 2) << "the square's top edge moved up";
    EXPECT_EQ(PrintOutput::FirstRedColumn(moved, 432), -1) << "and so did its lower edge";
    EXPECT_EQ(g_dataFields[0].DiscNumber, 3u);
    EXPECT_EQ(appPrinter(), "Raw") << "the printer in force before the job is back";
}

TEST_F(PrintJobTest, InteractiveCopiesAreDiscsOfTheirOwnAndACancelStopsTheJob)
{
    ScriptedView view(doc);
    // Dismissed: nothing printed.
    EXPECT_EQ(view.PrintJob(QString(), QString(), false), -1);
    EXPECT_EQ(view.flagsShown, 0x4000Cu);

    // Three copies: one job of three pages, the driver told one copy, a counter per disc.
    PRINTDLG chosen;
    chosen.hDevMode = *rawMode;
    DEVMODE::SetCopies(*chosen.hDevMode, 3);
    chosen.hDevNames = rawNames;
    view.dialog = chosen;
    const int job = view.PrintJob(QString(), QString(), false);
    ASSERT_GT(job, 0);
    EXPECT_EQ(PrintOutput::PageCount(received(1)), 3);
    EXPECT_EQ(g_dataFields[0].DiscNumber, 4u);
    EXPECT_EQ(view.progress, QStringList({"33 %", "66 %", "100 %"}));
    EXPECT_EQ(view.status, QStringList({"Printing Tessarelle Label ...", "Printing Tessarelle Label  on Raw", "3",
                                        "closed"}));
    EXPECT_EQ(DEVMODE::Copies(*doc.GetPrinter().hDevMode), 1) << "the dialog's set-up is the document's now";

    // Cancelled during the second of five: the job is cancelled, two counters have moved.
    DEVMODE::SetCopies(*view.dialog->hDevMode, 5);
    view.progress.clear();
    view.stopAfterPage = 2;
    const int cancelled = view.PrintJob(QString(), QString(), false);
    ASSERT_GT(cancelled, job);
    EXPECT_EQ(finalState("Raw", cancelled), Spooler::Canceled);
    EXPECT_EQ(g_dataFields[0].DiscNumber, 6u);
    EXPECT_EQ(cups.RawPrinter().Jobs().size(), 1);

    // A damaged set-up with a negative count prints no disc instead of counting for ever.
    DEVMODE::SetCopies(*view.dialog->hDevMode, -4);
    view.stopAfterPage = 0;
    EXPECT_GT(view.PrintJob(QString(), QString(), false), 0);
    EXPECT_EQ(g_dataFields[0].DiscNumber, 6u);
}

TEST_F(PrintJobTest, PrintToFileWritesOnePageAndRewritesTheDiscPrintersStream)
{
    ScriptedView view(doc);
    PRINTDLG chosen;
    chosen.hDevMode = *rawMode;
    DEVMODE::SetCopies(*chosen.hDevMode, 4);
    chosen.hDevNames = DEVNAMES::Build("Driver", "Another Printer", "usb://another");
    chosen.Flags = PRINTDLG::PD_PRINTTOFILE;
    view.dialog = chosen;

    // The file dialog cancelled: nothing.
    EXPECT_EQ(view.PrintJob(QString(), QString(), false), -1);

    const QString plainPath = folder.path() + "/plain.prn";
    view.printFile = plainPath;
    EXPECT_EQ(view.PrintJob(QString(), QString(), false), 1);
    const QByteArray plain = readFile(plainPath);
    EXPECT_EQ(PrintOutput::PageCount(plain), 1) << "a file gets one page";
    EXPECT_EQ(g_dataFields[0].DiscNumber, 2u);

    const QString discPath = folder.path() + "/disc.prn";
    view.printFile = discPath;
    view.dialog->hDevNames = DEVNAMES::Build("Driver", DiscPrinterDeviceName, "usb://disc");
    g_dataFields[0].DiscNumber = 1;
    EXPECT_EQ(view.PrintJob(QString(), QString(), false), 1);
    const QByteArray disc = readFile(discPath);

    // The two documents differ in their time stamps only, until the disc printer's rewrite.
    static const QRegularExpression stamp(QStringLiteral("\\(D:[0-9+\\-Z']*\\)"));
    auto unstamped = [](QByteArray bytes) {
        return QString::fromLatin1(bytes).replace(stamp, QStringLiteral("(D:0)")).toLatin1();
    };
    EXPECT_TRUE(plain.endsWith(QByteArray::fromHex("1B21000000000021")));
    EXPECT_EQ(unstamped(disc), RewriteStreamBytes(unstamped(plain)));
    EXPECT_TRUE(cups.RawPrinter().Jobs().isEmpty()) << "a print to file sends nothing";
}

TEST_F(PrintJobTest, APictureTakesTheLabelsPlaceAndMovesNoCounter)
{
    const QString picture = writeBluePicture(folder);
    doc.SetBackColor(gfx::RGB(0, 255, 0));
    doc.SetModifiedFlag(false);
    const LabelBackground before = doc.GetBackground();

    // As the label's background, clamped and fitted into the disc, the objects left out.
    CPrintView view(doc);
    ASSERT_GT(view.PrintJob(picture, "Raw", false), 0);
    const QImage page = PrintOutput::Render(received(1), 100);
    EXPECT_EQ(PrintOutput::FirstRedColumn(page, 388), -1);
    const QColor inDisc = page.pixelColor(388, 388);
    EXPECT_TRUE(inDisc.blue() > 200 && inDisc.red() < 60 && inDisc.green() < 60) << inDisc.name().toStdString();

    // Unscaled and centred on the paper: one inch square around the tray's middle.
    ASSERT_GT(view.PrintJob(picture, "Raw", true), 0);
    const QImage alignment = PrintOutput::Render(received(2), 100);
    const int middle = 50 + 2 + 236;
    EXPECT_GT(alignment.pixelColor(middle, middle + 50).blue(), 240);
    EXPECT_EQ(alignment.pixelColor(middle + 60, middle + 50), QColor(Qt::white));

    // A picture that can't be read prints an empty page.
    ASSERT_GT(view.PrintJob(folder.path() + "/missing.png", "Raw", false), 0);
    EXPECT_EQ(PrintOutput::FirstRedColumn(PrintOutput::Render(received(3), 100), 388), -1);

    EXPECT_EQ(g_dataFields[0].DiscNumber, 1u);
    EXPECT_FALSE(doc.IsModified());
    const LabelBackground& after = doc.GetBackground();
    EXPECT_EQ(std::tie(after.ImageFile, after.BackColor, after.BackColor2, after.FitMode, after.WrapMode),
              std::tie(before.ImageFile, before.BackColor, before.BackColor2, before.FitMode, before.WrapMode));
}

} // namespace
