#include "TestSupport.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QImage>
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
    QJsonObject json() const
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(out, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << out.constData();
        return document.object();
    }
};

// Runs the tool beside this test, without a display and with nothing on its input.
CliRun runCli(const QStringList& args)
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

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class ProjectCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        g_dataFields.clear();
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
        DATAFIELD serial;
        serial.Tag = QStringLiteral("/*TAG1*/");
        serial.Type = DATAFIELD::SerialNumber;
        serial.Serial = 0x1234567890ull;
        g_dataFields = {serial};
        project = QDir(folder.path()).filePath(QStringLiteral("disc.dst"));
        ASSERT_TRUE(doc.OnSaveDocument(project));
        g_dataFields.clear();
    }

    TestFolder folder;
    QString project;
};

} // namespace

TEST_F(ProjectCommands, DumpShowsTheWholeProjectUnderTheMembersNames)
{
    const CliRun run = runCli({QStringLiteral("dump"), project});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonObject json = run.json();
    EXPECT_EQ(json["fileId"].toString(), QStringLiteral("Tessarelle_1.7"));
    EXPECT_EQ(json["templateIndex"].toInt(), 0);
    EXPECT_EQ(json["outerDia"].toDouble(), 4.65);
    EXPECT_EQ(json["busDia"].toDouble(), -1.0);
    const QJsonArray labels = json["labels"].toArray();
    ASSERT_EQ(labels.size(), 3);
    EXPECT_EQ(labels[0]["background"]["BackColor"].toInteger(), 0x00FFFF);
    EXPECT_EQ(labels[1]["background"]["ImageFile"].toString(), QStringLiteral("back.png"));
    const QJsonObject disc = labels[0]["objects"][0].toObject();
    EXPECT_EQ(disc["class"].toString(), QStringLiteral("CDrawRect"));
    EXPECT_EQ(disc["shape"].toInt(), 2);
    EXPECT_EQ(disc["position"]["left"].toInt(), -150);
    EXPECT_EQ(disc["fillColor1"].toInteger(), 0xFF0000FFll);
    EXPECT_EQ(disc["cornerSize"]["x"].toInt(), 100);
    EXPECT_EQ(disc["flags"].toInt(), 2);
    const QJsonObject poly = labels[2]["objects"][0].toObject();
    EXPECT_EQ(poly["class"].toString(), QStringLiteral("CDrawPoly"));
    EXPECT_EQ(poly["pointCapacity"].toInt(), 10);
    EXPECT_EQ(poly["points"][2]["x"].toInt(), 30);
    const QJsonArray fields = json["fields"].toArray();
    ASSERT_EQ(fields.size(), 1);
    EXPECT_EQ(fields[0]["Tag"].toString(), QStringLiteral("/*TAG1*/"));
    EXPECT_EQ(fields[0]["Serial"].toInteger(), 0x12 | 0x34567890) << "as the reader gives it";
    EXPECT_FALSE(json.contains("error"));
}

TEST_F(ProjectCommands, DumpOfABrokenOrForeignProject)
{
    // Cut inside the poly's points, before the 84 bytes of the field: what was read is shown,
    // with the error and exit code 1.
    QByteArray bytes = readFile(project);
    const QString cut = QDir(folder.path()).filePath(QStringLiteral("cut.dst"));
    QFile out(cut);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes.left(bytes.size() - 94));
    out.close();
    CliRun run = runCli({QStringLiteral("dump"), cut});
    EXPECT_EQ(run.exitCode, 1);
    QJsonObject json = run.json();
    EXPECT_EQ(json["error"].toString(), QStringLiteral("Unexpected file format."));
    EXPECT_EQ(json["labels"][0]["objects"].toArray().size(), 1);
    EXPECT_EQ(json["labels"][2]["objects"].toArray().size(), 0);
    EXPECT_TRUE(run.err.contains("Unexpected file format."));

    // Another header: the question is answered No, or Yes with --yes.
    bytes[4] = 'X'; // "Xessarelle_1.7"
    QFile foreign(cut);
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.write(bytes);
    foreign.close();
    run = runCli({QStringLiteral("dump"), cut});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("Try to load anyway? [No]")) << run.err.constData();
    EXPECT_EQ(run.json()["labels"][0]["objects"].toArray().size(), 0);
    run = runCli({QStringLiteral("dump"), cut, QStringLiteral("--yes")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("[Yes]"));
    EXPECT_EQ(run.json()["labels"][0]["objects"].toArray().size(), 1);

    EXPECT_EQ(runCli({QStringLiteral("dump")}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("dump"), QDir(folder.path()).filePath("none.dst")}).exitCode, 1);
}

