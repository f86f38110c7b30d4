// A series of 50 discs of examples/data-fields.dst in one job written to a PDF, as the print
// command runs it: each disc laid out anew, composed at 300 dots per inch and compressed into
// the job's document. Figures: the time per disc after the first (the first pays for fonts and
// caches), and the peak memory once disc 10 and disc 50 are done, which should not grow with
// the series beyond the document the job holds until it is sent.
#include "BenchSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/FontCollection.h"
#include "printing/CSeriesJob.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "templates/CTemplateFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <ctime>
#include <sys/resource.h>

namespace {

constexpr int Discs = 50;

// The example lives in the source tree, which the build's cache names.
QString examplePath()
{
    QFile cache(QCoreApplication::applicationDirPath() + QStringLiteral("/../CMakeCache.txt"));
    if (!cache.open(QIODevice::ReadOnly))
        return {};
    const QRegularExpressionMatch source = QRegularExpression(QStringLiteral("^CMAKE_HOME_DIRECTORY:INTERNAL=(.*)$"),
                                                              QRegularExpression::MultilineOption)
                                               .match(QString::fromUtf8(cache.readAll()));
    return source.hasMatch() ? source.captured(1).trimmed() + QStringLiteral("/examples/data-fields.dst") : QString();
}

// The process's processor time: on a busy machine the clock also counts others' work.
qint64 cpuNanoseconds()
{
    timespec now {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

double maxRssMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

void BM_SeriesOfFiftyDiscs(benchmark::State& state)
{
    const QString project = examplePath();
    if (!QFileInfo::exists(project)) {
        state.SkipWithError("examples/data-fields.dst not found beside the build");
        return;
    }
    const std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
    const QString output = scratch().path() + QStringLiteral("/series.pdf");
    for (auto _ : state) {
        g_dataFields.clear();
        CDrawDoc doc;
        doc.SetTemplates(&templates);
        if (!doc.OnOpenDocument(project)) {
            state.SkipWithError("the example could not be opened");
            return;
        }
        // A 300 dpi printer on A4, as a print to file would have it; no spooler is asked.
        CPrinterSettings& printer = doc.GetPrinter();
        printer.hDevMode = DEVMODE::Build({{QStringLiteral("copies"), QStringLiteral("1")},
                                           {QStringLiteral("media"), QStringLiteral("iso_a4_210x297mm")},
                                           {QStringLiteral("printer-resolution"), QStringLiteral("300dpi")}});
        printer.hDevNames =
            DEVNAMES::Build(QStringLiteral("Driver"), QStringLiteral("Bench Printer"), QStringLiteral("file:"));
        printer.UpdateName();

        QElapsedTimer clock;
        qint64 afterFirst = 0;
        qint64 afterLast = 0;
        qint64 cpuAfterFirst = 0;
        qint64 cpuAfterLast = 0;
        double rssAt10 = 0;
        double rssAt50 = 0;
        CSeriesJob series(doc);
        series.m_onDisc = [&](int disc, int) {
            if (disc == 1) {
                afterFirst = clock.nsecsElapsed();
                cpuAfterFirst = cpuNanoseconds();
            }
            if (disc == 10)
                rssAt10 = maxRssMegabytes();
            if (disc == Discs)
                rssAt50 = maxRssMegabytes();
            afterLast = clock.nsecsElapsed();
            cpuAfterLast = cpuNanoseconds();
        };
        clock.start();
        if (series.Print(Discs, output) != CSeriesJob::Printed) {
            state.SkipWithError("the series failed");
            return;
        }
        // The document's end (writing the file) is the job's, not a disc's.
        state.counters["ms per disc after the first"] = double(afterLast - afterFirst) / 1e6 / (Discs - 1);
        state.counters["CPU ms per disc after the first"] = double(cpuAfterLast - cpuAfterFirst) / 1e6 / (Discs - 1);
        state.counters["max RSS MB at disc 10"] = rssAt10;
        state.counters["max RSS MB at disc 50"] = rssAt50;
        state.counters["PDF kB per disc"] = double(QFile(output).size()) / 1024.0 / Discs;
    }
}

BENCHMARK(BM_SeriesOfFiftyDiscs)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    // No scheduler: a print to file needs none.
    setenv("CUPS_SERVER", "127.0.0.1:1", 1);
    FontCollection* fonts = nullptr;
    return RunBenchmarks(argc, argv, [&] {
        fonts = new FontCollection;
        fonts->AddFontFiles(Folders::InstallDirectory() + QStringLiteral("fonts/"));
    }, [&] { delete fonts; });
}
