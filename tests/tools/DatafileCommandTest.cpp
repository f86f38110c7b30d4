#include "CliRun.h"
#include "TestSupport.h"
#include "fields/DataFields.h"

TEST(DatafileCommand, ShowsEncodingLinesAndTheRecordsAFieldPicksOrWhatFailed)
{
    TestFolder folder;
    const QString path = folder.write("names.csv", "\xEF\xBB\xBF" "Ann,B\xC3\xA9la\r\nCy,\r\nDee");

    const CliRun run = runCli({"datafile", path, "--delimiter", "comma"});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonObject json = run.json().object();
    EXPECT_EQ(json["path"].toString(), path);
    EXPECT_EQ(json["encoding"].toString(), "UTF_8");
    EXPECT_EQ(json["delimiter"].toString(), "comma");
    EXPECT_EQ(strings(json["lines"]), (QStringList{"Ann,B\u00E9la", "Cy,", "Dee"}));
    const QStringList records = strings(json["records"]);
    EXPECT_EQ(records, (QStringList{"Ann", "B\u00E9la\r\nCy"}));

    // The same records, and nothing after them, as the field itself reads them.
    g_dataFields.assign(1, DATAFIELD{});
    g_dataFields[0].Type = DATAFIELD::DataFile;
    g_dataFields[0].FileName = path;
    g_dataFields[0].Delimiter = DATAFIELD::Comma;
    for (uint32_t i = 0; i < 4; ++i) {
        g_dataFields[0].FileIndex = i;
        EXPECT_EQ(ReadFieldRecord(0), i < records.size() ? records[int(i)] : QString()) << i;
    }
    g_dataFields.clear();

    // Lines by default, each record with the CR of its line end.
    const QJsonObject lines = runCli({"datafile", folder.write("plain.txt", "\xE9t\xE9\nx\n")}).json().object();
    EXPECT_EQ(lines["encoding"].toString(), "ASCII");
    EXPECT_EQ(lines["delimiter"].toString(), "line");
    EXPECT_EQ(strings(lines["lines"]), (QStringList{"\u00E9t\u00E9", "x", ""}));
    EXPECT_EQ(strings(lines["records"]), (QStringList{"\u00E9t\u00E9\r", "x\r"}));

    // Failures and bad arguments.
    const CliRun missing = runCli({"datafile", folder.path() + "/none.txt"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_FALSE(missing.json()["error"].toString().isEmpty());

    const QString plain = folder.write("a.txt", "a\n");
    const std::pair<QStringList, int> cases[] = {
        {{}, 2}, {{plain, "--delimiter", "tab"}, 2}, {{plain, "--delimiter"}, 2}, {{plain, plain}, 2},
        {{plain, "--delimiter", "semicolon"}, 0},
    };
    for (const auto& [args, exitCode] : cases)
        EXPECT_EQ(runCli(QStringList{"datafile"} + args).exitCode, exitCode) << args.join(' ').toStdString();
}
