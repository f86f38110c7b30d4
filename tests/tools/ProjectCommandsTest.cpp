#include "CliRun.h"
#include "TestSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"

#include <QDir>
#include <QFile>
#include <QImage>

namespace {

// A project with a yellow label 1 holding a blue disc, a picture on label 2, a poly on label 3
// and one serial field.
class ProjectCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        CDrawDoc doc;
        doc.m_nTemplate = 0;
        doc.SetOuterDia(4.65, false);
        doc.SetInnerDia(0.86, false);
        doc.Background(0).BackColor = 0x00FFFF; // yellow
        doc.Background(1).ImageFile = QStringLiteral("back.png");
        auto disc = std::make_unique<CDrawRect>(CRect(-150, 150, 150, -150));
        disc->m_shape = CDrawRect::Ellipse;
        disc->m_fillColor1 = gfx::Color(255, 0, 0, 255); // blue
        disc->m_flags = 2;
        doc.Add(std::move(disc));
        doc.SetCurLabel(2);
        auto poly = std::make_unique<CDrawPoly>();
        poly->SetPoints({{0, 0}, {10, 20}, {30, 0}}, 10);
        doc.Add(std::move(poly));
        g_dataFields.assign(1, DATAFIELD{});
        g_dataFields[0].Tag = QStringLiteral("/*TAG1*/");
        g_dataFields[0].Type = DATAFIELD::SerialNumber;
        g_dataFields[0].Serial = 0x1234567890ull;
        ASSERT_TRUE(doc.OnSaveDocument(project));
        g_dataFields.clear();
    }
    QString path(const QString& name) const { return QDir(folder.path()).filePath(name); }

    TestFolder folder;
    const QString project = path("disc.dst");
};

} // namespace

TEST_F(ProjectCommands, DumpShowsTheWholeProjectUnderTheMembersNames)
{
    const CliRun run = runCli({"dump", project});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonObject json = run.json().object();
    const QJsonValue labels = json["labels"], disc = labels[0]["objects"][0], poly = labels[2]["objects"][0];
    const std::pair<QJsonValue, QJsonValue> checks[] = {
        {json["fileId"], "Tessarelle_1.7"}, {json["templateIndex"], 0}, {json["outerDia"], 4.65},
        {json["busDia"], -1.0}, {labels.toArray().size(), 3},
        {labels[0]["background"]["BackColor"], 0x00FFFF}, {labels[1]["background"]["ImageFile"], "back.png"},
        {disc["class"], "CDrawRect"}, {disc["shape"], 2}, {disc["position"]["left"], -150},
        {disc["fillColor1"], 0xFF0000FFll}, {disc["cornerSize"]["x"], 100}, {disc["flags"], 2},
        {poly["class"], "CDrawPoly"}, {poly["pointCapacity"], 10}, {poly["points"][2]["x"], 30},
        {json["fields"].toArray().size(), 1}, {json["fields"][0]["Tag"], "/*TAG1*/"},
        {json["fields"][0]["Serial"], 0x12 | 0x34567890}, // as the reader gives it
    };
    for (size_t i = 0; i < std::size(checks); ++i)
        EXPECT_EQ(checks[i].first, checks[i].second) << "check " << i;
    EXPECT_FALSE(json.contains("error"));
}

TEST_F(ProjectCommands, DumpOfABrokenOrForeignProject)
{
    // Cut inside the poly's points, before the 84 bytes of the field: what was read is shown,
    // with the error and exit code 1.
    QByteArray bytes = readFile(project);
    const QString cut = folder.write("cut.dst", bytes.left(bytes.size() - 94));
    CliRun run = runCli({"dump", cut});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.json()["error"].toString(), "Unexpected file format.");
    EXPECT_EQ(run.json()["labels"][0]["objects"].toArray().size(), 1);
    EXPECT_EQ(run.json()["labels"][2]["objects"].toArray().size(), 0);
    EXPECT_TRUE(run.err.contains("Unexpected file format."));

    // Another header: the question is answered No, or Yes with --yes.
    bytes[4] = 'X'; // "Xessarelle_1.7"
    const QString foreign = folder.write("foreign.dst", bytes);
    run = runCli({"dump", foreign});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("Try to load anyway? [No]")) << run.err.constData();
    EXPECT_EQ(run.json()["labels"][0]["objects"].toArray().size(), 0);
    run = runCli({"dump", foreign, "--yes"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("[Yes]"));
    EXPECT_EQ(run.json()["labels"][0]["objects"].toArray().size(), 1);

    EXPECT_EQ(runCli({"dump"}).exitCode, 2);
    EXPECT_EQ(runCli({"dump", path("none.dst")}).exitCode, 1);
}

TEST_F(ProjectCommands, ResaveWritesTheLatestFormatAndNothingOnFailure)
{
    // A 1.6 header in 8-bit text; the rest of the file reads the same in both versions here.
    const QString oldPath = folder.write("old.dst", readFile(project).replace(0, 4 + 28, "\x0eTessarelle_1.6"));
    const QString resaved = path("new.dst");
    const CliRun run = runCli({"resave", oldPath, resaved});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_EQ(run.out.trimmed(), resaved.toUtf8());
    // The same bytes, but for the field's serial, read as the OR of its halves.
    QByteArray expected = readFile(project);
    const QByteArray serial = QByteArray::fromHex("9078563412000000");
    const qsizetype at = expected.indexOf(serial);
    ASSERT_GT(at, 0);
    expected.replace(at, serial.size(), QByteArray::fromHex("9278563400000000"));
    EXPECT_EQ(readFile(resaved), expected);

    EXPECT_EQ(runCli({"resave", path("none.dst"), path("never.dst")}).exitCode, 1);
    EXPECT_FALSE(QFile::exists(path("never.dst")));
    EXPECT_EQ(runCli({"resave", oldPath}).exitCode, 2);
}

TEST_F(ProjectCommands, RenderWritesTheSheetOrOneLabelAsPngOrPdf)
{
    CliRun run = runCli({"render", project, path("sheet.png")});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QImage image(path("sheet.png"));
    EXPECT_GT(countPixels(image, QColor(255, 255, 0), 8), 1000) << "the yellow background";
    EXPECT_GT(countPixels(image, QColor(0, 0, 255), 8), 15000) << "the blue ring of the inch disc round the hole";

    run = runCli({"render", project, path("label.png"), "--label", "1"});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QImage one(path("label.png"));
    EXPECT_EQ(one.width(), one.height());
    EXPECT_EQ(one.pixelColor(one.width() / 2 + 140, one.height() / 2), QColor(0, 0, 255));
    EXPECT_EQ(one.pixelColor(one.width() / 2, one.height() / 2), QColor(255, 255, 255)) << "the hole";
    EXPECT_EQ(one.pixelColor(2, 2), QColor(255, 255, 255)) << "outside the disc";

    run = runCli({"render", project, path("sheet.pdf")});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_TRUE(readFile(path("sheet.pdf")).startsWith("%PDF"));

    EXPECT_EQ(runCli({"render", project, "x.jpg"}).exitCode, 2);
    EXPECT_EQ(runCli({"render", project, path("label.png"), "--label", "4"}).exitCode, 2);
}
