#include "TestSupport.h"
#include "fields/CTextFileRead.h"

#include <gtest/gtest.h>

#include <QStringEncoder>
#include <QStringList>

namespace {

QStringList readLines(const QString& path)
{
    CTextFileRead file(path);
    QStringList lines;
    for (QString line; file.ReadLine(line);)
        lines << line;
    return lines;
}

QString readAll(const QString& path, const QString& lineEnd = QStringLiteral("|"))
{
    CTextFileRead file(path);
    QString all;
    EXPECT_TRUE(file.ReadAll(all, lineEnd));
    return all;
}

QByteArray utf16(const QString& text, bool bigEndian)
{
    return QStringEncoder(bigEndian ? QStringConverter::Utf16BE : QStringConverter::Utf16LE).encode(text);
}

// Lets a test choose the code page of 8-bit files.
class CodePageReader : public CTextFileRead {
public:
    CodePageReader(const QString& path, uint32_t codePage) : CTextFileRead(path) { CodePage = codePage; }
};

} // namespace

TEST(CTextFileRead, EncodingsAndLineEnds)
{
    TestFolder folder;
    const QByteArray ends = "a\rb\nc\r\nd\n\re\r\rf\n";
    const QStringList endLines = {"a", "b", "c", "d", "", "e", "", "f", ""};
    const QString utf16Text = QStringLiteral(u"\u00C5sa\r\n\u4E2D\u6587\nlast");
    const QStringList utf16Lines = {QStringLiteral(u"\u00C5sa"), QStringLiteral(u"\u4E2D\u6587"), "last"};
    const struct {
        QByteArray bytes;
        CTextFileBase::TEXTENCODING encoding;
        QStringList lines;
    } cases[] = {
        {QByteArray("\xFF\xFE" "A\0", 4), CTextFileBase::UNI16_LE, {"A"}},
        {QByteArray("\xFE\xFF\0A", 4), CTextFileBase::UNI16_BE, {"A"}},
        {"\xEF\xBB\xBF" "A", CTextFileBase::UTF_8, {"A"}},
        // Half a UTF-8 mark is 8-bit text read from the start.
        {"\xEF\xBB" "A", CTextFileBase::ASCII, {QStringLiteral(u"\u00EF\u00BBA")}},
        // A mark alone: its end is only found while reading the first line.
        {"\xFF\xFE", CTextFileBase::UNI16_LE, {""}},
        {"\xFF", CTextFileBase::ASCII, {QStringLiteral(u"\u00FF")}},
        {"", CTextFileBase::ASCII, {""}},
        // UTF-8 within sixteen bits: four-byte sequences, stray bytes and a cut end are replaced.
        {"\xEF\xBB\xBF" "caf\xC3\xA9\n\xE2\x82\xAC" "5\n<\xF0\x9F\x98\x80>\n\x80x\xFF\nend\xE2\x82", CTextFileBase::UTF_8,
         {QStringLiteral(u"caf\u00E9"), QStringLiteral(u"\u20AC5"), QStringLiteral(u"<\uFFFD\uFFFD\uFFFD\uFFFD>"),
          QStringLiteral(u"\uFFFDx\uFFFD"), "end"}},
        {"\xFF\xFE" + utf16(utf16Text, false), CTextFileBase::UNI16_LE, utf16Lines},
        {"\xFE\xFF" + utf16(utf16Text, true), CTextFileBase::UNI16_BE, utf16Lines},
        // An odd byte at the end makes a last character that is dropped with the end of the file.
        {"\xFF\xFE" + utf16(QStringLiteral("AB"), false) + "C", CTextFileBase::UNI16_LE, {"AB"}},
        // CR, LF and CR LF end one line each; LF CR and CR CR end two; a leading one an empty line.
        {ends, CTextFileBase::ASCII, endLines},
        {"\xEF\xBB\xBF" + ends, CTextFileBase::UTF_8, endLines},
        {"\xFF\xFE" + utf16(QString::fromLatin1(ends), false), CTextFileBase::UNI16_LE, endLines},
        {"\r\nx", CTextFileBase::ASCII, {"", "x"}},
        // Eight-bit text is Windows-1252.
        {"\x80 \x8A\x9F \xE9\xFF \x81\x8D\x8F\x90\x9D \x7F", CTextFileBase::ASCII,
         {QStringLiteral(u"\u20AC \u0160\u0178 \u00E9\u00FF \u0081\u008D\u008F\u0090\u009D \u007F")}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes.toHex().toStdString());
        const QString path = folder.write("file", c.bytes);
        EXPECT_EQ(CTextFileRead(path).GetEncoding(), c.encoding);
        EXPECT_EQ(readLines(path), c.lines);
    }

    // The line is left alone at the end; ReadAll joins with the given text, and a final line
    // end gives a final empty line.
    CTextFileRead odd(folder.write("odd", "\xFF\xFE" + utf16(QStringLiteral("AB"), false) + "C"));
    QString line;
    EXPECT_TRUE(odd.ReadLine(line) && odd.Eof() && !odd.ReadLine(line));
    EXPECT_EQ(line, QStringLiteral("AB"));
    EXPECT_EQ(readAll(folder.write("final", "one\r\ntwo\r\n"), "\r\n"), QStringLiteral("one\r\ntwo\r\n"));
    EXPECT_EQ(readAll(folder.write("open", "one\ntwo")), QStringLiteral("one|two"));
    EXPECT_EQ(readAll(folder.write("empty", "")), QString());

    // A code page the system can't convert leaves every line empty.
    CodePageReader other(folder.write("two", "ab\ncd"), 437);
    line = "x";
    EXPECT_TRUE(other.ReadLine(line) && line.isEmpty() && other.ReadLine(line) && line.isEmpty());
    EXPECT_FALSE(other.ReadLine(line));
}

TEST(CTextFileRead, LongLinesAndManyBlocksComeBackWhole)
{
    TestFolder folder;
    // Lines of every length around the block and line buffer sizes, in the three encodings.
    QStringList lines;
    for (int length : {0, 1, 1022, 1023, 1024, 1025, 2047, 2048, 5000, 3})
        lines << QString(length, QChar(u'a' + length % 26));
    for (int i = 0; i < 2000; ++i)
        lines << QStringLiteral(u"record %1 \u00E9").arg(i);
    const QString text = lines.join(QStringLiteral("\r\n"));

    EXPECT_EQ(readLines(folder.write("utf8", "\xEF\xBB\xBF" + text.toUtf8())), lines);
    EXPECT_EQ(readLines(folder.write("be", "\xFE\xFF" + utf16(text, true))), lines);
    EXPECT_EQ(readLines(folder.write("ascii", text.toLatin1())), lines);
    EXPECT_EQ(readAll(folder.write("ascii2", text.toLatin1()), QStringLiteral("\n")), lines.join('\n'));
}

TEST(CTextFileRead, AFileThatCantBeOpenedIsAtItsEnd)
{
    TestFolder folder;
    // A device that never ends is refused rather than read until memory runs out.
    for (const QString& path : {folder.path() + "/missing.txt", folder.path(), QString(), QString("/dev/zero")}) {
        CTextFileRead file(path);
        EXPECT_FALSE(file.IsOpen()) << path.toStdString();
        EXPECT_TRUE(file.Eof());
        QString line = "kept", all = "kept";
        EXPECT_FALSE(file.ReadLine(line));
        EXPECT_EQ(line, "kept");
        EXPECT_FALSE(file.ReadAll(all, "\n"));
    }
}
