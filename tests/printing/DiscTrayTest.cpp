#include "PrintSupport.h"

#include "document/CDrawDoc.h"
#include "platform/Profile.h"
#include "printing/CPrintDC.h"
#include "printing/CPrintView.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/DiscTray.h"
#include "templates/CTemplateFile.h"

#include <QHash>

#include <memory>

namespace {

// A standard disc on a tray page whose printed image starts half an inch from the left and an
// inch from the top of the paper.
const QByteArray Tray = "PRINTER\nTray\n\n4.724\n4.724\n0.5\n1\n"
                        "DISC\n1\nStandard\n2.362\n2.362\n4.65\n1.65\nENDOBJECT\nEND\n";
const QByteArray Sheet = "SHEET\nSheet\n\n8.5\n11\n1\n0\n0\n"
                         "DISC\n1\nTop\n4.25\n3\n4.65\n1.65\nENDOBJECT\nEND\n";

// The PPD a driverless printer with a disc tray gets: disc sizes, a disc source and type.
const QByteArray DriverlessPpd = R"PPD(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "DISC.PPD"
*Manufacturer: "Test"
*Product: "(Disc)"
*ModelName: "Driverless disc printer"
*ShortNickName: "Driverless disc printer"
*NickName: "Driverless disc printer"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*Throughput: "1"
*cupsFilter: "application/vnd.cups-pdf 0 -"
*OpenUI *PageSize/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize Disc_8cm_18x80mm/Disc 80 mm: "<</PageSize[227 227]>>setpagedevice"
*PageSize Disc_12cm_18x120mm/Disc 120 mm: "<</PageSize[340 340]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion Disc_8cm_18x80mm/Disc 80 mm: "<</PageSize[227 227]>>setpagedevice"
*PageRegion Disc_12cm_18x120mm/Disc 120 mm: "<</PageSize[340 340]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "0 0 595 842"
*ImageableArea Disc_8cm_18x80mm/Disc 80 mm: "0 0 227 227"
*ImageableArea Disc_12cm_18x120mm/Disc 120 mm: "0 0 340 340"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*PaperDimension Disc_8cm_18x80mm/Disc 80 mm: "227 227"
*PaperDimension Disc_12cm_18x120mm/Disc 120 mm: "340 340"
*OpenUI *InputSlot/Media Source: PickOne
*OrderDependency: 10 AnySetup *InputSlot
*DefaultInputSlot: Auto
*InputSlot Auto/Automatic: ""
*InputSlot Disc/Disc: ""
*CloseUI: *InputSlot
*OpenUI *MediaType/Media Type: PickOne
*OrderDependency: 10 AnySetup *MediaType
*DefaultMediaType: Stationery
*MediaType Stationery/Plain Paper: ""
*MediaType DiscGlossy/Glossy Disc: ""
*CloseUI: *MediaType
*DefaultFont: Courier
)PPD";

QHash<QString, QString> jobOptions(const QString& queue, int job)
{
    QList<SpoolerOption> options;
    EXPECT_TRUE(Spooler::GetJobOptions(queue, job, &options)) << Spooler::ErrorText().toStdString();
    QHash<QString, QString> byName;
    for (const SpoolerOption& option : options)
        byName.insert(option.first, option.second);
    return byName;
}

SpoolerChoice choice(const QString& keyword, const QStringList& values, const QString& preset)
{
    SpoolerChoice option{keyword, keyword, "General", {}, preset};
    for (const QString& value : values)
        option.choices.append({value, value});
    return option;
}

// A print view whose print dialog answers with the given records and prints to a file.
class ToFileView : public CPrintView {
public:
    using CPrintView::CPrintView;
    PRINTDLG chosen;
    QString path;

protected:
    bool DoPrintDialog(PRINTDLG& pd) override
    {
        pd.hDevMode = chosen.hDevMode;
        pd.hDevNames = chosen.hDevNames;
        pd.Flags |= PRINTDLG::PD_PRINTTOFILE;
        return true;
    }
    bool GetPrintToFileName(QString* file) override
    {
        *file = path;
        return true;
    }
};

