#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace {

using Dispatch = CommandLine::Dispatch;

struct Parsed {
    Dispatch dispatch;
    int exitCode;
    QString remaining;
    QString printer;
    QString printFile;
};

// The dialog's sequence on a line as start-up hands it over.
Parsed parse(const QString& line, int exitCode = 0)
{
    CommandLine commandLine(line);
    commandLine.Parse(exitCode);
    const Dispatch dispatch = commandLine.Decide();
    return {dispatch, exitCode, commandLine.Remaining(), commandLine.PrinterName(), commandLine.PrintFile()};
}

// As the program sees a shell's arguments: joined, then trimmed by start-up.
Parsed parseArguments(const QStringList& arguments)
{
    return parse(CommandLine::TrimQuotes(CommandLine::FromArguments(arguments)));
}

TEST(CommandLine, NothingOrBlanksStartTheDesignerWithANewLabel)
{
    for (const QString& line : {QString(), QStringLiteral("   "), QStringLiteral(" \t ")}) {
        const Parsed p = parse(line);
        EXPECT_EQ(p.dispatch, Dispatch::Interactive) << line.toStdString();
        EXPECT_EQ(p.exitCode, 0);
        EXPECT_TRUE(p.printer.isEmpty());
    }
}

TEST(CommandLine, AnythingElseIsAProjectPathAsItStands)
{
    const Parsed p = parse(QStringLiteral("  /home/ann/My Labels/Summer.DST  "));
    EXPECT_EQ(p.dispatch, Dispatch::OpenProject);
    // Leading blanks go, trailing ones and the case stay.
    EXPECT_EQ(p.remaining, QStringLiteral("/home/ann/My Labels/Summer.DST  "));
    EXPECT_EQ(p.exitCode, 0);
}

TEST(CommandLine, PrinterAndPrintOfAProjectGoUnattended)
{
    const Parsed p = parse(QStringLiteral("  -PRINTER \"Office/Disc Printer\"   -PRINT /srv/Jobs/Disc.DST  "));
    EXPECT_EQ(p.dispatch, Dispatch::PrintProject);
    EXPECT_EQ(p.printer, QStringLiteral("Office/Disc Printer"));
    // Lower case, also in the folders: the project is opened and saved back under this path.
    EXPECT_EQ(p.printFile, QStringLiteral("/srv/jobs/disc.dst"));
    EXPECT_EQ(p.exitCode, -1);
}

TEST(CommandLine, OnlyTheLastFourCharactersMakeAProject)
{
    const struct {
        const char* file;
        Dispatch dispatch;
    } cases[] = {
        {"label.Dst", Dispatch::PrintProject},
        {".dst", Dispatch::PrintProject},
        {"label.dst.bak", Dispatch::PrintFile},
        {"label.jpg", Dispatch::PrintFile},
        {"dst", Dispatch::PrintFile},
        {"labeldst", Dispatch::PrintFile},
    };
    for (const auto& c : cases) {
        const Parsed p = parse(QStringLiteral("-PRINTER \"PDF\" -PRINT ") + QString::fromLatin1(c.file));
        EXPECT_EQ(p.dispatch, c.dispatch) << c.file;
        EXPECT_EQ(p.printFile, QString::fromLatin1(c.file).toLower());
    }
}

TEST(CommandLine, PrintFileLosesTrailingBlanksThenTrailingThenLeadingQuotes)
{
    EXPECT_EQ(parse(QStringLiteral("-PRINTER \"P\" -PRINT \"\"/tmp/A B.png\"\"   ")).printFile, QStringLiteral("/tmp/a b.png"));
    // Blanks are cut before quotation marks only: a blank inside the closing mark stays.
    EXPECT_EQ(parse(QStringLiteral("-PRINTER \"P\" -PRINT \"x.png \" ")).printFile, QStringLiteral("x.png "));
    EXPECT_EQ(parse(QStringLiteral("-PRINTER \"P\" -PRINT  x.png")).printFile, QStringLiteral(" x.png"));
    // Nothing but quotation marks leaves no print file: the designer opens them as a path.
    const Parsed p = parse(QStringLiteral("-PRINTER \"P\" -PRINT \"\""));
    EXPECT_TRUE(p.printFile.isEmpty());
    EXPECT_EQ(p.dispatch, Dispatch::OpenProject);
    EXPECT_EQ(p.exitCode, -1);
}

