#include "PrintSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>

namespace {

// What one run of the program gave.
struct RunResult {
    int exitCode = -1000;
    QString errors;
};

// The real program, printing unattended as a script starts it: no display, its own profile,
// the tests' scheduler.
class UnattendedTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        program = QCoreApplication::applicationDirPath() + "/tessarelle";
        ASSERT_TRUE(QFile::exists(program));
        templates = CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + "Templates");
        ASSERT_FALSE(templates.empty());
    }
    void TearDown() override
    {
        g_dataFields.clear();
        PrintingTest::TearDown();
    }

    RunResult run(const QStringList& arguments, const QString& server = QString())
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            env.remove(name);
        env.insert("CUPS_SERVER", server.isEmpty() ? cups.Server() : server);
        env.insert("XDG_CONFIG_HOME", home.path() + "/config");
        env.insert("XDG_DATA_HOME", home.path() + "/data");
        env.insert("HOME", home.path());
        QDir().mkpath(home.path() + "/runtime");
        QFile::setPermissions(home.path() + "/runtime", QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                            QFileDevice::ExeOwner);
        env.insert("XDG_RUNTIME_DIR", home.path() + "/runtime");
        QProcess process;
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(home.path());
        process.start(program, arguments);
        RunResult result;
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished();
            ADD_FAILURE() << "the program did not end";
            return result;
        }
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        result.exitCode = process.exitCode();
        result.errors = QString::fromLocal8Bit(process.readAllStandardError());
        return result;
    }

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
    QString program;
    std::vector<CTemplateFile> templates;
};

TEST_F(UnattendedTest, EachRunPrintsOneDiscAndSavesTheCounterBack)
{
    // Blanks and quotation marks in the path, capitals in its folder.
    const QString project = makeProject(folder.path() + "/Label Folder/my \"best\" disc.dst");
    for (int i = 1; i <= 5; ++i) {
        const RunResult result = run({"-PRINTER", "Raw", "-PRINT", project});
        const int job = lastJob("Raw");
        ASSERT_GT(job, 0);
        // A process's exit status holds the low eight bits of the job's number.
        EXPECT_EQ(result.exitCode, job & 0xFF) << "run " << i;
        EXPECT_TRUE(result.errors.isEmpty()) << result.errors.toStdString();
    }
    ASSERT_TRUE(cups.RawPrinter().WaitForJobs(5, 30000));
    const QByteArray pdf = cups.RawPrinter().Jobs().value(4);
    EXPECT_EQ(PrintOutput::PageCount(pdf), 1);
    // The default tray has its origin at the paper's corner: the square's left edge lies
    // 0.0178 + 2.362 + 1 inches in, its middle row half an inch below the disc's centre.
    EXPECT_NEAR(PrintOutput::FirstRedColumn(PrintOutput::Render(pdf, 100), 288), 338, 2);
    // 1, 2, 3, 1, 2 printed; 3 is next.
    EXPECT_EQ(discNumber(project), 3u);

    // A picture is printed as it is; one that can't be read prints an empty label.
    QImage blue(300, 300, QImage::Format_RGB32);
    blue.fill(QColor(0, 0, 255));
    const QString picture = folder.path() + "/picture.png";
    ASSERT_TRUE(blue.save(picture));
    for (const QString& path : {picture, folder.path() + "/missing.png"}) {
        const RunResult result = run({"-PRINTER", "Raw", "-PRINT", path});
        EXPECT_EQ(result.exitCode, lastJob("Raw") & 0xFF);
        EXPECT_TRUE(result.errors.isEmpty()) << result.errors.toStdString();
    }
    ASSERT_TRUE(cups.RawPrinter().WaitForJobs(7, 30000));
    const QColor middle = PrintOutput::Render(cups.RawPrinter().Jobs().value(5), 100).pixelColor(338, 238);
    EXPECT_TRUE(middle.blue() > 200 && middle.red() < 60) << middle.name().toStdString();
}

TEST_F(UnattendedTest, FailuresEndTheRunWithTheirResultAndMessage)
{
    const QString project = makeProject(folder.path() + "/label.dst");
    const QByteArray saved = readFile(project);
    const auto expectFailure = [&](const QString& printer, const QString& server, int code, const QString& text) {
        const RunResult result = run({"-PRINTER", printer, "-PRINT", project}, server);
        EXPECT_EQ(result.exitCode, code) << printer.toStdString();
        EXPECT_TRUE(result.errors.contains(text)) << result.errors.toStdString();
    };
    expectFailure("Nowhere", QString(), 255, "Error:  Unable to connect to Nowhere. Error 1030");
    expectFailure("Raw", "127.0.0.1:1", 255, "Error:  Unable to connect to Raw. Error 1283");
    ASSERT_TRUE(cups.Run("lpadmin", {"-p", "Closed", "-E", "-v", "socket://127.0.0.1:9"}));
    ASSERT_TRUE(cups.Run("cupsreject", {"Closed"}));
    expectFailure("Closed", QString(), 254, "Could not start print job.");
    EXPECT_EQ(readFile(project), saved);

    // A stopped printer keeps the job: the disc counts as printed.
    ASSERT_TRUE(cups.Run("cupsaccept", {"Closed"}));
    ASSERT_TRUE(cups.Run("cupsdisable", {"Closed"}));
    const RunResult kept = run({"-PRINTER", "Closed", "-PRINT", project});
    const int held = lastJob("Closed");
    ASSERT_GT(held, 0) << kept.errors.toStdString();
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
        const RunResult result = run({"-PRINTER", "Raw", "-PRINT", path});
        EXPECT_EQ(result.exitCode, lastJob("Raw") & 0xFF);
        EXPECT_TRUE(!result.errors.isEmpty() && result.errors.contains(message)) << result.errors.toStdString();
        EXPECT_EQ(readFile(path), bytes);
    }
    EXPECT_TRUE(cups.RawPrinter().WaitForJobs(2, 30000));
}

} // namespace
