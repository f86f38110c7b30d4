#include "TestSupport.h"
#include "app/Branding.h"
#include "view/CNetworkView.h"
#include "app/CSendrillApp.h"
#include "app/CSendrillDlg.h"
#include "document/CDrawDoc.h"
#include "objects/CDrawRect.h"
#include "platform/FontCollection.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/Spooler.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVNAMES.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace {

const QString Settings = QStringLiteral("Settings");

const QByteArray TrayTemplate = "PRINTER\nTray\n\n4.724\n4.724\n0\n0\n"
                                "DISC\n1\nStandard\n2.362\n2.362\n4.646\n1.654\nENDOBJECT\nEND\n";
const QByteArray SheetTemplate = "SHEET\nOne Disc\n\n6\n6\n1\n0\n0\n"
                                 "DISC\n1\nDisc\n3\n3\n4.65\n0.7\nENDOBJECT\nEND\n";

// Every test starts from an empty profile with messages caught instead of printed.
class MainDialog : public ::testing::Test {
protected:
    void SetUp() override
    {
        QFile::remove(Profile::FilePath());
        Branding::Assign();
        MessageBox::SetPresenter([this](const QString& text, int style) {
            messages << text;
            return MessageBox::DefaultAnswer(style);
        });
        app.m_strInstallDir = install.path() + '/';
        // No spooler: the printers these tests name are the ones saved here.
        Spooler::UseServer(QStringLiteral("127.0.0.1:1"));
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        Spooler::UseServer(QString());
    }

    // A printer's set-up saved as the program saves it, so that start-up finds it.
    static void savePrinter(const QString& name)
    {
        CPrinterSettings printer;
        printer.hDevMode = QByteArray("copies=1\n");
        printer.hDevNames = DEVNAMES::Build(QStringLiteral("Driver"), name, QStringLiteral("ipp://printer"));
        QDir().mkpath(CPrinterSettings::DataDirectory());
        EXPECT_EQ(printer.Save(CPrinterSettings::SanitiseName(name)), 0);
    }

    // Writes an executable script that records its arguments, under the given name.
    QString writeUpdater(const QString& name)
    {
        const QString record = install.path() + QStringLiteral("/ran.txt");
        const QString path = install.write(
            name, QStringLiteral("#!/bin/sh\necho \"$@\" > '%1.tmp' && mv '%1.tmp' '%1'\n").arg(record).toUtf8());
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);
        return record;
    }

    static QString waitFor(const QString& path)
    {
        QElapsedTimer timer;
        timer.start();
        while (!QFile::exists(path) && timer.elapsed() < 5000)
            QThread::msleep(10);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QStringLiteral("<none>");
    }

    TestFolder install;
    CSendrillApp app;
    QStringList messages;
};

TEST_F(MainDialog, InitialisationReadsTemplatesPrinterAndItsTemplateChoice)
{
    install.write(QStringLiteral("Templates/Default.tmp"), TrayTemplate);
    install.write(QStringLiteral("Templates/Sheet.tmp"), SheetTemplate);
    install.write(QStringLiteral("Templates/Broken.tmp"), "NOT A TEMPLATE\n");
    Profile::WriteInt(Settings, QStringLiteral("UpdateRestart"), 1);
    Profile::WriteString(Settings, QStringLiteral("PrinterName"), QStringLiteral("Office/Laser"));
    savePrinter(QStringLiteral("Office/Laser"));
    Profile::WriteInt(QStringLiteral("Office_Laser"), QStringLiteral("Template"), 1);

    CSendrillDlg dlg(app);
    EXPECT_TRUE(dlg.OnInitDialog());

    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("UpdateRestart"), -1), 0);
    EXPECT_EQ(dlg.windowTitle(), QStringLiteral("Palvex Systems Tessarelle"));
    ASSERT_EQ(dlg.Templates().size(), 2u);
    EXPECT_EQ(dlg.Templates()[0].TemplateName, QStringLiteral("Tray"));
    EXPECT_EQ(messages, QStringList{QStringLiteral("Error opening %1 template file.")
                                        .arg(install.path() + QStringLiteral("/Templates/Broken.tmp"))});

    ASSERT_NE(dlg.GetDocument(), nullptr);
    EXPECT_EQ(dlg.GetDocument()->GetPrinter().PrinterName, QStringLiteral("Office/Laser"));
    EXPECT_EQ(dlg.GetDocument()->GetTemplate(), 1);
    EXPECT_EQ(dlg.GetDocument()->Views(), std::vector<CView*>{dlg.GetView()});
    EXPECT_NE(FontCollection::Published(), nullptr);
    EXPECT_EQ(dlg.StartMode(), CommandLine::Dispatch::Interactive);
    EXPECT_EQ(dlg.size(), QSize(800, 566));
    EXPECT_EQ(app.m_nExitCode, 0);
}

