#include "TestSupport.h"
#include "fields/CTextFileRead.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

QStringList readLines(const QString& path)
{
    CTextFileRead file(path);
    QStringList lines;
    QString line;
    while (file.ReadLine(line))
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

CTextFileBase::TEXTENCODING encodingOf(const QString& path)
{
    return CTextFileRead(path).GetEncoding();
}

QByteArray utf16(const QString& text, bool bigEndian)
{
    QByteArray bytes;
    for (QChar c : text) {
        const char high = char(c.unicode() >> 8), low = char(c.unicode() & 0xFF);
        bytes += bigEndian ? QByteArray{&high, 1} + QByteArray{&low, 1} : QByteArray{&low, 1} + QByteArray{&high, 1};
    }
    return bytes;
}

// Lets a test choose the code page of 8-bit files.
class CodePageReader : public CTextFileRead {
public:
    CodePageReader(const QString& path, uint32_t codePage) : CTextFileRead(path) { CodePage = codePage; }
};

} // namespace

TEST(CTextFileRead, DetectsTheEncodingFromTheByteOrderMark)
{
    TestFolder folder;
    EXPECT_EQ(encodingOf(folder.write("le", QByteArray("\xFF\xFE" "A\0", 4))), CTextFileBase::UNI16_LE);
    EXPECT_EQ(encodingOf(folder.write("be", QByteArray("\xFE\xFF\0A", 4))), CTextFileBase::UNI16_BE);
    EXPECT_EQ(encodingOf(folder.write("utf8", "\xEF\xBB\xBF" "A")), CTextFileBase::UTF_8);
    EXPECT_EQ(encodingOf(folder.write("plain", "FF")), CTextFileBase::ASCII);

    // Half a UTF-8 mark is 8-bit text read from the start.
    const QString half = folder.write("half", "\xEF\xBB" "A");
    EXPECT_EQ(encodingOf(half), CTextFileBase::ASCII);
    EXPECT_EQ(readLines(half), QStringList{QStringLiteral(u"\u00EF\u00BBA")});

    // A mark alone: its end is only found while reading the first line.
    const QString markOnly = folder.write("mark", "\xFF\xFE");
    EXPECT_EQ(readLines(markOnly), QStringList{QString()});
    const QString oneByte = folder.write("one", "\xFF");
    EXPECT_EQ(encodingOf(oneByte), CTextFileBase::ASCII);
    EXPECT_EQ(readLines(oneByte), QStringList{QStringLiteral(u"\u00FF")});

    const QString empty = folder.write("empty", "");
    EXPECT_EQ(encodingOf(empty), CTextFileBase::ASCII);
    EXPECT_EQ(readAll(empty), QString());
    EXPECT_EQ(readLines(empty), QStringList{QString()});
}

TEST(CTextFileRead, DecodesUtf8WithinSixteenBits)
{
    TestFolder folder;
    const QString path = folder.write("utf8", "\xEF\xBB\xBF"
                                              "caf\xC3\xA9\n"          // two bytes
                                              "\xE2\x82\xAC" "5\n"     // three bytes
                                              "<\xF0\x9F\x98\x80>\n"   // four bytes: four replacements
                                              "\x80x\xFF\n"            // stray continuation and 0xFF
                                              "end\xE2\x82");          // cut short at the end
    const QStringList expected = {QStringLiteral(u"caf\u00E9"), QStringLiteral(u"\u20AC5"),
                                  QStringLiteral(u"<\uFFFD\uFFFD\uFFFD\uFFFD>"), QStringLiteral(u"\uFFFDx\uFFFD"),
                                  QStringLiteral("end")};
    EXPECT_EQ(readLines(path), expected);
}

TEST(CTextFileRead, ReadsUtf16InBothByteOrders)
{
    TestFolder folder;
    const QString text = QStringLiteral(u"\u00C5sa\r\n\u4E2D\u6587\nlast");
    const QStringList expected = {QStringLiteral(u"\u00C5sa"), QStringLiteral(u"\u4E2D\u6587"), QStringLiteral("last")};
    EXPECT_EQ(readLines(folder.write("le", "\xFF\xFE" + utf16(text, false))), expected);
    EXPECT_EQ(readLines(folder.write("be", "\xFE\xFF" + utf16(text, true))), expected);

    // An odd byte at the end makes a last character that is dropped with the end of the file.
    CTextFileRead odd(folder.write("odd", "\xFF\xFE" + utf16(QStringLiteral("AB"), false) + "C"));
    QString line;
    EXPECT_TRUE(odd.ReadLine(line));
    EXPECT_EQ(line, QStringLiteral("AB"));
    EXPECT_TRUE(odd.Eof());
    EXPECT_FALSE(odd.ReadLine(line));
    EXPECT_EQ(line, QStringLiteral("AB")) << "the line is left alone at the end";
}

TEST(CTextFileRead, EndsLinesAtCrOrLfOrBoth)
{
    TestFolder folder;
    const QStringList expected = {"a", "b", "c", "d", "", "e", "", "f", ""};
    // CR, LF and CR LF end one line each; LF CR and CR CR end two.
    const QByteArray bytes = "a\rb\nc\r\nd\n\re\r\rf\n";
    EXPECT_EQ(readLines(folder.write("ascii", bytes)), expected);
    EXPECT_EQ(readLines(folder.write("utf8", "\xEF\xBB\xBF" + bytes)), expected);
    EXPECT_EQ(readLines(folder.write("le", "\xFF\xFE" + utf16(QString::fromLatin1(bytes), false))), expected);
    // A file that starts with a line end starts with an empty line.
    EXPECT_EQ(readLines(folder.write("lead", "\r\nx")), (QStringList{"", "x"}));

    // ReadAll joins with the given text; a final line end gives a final empty line.
    EXPECT_EQ(readAll(folder.write("final", "one\r\ntwo\r\n"), "\r\n"), QStringLiteral("one\r\ntwo\r\n"));
    EXPECT_EQ(readAll(folder.write("open", "one\ntwo")), QStringLiteral("one|two"));
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

TEST(CTextFileRead, ReadsEightBitTextAsWindows1252)
{
    TestFolder folder;
    const QString path = folder.write("cp1252", "\x80 \x8A\x9F \xE9\xFF \x81\x8D\x8F\x90\x9D \x7F");
    EXPECT_EQ(readLines(path), QStringList{QStringLiteral(u"\u20AC \u0160\u0178 \u00E9\u00FF \u0081\u008D\u008F\u0090\u009D \u007F")});

    // A code page the system can't convert leaves every line empty.
    CodePageReader other(folder.write("two", "ab\ncd"), 437);
    QString line = "x";
    EXPECT_TRUE(other.ReadLine(line));
    EXPECT_EQ(line, QString());
    EXPECT_TRUE(other.ReadLine(line));
    EXPECT_EQ(line, QString());
    EXPECT_FALSE(other.ReadLine(line));
}

TEST(CTextFileRead, AFileThatCantBeOpenedIsAtItsEnd)
{
    TestFolder folder;
    for (const QString& path : {folder.path() + "/missing.txt", folder.path(), QString()}) {
        CTextFileRead file(path);
        EXPECT_FALSE(file.IsOpen()) << path.toStdString();
        EXPECT_TRUE(file.Eof());
        QString line = "kept", all = "kept";
        EXPECT_FALSE(file.ReadLine(line));
        EXPECT_EQ(line, "kept");
        EXPECT_FALSE(file.ReadAll(all, "\n"));
    }
}