TEST(CommandLine, PrintWithoutPrinterOpensThePathAndKeepsExitCodeMinusOne)
{
    const Parsed p = parse(QStringLiteral("-PRINT \"/home/ann/Disc One.DST\" "));
    EXPECT_EQ(p.dispatch, Dispatch::OpenProject);
    EXPECT_EQ(p.exitCode, -1);
    // The path with its blanks and quotation marks as they stand, not lower-cased.
    EXPECT_EQ(p.remaining, QStringLiteral("\"/home/ann/Disc One.DST\" "));
    EXPECT_EQ(p.printFile, QStringLiteral("/home/ann/Disc One.DST"));

    // With nothing after the option the line is empty: the designer, still with -1.
    const Parsed empty = parse(QStringLiteral("-PRINT "));
    EXPECT_EQ(empty.dispatch, Dispatch::Interactive);
    EXPECT_EQ(empty.exitCode, -1);
}

TEST(CommandLine, PrinterAloneStartsTheDesignerWithThatPrinter)
{
    const Parsed p = parse(QStringLiteral("-PRINTER \"Disc Printer\"  "));
    EXPECT_EQ(p.dispatch, Dispatch::Interactive);
    EXPECT_EQ(p.printer, QStringLiteral("Disc Printer"));
    EXPECT_EQ(p.exitCode, 0);
}

TEST(CommandLine, PrinterNameWithoutQuotesIsEmptyAndTheRestIsAProject)
{
    const Parsed p = parse(QStringLiteral("-PRINTER PDF -PRINT a.dst"));
    EXPECT_TRUE(p.printer.isEmpty());
    EXPECT_EQ(p.dispatch, Dispatch::OpenProject);
    EXPECT_EQ(p.remaining, QStringLiteral("PDF -PRINT a.dst"));
    EXPECT_EQ(p.exitCode, 0);
}

TEST(CommandLine, UnterminatedPrinterNameEndsAtTheEndOfTheLine)
{
    const Parsed p = parse(QStringLiteral("-PRINTER \"PDF -PRINT /tmp/a.dst"));
    EXPECT_EQ(p.printer, QStringLiteral("PDF -PRINT /tmp/a.dst"));
    EXPECT_TRUE(p.remaining.isEmpty());
    EXPECT_EQ(p.dispatch, Dispatch::Interactive);
    EXPECT_EQ(p.exitCode, 0);

    const Parsed bare = parse(QStringLiteral("-PRINTER \""));
    EXPECT_TRUE(bare.printer.isEmpty());
    EXPECT_EQ(bare.dispatch, Dispatch::Interactive);
}

TEST(CommandLine, OptionsAreCaseSensitiveOrderedAndNeedTheirBlank)
{
    EXPECT_EQ(parse(QStringLiteral("-printer \"PDF\" -print a.dst")).dispatch, Dispatch::OpenProject);
    EXPECT_EQ(parse(QStringLiteral("-PRINTER\"PDF\" -PRINT a.dst")).dispatch, Dispatch::OpenProject);
    EXPECT_EQ(parse(QStringLiteral("-PRINTER \"PDF\" -PRINTa.dst")).dispatch, Dispatch::OpenProject);

    // The other order: the printer option becomes part of the print file, and with no
    // printer name the line is a project path.
    const Parsed reversed = parse(QStringLiteral("-PRINT a.dst -PRINTER \"PDF\""));
    EXPECT_TRUE(reversed.printer.isEmpty());
    EXPECT_EQ(reversed.printFile, QStringLiteral("a.dst -PRINTER \"PDF"));
    EXPECT_EQ(reversed.dispatch, Dispatch::OpenProject);
    EXPECT_EQ(reversed.exitCode, -1);
}