TEST_F(MainDialog, CommandLineDecidesThisRunOnly)
{
    Profile::WriteString(Settings, QStringLiteral("PrinterName"), QStringLiteral("Remembered"));
    savePrinter(QStringLiteral("Disc Printer"));
    {
        CSendrillDlg dlg(app);
        dlg.m_strCmdLine = QStringLiteral("-PRINTER \"Disc Printer\"");
        EXPECT_TRUE(dlg.OnInitDialog());
        EXPECT_EQ(dlg.GetDocument()->GetPrinter().PrinterName, QStringLiteral("Disc Printer"));
        EXPECT_EQ(Profile::GetString(Settings, QStringLiteral("PrinterName")), QStringLiteral("Remembered"));
        // No Templates folder: the default template is reported and the list stays empty.
        EXPECT_EQ(messages, QStringList{QStringLiteral("Error opening %1 template file.")
                                            .arg(install.path() + QStringLiteral("/Templates/Default.tmp"))});
        EXPECT_TRUE(dlg.Templates().empty());
    }
    {
        // A project named on the line opens in the designer.
        CDrawDoc saved;
        saved.Add(std::make_unique<CDrawRect>(CRect(-10, 10, 10, -10)));
        const QString path = install.path() + QStringLiteral("/My Label.dst");
        ASSERT_TRUE(saved.OnSaveDocument(path));
        CSendrillDlg dlg(app);
        dlg.m_strCmdLine = path;
        EXPECT_TRUE(dlg.OnInitDialog());
        EXPECT_EQ(dlg.StartMode(), CommandLine::Dispatch::OpenProject);
        EXPECT_EQ(dlg.GetDocument()->GetPathName(), path);
        EXPECT_EQ(dlg.GetDocument()->GetObjects(0).GetCount(), 1);
        EXPECT_FALSE(dlg.GetDocument()->IsModified());
    }
    {
        // Unattended: ends before anything shows; the printer can't be reached, so nothing
        // prints and the -1 stays.
        CSendrillDlg dlg(app);
        app.m_nExitCode = 0;
        dlg.m_strCmdLine = QStringLiteral("-PRINTER \"PDF\" -PRINT /tmp/Label.DST");
        EXPECT_EQ(dlg.DoModal(), 0);
        EXPECT_FALSE(dlg.isVisible());
        EXPECT_EQ(dlg.StartMode(), CommandLine::Dispatch::PrintProject);
        EXPECT_EQ(app.m_nExitCode, -1);
    }
}

TEST_F(MainDialog, WindowIsCentredInTheWorkArea)
{
    EXPECT_EQ(CSendrillDlg::CentredGeometry(QRect(0, 0, 1280, 1024)), QRect(240, 229, 800, 566));
    // Odd sizes lose their half pixel before the offset.
    EXPECT_EQ(CSendrillDlg::CentredGeometry(QRect(0, 0, 1279, 1023)), QRect(239, 228, 800, 566));
    // A work area smaller than the window puts the corner before the work area's.
    EXPECT_EQ(CSendrillDlg::CentredGeometry(QRect(0, 0, 640, 480)), QRect(-80, -43, 800, 566));
}

TEST_F(MainDialog, AWaitingUpdateStartsOnceAndClearsItsRequests)
{
    // None there: its message, and the request is cleared all the same.
    EXPECT_EQ(CSendrillDlg::FindUpdater(app.m_strInstallDir), app.m_strInstallDir + QStringLiteral("Update.exe"));
    Profile::WriteInt(Settings, QStringLiteral("Update"), 1);
    CSendrillDlg::RunPendingUpdate(app.m_strInstallDir);
    EXPECT_EQ(messages, QStringList{QStringLiteral("Error starting Update.exe")});
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("Update"), -1), 0);

    // Found whatever the case of its name; asked to restart the program, it is told so.
    const QString record = writeUpdater(QStringLiteral("update.EXE"));
    EXPECT_EQ(CSendrillDlg::FindUpdater(app.m_strInstallDir), install.path() + QStringLiteral("/update.EXE"));
    Profile::WriteInt(Settings, QStringLiteral("Update"), 1);
    Profile::WriteInt(Settings, QStringLiteral("UpdateRestart"), 1);
    CSendrillDlg::RunPendingUpdate(app.m_strInstallDir);
    EXPECT_EQ(waitFor(record), QStringLiteral("-restart"));
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("Update"), -1), 0);
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("UpdateRestart"), -1), 0);

    // Without the restart it starts from the dialog's destructor, with no arguments of its own.
    QFile::remove(record);
    Profile::WriteInt(Settings, QStringLiteral("Update"), 1);
    {
        CSendrillDlg dlg(app);
        ASSERT_TRUE(dlg.OnInitDialog());
    }
    EXPECT_EQ(waitFor(record), QString());
    EXPECT_EQ(Profile::GetInt(Settings, QStringLiteral("Update"), -1), 0);

    // Without a waiting update nothing starts.
    QFile::remove(record);
    CSendrillDlg::RunPendingUpdate(app.m_strInstallDir);
    QThread::msleep(200);
    EXPECT_FALSE(QFile::exists(record));
}

} // namespace
