// Expanding a label text whose Data File field shows record 50,000 of a 5 MB data file. The
// file is read anew at every expansion, so this is the reader's speed: in 8-bit text, UTF-8
// and UTF-16, by lines and by commas.
#include "BenchSupport.h"
#include "fields/DataFields.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

namespace {

constexpr int TargetBytes = 5 * 1024 * 1024;
constexpr uint32_t RecordIndex = 50000;

// About 5 MB of address-like records with a line end or a comma behind each; shorter ones in
// UTF-16, so that its 5 MB hold as many records.
QString dataFile(const char* name, const QByteArray& mark, bool utf16, char separator)
{
    const QString path = scratch().filePath(QString::fromLatin1(name));
    if (QFile::exists(path))
        return path;
    QString text;
    for (int i = 0; text.size() * (utf16 ? 2 : 1) < TargetBytes; ++i) {
        text += utf16 ? QStringLiteral(u"M\u00FCller %1, Springfield").arg(i)
                      : QStringLiteral(u"Customer %1 M\u00FCller, %2 Station Road, Springfield %3")
                            .arg(i)
                            .arg(i % 997)
                            .arg(10000 + i % 89999);
        text += separator == '\n' ? QStringLiteral("\r\n") : QString(QChar::fromLatin1(separator));
    }
    QByteArray bytes = mark;
    if (utf16) {
        bytes.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    } else if (mark.isEmpty()) {
        bytes += text.toLatin1();
    } else {
        bytes += text.toUtf8();
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
    return path;
}

void expand(benchmark::State& state, const QString& path, int delimiter)
{
    DATAFIELD field;
    field.Tag = QStringLiteral("/*TAG1*/");
    field.Type = DATAFIELD::DataFile;
    field.FileName = path;
    field.Delimiter = delimiter;
    field.FileIndex = RecordIndex;
    g_dataFields.assign(1, field);
    const QString text = QStringLiteral("Ship to: /*TAG1*/");
    if (ExpandTags(text) == text || ExpandTags(text).size() < 20)
        state.SkipWithError("record not found");
    for (auto _ : state)
        benchmark::DoNotOptimize(ExpandTags(text));
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    g_dataFields.clear();
}

void BM_DataFile8BitLines(benchmark::State& state)
{
    expand(state, dataFile("ascii.txt", {}, false, '\n'), DATAFIELD::Line);
}

void BM_DataFileUtf8Lines(benchmark::State& state)
{
    expand(state, dataFile("utf8.txt", "\xEF\xBB\xBF", false, '\n'), DATAFIELD::Line);
}

void BM_DataFileUtf16Lines(benchmark::State& state)
{
    expand(state, dataFile("utf16.txt", "\xFF\xFE", true, '\n'), DATAFIELD::Line);
}

void BM_DataFile8BitCommas(benchmark::State& state)
{
    expand(state, dataFile("commas.txt", {}, false, ','), DATAFIELD::Comma);
}

BENCHMARK(BM_DataFile8BitLines)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_DataFileUtf8Lines)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_DataFileUtf16Lines)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_DataFile8BitCommas)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
