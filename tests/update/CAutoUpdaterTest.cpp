#include "HttpServer.h"
#include "TestSupport.h"
#include "app/CSendrillApp.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "update/CAutoUpdater.h"
#include "update/CDownload.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QTest>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>

namespace {

const QString Settings = QStringLiteral("Settings");
const QString TxtPath = QStringLiteral("u/update.txt");
const QString ExePath = QStringLiteral("u/update.exe");
const QString DownloadQuestion = QStringLiteral("A new update is now available. Download the update?");

QByteArray utf16(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

// Runs the function on a thread of its own, as the update worker runs, and serves the test's
// server and the worker's questions until it has ended.
template <typename Function>
auto onWorker(Function function)
{
    decltype(function()) result{};
    std::unique_ptr<QThread> thread(QThread::create([&] { result = function(); }));
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    thread->start();
    loop.exec();
    thread->wait();
    return result;
}

void waitUntil(const std::function<bool()>& condition)
{
    while (!condition())
        QTest::qWait(5);
}

class AutoUpdater : public ::testing::Test {
protected:
    void SetUp() override
    {
        QFile::remove(Profile::FilePath());
        Profile::WriteString(Settings, QStringLiteral("UpdateHost"), server.Host());
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages << text;
            return answers.isEmpty() ? int(MessageBox::IdYes) : answers.takeFirst();
        });
        CAutoUpdater::SetWaitLimit(1500);
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        CAutoUpdater::SetWaitLimit(30000);
    }

    bool check(const std::array<int, 4>& version = {1, 0, 0, 1})
    {
        return onWorker([&] { return CAutoUpdater(install.path() + QLatin1Char('/'), version).CheckForUpdate(server.Url("u/")); });
    }
    bool download()
    {
        return onWorker([&] { return CAutoUpdater(install.path() + QLatin1Char('/'), {1, 0, 0, 1}).DownloadUpdate(server.Url("u/"), "update.exe"); });
    }
    QString connectFailed() const { return "Unable to connect to " + server.Host() + "!"; }

    HttpServer server;
    TestFolder install;
    QStringList messages;
    QList<int> answers;
};

TEST_F(AutoUpdater, ComparesVersionsNumberByNumberFirstMost)
{
    const struct {
        const char* a;
        const char* b;
        int result;
    } rows[] = {
        {"1.7.0.2", "1.7.0.1", 1},
        {"1.7.0.1", "1.7.0.2", -1},
        {"2", "1.15.15.15", 1},
        {"1.10", "1.9", 1}, // numbers, not text
        {"1.7", "1.7.0.0", 0},
        {"1..7.", "1.7", 0}, // stops in a row make no empty number
        {"99999999999", "2147483647", 0}, // a number beyond int stays at its largest
        {"", "1", -21},
        {"1", "...", -22},
        {"1.2.3.4.5", "1", -21},
        {"1.7a", "1", -21},
        {" 1.7", "1", -21},
        {"-1", "1", -21},
        {"1.7\r\n", "1", -21},
        {"1", "1.0\n", -22},
        {"x", "y", -21}, // a is looked at first
    };
    for (const auto& row : rows)
        EXPECT_EQ(CAutoUpdater::CompareVersions(row.a, row.b), row.result) << row.a << " against " << row.b;
    EXPECT_EQ(CAutoUpdater::CompareVersions(QChar(0xFEFF) + QStringLiteral("1.7"), "1"), -21) << "a byte-order mark";
}

TEST_F(AutoUpdater, ChecksUpdateTxtAndSaysOnlyWhatTheUserCanActOn)
{
    QByteArray large = utf16("1.0.0.2");
    large.append(QByteArray(100 * 1024, '\0'));
    const struct {
        const char* name;
        HttpServer::Answer answer;
        std::array<int, 4> version;
        QList<int> answers;
        bool result;
        QStringList messages;
    } rows[] = {
        {"newer, wanted", HttpServer::Ok(utf16("1.0.0.2")), {1, 0, 0, 1}, {MessageBox::IdYes}, true, {DownloadQuestion}},
        {"newer, not wanted", HttpServer::Ok(utf16("1.0.0.2")), {1, 0, 0, 1}, {MessageBox::IdNo}, false, {DownloadQuestion}},
        {"equal", HttpServer::Ok(utf16("1.0.0.1")), {1, 0, 0, 1}, {}, false, {}},
        {"older", HttpServer::Ok(utf16("0.9")), {1, 0, 0, 1}, {}, false, {}},
        // 1.7.0.16 is 1.7.0.0 to the program, but newer on the server, at every start.
        {"cut local part", HttpServer::Ok(utf16("1.7.0.16")), CSendrillApp::CutVersion(1, 7, 0, 16), {}, true, {DownloadQuestion}},
        {"empty", HttpServer::Ok({}), {1, 0, 0, 1}, {}, false, {"Unable to check for updates!"}},
        {"byte-order mark", HttpServer::Ok(utf16(QChar(0xFEFF) + QStringLiteral("1.0.0.2"))), {1, 0, 0, 1}, {}, false, {}},
        {"line end", HttpServer::Ok(utf16("1.0.0.2\r\n")), {1, 0, 0, 1}, {}, false, {}},
        {"five numbers", HttpServer::Ok(utf16("1.0.0.2.1")), {1, 0, 0, 1}, {}, false, {}},
        {"letters", HttpServer::Ok(utf16("1.0.0.2b")), {1, 0, 0, 1}, {}, false, {}},
        {"eight-bit text", HttpServer::Ok("1.0.0.2"), {1, 0, 0, 1}, {}, false, {}},
        // Only the first read counts, and the rest is never waited for.
        {"100 kB", HttpServer::Ok(large), {1, 0, 0, 1}, {}, true, {DownloadQuestion}},
        {"missing", {"HTTP/1.1 404 Not Found\r\nContent-Length: 9", "Not Found"}, {1, 0, 0, 1}, {}, false, {connectFailed()}},
        {"no answer", {}, {1, 0, 0, 1}, {}, false, {connectFailed()}},
    };
    for (const auto& row : rows) {
        messages.clear();
        answers = row.answers;
        server.Set(TxtPath, row.answer);
        EXPECT_EQ(check(row.version), row.result) << row.name;
        EXPECT_EQ(messages, row.messages) << row.name;
    }

    // No server at all on the host's port.
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QString host = QStringLiteral("127.0.0.1:%1").arg(closed.serverPort());
    closed.close();
    Profile::WriteString(Settings, QStringLiteral("UpdateHost"), host);
    messages.clear();
    EXPECT_FALSE(onWorker([&] { return CAutoUpdater(install.path() + QLatin1Char('/'), {1, 0, 0, 1}).CheckForUpdate("http://" + host + "/u/"); }));
    EXPECT_EQ(messages, QStringList{"Unable to connect to " + host + "!"});

    // A host no name server knows ends the check as silently as a machine without a network.
    messages.clear();
    EXPECT_FALSE(onWorker([&] { return CAutoUpdater(install.path() + QLatin1Char('/'), {1, 0, 0, 1}).CheckForUpdate("http://no-such-host.invalid/u/"); }));
    EXPECT_EQ(messages, QStringList());
}

