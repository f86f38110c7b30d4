#include "HttpServer.h"
#include "TestSupport.h"
#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "app/CSendrillDlg.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/Spooler.h"
#include "update/CAutoUpdater.h"
#include "update/CMessageDlg.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

const QString Settings = QStringLiteral("Settings");
const QString Folder = QStringLiteral("downloads/Software/Updates_Tessarelle/Tessarelle_Rondelmark/");
const QString DownloadQuestion = QStringLiteral("A new update is now available. Download the update?");
const QString InstallQuestion = QStringLiteral("A new update has been downloaded. Would you like to install it now?");

QByteArray utf16(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

void waitUntil(const std::function<bool()>& condition)
{
    while (!condition())
        QTest::qWait(5);
}

// The designer as a user starts it, checking with the test's server for a release newer than
// 1.0.0.1. The update it offers is a script that notes how it was started.
class UpdateCheck : public ::testing::Test {
protected:
    void SetUp() override
    {
        QFile::remove(Profile::FilePath());
        Branding::Assign();
        Profile::WriteString(Settings, QStringLiteral("UpdateHost"), server.Host());
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages << text;
            return answers.isEmpty() ? int(MessageBox::IdYes) : answers.takeFirst();
        });
        Spooler::UseServer(QStringLiteral("127.0.0.1:1"));
        server.Set(Folder + "update.txt", HttpServer::Ok(utf16("1.0.0.2")));
        server.Set(Folder + "update.exe", HttpServer::Ok(program));
    }
    void TearDown() override
    {
        dlg.reset();
        MessageBox::SetPresenter(nullptr);
        Spooler::UseServer(QString());
    }

    void openDesigner()
    {
        app.m_strInstallDir = Folders::InstallDirectory();
        dlg = std::make_unique<CSendrillDlg>(app);
        ASSERT_TRUE(dlg->OnInitDialog());
        dlg->show();
        // The download goes to a folder of the test's own.
        app.m_strInstallDir = install.path() + QLatin1Char('/');
        app.m_nVersion = {1, 0, 0, 1};
    }
    // How the downloaded updater was started, once it has run.
    QString updaterStart()
    {
        waitUntil([this] { return QFile::exists(marker.path() + "/started"); });
        QFile file(marker.path() + "/started");
        file.open(QIODevice::ReadOnly);
        return QString::fromUtf8(file.readAll());
    }

    CSendrillApp app;
    std::unique_ptr<CSendrillDlg> dlg;
    HttpServer server;
    TestFolder install;
    TestFolder marker;
    const QByteArray program = "#!/bin/sh\nprintf 'args:[%s]' \"$*\" > '" + marker.path().toUtf8() + "/part' && mv '"
                               + marker.path().toUtf8() + "/part' '" + marker.path().toUtf8() + "/started'\n";
    QStringList messages;
    QList<int> answers;
};

TEST_F(UpdateCheck, InstallsNowWithRestartOrAtTheNextExit)
{
    const struct {
        int answer;
        bool stays;
        const char* start;
    } rows[] = {
        {MessageBox::IdYes, false, "args:[-restart]"},
        {MessageBox::IdNo, true, "args:[]"},
    };
    for (const auto& row : rows) {
        messages.clear();
        answers = {MessageBox::IdYes, row.answer};
        QFile::remove(marker.path() + "/started");
        openDesigner();
        dlg->StartUpdateCheck();
        waitUntil([this] { return messages.size() == 2; });
        EXPECT_EQ(messages, (QStringList{DownloadQuestion, InstallQuestion}));
        EXPECT_EQ(Profile::GetInt(Settings, "Update", 0), 1);
        EXPECT_EQ(dlg->isVisible(), row.stays);
        // Yes has left already; after No the user leaves later, and the updater runs then.
        if (row.stays)
            dlg->close();
        dlg.reset();
        EXPECT_EQ(updaterStart(), row.start);
        EXPECT_EQ(Profile::GetInt(Settings, "Update", 0), 0);
        EXPECT_EQ(Profile::GetInt(Settings, "UpdateRestart", 0), 0);
    }
}

TEST_F(UpdateCheck, LeavingDuringCheckAndDownloadWaitsAndUpdatesUnasked)
{
    // The server keeps back update.txt's text and half of the program until the test lets go.
    server.Set(Folder + "update.txt", {HttpServer::Ok(utf16("1.0.0.2")).head, utf16("1.0.0.2"), 0});
    server.Set(Folder + "update.exe", {HttpServer::Ok(program).head, program, program.size() / 2});
    openDesigner();
    dlg->StartUpdateCheck();
    waitUntil([this] { return server.requests.contains(Folder + "update.txt"); });

    QStringList waitTexts;
    const auto note = [&] {
        if (const CMessageDlg* message = dlg->findChild<CMessageDlg*>(); message && message->isVisible())
            waitTexts << message->Text();
    };
    QTimer::singleShot(0, [&] {
        note();
        server.Release(Folder + "update.txt");
    });
    QObject::connect(&server, &HttpServer::Requested, [&](const QString& path) {
        if (path == Folder + "update.exe") {
            note();
            server.Release(path);
        }
    });
    // Returns when the worker has ended.
    dlg->close();

    EXPECT_EQ(waitTexts, (QStringList{"Checking for updates.\r\nPlease Wait...", "Downloading updates.\r\nPlease Wait..."}));
    EXPECT_FALSE(dlg->isVisible());
    EXPECT_EQ(messages, QStringList{DownloadQuestion}) << "no question to install: the user is leaving";
    EXPECT_EQ(Profile::GetInt(Settings, "Update", 0), 1);
    dlg.reset();
    EXPECT_EQ(updaterStart(), "args:[]");
}

} // namespace
