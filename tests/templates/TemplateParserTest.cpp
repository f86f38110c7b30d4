#include "TemplateSamples.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <string>

namespace {

// One DISC block with the given label number and the usual lines behind it.
QByteArray Disc(const QByteArray& label, const QByteArray& name = "Disc")
{
    return "DISC\n" + label + "\n" + name + "\n3\n3\n4.65\n0.7\n";
}

} // namespace

// The fields of an area and of its perforations, for comparing in one go.
std::tuple<int, QString, int, double, double, double, double, double, double> Fields(const CTemplateObject& o)
{
    return {o.LabelNumber, o.ObjectName, o.IsRect, o.CentreX, o.CentreY, o.OuterDia, o.InnerDia, o.Rotation,
            o.EdgeDia};
}
void ExpectPerf(const Perf& p, std::array<double, 5> expected)
{
    const double got[] = {p.Reserved, p.X1, p.Y1, p.X2, p.Y2};
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(got[i], expected[size_t(i)], 1e-9) << i;
}

TEST(TemplateFormat, WorkedExamplesAndReadingAgain)
{
    bool loaded = false;
    const CTemplateFile file = LoadText(TwoDiscsAndACard, &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(std::tuple(file.IsPrinter, file.TemplateName, file.PrintNotice, file.PaperWidth, file.PaperHeight,
                         file.LabelCount, file.OriginX, file.OriginY),
              std::tuple(0, QString("Two Discs and a Card"), QString(), 8.5, 11.0, 2, 0.1, 0.1));
    ASSERT_EQ(file.Objects.size(), 3u);
    EXPECT_EQ(Fields(file.Objects[1]), std::tuple(1, QString("Disc Label"), 0, 4.25, 7.75, 4.65, 0.7, 0.0, 4.72));
    const CTemplateObject& card = file.Objects[2];
    EXPECT_EQ(Fields(card), std::tuple(2, QString("Card"), 1, 4.25, 10.25, 3.5, 1.0, 0.0, 0.0));
    // A rectangle's perforations are stored on the sheet, from the card's corner.
    ASSERT_EQ(card.Perfs.size(), 1u);
    ExpectPerf(card.Perfs[0], {0, 4.25, 9.75, 4.25, 10.75});
    // Every area of a sheet takes part in printing once the file has been read.
    for (const CTemplateObject& object : file.Objects)
        EXPECT_EQ(object.Selected, 1);

    // A disc measures its perforations from the square around it, rotation aside.
    const CTemplateFile cards = LoadText(SheetHeader(1) + "BUSDISC\n1\nCard\n3\n4\n3.15\n0.91\n90\n2.48\n"
                                                          "PERF\n7.5\n0.5\n1\n2.5\n1\nENDPERF\nENDOBJECT\nEND\n",
                                         &loaded);
    ASSERT_TRUE(loaded && cards.Objects.size() == 1u) << cards.m_strError.toStdString();
    EXPECT_EQ(Fields(cards.Objects[0]), std::tuple(1, QString("Card"), 0, 3.0, 4.0, 3.15, 0.91, 90.0, 2.48));
    ASSERT_EQ(cards.Objects[0].Perfs.size(), 1u);
    ExpectPerf(cards.Objects[0].Perfs[0], {7.5, 3 - 1.575 + 0.5, 4 - 1.575 + 1, 3 - 1.575 + 2.5, 4 - 1.575 + 1});

    // A printer template has no LabelCount line and always one label; its areas aren't selected.
    const CTemplateFile printer = LoadText(PrinterHeader() + Disc("1") + "ENDOBJECT\nEND", &loaded);
    EXPECT_TRUE(loaded) << printer.m_strError.toStdString();
    EXPECT_EQ(std::tuple(printer.IsPrinter, printer.LabelCount, printer.Objects.size()), std::tuple(1, 1, size_t(1)));
    EXPECT_EQ(printer.Objects[0].Selected, 0);

    // Reading again into the same object replaces what was there.
    TestFolder folder;
    CTemplateFile reused;
    ASSERT_TRUE(reused.LoadTemplate(folder.write("a.tmp", TwoDiscsAndACard)));
    ASSERT_TRUE(reused.LoadTemplate(folder.write("b.tmp", PrinterHeader() + "END\n")));
    EXPECT_EQ(std::tuple(reused.IsPrinter, reused.LabelCount, reused.Objects.size()), std::tuple(1, 1, size_t(0)));
}

TEST(TemplateFormat, WhatLoadsAndWhatFails)
{
    const QByteArray perf = "PERF\n0\n0.5\n0.5\n1\n1\n";
    const struct {
        QByteArray text;
        const char* error; // "" when the file loads; otherwise the start of its error
        int areas;         // -1: not checked
        int perfs;         // of the first area; -1: not checked
    } cases[] = {
        {"", "the file is empty", 0, -1},
        {"Sheet\nName\n", "the first line is neither SHEET nor PRINTER", 0, -1},
        {"SHEET\nName\n\n8.5\n", "the file ends before the PaperHeight line", 0, -1},
        {SheetHeader() + Disc("1") + "ENDOBJECT\n", "the file ends before END", 1, -1},
        // Keywords are whole lines, compared case-sensitively; a blank line isn't one.
        {SheetHeader() + "END \n", "line 9: \"END \" is not a keyword here", 0, -1},
        {SheetHeader() + "end\n", "line 9", 0, -1},
        {SheetHeader() + "\nEND\n", "line 9: \"\" is not a keyword here", 0, -1},
        {SheetHeader() + "END\r\r\n", "line 9", 0, -1},
        // An area stops at a bad label number, kept; its name line then fails at the top level.
        {SheetHeader(2) + Disc("3") + "ENDOBJECT\nEND\n", "line 11", 1, -1},
        // Unless the lines behind the number happen to be keywords at the top level.
        {SheetHeader(2) + "RECT\n3\nEND\n", "", 1, 0},
        // The comparison is unsigned: a negative number is too large, a negative count lets all pass.
        {SheetHeader(2) + Disc("-1") + "ENDOBJECT\nEND\n", "line 11", 1, -1},
        {SheetHeader(-1) + Disc("7") + "ENDOBJECT\nEND\n", "", 1, 0},
        // A printer template has one label only.
        {PrinterHeader() + Disc("2") + "ENDOBJECT\nEND\n", "line", 1, -1},
        // ENDOBJECT inside a perforation only ends that block, stored as soon as its numbers are in.
        {SheetHeader() + Disc("1") + perf + "ENDOBJECT\nEND\n", "the file ends before END", 1, 1},
        {SheetHeader() + Disc("1") + perf + "ENDOBJECT\nENDOBJECT\nEND\n", "", 1, 1},
        // END inside an area only ends the area.
        {SheetHeader() + Disc("1") + "END\n", "the file ends before END", 1, 0},
        {SheetHeader() + Disc("1") + "END\nEND\n", "", 1, 0},
        // PERF at the top level fails the file; inside a perforation it fails that block only.
        {SheetHeader() + perf + "ENDPERF\nEND\n", "line 9", 0, -1},
        {SheetHeader() + Disc("1") + perf + "PERF\nENDOBJECT\nEND\n", "", 1, 1},
        // An area ends at the end of the file without failing more than the file already does.
        {SheetHeader() + Disc("1") + perf, "the file ends before END", 1, 1},
        {SheetHeader() + Disc("1") + "PERF\n0\n0.5\n", "the file ends before END", 1, 0},
        // Nothing behind END is read (the optional last line end is tried with every truncation).
        {SheetHeader() + "END\nEND\nGARBAGE\n\x01\xff\xfe", "", 0, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        bool loaded = false;
        const CTemplateFile file = LoadText(c.text, &loaded);
        EXPECT_EQ(loaded, !*c.error);
        if (*c.error) {
            EXPECT_TRUE(file.m_strError.startsWith(c.error)) << file.m_strError.toStdString();
        }
        EXPECT_EQ(int(file.Objects.size()), c.areas);
        if (c.perfs >= 0) {
            EXPECT_EQ(int(file.Objects[0].Perfs.size()), c.perfs);
        }
    }

    // The bad number's message names it, and the area keeps what it read.
    CTemplateFile file = LoadText(SheetHeader(2) + Disc("0", "Disc Label") + "ENDOBJECT\nEND\n");
    EXPECT_TRUE(file.m_strError.startsWith("line 11: \"Disc Label\" is not a keyword here")) << file.m_strError.toStdString();
    EXPECT_TRUE(file.m_strError.contains("LabelNumber 0")) << file.m_strError.toStdString();
    EXPECT_EQ(std::tuple(file.Objects[0].LabelNumber, file.Objects[0].ObjectName), std::tuple(0, QString()));
    file = LoadText(SheetHeader(2) + Disc("3") + "ENDOBJECT\nEND\n");
    EXPECT_TRUE(file.m_strError.contains("LabelNumber 3 is above LabelCount 2")) << file.m_strError.toStdString();
    file = LoadText(SheetHeader(2) + "RECT\n3\nEND\n");
    EXPECT_EQ(std::tuple(file.Objects[0].LabelNumber, file.Objects[0].IsRect, file.Objects[0].Selected),
              std::tuple(3, 1, 1));

    // Names are text even when they look like keywords.
    file = LoadText("SHEET\nEND\nDISC\n8.5\n11\n1\n0\n0\nRECT\n1\nENDOBJECT\n1\n1\n1\n1\n0\nENDOBJECT\nEND\n");
    ASSERT_EQ(file.Objects.size(), 1u) << file.m_strError.toStdString();
    EXPECT_EQ(QStringList({file.TemplateName, file.PrintNotice, file.Objects[0].ObjectName}),
              QStringList({"END", "DISC", "ENDOBJECT"}));
}

TEST(TemplateFormat, LineEndsAndEightBitText)
{
    QByteArray crlf = TwoDiscsAndACard;
    crlf.replace("\n", "\r\n");
    bool loaded = false;
    CTemplateFile file = LoadText(crlf, &loaded);
    ASSERT_TRUE(loaded && file.Objects.size() == 3u) << file.m_strError.toStdString();
    EXPECT_EQ(file.Objects[2].ObjectName, "Card");

    // Only the line end goes: blanks stay, and a CR that doesn't end a line stays too.
    file = LoadText("SHEET\r\n  Caf\xe9 \r\nnotice\r\r\n1\n1\n1\n0\n0\nEND\r\n", &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(std::pair(file.TemplateName, file.PrintNotice),
              std::pair(QString::fromUtf8("  Caf\u00e9 "), QString("notice\r")));
}

TEST(TemplateFormat, NumbersAreReadLeniently)
{
    // Integers: leading blanks, a sign and digits, clamped; anything else reads as 0.
    const std::pair<const char*, int> counts[] = {
        {"  +3 labels", 3}, {"three", 0}, {"99999999999", 2147483647}, {"-99999999999", -2147483647 - 1}};
    for (const auto& [line, count] : counts)
        EXPECT_EQ(LoadText("SHEET\nN\n\n8.5\n11\n" + QByteArray(line) + "\n0\n0\nEND\n").LabelCount, count) << line;

    // Decimals: the leading part that reads as a number; a blank line is 0. The paper is
    // rounded to thousandths, the origin is not.
    bool loaded = false;
    CTemplateFile file = LoadText("SHEET\nN\n\n 8.5in\n\n1\n0.12345\n1e-1\nEND\n", &loaded);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(std::tuple(file.PaperWidth, file.PaperHeight, file.OriginX, file.OriginY),
              std::tuple(8.5, 0.0, 0.12345, 0.1));
    file = LoadText("SHEET\nN\n\n8.26772\n0x10\n1\n0\n0\nEND\n");
    EXPECT_EQ(std::pair(file.PaperWidth, file.PaperHeight), std::pair(8.268, 16.0));
}

TEST(TemplateFormat, DecimalPointWhateverTheLocale)
{
    const std::string saved = std::setlocale(LC_ALL, nullptr);
    const char* commaLocales[] = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"};
    if (std::none_of(std::begin(commaLocales), std::end(commaLocales), [](const char* name) {
            return std::setlocale(LC_ALL, name) && std::strtod("0,5", nullptr) == 0.5;
        })) {
        std::setlocale(LC_ALL, saved.c_str());
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    const CTemplateFile file = LoadText(TwoDiscsAndACard);
    const double rounded = CTemplateFile::ReadRounded(QStringLiteral("1.23456"), 3);
    std::setlocale(LC_ALL, saved.c_str());
    EXPECT_EQ(std::tuple(file.OriginX, file.Objects[0].OuterDia, rounded), std::tuple(0.1, 4.65, 1.235));
}

TEST(ReadRounded, RoundsHalvesAwayFromZeroAndThreeDecimalsReadAsTheirNearestDouble)
{
    const std::tuple<const char*, int, double> cases[] = {
        {"1.23456", 3, 1.235}, {"-1.2345", 3, -1.235}, {"0.0025", 3, 0.003}, {"-0.0004", 3, 0.0},
        {"1.25", 1, 1.3},      {"1250", -2, 1300.0},   {"abc", 3, 0.0},      {"  7.5 mm", 3, 7.5}};
    for (const auto& [text, decimals, value] : cases)
        EXPECT_EQ(CTemplateFile::ReadRounded(QString::fromLatin1(text), decimals), value) << text;

    // So a value from a file equals the same value typed or written elsewhere.
    for (int thousandths = -5000; thousandths <= 20000; ++thousandths) {
        const QString text = QString::asprintf("%s%d.%03d", thousandths < 0 ? "-" : "", std::abs(thousandths) / 1000,
                                               std::abs(thousandths) % 1000);
        ASSERT_EQ(CTemplateFile::ReadRounded(text, 3), std::strtod(text.toLatin1().constData(), nullptr))
            << text.toStdString();
    }
}

TEST(TemplateFormat, NamesAreWindows1252WhateverTheLocale)
{
    bool loaded = false;
    const CTemplateFile file = LoadText("SHEET\nCaf\xe9 \x80 5\n\x93Notice\x94\n8.5\n11\n1\n0\n0\n"
                                       "DISC\n1\nD\xfcsseldorf \x99\n4.25\n3\n4.65\n0.7\nENDOBJECT\nEND\n",
                                       &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(std::tuple(file.TemplateName, file.PrintNotice, file.Objects[0].ObjectName),
              std::tuple(QStringLiteral(u"Café € 5"), QStringLiteral(u"\u201cNotice\u201d"),
                         QStringLiteral(u"Düsseldorf \u2122")));
}
