// Reading every template at start-up: our own .tmp files, then the disc templates of the
// installed template databases (aim: 30 ms in all). Printed once cold, as a user's start meets
// it, then repeated warm for the two parts.
#include "BenchSupport.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"
#include "templates/GlabelsTemplates.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace {

QString OwnFolder()
{
    return Folders::InstallDirectory() + QStringLiteral("Templates");
}

void PrintColdStart()
{
    QElapsedTimer timer;
    timer.start();
    const std::vector<CTemplateFile> all = CTemplateFile::LoadTemplateList(OwnFolder());
    const double totalMs = timer.nsecsElapsed() / 1e6;
    size_t imported = 0;
    for (const CTemplateFile& file : all)
        imported += file.m_bImported ? 1 : 0;
    std::printf("All templates at start-up, cold: %.1f ms for %zu (%zu ours, %zu imported) (aim 30 ms)\n", totalMs,
                all.size(), all.size() - imported, imported);
    for (const QString& folder : GlabelsTemplates::SearchFolders())
        std::printf("  searched: %s\n", qPrintable(folder));
}

void OurOwnFiles(benchmark::State& state)
{
    // A folder other than the program's own is read without the imports.
    const QString copy = scratch().path() + QStringLiteral("/Templates");
    static const bool copied = [&] {
        QDir().mkpath(copy);
        for (const QString& name : QDir(OwnFolder()).entryList({QStringLiteral("*.tmp")}, QDir::Files))
            QFile::copy(OwnFolder() + QLatin1Char('/') + name, copy + QLatin1Char('/') + name);
        return true;
    }();
    (void)copied;
    for (auto _ : state)
        benchmark::DoNotOptimize(CTemplateFile::LoadTemplateList(copy));
}
BENCHMARK(OurOwnFiles)->Unit(benchmark::kMillisecond);

void ImportedDatabases(benchmark::State& state)
{
    const QStringList folders = GlabelsTemplates::SearchFolders();
    for (auto _ : state) {
        std::vector<CTemplateFile> list;
        GlabelsTemplates::AppendFolders(folders, list);
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(ImportedDatabases)->Unit(benchmark::kMillisecond);

void Everything(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(CTemplateFile::LoadTemplateList(OwnFolder()));
}
BENCHMARK(Everything)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv, PrintColdStart);
}
