#include "TestSupport.h"
#include "fields/DataFields.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

namespace {

struct DatafileRun {
    int exitCode = -1;
    QJsonObject json;
    QByteArray err;
};

DatafileRun RunDatafile(const QStringList& args)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + "/tessarelle-cli", QStringList{"datafile"} + args);
    DatafileRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "tessarelle-cli did not finish";
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.json = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    run.err = process.readAllStandardError();
    return run;
}

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    for (const QJsonValue& item : value.toArray())
        list << item.toString();
    return list;
}

} // namespace

TEST(DatafileCommand, ShowsEncodingLinesAndTheRecordsAFieldPicks)
{
    TestFolder folder;
    const QString path = folder.write("names.csv", "\xEF\xBB\xBF" "Ann,B\xC3\xA9la\r\nCy,\r\nDee");

    const DatafileRun run = RunDatafile({path, "--delimiter", "comma"});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_EQ(run.json["path"].toString(), path);
    EXPECT_EQ(run.json["encoding"].toString(), "UTF_8");
    EXPECT_EQ(run.json["delimiter"].toString(), "comma");
    EXPECT_EQ(strings(run.json["lines"]), (QStringList{"Ann,B\u00E9la", "Cy,", "Dee"}));
    const QStringList records = strings(run.json["records"]);
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
    const DatafileRun lines = RunDatafile({folder.write("plain.txt", "\xE9t\xE9\nx\n")});
    EXPECT_EQ(lines.json["encoding"].toString(), "ASCII");
    EXPECT_EQ(lines.json["delimiter"].toString(), "line");
    EXPECT_EQ(strings(lines.json["lines"]), (QStringList{"\u00E9t\u00E9", "x", ""}));
    EXPECT_EQ(strings(lines.json["records"]), (QStringList{"\u00E9t\u00E9\r", "x\r"}));
}

TEST(DatafileCommand, FailuresAndBadArguments)
{
    TestFolder folder;
    const DatafileRun missing = RunDatafile({folder.path() + "/none.txt"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_FALSE(missing.json["error"].toString().isEmpty());

    const QString path = folder.write("a.txt", "a\n");
    EXPECT_EQ(RunDatafile({}).exitCode, 2);
    EXPECT_EQ(RunDatafile({path, "--delimiter", "tab"}).exitCode, 2);
    EXPECT_EQ(RunDatafile({path, "--delimiter"}).exitCode, 2);
    EXPECT_EQ(RunDatafile({path, path}).exitCode, 2);
    EXPECT_EQ(RunDatafile({path, "--delimiter", "semicolon"}).exitCode, 0);
}
