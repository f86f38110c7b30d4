// libFuzzer target for the data file reader: any bytes as a data file, read line by line and
// whole, then split into records as a Data File field does.
#include "FuzzSupport.h"

#include "fields/CTextFileRead.h"
#include "fields/DataFields.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <unistd.h>

namespace {

// One scratch file per process, rewritten for each input: the reader takes a path.
const QString& scratchPath()
{
    static const QString path = [] {
        QByteArray name = QDir::tempPath().toLocal8Bit() + "/datafile-fuzz-XXXXXX";
        const int fd = mkstemp(name.data());
        if (fd < 0)
            std::abort();
        close(fd);
        return QString::fromLocal8Bit(name);
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    FuzzSetUp(*argc, *argv, false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QFile file(scratchPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();

    QStringList lines;
    qsizetype lineChars = 0;
    {
        CTextFileRead reader(scratchPath());
        QString line;
        while (reader.ReadLine(line)) {
            lineChars += line.size();
            lines.append(line);
        }
    }
    // Every character comes from at least one byte, so the lines hold no more than the file.
    if (lineChars > qsizetype(size))
        std::abort();

    const QString lineEnd = QStringLiteral("\r\n");
    CTextFileRead reader(scratchPath());
    QString all;
    if (!reader.ReadAll(all, lineEnd))
        std::abort();
    // Reading whole is reading line by line.
    if (all != lines.join(lineEnd))
        std::abort();

    for (int delimiter = DATAFIELD::Line; delimiter <= DATAFIELD::SemiColon; ++delimiter) {
        const QChar separator = FieldSeparator(delimiter);
        for (uint32_t index : {0u, 1u, 7u, 0xFFFFFFFFu}) {
            const QString record = FieldRecord(all, separator, index);
            if (record.size() > all.size() || record.contains(separator))
                std::abort();
        }
    }
    return 0;
}
