#include "CliRun.h"
#include "printing/PrintSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <signal.h>

namespace {

constexpr uint64_t FirstSerial = 1000;

// The print command on the printing tests' scheduler, over a project whose one text is a
// serial number in large type.
class PrintCommandTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + "Templates");
        g_dataFields.assign(1, DATAFIELD{});
        g_dataFields[0].Tag = "/*SN*/";
        g_dataFields[0].Type = DATAFIELD::SerialNumber;
        g_dataFields[0].Serial = FirstSerial;
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        auto text = std::make_unique<CDrawText>(CRect(-600, 300, 600, -300));
        text->SetTextProperties("No. /*SN*/", CDrawText::Straight, CDrawText::Centered, gfx::Color(255, 0, 0, 0), 0,
                                0, 0, 0);
        text->SetFont(text->m_fontName, 48, 0);
        doc.Add(std::move(text));
        ASSERT_TRUE(doc.OnSaveDocument(project));
        g_dataFields.clear();
    }
    void TearDown() override
    {
        g_dataFields.clear();
        PrintingTest::TearDown();
    }

    // The serial number the project holds for its next disc.
    uint64_t savedSerial()
    {
        g_dataFields.clear();
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        EXPECT_TRUE(doc.OnOpenDocument(project));
        return g_dataFields.empty() ? 0 : g_dataFields[0].Serial;
    }

    std::vector<CTemplateFile> templates;
    const QString project = folder.path() + "/series.dst";
};

// Every page of a PDF, rendered small.
QList<QImage> renderPages(const QByteArray& pdf)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("in.pdf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
        return {};
    file.close();
    QProcess process;
    process.start("pdftoppm", {"-r", "30", "-png", file.fileName(), dir.filePath("page")});
    process.waitForFinished(60000);
    QList<QImage> pages;
    QStringList names = QDir(dir.path()).entryList({"page*.png"}, QDir::Files, QDir::Name);
    for (const QString& name : names)
        pages.append(QImage(dir.filePath(name)).convertToFormat(QImage::Format_RGB32));
    return pages;
}

TEST_F(PrintCommandTest, SeriesPrintsEachDiscWithItsOwnValuesAndSavesTheNext)
{
    // To a file first: the PDF is written there and nothing reaches the printer.
    const QString pdfPath = folder.path() + "/out/three.pdf";
    QDir().mkpath(folder.path() + "/out");
    const CliRun toFile = runCli({"print", project, "--printer", "Raw", "--discs", "3", "--to-file", pdfPath});
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err.constData();
    EXPECT_TRUE(toFile.json()["jobs"].toArray().isEmpty());
    EXPECT_EQ(PrintOutput::PageCount(readFile(pdfPath)), 3);
    EXPECT_EQ(savedSerial(), FirstSerial + 3);

    const CliRun series = runCli({"print", project, "--printer", "Raw", "--discs", "10"});
    ASSERT_EQ(series.exitCode, 0) << series.err.constData();
    const QJsonObject summary = series.json().object();
    EXPECT_EQ(summary["pages"].toInt(), 10);
    EXPECT_EQ(summary["jobs"].toArray().size(), 1);
    EXPECT_EQ(summary["fields"][0]["Serial"].toInteger(), qint64(FirstSerial + 13));
    EXPECT_TRUE(series.err.contains("disc 1 of 10\n") && series.err.contains("disc 10 of 10\n"))
        << series.err.constData();
    EXPECT_EQ(savedSerial(), FirstSerial + 13);

    // The first job the printer received is the series of ten, each disc with its own number.
    const QList<QImage> pages = renderPages(received(1));
    ASSERT_EQ(pages.size(), 10);
    for (int i = 0; i < pages.size(); ++i) {
        EXPECT_GT(countPixels(pages[i], Qt::black, 60), 20) << "disc " << i + 1 << " shows no text";
        for (int j = 0; j < i; ++j)
            EXPECT_NE(pages[i], pages[j]) << "discs " << j + 1 << " and " << i + 1;
    }
}

