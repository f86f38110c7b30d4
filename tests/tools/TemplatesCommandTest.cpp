#include "CliRun.h"
#include "TestSupport.h"

#include <QDir>

namespace {

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
    const QString badPath = folder.write("bad.tmp", "SHEET\nBroken\n");

    const CliRun run = runCli({"templates", folder.path()});
    EXPECT_EQ(run.exitCode, 1) << "a file failed";
    const QJsonArray list = run.json().array();
    ASSERT_EQ(list.size(), 3);

    const QJsonValue printer = list[0], sheet = list[1];
    const QJsonValue rect = sheet["Objects"][1], perf = rect["Perfs"][0];
    const std::pair<QJsonValue, QJsonValue> checks[] = {
        {printer["path"], QDir(folder.path()).filePath("Default.tmp")},
        {printer["IsPrinter"], 1}, {printer["LabelCount"], 1}, {printer["PrintNotice"], "Insert the tray."},
        {printer["Objects"][0]["EdgeDia"], 2.48}, {printer["Objects"][0]["Selected"], 0},
        {sheet["TemplateName"], "Two Discs and a Card"}, {sheet["PaperWidth"], 8.5}, {sheet["OriginY"], 0.1},
        {sheet["Objects"].toArray().size(), 2},
        {rect["Selected"], 1}, {rect["LabelNumber"], 2}, {rect["ObjectName"], "Card"}, {rect["IsRect"], 1},
        {perf["Reserved"], 0.0}, {perf["X1"], 4.25}, {perf["Y1"], 9.75}, {perf["Y2"], 10.75},
        {list[2]["error"], "the file ends before the PrintNotice line"},
    };
    for (size_t i = 0; i < std::size(checks); ++i)
        EXPECT_EQ(checks[i].first, checks[i].second) << "check " << i;
    EXPECT_EQ(list[2].toObject().keys(), QStringList({"error", "path"}));
    // The program's own message goes to standard error.
    EXPECT_TRUE(run.err.contains(QStringLiteral("Error opening %1 template file.").arg(badPath).toUtf8()))
        << run.err.constData();

    // Fields keep the order of the data model.
    const qsizetype name = run.out.indexOf("\"TemplateName\"");
    EXPECT_LT(run.out.indexOf("\"path\""), name);
    EXPECT_LT(name, run.out.indexOf("\"PrintNotice\""));
    EXPECT_LT(run.out.indexOf("\"CentreX\""), run.out.indexOf("\"CentreY\""));
    EXPECT_LT(run.out.indexOf("\"Rotation\""), run.out.indexOf("\"EdgeDia\""));
}

TEST(TemplatesCommand, SingleFilesTheProgramsOwnAndTheUsage)
{
    TestFolder folder;
    CliRun run = runCli({"templates", folder.write("one.tmp", Sheet)});
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_EQ(run.json().array().size(), 1);
    EXPECT_EQ(run.json()[0]["Objects"].toArray().size(), 2);

    run = runCli({"templates", folder.path() + "/missing.tmp"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.json()[0]["error"].toString().startsWith("cannot open: "));

    // Any bytes in a name come out as valid JSON.
    run = runCli({"templates", folder.write("odd.tmp", "SHEET\nCaf\xe9 \"\\\x01\t\n\n8.5\n11\n1\n0\n0\nEND\n")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json()[0]["TemplateName"].toString(), QString::fromUtf8("Caf\u00e9 \"\\\x01\t"));

    // Without a path: the templates the program ships, all of them loading.
    run = runCli({"templates"});
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonArray list = run.json().array();
    ASSERT_GE(list.size(), 9);
    EXPECT_TRUE(list[0]["path"].toString().endsWith("/Templates/Default.tmp"));
    for (const QJsonValue& entry : list)
        EXPECT_FALSE(entry.toObject().contains("error")) << entry["path"].toString().toStdString();

    // Bad arguments show the usage.
    for (const QStringList& args : {QStringList(), QStringList({"nonsense"}), QStringList({"templates", "a", "b"}),
                                    QStringList({"templates", "--bogus"})}) {
        const CliRun run = runCli(args);
        EXPECT_EQ(run.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains("usage: tessarelle-cli")) << run.err.constData();
        EXPECT_TRUE(run.out.isEmpty());
    }
    const CliRun help = runCli({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("templates [FOLDER|FILE]"));
}
