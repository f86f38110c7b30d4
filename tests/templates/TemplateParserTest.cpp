#include "TemplateSamples.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <clocale>
#include <cstdlib>
#include <string>

namespace {

bool Loads(const QByteArray& text)
{
    bool loaded = false;
    LoadText(text, &loaded);
    return loaded;
}

// One DISC block with the given label number and the usual lines behind it.
QByteArray Disc(const QByteArray& label, const QByteArray& name = "Disc")
{
    return "DISC\n" + label + "\n" + name + "\n3\n3\n4.65\n0.7\n";
}

} // namespace

TEST(TemplateFormat, WorkedExampleStoresPerforationsOnTheSheet)
{
    bool loaded = false;
    const CTemplateFile file = LoadText(TwoDiscsAndACard, &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();

    EXPECT_EQ(file.IsPrinter, 0);
    EXPECT_EQ(file.TemplateName, "Two Discs and a Card");
    EXPECT_TRUE(file.PrintNotice.isEmpty());
    EXPECT_EQ(file.PaperWidth, 8.5);
    EXPECT_EQ(file.PaperHeight, 11.0);
    EXPECT_EQ(file.LabelCount, 2);
    EXPECT_EQ(file.OriginX, 0.1);
    EXPECT_EQ(file.OriginY, 0.1);
    ASSERT_EQ(file.Objects.size(), 3u);

    const CTemplateObject& disc = file.Objects[1];
    EXPECT_EQ(disc.LabelNumber, 1);
    EXPECT_EQ(disc.ObjectName, "Disc Label");
    EXPECT_EQ(disc.IsRect, 0);
    EXPECT_EQ(disc.CentreY, 7.75);
    EXPECT_EQ(disc.OuterDia, 4.65);
    EXPECT_EQ(disc.InnerDia, 0.7);
    EXPECT_EQ(disc.Rotation, 0.0);
    EXPECT_EQ(disc.EdgeDia, 4.72);
    EXPECT_TRUE(disc.Perfs.empty());

    const CTemplateObject& card = file.Objects[2];
    EXPECT_EQ(card.LabelNumber, 2);
    EXPECT_EQ(card.IsRect, 1);
    EXPECT_EQ(card.OuterDia, 3.5);
    EXPECT_EQ(card.InnerDia, 1.0);
    EXPECT_EQ(card.EdgeDia, 0.0);
    ASSERT_EQ(card.Perfs.size(), 1u);
    EXPECT_EQ(card.Perfs[0].Reserved, 0.0);
    EXPECT_DOUBLE_EQ(card.Perfs[0].X1, 4.25);
    EXPECT_DOUBLE_EQ(card.Perfs[0].Y1, 9.75);
    EXPECT_DOUBLE_EQ(card.Perfs[0].X2, 4.25);
    EXPECT_DOUBLE_EQ(card.Perfs[0].Y2, 10.75);

    // Every area of a sheet takes part in printing once the file has been read.
    for (const CTemplateObject& object : file.Objects)
        EXPECT_EQ(object.Selected, 1);
}

TEST(TemplateFormat, BusinessCardDiscsAndDiscPerforations)
{
    const QByteArray text = SheetHeader(1)
                            + "BUSDISC\n1\nCard\n3\n4\n3.15\n0.91\n90\n2.48\n"
                              "PERF\n7.5\n0.5\n1\n2.5\n1\nENDPERF\nENDOBJECT\nEND\n";
    bool loaded = false;
    const CTemplateFile file = LoadText(text, &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    ASSERT_EQ(file.Objects.size(), 1u);
    const CTemplateObject& card = file.Objects[0];
    EXPECT_EQ(card.IsRect, 0);
    EXPECT_EQ(card.Rotation, 90.0);
    EXPECT_EQ(card.EdgeDia, 2.48);
    // A disc measures its perforations from the square around it, rotation aside.
    ASSERT_EQ(card.Perfs.size(), 1u);
    EXPECT_EQ(card.Perfs[0].Reserved, 7.5);
    EXPECT_DOUBLE_EQ(card.Perfs[0].X1, 3 - 1.575 + 0.5);
    EXPECT_DOUBLE_EQ(card.Perfs[0].Y1, 4 - 1.575 + 1);
    EXPECT_DOUBLE_EQ(card.Perfs[0].X2, 3 - 1.575 + 2.5);
}

TEST(TemplateFormat, HeaderOnlyFilesAreTemplatesWithoutAreas)
{
    bool loaded = false;
    CTemplateFile sheet = LoadText(SheetHeader(3) + "END\n", &loaded);
    EXPECT_TRUE(loaded);
    EXPECT_TRUE(sheet.Objects.empty());
    EXPECT_EQ(sheet.LabelCount, 3);

    // A printer template has no LabelCount line and always one label.
    const CTemplateFile printer = LoadText(PrinterHeader() + Disc("1") + "ENDOBJECT\nEND", &loaded);
    EXPECT_TRUE(loaded) << printer.m_strError.toStdString();
    EXPECT_EQ(printer.IsPrinter, 1);
    EXPECT_EQ(printer.LabelCount, 1);
    ASSERT_EQ(printer.Objects.size(), 1u);
    EXPECT_EQ(printer.Objects[0].Selected, 0);

    // Reading again into the same object replaces what was there.
    TestFolder folder;
    CTemplateFile reused;
    ASSERT_TRUE(reused.LoadTemplate(folder.write("a.tmp", TwoDiscsAndACard)));
    ASSERT_TRUE(reused.LoadTemplate(folder.write("b.tmp", PrinterHeader() + "END\n")));
    EXPECT_TRUE(reused.Objects.empty());
    EXPECT_EQ(reused.IsPrinter, 1);
    EXPECT_EQ(reused.LabelCount, 1);
}

TEST(TemplateFormat, FilesThatAreNotTemplates)
{
    bool loaded = true;
    CTemplateFile file = LoadText("", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(file.m_strError, "the file is empty");

    file = LoadText("Sheet\nName\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_TRUE(file.m_strError.startsWith("the first line is neither SHEET nor PRINTER")) << file.m_strError.toStdString();

    file = LoadText("SHEET\nName\n\n8.5\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(file.m_strError, "the file ends before the PaperHeight line");

    file = LoadText(SheetHeader() + Disc("1") + "ENDOBJECT\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(file.m_strError, "the file ends before END");
    EXPECT_EQ(file.Objects.size(), 1u);

    // Keywords are whole lines, compared case-sensitively.
    EXPECT_FALSE(Loads(SheetHeader() + "END \n"));
    EXPECT_FALSE(Loads(SheetHeader() + "end\n"));
    // A blank line where a keyword is due ends the parse.
    file = LoadText(SheetHeader() + "\nEND\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(file.m_strError, "line 9: \"\" is not a keyword here");
}

TEST(TemplateFormat, BadLabelNumbersStopTheAreaButKeepIt)
{
    // The area stops at its number line; its name line then fails at the top level.
    bool loaded = true;
    CTemplateFile file = LoadText(SheetHeader(2) + Disc("0", "Disc Label") + "ENDOBJECT\nEND\n", &loaded);
    EXPECT_FALSE(loaded);
    ASSERT_EQ(file.Objects.size(), 1u);
    EXPECT_EQ(file.Objects[0].LabelNumber, 0);
    EXPECT_TRUE(file.Objects[0].ObjectName.isEmpty());
    EXPECT_TRUE(file.m_strError.startsWith("line 11: \"Disc Label\" is not a keyword here")) << file.m_strError.toStdString();
    EXPECT_TRUE(file.m_strError.contains("LabelNumber 0")) << file.m_strError.toStdString();

    file = LoadText(SheetHeader(2) + Disc("3") + "ENDOBJECT\nEND\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_TRUE(file.m_strError.contains("LabelNumber 3 is above LabelCount 2")) << file.m_strError.toStdString();

    // Unless the lines behind the number happen to be keywords at the top level.
    file = LoadText(SheetHeader(2) + "RECT\n3\nEND\n", &loaded);
    EXPECT_TRUE(loaded);
    ASSERT_EQ(file.Objects.size(), 1u);
    EXPECT_EQ(file.Objects[0].LabelNumber, 3);
    EXPECT_EQ(file.Objects[0].IsRect, 1);
    EXPECT_EQ(file.Objects[0].Selected, 1);

    // The comparison is unsigned: a negative number is too large, a negative count lets all pass.
    EXPECT_FALSE(Loads(SheetHeader(2) + Disc("-1") + "ENDOBJECT\nEND\n"));
    EXPECT_TRUE(Loads(SheetHeader(-1) + Disc("7") + "ENDOBJECT\nEND\n"));
    EXPECT_TRUE(Loads(SheetHeader(2) + Disc("2") + "ENDOBJECT\nEND\n"));

    // A printer template has one label only.
    EXPECT_FALSE(Loads(PrinterHeader() + Disc("2") + "ENDOBJECT\nEND\n"));
}

TEST(TemplateFormat, ClosingKeywordsOfTheWrongLevel)
{
    const QByteArray perf = "PERF\n0\n0.5\n0.5\n1\n1\n";

    // ENDOBJECT inside a perforation only ends that block; the area reads on behind it.
    bool loaded = true;
    CTemplateFile file = LoadText(SheetHeader() + Disc("1") + perf + "ENDOBJECT\nEND\n", &loaded);
    EXPECT_FALSE(loaded);
    ASSERT_EQ(file.Objects.size(), 1u);
    EXPECT_EQ(file.Objects[0].Perfs.size(), 1u) << "the perforation is stored as soon as its numbers are in";
    EXPECT_TRUE(Loads(SheetHeader() + Disc("1") + perf + "ENDOBJECT\nENDOBJECT\nEND\n"));

    // END inside an area only ends the area.
    EXPECT_FALSE(Loads(SheetHeader() + Disc("1") + "END\n"));
    file = LoadText(SheetHeader() + Disc("1") + "END\nEND\n", &loaded);
    EXPECT_TRUE(loaded);
    EXPECT_EQ(file.Objects.size(), 1u);

    // PERF at the top level fails the file; inside a perforation it fails that block only.
    EXPECT_FALSE(Loads(SheetHeader() + perf + "ENDPERF\nEND\n"));
    file = LoadText(SheetHeader() + Disc("1") + perf + "PERF\nENDOBJECT\nEND\n", &loaded);
    EXPECT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(file.Objects[0].Perfs.size(), 1u);

    // An area ends at the end of the file without failing more than the file already does.
    file = LoadText(SheetHeader() + Disc("1") + perf, &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(file.Objects[0].Perfs.size(), 1u);
    file = LoadText(SheetHeader() + Disc("1") + "PERF\n0\n0.5\n", &loaded);
    EXPECT_FALSE(loaded);
    EXPECT_TRUE(file.Objects[0].Perfs.empty());
}

TEST(TemplateFormat, NothingBehindEndIsRead)
{
    EXPECT_TRUE(Loads(SheetHeader() + "END\nEND\nGARBAGE\n\x01\xff\xfe"));
    EXPECT_TRUE(Loads(SheetHeader() + Disc("1") + "ENDOBJECT\nEND")); // no line end at all
}

TEST(TemplateFormat, NamesAreTextEvenWhenTheyLookLikeKeywords)
{
    bool loaded = false;
    const CTemplateFile file
        = LoadText("SHEET\nEND\nDISC\n8.5\n11\n1\n0\n0\nRECT\n1\nENDOBJECT\n1\n1\n1\n1\n0\nENDOBJECT\nEND\n", &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(file.TemplateName, "END");
    EXPECT_EQ(file.PrintNotice, "DISC");
    ASSERT_EQ(file.Objects.size(), 1u);
    EXPECT_EQ(file.Objects[0].ObjectName, "ENDOBJECT");
}

TEST(TemplateFormat, LineEndsAndEightBitText)
{
    QByteArray crlf = TwoDiscsAndACard;
    crlf.replace("\n", "\r\n");
    bool loaded = false;
    CTemplateFile file = LoadText(crlf, &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(file.TemplateName, "Two Discs and a Card");
    EXPECT_EQ(file.Objects[2].ObjectName, "Card");

    // Only the line end goes: blanks stay, and a CR that doesn't end a line stays too.
    file = LoadText("SHEET\r\n  Caf\xe9 \r\nnotice\r\r\n1\n1\n1\n0\n0\nEND\r\n", &loaded);
    ASSERT_TRUE(loaded) << file.m_strError.toStdString();
    EXPECT_EQ(file.TemplateName, QString::fromUtf8("  Caf\u00e9 "));
    EXPECT_EQ(file.PrintNotice, "notice\r");
    EXPECT_FALSE(Loads(SheetHeader() + "END\r\r\n"));
}

TEST(TemplateFormat, NumbersAreReadLeniently)
{
    // Integers: leading blanks, a sign and digits; anything else reads as 0.
    bool loaded = false;
    CTemplateFile file = LoadText("SHEET\nN\n\n8.5\n11\n  +3 labels\n0\n0\nEND\n", &loaded);
    EXPECT_EQ(file.LabelCount, 3);
    file = LoadText("SHEET\nN\n\n8.5\n11\nthree\n0\n0\nEND\n");
    EXPECT_EQ(file.LabelCount, 0);
    file = LoadText("SHEET\nN\n\n8.5\n11\n99999999999\n0\n0\nEND\n");
    EXPECT_EQ(file.LabelCount, 2147483647);
    file = LoadText("SHEET\nN\n\n8.5\n11\n-99999999999\n0\n0\nEND\n");
    EXPECT_EQ(file.LabelCount, -2147483647 - 1);

    // Decimals: the leading part that reads as a number; a blank line is 0.
    file = LoadText("SHEET\nN\n\n 8.5in\n\n1\n0.12345\n1e-1\nEND\n", &loaded);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(file.PaperWidth, 8.5);
    EXPECT_EQ(file.PaperHeight, 0.0);
    // The origin is not rounded, the paper is.
    EXPECT_EQ(file.OriginX, 0.12345);
    EXPECT_EQ(file.OriginY, 0.1);
    file = LoadText("SHEET\nN\n\n8.26772\n0x10\n1\n0\n0\nEND\n");
    EXPECT_EQ(file.PaperWidth, 8.268);
    EXPECT_EQ(file.PaperHeight, 16.0);
}

TEST(TemplateFormat, DecimalPointWhateverTheLocale)
{
    const std::string saved = std::setlocale(LC_ALL, nullptr);
    const char* commaLocales[] = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"};
    bool found = false;
    for (const char* name : commaLocales) {
        if (std::setlocale(LC_ALL, name) && std::strtod("0,5", nullptr) == 0.5) {
            found = true;
            break;
        }
    }
    if (!found) {
        std::setlocale(LC_ALL, saved.c_str());
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    const CTemplateFile file = LoadText(TwoDiscsAndACard);
    const double rounded = CTemplateFile::ReadRounded(QStringLiteral("1.23456"), 3);
    std::setlocale(LC_ALL, saved.c_str());
    EXPECT_EQ(file.OriginX, 0.1);
    EXPECT_EQ(file.Objects[0].OuterDia, 4.65);
    EXPECT_EQ(rounded, 1.235);
}

TEST(ReadRounded, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("1.23456"), 3), 1.235);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("-1.2345"), 3), -1.235);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("0.0025"), 3), 0.003);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("-0.0004"), 3), 0.0);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("1.25"), 1), 1.3);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("1250"), -2), 1300.0);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("abc"), 3), 0.0);
    EXPECT_EQ(CTemplateFile::ReadRounded(QStringLiteral("  7.5 mm"), 3), 7.5);
}

TEST(ReadRounded, ThreeDecimalTextsReadBackAsTheirNearestDouble)
{
    // So a value from a file equals the same value typed or written elsewhere.
    for (int thousandths = -5000; thousandths <= 20000; ++thousandths) {
        const QString text = QString::asprintf("%s%d.%03d", thousandths < 0 ? "-" : "", std::abs(thousandths) / 1000,
                                               std::abs(thousandths) % 1000);
        ASSERT_EQ(CTemplateFile::ReadRounded(text, 3), std::strtod(text.toLatin1().constData(), nullptr))
            << text.toStdString();
    }
}
