// libFuzzer target for the data file reader: any bytes as a data file, read line by line and
// whole, then split into records as a Data File field does.
#include "fields/CTextFileRead.h"
#include "fields/DataFields.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <unistd.h>

namespace {

// One scratch file per process, rewritten for each input.
const QString& scratchPath()
{
    static const QString path = [] {
        char name[] = "/tmp/datafile-fuzz-XXXXXX";
        const int fd = mkstemp(name);
        if (fd < 0)
            std::abort();
        close(fd);
        return QString::fromLocal8Bit(name);
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QFile file(scratchPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();

    qsizetype lineChars = 0;
    {
        CTextFileRead reader(scratchPath());
        QString line;
        while (reader.ReadLine(line))
            lineChars += line.size();
    }
    CTextFileRead reader(scratchPath());
    QString all;
    if (!reader.ReadAll(all, QStringLiteral("\r\n")))
        std::abort();
    // Every character comes from at least one byte, so no line holds more than the file.
    if (lineChars > qsizetype(size))
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
