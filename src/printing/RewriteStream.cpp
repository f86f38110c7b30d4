#include "printing/RewriteStream.h"

#include "platform/FileDescriptor.h"
#include "platform/MessageBox.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned char Esc = 0x1B;
constexpr unsigned char Marker[8] = {0x1B, 0x21, 0x00, 0x00, 0x00, 0x00, 0x00, 0x21};
constexpr unsigned char FixedCommand[8] = {0x1B, 0x30, 0x0C, 0x13, 0x18, 0x4B, 0x92, 0x44};

bool sameCommand(const unsigned char* command, const unsigned char (&pattern)[8])
{
    return std::equal(command, command + 8, pattern);
}

void append(QByteArray& out, const unsigned char* data, qsizetype size)
{
    out.append(reinterpret_cast<const char*>(data), size);
}


} // namespace

QByteArray RewriteStreamBytes(const QByteArray& stream)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(stream.constData());
    const qsizetype length = stream.size();
    QByteArray out;
    out.reserve(length + 64);

    qsizetype pos = 0;
    while (pos < length) {
        const unsigned char byte = bytes[pos++];
        if (byte != Esc) {
            out.append(char(byte));
            continue;
        }
        const unsigned char* command = bytes + pos - 1;
        if (length - pos < 7) {
            append(out, command, length - pos + 1);
            break;
        }
        pos += 7;
        const unsigned char b1 = command[1], b2 = command[2], b3 = command[3], b4 = command[4];

        if (b1 == 0x70) {
            append(out, command, 8);
            // The value is the absolute end of the raw data, 256 bytes short; not a length.
            // An end already behind the command copies nothing.
            const qsizetype count = std::clamp<qsizetype>(((b2 << 8) | b3) + 256 - pos, 0, length - pos);
            append(out, bytes + pos, count);
            pos += count;
        } else if (b1 == 0x46) {
            append(out, command, 8);
            if (b2 == 0x40) {
                const qsizetype count = std::min<qsizetype>((b3 << 8) | b4, length - pos);
                append(out, bytes + pos, count);
                pos += count;
            }
        } else if (sameCommand(command, Marker)) {
            append(out, command, 8);
            append(out, FixedCommand, 8);
        } else if (sameCommand(command, FixedCommand)) {
            // Dropped: it comes back behind the marker.
        } else {
            append(out, command, 8);
        }
    }
    return out;
}

bool RewriteStream(const QString& path, const QString& deviceName)
{
    if (deviceName != DiscPrinterDeviceName)
        return true;
    const QByteArray name = QFile::encodeName(path);

    std::unique_ptr<char[]> buffer;
    qsizetype length = 0;
    {
        const FileDescriptor in(::open(name.constData(), O_RDONLY | O_CLOEXEC));
        struct stat status {};
        if (in.get() < 0 || ::fstat(in.get(), &status) != 0) {
            MessageBox::Show(QStringLiteral("Error Reading: %1").arg(path));
            return false;
        }
        length = qsizetype(status.st_size);
        buffer.reset(new (std::nothrow) char[size_t(length) + 1]);
        if (!buffer) {
            MessageBox::Show(QStringLiteral("Out of Memory"));
            return false;
        }
        qsizetype got = 0;
        while (got < length) {
            const ssize_t n = ::read(in.get(), buffer.get() + got, size_t(length - got));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            got += n;
        }
        // A file that shrank while being read is taken as far as it went.
        length = got;
    }

    const FileDescriptor out(::open(name.constData(), O_WRONLY | O_CLOEXEC));
    if (out.get() < 0) {
        MessageBox::Show(QStringLiteral("Error Writing: %1").arg(path));
        return false;
    }
    const QByteArray result = RewriteStreamBytes(QByteArray::fromRawData(buffer.get(), length));
    // A failure in the middle leaves the file as far as it got.
    out.WriteAll(result.constData(), size_t(result.size()));
    return true;
}
