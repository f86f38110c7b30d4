#include "PrintSupport.h"

#include "printing/RewriteStream.h"

#include <QDir>

namespace {

const QByteArray Marker = QByteArray::fromHex("1B21000000000021");
const QByteArray Fixed = QByteArray::fromHex("1B300C13184B9244");
const QString Disc = QStringLiteral("Qn217 CD/DVD Printer");

QByteArray bytes(const char* hex)
{
    return QByteArray::fromHex(hex);
}

TEST(RewriteStreamBytes, EachKindOfCommand)
{
    // Plain bytes, and commands of no special kind, pass unchanged; a 1B 21 or 1B 30 that is
    // not exactly the marker or the fixed command is such an "other".
    const QByteArray plain = "abc" + bytes("1B41010203040506") + bytes("1B21000000000022") +
                             bytes("1B300C13184B9245") + "xyz";
    EXPECT_EQ(RewriteStreamBytes(plain), plain);

    // The fixed command moves to just behind the marker; the length stays.
    const QByteArray moved = "ab" + Marker + "cd" + Fixed + "ef";
    EXPECT_EQ(RewriteStreamBytes(moved), "ab" + Marker + Fixed + "cdef");

    // A marker without the fixed command gets one (8 bytes more); a fixed command without a
    // marker is dropped (8 bytes fewer); each marker gets its own.
    EXPECT_EQ(RewriteStreamBytes(Marker), Marker + Fixed);
    EXPECT_EQ(RewriteStreamBytes("a" + Fixed + "b"), "ab");
    EXPECT_EQ(RewriteStreamBytes(Marker + Fixed + Marker + Fixed), Marker + Fixed + Marker + Fixed);

    // Marker and fixed-command bytes inside a block are picture data, copied as they are.
    const QByteArray block = bytes("1B4640001000AABB") + Marker + Fixed + "z";
    EXPECT_EQ(RewriteStreamBytes(block), block);
    // A block of another kind carries no data: parsing goes on right behind its eight bytes.
    EXPECT_EQ(RewriteStreamBytes(bytes("1B46410010000000") + Marker), bytes("1B46410010000000") + Marker + Fixed);

    // A header's value is an end position 256 bytes short: 1B 70 00 10 at offset 0 copies the
    // bytes from offset 8 up to offset 272 (264 bytes) unread, and parses what follows. The raw
    // data ends in an ESC, so that one byte more or less would change what follows.
    auto raw = [](int size) {
        QByteArray data(size, '\0');
        data.replace(0, 8, Marker);
        if (size > 108)
            data.replace(100, 8, Fixed);
        data[size - 1] = '\x1B';
        return data;
    };
    const QByteArray header = bytes("1B70001000000000") + raw(264) + Marker;
    EXPECT_EQ(RewriteStreamBytes(header), bytes("1B70001000000000") + raw(264) + Marker + Fixed);
    // The same header further into the stream ends at the same absolute position.
    const QByteArray later = "0123" + bytes("1B70001000000000") + raw(260) + Marker;
    EXPECT_EQ(RewriteStreamBytes(later), "0123" + bytes("1B70001000000000") + raw(260) + Marker + Fixed);
    // So does a block's length.
    const QByteArray block16 = bytes("1B46400010000000") + raw(16) + Marker;
    EXPECT_EQ(RewriteStreamBytes(block16), bytes("1B46400010000000") + raw(16) + Marker + Fixed);

    EXPECT_TRUE(RewriteStreamBytes(QByteArray()).isEmpty());
}

TEST(RewriteStreamBytes, StreamsCutShortEndSafely)
{
    // A command cut off by the end is copied as far as it goes, and nothing more is read; so is
    // the rest of a stream shorter than the raw data a block or header announces.
    for (const QByteArray& cut : {"ab" + bytes("1B2100"), Marker.left(7), bytes("1B"),
                                  bytes("1B4640FFFF000000") + Marker, bytes("1B70FFFF00000000") + Fixed})
        EXPECT_EQ(RewriteStreamBytes(cut), cut) << cut.toHex().constData();
    // A header whose end lies behind it copies no data; parsing goes on behind it and ends.
    const QByteArray behind = QByteArray(300, 'x') + bytes("1B70000000000000") + Marker;
    EXPECT_EQ(RewriteStreamBytes(behind), QByteArray(300, 'x') + bytes("1B70000000000000") + Marker + Fixed);
}

TEST(RewriteStream, RewritesTheDiscPrintersFileInPlaceOrShowsWhyNot)
{
    TestFolder folder;
    CaughtMessages messages;

    // Another device (the name's case counts) leaves the file alone, marker and all; growing,
    // the marker gets its command; shrinking, the file is written over from the start without
    // truncation, so the old content's last eight bytes stay behind the result.
    const QByteArray old = "head" + Fixed + "tail-of-it";
    const struct {
        QString device;
        QByteArray before, after;
    } cases[] = {{"Qn217 CD/DVD printer", "a" + Marker + "b", "a" + Marker + "b"},
                 {Disc, "a" + Marker + "b", "a" + Marker + Fixed + "b"},
                 {Disc, old, "headtail-of-it" + old.right(8)},
                 {Disc, "", ""}};
    for (const auto& c : cases) {
        const QString path = folder.write("job.prn", c.before);
        EXPECT_TRUE(RewriteStream(path, c.device));
        EXPECT_EQ(readFile(path), c.after) << c.before.toHex().constData();
    }

    const QString missing = folder.path() + "/no such file.prn";
    EXPECT_FALSE(RewriteStream(missing, Disc));
    EXPECT_FALSE(QFile::exists(missing)) << "opening for writing must not create the file";
    // A folder opens for reading but never for writing.
    const QString directory = folder.path() + "/a folder";
    QDir().mkpath(directory);
    EXPECT_FALSE(RewriteStream(directory, Disc));
    EXPECT_EQ(messages, QStringList({"Error Reading: " + missing, "Error Writing: " + directory}));
}

TEST(RewriteStream, CommandLineTool)
{
    TestFolder folder;
    const QString path = folder.write("job with blanks.prn", "a" + Fixed + Marker + "b");
    CliRun run = runCli({"rewrite", path, "Some Other Printer"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(readFile(path), "a" + Fixed + Marker + "b");
    EXPECT_TRUE(run.out.contains("left as it is")) << run.out.constData();
    run = runCli({"rewrite", path, Disc});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(readFile(path), "a" + Marker + Fixed + "b");
    EXPECT_TRUE(run.out.contains("rewritten")) << run.out.constData();
    const QString missing = folder.path() + "/missing.prn";
    run = runCli({"rewrite", missing, Disc});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, ("Error Reading: " + missing + "\n").toUtf8());
    EXPECT_EQ(runCli({"rewrite", path}).exitCode, 2);
}

} // namespace