// Gutenprint queues of an Epson with a disc tray and of one without, and a driverless disc
// printer's PPD, each on a network printer of its own, made once for all tests.
class DiscTrayTest : public PrintingTest {
protected:
    static inline std::unique_ptr<SocketPrinter> trayPrinter, paperPrinter, driverlessPrinter;

    void SetUp() override
    {
        PrintingTest::SetUp();
        if (!trayPrinter) {
            trayPrinter = std::make_unique<SocketPrinter>();
            paperPrinter = std::make_unique<SocketPrinter>();
            driverlessPrinter = std::make_unique<SocketPrinter>();
            const auto uri = [](const SocketPrinter& printer) {
                return QStringLiteral("socket://127.0.0.1:%1").arg(printer.Port());
            };
            QString output;
            ASSERT_TRUE(cups.Run("lpadmin", {"-p", "EpsonCD", "-E", "-v", uri(*trayPrinter), "-m",
                                             "gutenprint.5.3://escp2-r260/expert"}, &output)) << output.toStdString();
            ASSERT_TRUE(cups.Run("lpadmin", {"-p", "EpsonPaper", "-E", "-v", uri(*paperPrinter), "-m",
                                             "gutenprint.5.3://escp2-c80/expert"}, &output)) << output.toStdString();
            ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Driverless", "-E", "-v", uri(*driverlessPrinter), "-P",
                                             folder.write("disc.ppd", DriverlessPpd)}, &output)) << output.toStdString();
        }
        trayPrinter->Clear();
        paperPrinter->Clear();
        driverlessPrinter->Clear();

        for (const QByteArray& text : {Tray, Sheet}) {
            CTemplateFile file;
            ASSERT_TRUE(file.LoadTemplate(folder.write("t.tmp", text)));
            templates.push_back(file);
        }
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        doc.SetTemplate(0);
        addRedSquare(doc);
    }

    // The queues go with the tests, which other tests' lists of queues don't know of.
    static void TearDownTestSuite()
    {
        for (const char* queue : {"EpsonCD", "EpsonPaper", "Driverless"})
            PrivateCups::Instance().Run("lpadmin", {"-x", queue});
        trayPrinter.reset();
        paperPrinter.reset();
        driverlessPrinter.reset();
    }

    // Prints the label unattended on the queue as the document's printer; the job's number.
    int printOn(const QString& queue)
    {
        doc.GetPrinter().Load(queue);
        CPrintView view(doc);
        const int job = view.PrintJob(QString(), queue, false);
        EXPECT_GT(job, 0) << messages.join('\n').toStdString();
        EXPECT_EQ(finalState(queue, job), Spooler::Completed) << cups.ErrorLog().toStdString();
        return job;
    }

    std::vector<CTemplateFile> templates;
    CDrawDoc doc;
};

TEST_F(DiscTrayTest, GutenprintJobsGoToTheTrayWithTheLabelsDiametersOrPrintOnPaper)
{
    // A standard disc, 4.65 inches (335 points) across: the custom tray page with the driver's
    // ring masked to the label's, down to the hub.
    const int job = printOn("EpsonCD");
    QHash<QString, QString> options = jobOptions("EpsonCD", job);
    EXPECT_EQ(options.value("InputSlot"), "CD");
    EXPECT_EQ(options.value("PageSize"), "CDCustom");
    EXPECT_EQ(options.value("StpCDOuterDiameter"), "335");
    EXPECT_EQ(options.value("StpCDInnerDiameter"), "119");
    EXPECT_EQ(options.value("StpCDInnerRadius"), "Small");
    // The driver took them: the printer received its own language, not the PDF.
    ASSERT_TRUE(trayPrinter->WaitForJobs(1, 60000)) << cups.ErrorLog().toStdString();
    const QByteArray escp = trayPrinter->Jobs().first();
    EXPECT_FALSE(escp.contains("%PDF"));
    EXPECT_TRUE(escp.contains("\x1b@")) << "an ESC/P reset";

    // The user's diameters: a smaller disc fits the 5 inch page.
    doc.SetOuterDia(4.5, false);
    doc.SetInnerDia(1.7, false);
    const int second = printOn("EpsonCD");
    ASSERT_GT(second, job);
    options = jobOptions("EpsonCD", second);
    EXPECT_EQ(options.value("PageSize"), "CD5Inch");
    EXPECT_EQ(options.value("StpCDOuterDiameter"), "324");
    EXPECT_EQ(options.value("StpCDInnerRadius"), "None");

    // Without a tray the job prints on the queue's paper, as before.
    const int paper = printOn("EpsonPaper");
    options = jobOptions("EpsonPaper", paper);
    EXPECT_FALSE(options.contains("InputSlot"));
    EXPECT_FALSE(options.value("PageSize").startsWith("CD"));
    ASSERT_TRUE(paperPrinter->WaitForJobs(1, 60000)) << cups.ErrorLog().toStdString();
    EXPECT_FALSE(paperPrinter->Jobs().first().contains("%PDF"));

    // A sheet template is no disc on a tray.
    doc.SetTemplate(1);
    const int sheet = printOn("EpsonCD");
    EXPECT_NE(jobOptions("EpsonCD", sheet).value("InputSlot"), "CD");
}

