#include "TemplateSamples.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QIODevice>
#include <random>
#include <sys/stat.h>

namespace {

// A stream of any length made up on the fly: a head, a pattern repeated up to the given size,
// and a tail. It counts what it handed out, so a test can see how far the reader went.
class GeneratedDevice : public QIODevice {
public:
    GeneratedDevice(QByteArray head, QByteArray pattern, qint64 patternBytes, QByteArray tail = {})
        : m_head(std::move(head)), m_pattern(std::move(pattern)), m_tail(std::move(tail)), m_patternBytes(patternBytes)
    {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }
    qint64 delivered() const { return m_offset; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const qint64 head = m_head.size(), body = head + m_patternBytes, total = body + m_tail.size();
        qint64 written = 0;
        for (; written < maxSize && m_offset < total; ++written, ++m_offset)
            data[written] = m_offset < head ? m_head[m_offset]
                            : m_offset < body ? m_pattern[(m_offset - head) % m_pattern.size()]
                                              : m_tail[m_offset - body];
        return written;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_head, m_pattern, m_tail;
    qint64 m_patternBytes, m_offset = 0;
};

constexpr qint64 MB = 1024 * 1024;

} // namespace

TEST(TemplateRobustness, EveryTruncationOfAGoodFileFailsCleanly)
{
    // Only the last line, "END", completes the file; its line end is optional.
    const qsizetype complete = TwoDiscsAndACard.size() - 1;
    for (qsizetype length = 0; length <= TwoDiscsAndACard.size(); ++length) {
        bool loaded = false;
        const CTemplateFile file = LoadText(TwoDiscsAndACard.left(length), &loaded);
        EXPECT_TRUE(loaded == (length >= complete) && (loaded || !file.m_strError.isEmpty())) << length << " bytes";
    }
}

TEST(TemplateRobustness, RandomBytesNeverBreakTheReader)
{
    std::mt19937 random(20240611);
    const QByteArray heads[] = {QByteArray(), "SHEET\n", SheetHeader(3), SheetHeader(3) + "DISC\n1\n",
                                PrinterHeader() + "BUSDISC\n1\nx\n1\n1\n3\n1\n0\n2\nPERF\n"};
    // Mostly bytes that matter to the parser, so that the random text reaches deep into it.
    const QByteArray alphabet = "\n\n\n\r0123456789.-+eE \tDISCBUSRECTPERFEND\x00\xff";
    for (const QByteArray& head : heads) {
        for (int round = 0; round < 200; ++round) {
            QByteArray text = head;
            const int length = int(random() % 600);
            for (int i = 0; i < length; ++i)
                text += round % 2 ? char(random() % 256) : alphabet[int(random() % alphabet.size())];
            bool loaded = false;
            const CTemplateFile file = LoadText(text, &loaded);
            EXPECT_TRUE(loaded || !file.m_strError.isEmpty());
            EXPECT_LE(file.Objects.size(), size_t(CTemplateFile::MaxItems));
        }
    }
}

TEST(TemplateRobustness, HugeStreamsAreReadOnlyAsFarAsNeeded)
{
    // 200 MB behind END: the reader stops at END.
    GeneratedDevice behindEnd(TwoDiscsAndACard, "junk junk junk\n", 200 * MB);
    CTemplateFile file;
    EXPECT_TRUE(file.LoadTemplate(behindEnd)) << file.m_strError.toStdString();
    EXPECT_EQ(file.Objects.size(), 3u);
    EXPECT_LT(behindEnd.delivered(), 1 * MB);

    // One 100 MB line: only its start is kept.
    GeneratedDevice longName("SHEET\n", "x", 100 * MB, "\n\n8.5\n11\n1\n0\n0\nEND\n");
    EXPECT_TRUE(file.LoadTemplate(longName)) << file.m_strError.toStdString();
    EXPECT_EQ(std::pair(file.TemplateName.size(), file.PaperWidth), std::pair(qsizetype(CTemplateFile::MaxLineLength), 8.5));

    // A line that is too long is never a keyword, even if it starts like one.
    GeneratedDevice longKeyword(SheetHeader(), "END", 10 * MB, "\n");
    EXPECT_FALSE(file.LoadTemplate(longKeyword));

    // Endless areas, and endless perforations of one area, stop at the limit.
    GeneratedDevice areas(SheetHeader(1), "DISC\n1\nDisc\n1\n1\n1\n0.5\nENDOBJECT\n", 200 * MB);
    EXPECT_FALSE(file.LoadTemplate(areas));
    EXPECT_EQ(file.m_strError, QStringLiteral("more than %1 areas and perforations").arg(CTemplateFile::MaxItems));
    EXPECT_LE(file.Objects.size(), size_t(CTemplateFile::MaxItems));
    EXPECT_LT(areas.delivered(), 2 * MB);

    GeneratedDevice perfs(SheetHeader(1) + "RECT\n1\nCard\n1\n1\n1\n1\n0\n", "PERF\n0\n0\n0\n1\n1\nENDPERF\n", 200 * MB);
    EXPECT_FALSE(file.LoadTemplate(perfs));
    ASSERT_EQ(file.Objects.size(), 1u);
    EXPECT_LE(file.Objects[0].Perfs.size(), size_t(CTemplateFile::MaxItems));
    EXPECT_LT(perfs.delivered(), 2 * MB);
}

TEST(TemplateRobustness, FilesThatCannotBeRead)
{
    // A FIFO would block a reader until someone writes to it.
    TestFolder folder;
    const QString fifo = folder.path() + "/pipe.tmp";
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const std::pair<QString, QString> cases[] = {{folder.path() + "/missing.tmp", "cannot open: "},
                                                 {folder.path(), "cannot open: it is a folder"},
                                                 {fifo, "cannot open: not a regular file"}};
    CTemplateFile file;
    for (const auto& [path, error] : cases) {
        EXPECT_FALSE(file.LoadTemplate(path));
        // The system's reason follows "cannot open: "; the others are the whole message.
        EXPECT_EQ(error.endsWith(' ') ? file.m_strError.left(error.size()) : file.m_strError, error);
        EXPECT_EQ(file.m_strPath, path);
    }
}
