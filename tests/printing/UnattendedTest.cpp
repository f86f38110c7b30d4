#include "PrintSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"

#include <QDir>
#include <QRegularExpression>

namespace {

// The real program, printing unattended as a script starts it: no display, its own profile,
// the tests' scheduler.
class UnattendedTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + "Templates");
        ASSERT_FALSE(templates.empty());
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
            env.insert(name, home.path() + '/' + name);
        env.insert("HOME", home.path());
        // Qt complains on standard error of a runtime folder that others may read.
        const QString runtime = env.value("XDG_RUNTIME_DIR");
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    void TearDown() override
    {
        g_dataFields.clear();
        PrintingTest::TearDown();
    }

    CliRun run(const QStringList& arguments) { return runCli(arguments, "tessarelle", env); }

    // A project of the default template with a red square and a Disc field at 1 of 3.
    QString makeProject(const QString& path)
    {
        g_dataFields.clear();
        DATAFIELD disc;
        disc.Tag = "/*TAG1*/";
        disc.Type = DATAFIELD::Disc;
        disc.DiscTotal = 3;
        g_dataFields.push_back(disc);
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        doc.OnNewDocument();
        addRedSquare(doc);
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
        EXPECT_TRUE(doc.OnSaveDocument(path));
        g_dataFields.clear();
        return path;
    }

    // The Disc field's number as the project holds it.
    uint32_t discNumber(const QString& path)
    {
        g_dataFields.clear();
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        EXPECT_TRUE(doc.OnOpenDocument(path));
        return g_dataFields.empty() ? 0 : g_dataFields[0].DiscNumber;
    }

    // The newest job of a queue, as the scheduler lists it.
    int lastJob(const QString& queue)
    {
        QString output;
        EXPECT_TRUE(cups.Run("lpstat", {"-W", "all", "-o", queue}, &output));
        int last = 0;
        const QRegularExpression id(QStringLiteral("^%1-(\\d+)\\s").arg(queue),
                                           QRegularExpression::MultilineOption);
        auto matches = id.globalMatch(output.section(": ", 1));
        while (matches.hasNext())
            last = std::max(last, matches.next().captured(1).toInt());
        return last;
    }

    QTemporaryDir home;
    QProcessEnvironment env;
    std::vector<CTemplateFile> templates;
};

TEST_F(UnattendedTest, EachRunPrintsOneDiscAndSavesTheCounterBack)
{
    // Blanks and quotation marks in the path, capitals in its folder.
    const QString project = makeProject(folder.path() + "/Label Folder/my \"best\" disc.dst");
    for (int i = 1; i <= 5; ++i) {
        const CliRun result = run({"-PRINTER", "Raw", "-PRINT", project});
        const int job = lastJob("Raw");
        ASSERT_GT(job, 0);
        // A process's exit status holds the low eight bits of the job's number.
        EXPECT_EQ(result.exitCode, job & 0xFF) << "run " << i;
        EXPECT_TRUE(result.err.isEmpty()) << result.err.constData();
    }
    const QByteArray pdf = received(5);
    EXPECT_EQ(PrintOutput::PageCount(pdf), 1);
    // The default tray has its origin at the paper's corner: the square's left edge lies
    // 0.0178 + 2.362 + 1 inches in, its middle row half an inch below the disc's centre.
    EXPECT_NEAR(PrintOutput::FirstRedColumn(PrintOutput::Render(pdf, 100), 288), 338, 2);
    // 1, 2, 3, 1, 2 printed; 3 is next.
    EXPECT_EQ(discNumber(project), 3u);

    // A picture is printed as it is; one that can't be read prints an empty label.
    for (const QString& path : {writeBluePicture(folder), folder.path() + "/missing.png"}) {
        const CliRun result = run({"-PRINTER", "Raw", "-PRINT", path});
        EXPECT_EQ(result.exitCode, lastJob("Raw") & 0xFF);
        EXPECT_TRUE(result.err.isEmpty()) << result.err.constData();
    }
    received(7);
    const QColor middle = PrintOutput::Render(received(6), 100).pixelColor(338, 238);
    EXPECT_TRUE(middle.blue() > 200 && middle.red() < 60) << middle.name().toStdString();
}

TEST_F(UnattendedTest, FailuresEndTheRunWithTheirResultAndMessage)
{
    const QString project = makeProject(folder.path() + "/label.dst");
    const QByteArray saved = readFile(project);
    // A printer that can't be found (the spooler's errors are PrinterSettingsTest's), one that
    // refuses jobs: the project stays as it was.
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Closed", "-E", "-v", "socket://127.0.0.1:9"}));
    ASSERT_TRUE(cups.Run("cupsreject", {"Closed"}));
    for (const auto& [printer, code, text] : {std::tuple{"Nowhere", 255, "connect to Nowhere. Error 1030"},
                                              std::tuple{"Closed", 254, "Could not start print job."}}) {
        const CliRun result = run({"-PRINTER", printer, "-PRINT", project});
        EXPECT_EQ(result.exitCode, code) << printer;
        EXPECT_TRUE(result.err.contains(text)) << result.err.constData();
    }
    EXPECT_EQ(readFile(project), saved);

    // A stopped printer keeps the job: the disc counts as printed.
    ASSERT_TRUE(cups.Run("cupsaccept", {"Closed"}));
    ASSERT_TRUE(cups.Run("cupsdisable", {"Closed"}));
    const CliRun kept = run({"-PRINTER", "Closed", "-PRINT", project});
    const int held = lastJob("Closed");
    ASSERT_GT(held, 0) << kept.err.constData();
    EXPECT_EQ(kept.exitCode, held & 0xFF);
    EXPECT_EQ(discNumber(project), 2u);
    Spooler::JobState state = Spooler::Gone;
    EXPECT_TRUE(Spooler::GetJobState("Closed", held, &state) && state == Spooler::Pending) << state;
    Spooler::CancelJob("Closed", held);
    EXPECT_TRUE(cups.Run("lpadmin", {"-x", "Closed"}));

    // A project that can't be read: its message, and the empty label prints; the file stays.
    const QByteArray cut = saved.left(saved.size() / 2);
    for (const auto& [name, bytes, message] : {std::tuple{"damaged.dst", QByteArray("no project at all"),
                                                          "Unexpected file format."},
                                               std::tuple{"cut.dst", cut, ""}}) {
        const QString path = folder.write(name, bytes);
        const CliRun result = run({"-PRINTER", "Raw", "-PRINT", path});
        EXPECT_EQ(result.exitCode, lastJob("Raw") & 0xFF);
        EXPECT_TRUE(!result.err.isEmpty() && result.err.contains(message)) << result.err.constData();
        EXPECT_EQ(readFile(path), bytes);
    }
    EXPECT_TRUE(cups.RawPrinter().WaitForJobs(2, 30000));
}

} // namespace