TEST(CommandLine, StartUpTrimsQuotesFromTheLeftThenTheRight)
{
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral("\"\"/a b/c.dst\"")), QStringLiteral("/a b/c.dst"));
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral(" \"x\" ")), QStringLiteral(" \"x\" "));
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral("\"\"\"")), QString());
    // The closing mark of a quoted print file goes too; the parser copes without it.
    const QString line = CommandLine::TrimQuotes(QStringLiteral("-PRINTER \"PDF\" -PRINT \"/a b/c.dst\""));
    EXPECT_EQ(line, QStringLiteral("-PRINTER \"PDF\" -PRINT \"/a b/c.dst"));
    EXPECT_EQ(parse(line).printFile, QStringLiteral("/a b/c.dst"));
}

TEST(CommandLine, ArgumentsJoinWithQuotesWhereTheParserNeedsThem)
{
    EXPECT_EQ(CommandLine::FromArguments({}), QString());
    EXPECT_EQ(CommandLine::FromArguments({QStringLiteral("-PRINTER"), QStringLiteral("PDF"), QStringLiteral("-PRINT"),
                                          QStringLiteral("file.dst")}),
              QStringLiteral("-PRINTER \"PDF\" -PRINT file.dst"));
    EXPECT_EQ(CommandLine::FromArguments({QStringLiteral("/a/My Label.dst")}), QStringLiteral("\"/a/My Label.dst\""));
    // Quotation marks the user kept through the shell are not doubled.
    EXPECT_EQ(CommandLine::FromArguments({QStringLiteral("-PRINTER"), QStringLiteral("\"PDF\"")}),
              QStringLiteral("-PRINTER \"PDF\""));
    EXPECT_EQ(CommandLine::FromArguments({QStringLiteral("a"), QString(), QStringLiteral("b")}), QStringLiteral("a \"\" b"));
    // Only the argument right after the option is the printer's name.
    EXPECT_EQ(CommandLine::FromArguments({QStringLiteral("-PRINTER"), QStringLiteral("P"), QStringLiteral("x")}),
              QStringLiteral("-PRINTER \"P\" x"));
}

TEST(CommandLine, ShellArgumentsReachTheSameDecisions)
{
    // tessarelle -PRINTER "Office Laser" -PRINT "/home/ann/My Disc.DST"
    const Parsed job = parseArguments({QStringLiteral("-PRINTER"), QStringLiteral("Office Laser"),
                                       QStringLiteral("-PRINT"), QStringLiteral("/home/ann/My Disc.DST")});
    EXPECT_EQ(job.dispatch, Dispatch::PrintProject);
    EXPECT_EQ(job.printer, QStringLiteral("Office Laser"));
    EXPECT_EQ(job.printFile, QStringLiteral("/home/ann/my disc.dst"));
    EXPECT_EQ(job.exitCode, -1);

    // tessarelle -PRINTER PDF -PRINT photo.png
    const Parsed picture = parseArguments(
        {QStringLiteral("-PRINTER"), QStringLiteral("PDF"), QStringLiteral("-PRINT"), QStringLiteral("photo.png")});
    EXPECT_EQ(picture.dispatch, Dispatch::PrintFile);
    EXPECT_EQ(picture.printer, QStringLiteral("PDF"));

    // tessarelle "/home/ann/My Label.dst"
    const Parsed project = parseArguments({QStringLiteral("/home/ann/My Label.dst")});
    EXPECT_EQ(project.dispatch, Dispatch::OpenProject);
    EXPECT_EQ(project.remaining, QStringLiteral("/home/ann/My Label.dst"));

    // tessarelle -PRINTER PDF
    const Parsed printerOnly = parseArguments({QStringLiteral("-PRINTER"), QStringLiteral("PDF")});
    EXPECT_EQ(printerOnly.dispatch, Dispatch::Interactive);
    EXPECT_EQ(printerOnly.printer, QStringLiteral("PDF"));
}

} // namespace
