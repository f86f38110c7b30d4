// Rewriting a 24 MB print-to-file stream of the disc printer in place, as the print job does
// after a job printed to a file: a header, then per band a marker, a fixed command elsewhere,
// a few short commands and plain bytes, and raw blocks of picture data. The stream holds as
// many fixed commands as markers, so every pass leaves the same bytes for the next one.
#include "printing/RewriteStream.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

namespace {

QByteArray discStream()
{
    QByteArray stream = QByteArray::fromHex("1B70000000000000") + QByteArray(248, '\x55');
    quint32 noise = 12345;
    while (stream.size() < 24 * 1024 * 1024) {
        stream += QByteArray::fromHex("1B21000000000021");
        stream += "\r\n" + QByteArray::fromHex("1B52000102030405");
        for (int block = 0; block < 4; ++block) {
            stream += QByteArray::fromHex("1B4640F000000000");
            QByteArray data(0xF000, '\0');
            for (char& byte : data) {
                noise = noise * 1103515245u + 12345u;
                byte = char(noise >> 24);
            }
            stream += data;
        }
        stream += QByteArray::fromHex("1B300C13184B9244");
    }
    return stream;
}

void BM_RewriteStream(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("disc.prn"));
    const QByteArray stream = discStream();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(stream) != stream.size())
        std::abort();
    file.close();
    for (auto _ : state)
        RewriteStream(path, DiscPrinterDeviceName);
    state.SetBytesProcessed(int64_t(state.iterations()) * stream.size());
}
BENCHMARK(BM_RewriteStream)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
