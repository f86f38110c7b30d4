#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

namespace {

struct CliRun {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs the tool beside this test, without a display and with nothing on its input.
CliRun RunCli(const QStringList& args)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + "/tessarelle-cli", args);
    CliRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "tessarelle-cli did not finish";
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

QJsonArray ParseArray(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << "\n" << json.constData();
    EXPECT_TRUE(document.isArray());
    return document.array();
}

const QByteArray Sheet = "SHEET\nTwo Discs and a Card\n\n8.5\n11\n2\n0.1\n0.1\n"
                         "DISC\n1\nDisc Label\n4.25\n2.75\n4.65\n0.7\nENDOBJECT\n"
                         "RECT\n2\nCard\n4.25\n10.25\n3.5\n1\n0\n"
                         "PERF\n0\n1.75\n0\n1.75\n1\nENDPERF\nENDOBJECT\nEND\n";

const QByteArray Printer = "PRINTER\nTray\nInsert the tray.\n4.724\n4.724\n0\n0\n"
                           "BUSDISC\n1\nCard\n2.362\n2.362\n3.15\n0.91\n0\n2.48\nENDOBJECT\nEND\n";

} // namespace

TEST(TemplatesCommand, FolderListsEveryFileInLoadOrder)
{
    TestFolder folder;
    folder.write("Default.tmp", Printer);
    folder.write("b.tmp", Sheet);
    folder.write("bad.tmp", "SHEET\nBroken\n");

    const CliRun run = RunCli({"templates", folder.path()});
    EXPECT_EQ(run.exitCode, 1) << "a file failed";
    const QJsonArray list = ParseArray(run.out);
    ASSERT_EQ(list.size(), 3);

    const QJsonObject printer = list[0].toObject();
    EXPECT_EQ(printer["path"].toString(), QDir(folder.path()).filePath("Default.tmp"));
    EXPECT_EQ(printer["IsPrinter"].toInt(), 1);
    EXPECT_EQ(printer["LabelCount"].toInt(), 1);
    EXPECT_EQ(printer["PrintNotice"].toString(), "Insert the tray.");
    const QJsonObject card = printer["Objects"].toArray()[0].toObject();
    EXPECT_EQ(card["EdgeDia"].toDouble(), 2.48);
    EXPECT_EQ(card["Selected"].toInt(), 0);

    const QJsonObject sheet = list[1].toObject();
    EXPECT_EQ(sheet["TemplateName"].toString(), "Two Discs and a Card");
    EXPECT_EQ(sheet["PaperWidth"].toDouble(), 8.5);
    EXPECT_EQ(sheet["OriginY"].toDouble(), 0.1);
    const QJsonArray objects = sheet["Objects"].toArray();
    ASSERT_EQ(objects.size(), 2);
    const QJsonObject rect = objects[1].toObject();
    EXPECT_EQ(rect["Selected"].toInt(), 1);
    EXPECT_EQ(rect["LabelNumber"].toInt(), 2);
    EXPECT_EQ(rect["ObjectName"].toString(), "Card");
    EXPECT_EQ(rect["IsRect"].toInt(), 1);
    const QJsonObject perf = rect["Perfs"].toArray()[0].toObject();
    EXPECT_EQ(perf["Reserved"].toDouble(), 0.0);
    EXPECT_EQ(perf["X1"].toDouble(), 4.25);
    EXPECT_EQ(perf["Y1"].toDouble(), 9.75);
    EXPECT_EQ(perf["Y2"].toDouble(), 10.75);

    const QJsonObject failed = list[2].toObject();
    EXPECT_EQ(failed.keys(), QStringList({"error", "path"}));
    EXPECT_EQ(failed["error"].toString(), "the file ends before the PrintNotice line");
    // The program's own message goes to standard error.
    const QString badPath = QDir(folder.path()).filePath("bad.tmp");
    EXPECT_TRUE(run.err.contains(QStringLiteral("Error opening %1 template file.").arg(badPath).toUtf8())) << run.err.constData();

    // Fields keep the order of the data model.
    const qsizetype name = run.out.indexOf("\"TemplateName\"");
    EXPECT_LT(run.out.indexOf("\"path\""), name);
    EXPECT_LT(name, run.out.indexOf("\"PrintNotice\""));
    EXPECT_LT(run.out.indexOf("\"CentreX\""), run.out.indexOf("\"CentreY\""));
    EXPECT_LT(run.out.indexOf("\"Rotation\""), run.out.indexOf("\"EdgeDia\""));
}

TEST(TemplatesCommand, SingleFiles)
{
    TestFolder folder;
    CliRun run = RunCli({"templates", folder.write("one.tmp", Sheet)});
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    QJsonArray list = ParseArray(run.out);
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list[0].toObject()["Objects"].toArray().size(), 2);

    run = RunCli({"templates", folder.path() + "/missing.tmp"});
    EXPECT_EQ(run.exitCode, 1);
    list = ParseArray(run.out);
    ASSERT_EQ(list.size(), 1);
    EXPECT_TRUE(list[0].toObject()["error"].toString().startsWith("cannot open: "));

    // Any bytes in a name come out as valid JSON.
    const QByteArray odd = "SHEET\nCaf\xe9 \"\\\x01\t\n\n8.5\n11\n1\n0\n0\nEND\n";
    run = RunCli({"templates", folder.write("odd.tmp", odd)});
    EXPECT_EQ(run.exitCode, 0);
    list = ParseArray(run.out);
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list[0].toObject()["TemplateName"].toString(), QString::fromUtf8("Caf\u00e9 \"\\\x01\t"));
}

TEST(TemplatesCommand, ProgramTemplatesByDefault)
{
    const CliRun run = RunCli({"templates"});
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonArray list = ParseArray(run.out);
    ASSERT_GE(list.size(), 9);
    EXPECT_TRUE(list[0].toObject()["path"].toString().endsWith("/Templates/Default.tmp"));
    for (const QJsonValue& entry : list)
        EXPECT_FALSE(entry.toObject().contains("error")) << entry.toObject()["path"].toString().toStdString();
}

TEST(TemplatesCommand, BadArgumentsShowTheUsage)
{
    for (const QStringList& args : {QStringList(), QStringList({"nonsense"}), QStringList({"templates", "a", "b"}),
                                    QStringList({"templates", "--bogus"})}) {
        const CliRun run = RunCli(args);
        EXPECT_EQ(run.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains("usage: tessarelle-cli")) << run.err.constData();
        EXPECT_TRUE(run.out.isEmpty());
    }
    const CliRun help = RunCli({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("templates [FOLDER|FILE]"));
}