TEST_F(DiscTrayTest, ADriverlessTrayPageIsTheDiscsSquareCentredOnTheDisc)
{
    // The dialog's record, printed on the driverless queue: disc source, the 12 cm disc's page
    // and a disc media type, to the printer through the spooler.
    const int job = printOn("Driverless");
    const QHash<QString, QString> options = jobOptions("Driverless", job);
    EXPECT_EQ(options.value("InputSlot"), "Disc");
    EXPECT_EQ(options.value("PageSize"), "Disc_12cm_18x120mm");
    EXPECT_EQ(options.value("MediaType"), "DiscGlossy");
    ASSERT_TRUE(driverlessPrinter->WaitForJobs(1, 30000));
    const QByteArray pdf = driverlessPrinter->Jobs().first();

    // 120 mm square; the disc's centre at the page's centre whatever the template's origin, the
    // square one to two inches right of it and one inch down; a calibration moves it on top.
    QSizeF size;
    ASSERT_EQ(PrintOutput::PageCount(pdf, &size), 1);
    EXPECT_NEAR(size.width(), 340.2, 1);
    EXPECT_NEAR(size.height(), 340.2, 1);
    const QImage page = PrintOutput::Render(pdf, 100);
    const int centre = 236;
    EXPECT_NEAR(PrintOutput::FirstRedColumn(page, centre + 50), centre + 100, 2);
    EXPECT_EQ(PrintOutput::FirstRedColumn(page, centre - 10), -1);
    EXPECT_NEAR(PrintOutput::FirstRedColumn(page, centre + 10), centre + 100, 2);

    // Interactive, to a file, on Gutenprint's 5 inch page with a tenth of an inch calibrated
    // to the right and up.
    doc.SetOuterDia(4.5, false);
    doc.GetPrinter().Load("EpsonCD");
    Profile::WriteInt(doc.PrinterSection(), "XOffset", 37000);
    Profile::WriteInt(doc.PrinterSection(), "YOffset", 17000);
    ToFileView view(doc);
    HGLOBAL devMode, devNames;
    ASSERT_TRUE(CPrinterSettings::GetPrinterHandles("EpsonCD", &devMode, &devNames));
    view.chosen.hDevMode = devMode;
    view.chosen.hDevNames = devNames;
    view.path = folder.path() + "/disc.prn";
    ASSERT_EQ(view.PrintJob(QString(), QString(), false), 1);
    const QByteArray printed = readFile(view.path);
    ASSERT_EQ(PrintOutput::PageCount(printed, &size), 1);
    EXPECT_NEAR(size.width(), 329, 1);
    EXPECT_NEAR(size.height(), 329, 1);
    const QImage tray = PrintOutput::Render(printed, 100);
    const int x = 457 / 2 + 10, y = 457 / 2 - 10;
    EXPECT_NEAR(PrintOutput::FirstRedColumn(tray, y + 50), x + 100, 2);
    EXPECT_EQ(PrintOutput::FirstRedColumn(tray, y - 5), -1) << "moved up by the calibration";
    EXPECT_NEAR(PrintOutput::FirstRedColumn(tray, y + 5), x + 100, 2);
    EXPECT_EQ(DEVMODE::Option(*doc.GetPrinter().hDevMode, "PageSize"), "CD5Inch") << "kept as the printer's set-up";
}