TEST_F(AutoUpdater, DownloadsTheWholeFileOrNothing)
{
    const QByteArray program = QByteArray("#!/bin/sh\n").append(QByteArray(20000, '#'));
    const QString target = install.path() + "/update.exe";
    const struct {
        const char* name;
        HttpServer::Answer answer;
        bool result;
        QStringList messages;
        QByteArray file; // empty: no new file
        QStringList left; // the files in the install directory afterwards
    } rows[] = {
        {"complete", HttpServer::Ok(program), true, {}, program, {"update.exe"}},
        // The connection ends after the announced length: the bytes beyond are no part of it.
        {"longer than announced", HttpServer::Ok(program, 15000), true, {}, program.left(15000), {"update.exe"}},
        {"shorter than announced", HttpServer::Ok(program, program.size() + 100), false, {"Download failed!"}, {}, {}},
        {"connection dropped", {HttpServer::Ok(program).head, program, 9000, true}, false, {"Download failed!"}, {}, {}},
        {"server falls silent", {HttpServer::Ok(program).head, program, 9000}, false, {"Download failed!"}, {}, {}},
        // These end before the old file is touched.
        {"no length", {"HTTP/1.1 200 OK", program}, false, {connectFailed()}, {}, {"Update.EXE"}},
        {"larger than the disc", HttpServer::Ok(program, Q_INT64_C(9000000000000000000)), false, {"Insufficient disc space available!"}, {}, {"Update.EXE"}},
        {"missing", {"HTTP/1.1 404 Not Found\r\nContent-Length: 9", "Not Found"}, false, {connectFailed()}, {}, {"Update.EXE"}},
    };
    for (const auto& row : rows) {
        // An old updater goes, whatever the case of its name.
        install.write("Update.EXE", "old");
        messages.clear();
        server.Set(ExePath, row.answer);
        EXPECT_EQ(download(), row.result) << row.name;
        EXPECT_EQ(messages, row.messages) << row.name;
        EXPECT_EQ(QDir(install.path()).entryList(QDir::Files), row.left) << row.name;
        if (row.file.isEmpty())
            continue;
        QFile file(target);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), row.file) << row.name;
        EXPECT_TRUE(file.permissions() & QFileDevice::ExeOwner) << row.name;
    }
}

TEST_F(AutoUpdater, CancelledDownloadLeavesItsPartUntilTheNextOne)
{
    const QByteArray program(40000, 'x');
    // Part of the file comes, then the server takes its time.
    server.Set(ExePath, {HttpServer::Ok(program).head, program, 10000});
    CDownload* window = nullptr;
    std::atomic<int> result{-1};
    std::unique_ptr<QThread> worker(QThread::create([&] {
        result = CAutoUpdater(install.path() + QLatin1Char('/'), {1, 0, 0, 1}).DownloadUpdate(server.Url("u/"), "update.exe");
    }));
    worker->start();
    waitUntil([&] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* download = qobject_cast<CDownload*>(widget))
                window = download;
        }
        return window && window->windowTitle() == "Downloading 25%";
    });
    EXPECT_TRUE(window->isMinimized()) << "a task-bar entry, not a window over the user's work";
    QTest::mouseClick(window->findChild<QPushButton*>(), Qt::LeftButton);
    waitUntil([&] { return worker->isFinished(); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(messages, QStringList{"Download failed!"});
    EXPECT_GT(QFileInfo(install.path() + "/update.exe").size(), 0) << "the part downloaded stays";
    server.Release(ExePath);

    messages.clear();
    server.Set(ExePath, HttpServer::Ok("new"));
    EXPECT_TRUE(download());
    QFile file(install.path() + "/update.exe");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "new");
}

} // namespace
