#include "TestSupport.h"
#include "document/CDrawDoc.h"
#include "fields/CFieldMessageScope.h"
#include "fields/DataFields.h"
#include "platform/MessageBox.h"
#include "platform/PaintingThread.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QThread>

namespace {

// Each test starts with an empty field list and keeps the messages shown to the user.
class DataFieldsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        g_dataFields.clear();
        MessageBox::SetPresenter([this](const QString& text, int) {
            messages << text;
            return int(MessageBox::IdOk);
        });
    }
    void TearDown() override
    {
        MessageBox::SetPresenter(nullptr);
        g_dataFields.clear();
    }

    // Appends a field of the kind with the tag the dialog would give it.
    DATAFIELD& addField(int type)
    {
        DATAFIELD field;
        field.Tag = QStringLiteral("/*TAG%1*/").arg(g_dataFields.size() + 1);
        field.Type = type;
        g_dataFields.push_back(field);
        return g_dataFields.back();
    }
    DATAFIELD& addDataFile(const QString& path, int delimiter)
    {
        DATAFIELD& field = addField(DATAFIELD::DataFile);
        field.FileName = path;
        field.Delimiter = delimiter;
        return field;
    }
    // The records a Data File field shows from index 0 on.
    QStringList records(const QString& path, int delimiter, uint32_t count)
    {
        g_dataFields.clear();
        addDataFile(path, delimiter);
        QStringList result;
        for (uint32_t i = 0; i < count; ++i) {
            g_dataFields[0].FileIndex = i;
            result << ReadFieldRecord(0);
        }
        return result;
    }
    TestFolder folder;
    QStringList messages;
};

QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

} // namespace

