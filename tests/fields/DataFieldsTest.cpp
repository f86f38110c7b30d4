#include "TestSupport.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/MessageBox.h"

#include <gtest/gtest.h>

#include <QStringList>

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
    DATAFIELD& addDataFile(const QString& path, int delimiter, uint32_t index = 0)
    {
        DATAFIELD& field = addField(DATAFIELD::DataFile);
        field.FileName = path;
        field.Delimiter = delimiter;
        field.FileIndex = index;
        return field;
    }
    // The records a Data File field shows from index 0 on.
    QStringList records(const QString& path, int delimiter, uint32_t count)
    {
        addDataFile(path, delimiter);
        const int index = int(g_dataFields.size()) - 1;
        QStringList result;
        for (uint32_t i = 0; i < count; ++i) {
            g_dataFields[size_t(index)].FileIndex = i;
            result << ReadFieldRecord(index);
        }
        return result;
    }
    QString valueAt(int type, QDateTime when, const std::function<void(DATAFIELD&)>& setUp = {})
    {
        g_dataFields.clear();
        DATAFIELD& field = addField(type);
        if (setUp)
            setUp(field);
        return FieldValue(0, when);
    }

    TestFolder folder;
    QStringList messages;
};

QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

} // namespace

TEST_F(DataFieldsTest, DateValuesInTheirFormats)
{
    EXPECT_EQ(valueAt(DATAFIELD::Year, at(2024, 3, 9)), "2024");
    auto twoDigits = [](DATAFIELD& f) { f.TwoDigitYear = 1; };
    EXPECT_EQ(valueAt(DATAFIELD::Year, at(2024, 3, 9), twoDigits), "24");
    EXPECT_EQ(valueAt(DATAFIELD::Year, at(2005, 3, 9), twoDigits), "05");
    EXPECT_EQ(valueAt(DATAFIELD::Year, at(1999, 3, 9), twoDigits), "4294967295") << "unsigned subtraction wraps";

    EXPECT_EQ(valueAt(DATAFIELD::Month, at(2024, 3, 9)), "3");
    auto monthNames = [](DATAFIELD& f) { f.MonthNames = 1; };
    EXPECT_EQ(valueAt(DATAFIELD::Month, at(2024, 1, 9), monthNames), "January");
    EXPECT_EQ(valueAt(DATAFIELD::Month, at(2024, 12, 9), monthNames), "December");

    EXPECT_EQ(valueAt(DATAFIELD::Day, at(2024, 7, 7)), "7");
    auto dayNames = [](DATAFIELD& f) { f.DayNames = 1; };
    EXPECT_EQ(valueAt(DATAFIELD::Day, at(2024, 7, 7), dayNames), "Sunday");
    EXPECT_EQ(valueAt(DATAFIELD::Day, at(2024, 7, 8), dayNames), "Monday");
    EXPECT_EQ(valueAt(DATAFIELD::Day, at(2024, 7, 13), dayNames), "Saturday");
}

TEST_F(DataFieldsTest, TimeKeepsItsTwelveHourRule)
{
    const auto clock = [](int hours24, int seconds) {
        return [=](DATAFIELD& f) {
            f.Hours24 = hours24;
            f.ShowSeconds = seconds;
        };
    };
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 13, 5, 9), clock(0, 0)), "1:05 PM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 0, 5, 9), clock(0, 0)), "0:05 AM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 12, 5, 9), clock(0, 0)), "12:05 AM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 23, 59, 9), clock(0, 0)), "11:59 PM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 13, 5, 9), clock(0, 1)), "1:05:09 PM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 12, 0, 0), clock(0, 1)), "12:00:00 AM");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 13, 5, 9), clock(1, 0)), "13:05");
    EXPECT_EQ(valueAt(DATAFIELD::Time, at(2024, 1, 1, 7, 5, 9), clock(1, 1)), "7:05:09");
}

TEST_F(DataFieldsTest, CountersAndUnknownKinds)
{
    const QDateTime now = QDateTime::currentDateTime();
    EXPECT_EQ(valueAt(DATAFIELD::Disc, now, [](DATAFIELD& f) { f.DiscNumber = 2; f.DiscTotal = 5; }), "2 of 5");
    EXPECT_EQ(valueAt(DATAFIELD::SerialNumber, now, [](DATAFIELD& f) { f.Serial = 1ULL << 40; }), "1099511627776");
    EXPECT_EQ(valueAt(DATAFIELD::SerialNumber, now, [](DATAFIELD& f) { f.Serial = ~0ULL; }), "18446744073709551615");
    EXPECT_EQ(valueAt(-1, now), "");
    EXPECT_EQ(valueAt(7, now), "");
    EXPECT_EQ(FieldValue(5, now), "") << "no field there";
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

    // The year comes from the clock at the time of the replacement.
    g_dataFields.clear();
    addField(DATAFIELD::Year);
    const QString before = QString::number(QDate::currentDate().year());
    const QString expanded = ExpandTags("(c) /*TAG1*/");
    const QString after = QString::number(QDate::currentDate().year());
    EXPECT_TRUE(expanded == "(c) " + before || expanded == "(c) " + after) << expanded.toStdString();
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
    EXPECT_EQ(ReadFieldRecord(1), "") << "no field there";
    EXPECT_EQ(ReadFieldRecord(-1), "");
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
    const auto sizeBefore = g_dataFields.size();

    AdvanceFields(doc);
    EXPECT_TRUE(doc.IsModified());
    EXPECT_EQ(g_dataFields[3].DiscNumber, 3u);
    EXPECT_EQ(g_dataFields[4].DiscNumber, 1u) << "above the total from the start";
    EXPECT_EQ(g_dataFields[5].Serial, 0x100000009ull) << "64-bit sum";
    EXPECT_EQ(g_dataFields[6].FileIndex, 7u);
    AdvanceFields(doc);
    EXPECT_EQ(g_dataFields[3].DiscNumber, 1u) << "3 of 3 goes on with 1 of 3";
    EXPECT_EQ(g_dataFields[4].DiscNumber, 2u);
    EXPECT_EQ(g_dataFields.size(), sizeBefore);

    // Each counting kind on its own marks the document.
    for (int type : {DATAFIELD::Disc, DATAFIELD::SerialNumber, DATAFIELD::DataFile}) {
        CDrawDoc fresh;
        g_dataFields.clear();
        addField(type);
        AdvanceFields(fresh);
        EXPECT_TRUE(fresh.IsModified()) << type;
    }
}
