#include "TestSupport.h"
#include "tools/CliRun.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <functional>
#include <sys/stat.h>

namespace {

// The thumbnailer as a file manager runs it, and what it leaves in its output: a picture of
// the size asked for, or nothing.
class Thumbnail : public ::testing::Test {
protected:
    QString path(const QString& name) const { return QDir(folder.path()).filePath(name); }

    // Exit code 0 with the picture, 1 without it; anything else (a crash, a usage error) fails.
    QImage thumbnail(const QString& project, int size, const QProcessEnvironment& env = {})
    {
        const QString out = path("thumbnail.png");
        QFile::remove(out);
        const CliRun run = runCli({"thumbnail", "-s", QString::number(size), project, out}, "tessarelle-cli", env);
        lastError = run.err;
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 1) << project.toStdString() << ": " << run.err.constData();
        EXPECT_EQ(run.exitCode == 0, QFile::exists(out)) << project.toStdString();
        const QImage image(out);
        if (run.exitCode == 0)
            EXPECT_EQ(std::max(image.width(), image.height()), size) << project.toStdString();
        return image;
    }

    // A project of the default template (or another), its first label filled by the caller.
    QString project(const QString& name, const std::function<void(CDrawDoc&)>& fill, int templateIndex = 0)
    {
        CDrawDoc doc;
        doc.m_nTemplate = templateIndex;
        doc.SetOuterDia(4.65, false);
        doc.SetInnerDia(1.65, false);
        fill(doc);
        const QString file = path(name);
        EXPECT_TRUE(doc.OnSaveDocument(file));
        g_dataFields.clear();
        return file;
    }

    // A text as the file holds it; the thumbnailer lays it out when it reads the project.
    static std::unique_ptr<CDrawText> text(const QString& content, int pathKind = CDrawText::Straight)
    {
        // Across the disc between its hole and its rim.
        auto object = std::make_unique<CDrawText>(CRect(-500, 600, 500, 300));
        object->m_text = content;
        object->m_textPathKind = pathKind;
        object->m_fontName = QStringLiteral("Liberation Sans");
        object->m_fontSize = 40;
        object->m_textColor = gfx::Color(0, 0, 0);
        return object;
    }

    TestFolder folder;
    QByteArray lastError;
};

// The mean difference of a channel between two pictures, where the first is opaque.
double meanDifference(const QImage& a, const QImage& b)
{
    double sum = 0;
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor p = a.pixelColor(x, y), q = b.pixelColor(x, y);
            if (p.alpha() < 255)
                continue;
            sum += std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) + std::abs(p.blue() - q.blue());
            count += 3;
        }
    }
    return count ? sum / count : 255;
}

} // namespace

TEST_F(Thumbnail, EachExampleShowsItsFirstLabelAsItPrints)
{
    const QStringList examples = QDir(TESSARELLE_EXAMPLES_DIR).entryList({"*.dst"}, QDir::Files);
    ASSERT_EQ(examples.size(), 3);
    for (const QString& name : examples) {
        const QString source = QDir(TESSARELLE_EXAMPLES_DIR).filePath(name);
        const QImage image = thumbnail(source, 128);
        ASSERT_FALSE(image.isNull()) << name.toStdString() << ": " << lastError.constData();
        // A disc: clear round it and in its hole.
        EXPECT_EQ(image.pixelColor(2, 2).alpha(), 0) << name.toStdString();
        EXPECT_EQ(image.pixelColor(64, 64).alpha(), 0) << name.toStdString();
        EXPECT_EQ(image.pixelColor(64, 10).alpha(), 255) << name.toStdString();
    }

    // Every object drawn, and where the print draws it: the label printed at 300 dots per inch
    // and made as small is the thumbnail.
    const QString sample = QDir(TESSARELLE_EXAMPLES_DIR).filePath("sample.dst");
    const QImage small = thumbnail(sample, 256);
    const CliRun render = runCli({"render", sample, path("label.png"), "--label", "1"});
    ASSERT_EQ(render.exitCode, 0) << render.err.constData();
    const QImage printed = QImage(path("label.png")).scaled(256, 256, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    EXPECT_LT(meanDifference(small, printed), 6.0);
}

TEST_F(Thumbnail, AnythingButAProjectFailsCleanlyAndMissingPartsAreLeftOut)
{
    // The fuzzers' inputs: projects damaged in every way they found, and files of other kinds.
    QStringList files;
    for (const QString& corpus : QDir(TESSARELLE_FUZZ_CORPUS_DIR).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        for (const QFileInfo& file : QDir(QDir(TESSARELLE_FUZZ_CORPUS_DIR).filePath(corpus)).entryInfoList(QDir::Files))
            files << file.filePath();
    ASSERT_GT(files.size(), 20);

    QFile sample(QDir(TESSARELLE_EXAMPLES_DIR).filePath("sample.dst"));
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray bytes = sample.readAll();
    files << folder.write("empty.dst", {}) << folder.write("cut.dst", bytes.left(bytes.size() / 2))
          << folder.write("huge.dst", bytes.left(38) + QByteArray(100 * 1024 * 1024, '\0'));
    ASSERT_EQ(::mkfifo(path("pipe.dst").toLocal8Bit().constData(), 0600), 0);
    files << path("pipe.dst") << folder.path();
    // The profile stays as it was: a template index out of range would reset the saved one.
    QProcessEnvironment env;
    env.insert("XDG_CONFIG_HOME", path("config"));
    const QString profile = folder.write("config/Tessarelle/Tessarelle.conf", "[General]\nTemplate=50\n");
    files << project("far-template.dst", [](CDrawDoc&) {}, 99);
    for (const QString& file : files)
        thumbnail(file, 96, env);
    EXPECT_EQ(QString(readFile(profile)), "[General]\nTemplate=50\n");

    // A picture that isn't there, data files missing or no plain file: the rest is drawn.
    g_dataFields.assign(2, DATAFIELD{});
    g_dataFields[0].Tag = QStringLiteral("/*TAG1*/");
    g_dataFields[0].Type = DATAFIELD::DataFile;
    g_dataFields[0].FileName = QStringLiteral("absent.csv");
    g_dataFields[1] = g_dataFields[0];
    g_dataFields[1].Tag = QStringLiteral("/*TAG2*/");
    g_dataFields[1].FileName = QStringLiteral("/dev/zero");
    const QString missing = project("missing.dst", [this](CDrawDoc& doc) {
        doc.Background(0).ImageFile = path("nowhere.png");
        doc.Add(text("/*TAG1*/ /*TAG2*/ WWWWWWWW"));
    });
    const QImage image = thumbnail(missing, 128);
    ASSERT_FALSE(image.isNull()) << lastError.constData();
    EXPECT_GT(countPixels(image, Qt::black, 80), 20) << "the text";
}

TEST_F(Thumbnail, GivesUpOnALabelThatTakesTooLong)
{
    // Long texts on spirals: seconds of layout as the project is read.
    const QString slow = project("slow.dst", [](CDrawDoc& doc) {
        for (int i = 0; i < 200; ++i)
            doc.Add(text(QString(10000, QChar('A' + i % 26)), CDrawText::SpiralCW));
    });
    EXPECT_TRUE(thumbnail(slow, 128).isNull());
    EXPECT_TRUE(lastError.contains("time limit")) << lastError.constData();
}