TEST_F(DataFieldsTest, ValuesOfEachKind)
{
    // Kind, the options (two-digit year, month names, day names, 24 hours, seconds), the clock.
    const struct {
        int type;
        int options[5];
        QDateTime when;
        const char* value;
    } cases[] = {
        {DATAFIELD::Year, {}, at(2024, 3, 9), "2024"},
        {DATAFIELD::Year, {1}, at(2024, 3, 9), "24"},
        {DATAFIELD::Year, {1}, at(2005, 3, 9), "05"},
        {DATAFIELD::Year, {1}, at(1999, 3, 9), "4294967295"}, // unsigned subtraction wraps
        {DATAFIELD::Month, {}, at(2024, 3, 9), "3"},
        {DATAFIELD::Month, {0, 1}, at(2024, 1, 9), "January"},
        {DATAFIELD::Day, {}, at(2024, 7, 7), "7"},
        {DATAFIELD::Day, {0, 0, 1}, at(2024, 7, 7), "Sunday"},
        // A clock that gives no valid date names nothing.
        {DATAFIELD::Month, {0, 1}, QDateTime(), ""},
        {DATAFIELD::Day, {0, 0, 1}, QDateTime(), ""},
        // The twelve-hour clock has its own rule for noon and midnight.
        {DATAFIELD::Time, {}, at(2024, 1, 1, 13, 5, 9), "1:05 PM"},
        {DATAFIELD::Time, {}, at(2024, 1, 1, 0, 5, 9), "0:05 AM"},
        {DATAFIELD::Time, {}, at(2024, 1, 1, 12, 5, 9), "12:05 AM"},
        {DATAFIELD::Time, {0, 0, 0, 0, 1}, at(2024, 1, 1, 12, 0, 0), "12:00:00 AM"},
        {DATAFIELD::Time, {0, 0, 0, 1, 0}, at(2024, 1, 1, 13, 5, 9), "13:05"},
        {DATAFIELD::Time, {0, 0, 0, 1, 1}, at(2024, 1, 1, 7, 5, 9), "7:05:09"},
        {-1, {}, at(2024, 1, 1), ""},
        {7, {}, at(2024, 1, 1), ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        g_dataFields.clear();
        DATAFIELD& field = addField(c.type);
        field.TwoDigitYear = c.options[0];
        field.MonthNames = c.options[1];
        field.DayNames = c.options[2];
        field.Hours24 = c.options[3];
        field.ShowSeconds = c.options[4];
        EXPECT_EQ(FieldValue(0, c.when), c.value);
    }

    g_dataFields.clear();
    DATAFIELD& disc = addField(DATAFIELD::Disc);
    disc.DiscNumber = 2;
    disc.DiscTotal = 5;
    addField(DATAFIELD::SerialNumber).Serial = ~0ULL;
    const QDateTime now = QDateTime::currentDateTime();
    EXPECT_EQ(QStringList({FieldValue(0, now), FieldValue(1, now), FieldValue(5, now)}),
              QStringList({"2 of 5", "18446744073709551615", ""}));
}

TEST_F(DataFieldsTest, ExpandTagsReplacesEveryWholeTagInArrayOrder)
{
    DATAFIELD& disc = addField(DATAFIELD::Disc); // /*TAG1*/
    disc.DiscNumber = 3;
    disc.DiscTotal = 7;
    for (int i = 2; i <= 9; ++i)
        addField(42); // unknown kinds delete their tag
    addField(DATAFIELD::SerialNumber).Serial = 99; // /*TAG10*/

    // The same value twice; the first tag doesn't match inside the tenth; case matters;
    // a tag nobody carries stays; an unknown kind deletes its tag.
    EXPECT_EQ(ExpandTags("Disc /*TAG1*/, again /*TAG1*/, serial /*TAG10*/ /*tag1*/ /*TAG11*/ [/*TAG5*/]"),
              "Disc 3 of 7, again 3 of 7, serial 99 /*tag1*/ /*TAG11*/ []");
    EXPECT_EQ(g_dataFields[0].DiscNumber, 3u) << "expanding moves no counter";
    EXPECT_EQ(ExpandTags("no tags"), "no tags");
    EXPECT_EQ(ExpandTags(""), "");
}

TEST_F(DataFieldsTest, ValuesMayBringInTheTagsOfLaterFieldsOnly)
{
    const QString path = folder.write("tags.txt", "Disc /*TAG2*/ and /*TAG0*/\n");
    addField(DATAFIELD::SerialNumber).Tag = "/*TAG0*/"; // earlier than the data file
    g_dataFields[0].Serial = 5;
    addDataFile(path, DATAFIELD::Line).Tag = "/*TAG1*/";
    addField(DATAFIELD::Disc).Tag = "/*TAG2*/";
    EXPECT_EQ(ExpandTags("[/*TAG1*/]"), "[Disc 1 of 1 and /*TAG0*/\r]");
}

TEST_F(DataFieldsTest, EndlessExpansionsStopSafely)
{
    // An empty tag would be found everywhere: it is passed over, and later fields still expand.
    addField(DATAFIELD::Disc).Tag = "";
    addField(DATAFIELD::SerialNumber).Serial = 8;
    EXPECT_EQ(ExpandTags("a/*TAG2*/b"), "a8b");

    // A value that holds its own tag stops after the bound, with its tag left in the text.
    g_dataFields.clear();
    addDataFile(folder.write("self.txt", "<</*TAG1*/,"), DATAFIELD::Comma);
    const QString small = ExpandTags("/*TAG1*/");
    EXPECT_EQ(small.count(u'<'), 2 * MaxTagReplacements);
    EXPECT_EQ(small.count("/*TAG1*/"), 1);

    // A long one stops once the text has grown by the bound.
    g_dataFields.clear();
    const QByteArray record = QByteArray(10000, 'x') + "/*TAG1*/";
    addDataFile(folder.write("long.txt", record + ";"), DATAFIELD::SemiColon);
    const QString big = ExpandTags("/*TAG1*/");
    EXPECT_GT(big.size(), MaxExpansionGrowth);
    EXPECT_LE(big.size(), MaxExpansionGrowth + 2 * record.size());
    EXPECT_LT(big.count("/*TAG1*/"), MaxTagReplacements);
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(DataFieldsTest, RecordsCountOnlyWithASeparatorBehindThem)
{
    EXPECT_EQ(records(folder.write("comma", "a,b,c"), DATAFIELD::Comma, 4), (QStringList{"a", "b", "", ""}));
    EXPECT_EQ(records(folder.write("empty", ",,x,"), DATAFIELD::Comma, 4), (QStringList{"", "", "x", ""}));
    // Line records keep the CR of the line end they were joined with, even in LF files.
    EXPECT_EQ(records(folder.write("lines", "one\ntwo\n"), DATAFIELD::Line, 3), (QStringList{"one\r", "two\r", ""}));
    EXPECT_EQ(records(folder.write("open", "one\r\ntwo"), DATAFIELD::Line, 2), (QStringList{"one\r", ""}));
    EXPECT_EQ(records(folder.write("unknown", "one\ntwo\n"), 9, 2), (QStringList{"one\r", "two\r"}));
    // Comma and Semi-Colon records keep the line ends inside them.
    EXPECT_EQ(records(folder.write("semi", "a;b\nc;d"), DATAFIELD::SemiColon, 3), (QStringList{"a", "b\r\nc", ""}));
    // Encoded data files give their characters.
    EXPECT_EQ(records(folder.write("utf8", "\xEF\xBB\xBF\xC3\xA9t\xC3\xA9,"), DATAFIELD::Comma, 1), QStringList{QStringLiteral(u"\u00E9t\u00E9")});

    // The last index there is ends at once rather than counting through four billion records.
    EXPECT_EQ(FieldRecord("a,b,", u',', 0xFFFFFFFFu), "");
    EXPECT_EQ(FieldRecord("", u',', 0), "");
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(DataFieldsTest, AMissingDataFileIsReportedAtEachReplacement)
{
    addDataFile(folder.path() + "/missing.txt", DATAFIELD::Line).Tag = "<name>";
    EXPECT_EQ(ExpandTags("[<name>|<name>]"), "[|]");
    EXPECT_EQ(messages, QStringList(2, "Invalid DataField Filename specififed in tag <name>."));

    // A composition on the painting thread holds every occurrence and shows them after it, on
    // the thread that asked for it.
    messages.clear();
    QList<QThread*> shownOn;
    MessageBox::SetPresenter([&](const QString& text, int) {
        messages << text;
        shownOn << QThread::currentThread();
        return int(MessageBox::IdOk);
    });
    {
        CFieldMessageScope composing(CFieldMessageScope::EveryOccurrence);
        PaintingThread::Run([] { ExpandTags("<name>+<name>"); });
        EXPECT_TRUE(messages.isEmpty());
    }
    EXPECT_EQ(messages, QStringList(2, "Invalid DataField Filename specififed in tag <name>."));
    EXPECT_EQ(shownOn, QList<QThread*>(2, QThread::currentThread()));

    EXPECT_EQ(ReadFieldRecord(1), "") << "no field there";
    EXPECT_EQ(ReadFieldRecord(-1), "");
}

TEST_F(DataFieldsTest, InTheWindowEachMessageComesOncePerDrawing)
{
    addDataFile(folder.path() + "/missing.txt", DATAFIELD::Line).Tag = "<a>";
    addDataFile(folder.path() + "/gone.txt", DATAFIELD::Line).Tag = "<b>";
    const QStringList both = {"Invalid DataField Filename specififed in tag <a>.",
                              "Invalid DataField Filename specififed in tag <b>."};
    {
        CFieldMessageScope drawing;
        {
            CFieldMessageScope label;
            EXPECT_EQ(ExpandTags("<a><a><b>"), "");
        }
        EXPECT_EQ(ExpandTags("<b><a>"), "");
        EXPECT_TRUE(messages.isEmpty()) << "nothing from the middle of the painting";
    }
    EXPECT_EQ(messages, both);
    {
        CFieldMessageScope nextDrawing;
        ExpandTags("<b>");
    }
    EXPECT_EQ(messages, both + QStringList{both[1]});

    // The drawings behind a message that is up add none of their own.
    messages.clear();
    MessageBox::SetPresenter([this](const QString& text, int) {
        messages << text;
        CFieldMessageScope repaint;
        ExpandTags("<a><b>");
        return int(MessageBox::IdOk);
    });
    EXPECT_EQ(ExpandTags("<a>"), "");
    {
        CFieldMessageScope drawing;
        ExpandTags("<a><b>");
    }
    EXPECT_EQ(messages, (QStringList{both[0]} + both));
}

TEST_F(DataFieldsTest, AdvanceFieldsMovesTheCountersOfOneDisc)
{
    CDrawDoc doc;
    addField(DATAFIELD::Year);
    addField(DATAFIELD::Time);
    addField(99);
    AdvanceFields(doc);
    EXPECT_FALSE(doc.IsModified()) << "nothing counts";

    DATAFIELD& last = addField(DATAFIELD::Disc);
    last.DiscNumber = 2;
    last.DiscTotal = 3;
    DATAFIELD& over = addField(DATAFIELD::Disc);
    over.DiscNumber = 9;
    over.DiscTotal = 3;
    DATAFIELD& serial = addField(DATAFIELD::SerialNumber);
    serial.Serial = 0xFFFFFFFFull;
    serial.SerialIncrement = 10;
    DATAFIELD& file = addField(DATAFIELD::DataFile);
    file.FileIndex = 4;
    file.FileIncrement = 3;

    AdvanceFields(doc);
    // Above the total from the start goes back to 1; the serial's sum is 64-bit.
    EXPECT_EQ(std::tuple(g_dataFields[3].DiscNumber, g_dataFields[4].DiscNumber, g_dataFields[5].Serial,
                         g_dataFields[6].FileIndex),
              std::tuple(3u, 1u, 0x100000009ull, 7u));
    AdvanceFields(doc);
    // 3 of 3 goes on with 1 of 3.
    EXPECT_EQ(std::pair(g_dataFields[3].DiscNumber, g_dataFields[4].DiscNumber), std::pair(1u, 2u));

    // Each counting kind on its own marks the document.
    for (int type : {DATAFIELD::Disc, DATAFIELD::SerialNumber, DATAFIELD::DataFile}) {
        CDrawDoc fresh;
        g_dataFields.clear();
        addField(type);
        AdvanceFields(fresh);
        EXPECT_TRUE(fresh.IsModified()) << type;
    }
}
