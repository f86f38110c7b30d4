// Composing a whole sheet for print: a Letter sheet with two disc areas and a 1400 by 1400
// JPEG background, and a printer tray with one disc, both at 300 units per inch.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "platform/graphics/Image.h"
#include "templates/CTemplateFile.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <cstdlib>

namespace {

CTemplateFile templateFrom(const QByteArray& text)
{
    const QString path = scratch().filePath("bench.tmp");
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(text);
    file.close();
    CTemplateFile result;
    result.LoadTemplate(path);
    return result;
}

// A photograph-like picture: smooth colour ramps with fine detail, so JPEG has work to do.
QString backgroundPicture()
{
    const QString path = scratch().filePath("background.jpg");
    if (QFile::exists(path))
        return path;
    QImage image(1400, 1400, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qRgb(x * 255 / 1400, y * 255 / 1400, ((x ^ y) & 0xFF));
    }
    image.save(path, "JPEG", 90);
    return path;
}

void composeSheet(benchmark::State& state, const QByteArray& templateText)
{
    std::vector<CTemplateFile> templates{templateFrom(templateText)};
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    doc.SetTemplate(0);
    doc.SetImageFile(backgroundPicture());
    doc.SetWrapMode(4);
    doc.SetFitMode(1);
    for (auto _ : state) {
        auto sheet = doc.RenderBitmap(300, 300, true, true);
        benchmark::DoNotOptimize(sheet);
    }
}

const QByteArray LetterTwoDiscs = "SHEET\nLetter two discs\n\n8.5\n11\n1\n0\n0\n"
                                  "DISC\n1\nTop\n4.25\n3\n4.646\n1.654\nENDOBJECT\n"
                                  "DISC\n1\nBottom\n4.25\n8\n4.646\n1.654\nENDOBJECT\nEND\n";

const QByteArray PrinterTray = "PRINTER\nTray\n\n4.724\n4.724\n0\n0\n"
                               "DISC\n1\nStandard CD/DVD\n2.362\n2.362\n4.646\n1.654\nENDOBJECT\nEND\n";

void BM_LetterSheetTwoDiscs(benchmark::State& state)
{
    composeSheet(state, LetterTwoDiscs);
}

void BM_PrinterTemplate(benchmark::State& state)
{
    composeSheet(state, PrinterTray);
}

// Sheets are painted on a thread of their own while the caller waits: judge by the wall clock.
BENCHMARK(BM_LetterSheetTwoDiscs)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_PrinterTemplate)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