TEST_F(PrintCommandTest, OnAQueueWithADiscTrayTheSeriesGoesToTheTray)
{
    // The project's template is the default tray; the queue a Gutenprint Epson with a CD slot.
    SocketPrinter printer;
    QString output;
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "SeriesCD", "-E", "-v", QString("socket://127.0.0.1:%1").arg(printer.Port()),
                                     "-m", "gutenprint.5.3://escp2-r260/expert"},
                         &output))
        << output.toStdString();
    const CliRun series = runCli({"print", project, "--printer", "SeriesCD", "--discs", "2"});
    ASSERT_EQ(series.exitCode, 0) << series.err.constData();
    const int job = series.json()["jobs"][0].toInt();
    QList<SpoolerOption> options;
    EXPECT_TRUE(Spooler::GetJobOptions("SeriesCD", job, &options));
    EXPECT_TRUE(options.contains(SpoolerOption("InputSlot", "CD")));
    // The driver took both discs and the printer received its own language.
    EXPECT_EQ(finalState("SeriesCD", job), Spooler::Completed) << cups.ErrorLog().toStdString();
    ASSERT_TRUE(printer.WaitForJobs(1, 60000));
    EXPECT_FALSE(printer.Jobs().first().contains("%PDF"));
    EXPECT_TRUE(cups.Run("lpadmin", {"-x", "SeriesCD"}));
}

TEST_F(PrintCommandTest, FailuresExitWithTheirReasonAndLeaveTheProjectAlone)
{
    const QByteArray before = readFile(project);
    const QString damaged = folder.write("damaged.dst", "no project at all");
    const struct {
        QStringList args;
        int exitCode;
        const char* says;
    } cases[] = {
        {{"print", project, "--printer", "Nowhere", "--discs", "5"}, 1, "Unable to connect to Nowhere"},
        {{"print", damaged, "--printer", "Raw"}, 1, "can't be read as a project"},
        {{"print", project, "--printer", "Raw", "--discs", "0"}, 2, "usage:"},
        {{"print", project, "--discs", "2"}, 2, "usage:"},
    };
    for (const auto& c : cases) {
        const CliRun result = runCli(c.args);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.args.join(' ').toStdString();
        EXPECT_TRUE(result.err.contains(c.says)) << result.err.constData();
        EXPECT_TRUE(result.out.isEmpty()) << result.out.constData();
    }
    // A queue that refuses jobs: the job can't start, and the summary says so.
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Closed", "-E", "-v", "socket://127.0.0.1:9"}));
    ASSERT_TRUE(cups.Run("cupsreject", {"Closed"}));
    const CliRun refused = runCli({"print", project, "--printer", "Closed", "--discs", "3"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("Could not start print job.")) << refused.err.constData();
    EXPECT_EQ(refused.json()["outcome"].toString(), "not started");
    EXPECT_EQ(refused.json()["pages"].toInt(), 0);
    EXPECT_TRUE(cups.Run("lpadmin", {"-x", "Closed"}));

    EXPECT_EQ(readFile(project), before);
    EXPECT_EQ(readFile(damaged), "no project at all");
}

TEST_F(PrintCommandTest, InterruptStopsAfterTheDiscCancelsTheJobAndKeepsItsCounters)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationDirPath() + "/tessarelle-cli",
                  {"print", project, "--printer", "Raw", "--discs", "1000"});
    ASSERT_TRUE(process.waitForStarted());
    process.setReadChannel(QProcess::StandardError);
    QByteArray progress;
    const QDeadlineTimer deadline(60000);
    while (!progress.contains("disc 1 of 1000\n") && !deadline.hasExpired() && process.state() == QProcess::Running) {
        process.waitForReadyRead(1000);
        progress += process.readAllStandardError();
    }
    ASSERT_TRUE(progress.contains("disc 1 of 1000\n")) << progress.constData();
    ::kill(pid_t(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(60000));

    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 128 + SIGINT);
    CliRun run;
    run.out = process.readAllStandardOutput();
    const QJsonObject summary = run.json().object();
    const int pages = summary["pages"].toInt();
    EXPECT_GE(pages, 1);
    EXPECT_LT(pages, 1000);
    EXPECT_EQ(summary["outcome"].toString(), "stopped");
    ASSERT_EQ(summary["jobs"].toArray().size(), 1);
    EXPECT_EQ(finalState("Raw", summary["jobs"][0].toInt()), Spooler::Canceled);
    EXPECT_EQ(savedSerial(), FirstSerial + uint64_t(pages));
}

} // namespace