TEST_F(ProjectCommands, ResaveWritesTheLatestFormatAndNothingOnFailure)
{
    // A 1.6 header in 8-bit text; the rest of the file reads the same in both versions here.
    QByteArray old = readFile(project);
    const qsizetype headerSize = 4 + 28;
    old.replace(0, headerSize, QByteArray("\x0eTessarelle_1.6"));
    const QString oldPath = QDir(folder.path()).filePath(QStringLiteral("old.dst"));
    QFile file(oldPath);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(old);
    file.close();

    const QString resaved = QDir(folder.path()).filePath(QStringLiteral("new.dst"));
    const CliRun run = runCli({QStringLiteral("resave"), oldPath, resaved});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_EQ(run.out.trimmed(), resaved.toUtf8());
    QByteArray expected = readFile(project);
    // The field's serial was read as the OR of its halves.
    const QByteArray serial = QByteArray::fromHex("9078563412000000");
    const qsizetype at = expected.indexOf(serial);
    ASSERT_GT(at, 0);
    expected.replace(at, serial.size(), QByteArray::fromHex("9278563400000000"));
    EXPECT_EQ(readFile(resaved), expected);

    const QString never = QDir(folder.path()).filePath(QStringLiteral("never.dst"));
    EXPECT_EQ(runCli({QStringLiteral("resave"), QDir(folder.path()).filePath("none.dst"), never}).exitCode, 1);
    EXPECT_FALSE(QFile::exists(never));
    EXPECT_EQ(runCli({QStringLiteral("resave"), oldPath}).exitCode, 2);
}

TEST_F(ProjectCommands, RenderWritesTheSheetOrOneLabelAsPngOrPdf)
{
    const QString sheet = QDir(folder.path()).filePath(QStringLiteral("sheet.png"));
    CliRun run = runCli({QStringLiteral("render"), project, sheet});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QImage image(sheet);
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(countPixels(image, QColor(255, 255, 0), 8), 1000) << "the yellow background";
    EXPECT_GT(countPixels(image, QColor(0, 0, 255), 8), 15000) << "the blue ring of the inch disc round the hole";

    const QString label = QDir(folder.path()).filePath(QStringLiteral("label.png"));
    run = runCli({QStringLiteral("render"), project, label, QStringLiteral("--label"), QStringLiteral("1")});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QImage one(label);
    EXPECT_EQ(one.width(), one.height());
    EXPECT_EQ(one.pixelColor(one.width() / 2 + 140, one.height() / 2), QColor(0, 0, 255));
    EXPECT_EQ(one.pixelColor(one.width() / 2, one.height() / 2), QColor(255, 255, 255)) << "the hole";
    EXPECT_EQ(one.pixelColor(2, 2), QColor(255, 255, 255)) << "outside the disc";

    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("sheet.pdf"));
    run = runCli({QStringLiteral("render"), project, pdf});
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_TRUE(readFile(pdf).startsWith("%PDF"));

    EXPECT_EQ(runCli({QStringLiteral("render"), project, QStringLiteral("x.jpg")}).exitCode, 2);
    const QStringList badLabel{QStringLiteral("render"), project, label, QStringLiteral("--label"), QStringLiteral("4")};
    EXPECT_EQ(runCli(badLabel).exitCode, 2);
}