TEST(DiscTray, WhatEachQueueOffersAndWhatTheUserChose)
{
    // HP: the tray and the sizes of its discs.
    const QList<SpoolerChoice> hp = {choice("PageSize", {"Letter", "CDDVD80", "CDDVD120"}, "Letter"),
                                     choice("InputSlot", {"Auto", "Tray1", "CDDVDTray"}, "Auto")};
    QByteArray record = DEVMODE::Build({{"InputSlot", "Auto"}, {"PageSize", "Letter"}, {"PageRegion", "Letter"}});
    ASSERT_TRUE(DiscTray::Apply(record, hp, 4.65, 1.65));
    EXPECT_EQ(DEVMODE::Options(record), QList<SpoolerOption>({{"InputSlot", "CDDVDTray"}, {"PageSize", "CDDVD120"},
                                                              {"PageRegion", "CDDVD120"}}));
    EXPECT_NEAR(CPrintDC::PaperOf(record).size(QPageSize::Millimeter).width(), 120, 0.5);
    QByteArray mini = DEVMODE::Build({{"InputSlot", "Auto"}});
    ASSERT_TRUE(DiscTray::Apply(mini, hp, 3.1, 0.9));
    EXPECT_EQ(DEVMODE::Option(mini, "PageSize"), "CDDVD80");

    // A disc page already chosen stays; another source than the queue's default is the user's.
    QByteArray chosen = DEVMODE::Build({{"InputSlot", "CDDVDTray"}, {"PageSize", "CDDVD80"}});
    ASSERT_TRUE(DiscTray::Apply(chosen, hp, 4.65, 1.65));
    EXPECT_EQ(DEVMODE::Option(chosen, "PageSize"), "CDDVD80");
    QByteArray paper = DEVMODE::Build({{"InputSlot", "Tray1"}, {"PageSize", "Letter"}});
    const QByteArray before = paper;
    EXPECT_FALSE(DiscTray::Apply(paper, hp, 4.65, 1.65));
    EXPECT_EQ(paper, before);

    // A driverless printer without a PPD: disc media by their outer diameter, a disc type.
    const QList<SpoolerChoice> ipp = {
        choice("media", {"iso_a4_210x297mm", "disc_12cm_18x120mm", "disc_8cm_18x80mm"}, "iso_a4_210x297mm"),
        choice("media-source", {"main", "disc"}, "main"),
        choice("media-type", {"stationery", "disc-glossy", "disc"}, "stationery")};
    QByteArray driverless = DEVMODE::Build({{"media", "iso_a4_210x297mm"}});
    EXPECT_TRUE(DiscTray::Offers(ipp));
    ASSERT_TRUE(DiscTray::Apply(driverless, ipp, 4.65, 1.65));
    EXPECT_EQ(DEVMODE::Options(driverless), QList<SpoolerOption>({{"media", "disc_12cm_18x120mm"},
                                                                  {"media-source", "disc"}, {"media-type", "disc"}}));
    EXPECT_NEAR(CPrintDC::PaperOf(driverless).size(QPageSize::Millimeter).height(), 120, 0.5);

    // Disc sizes without a disc source are no tray (Gutenprint's Stylus C80 lists CD sizes).
    const QList<SpoolerChoice> noTray = {choice("PageSize", {"Letter", "CD5Inch"}, "Letter")};
    QByteArray plain = DEVMODE::Build({{"PageSize", "Letter"}});
    EXPECT_FALSE(DiscTray::Offers(noTray));
    EXPECT_FALSE(DiscTray::Apply(plain, noTray, 4.65, 1.65));
    EXPECT_EQ(DEVMODE::Option(plain, "PageSize"), "Letter");
}

} // namespace
