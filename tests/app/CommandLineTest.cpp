#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace {

using Dispatch = CommandLine::Dispatch;

struct Case {
    const char* line;
    Dispatch dispatch;
    int exitCode;
    const char* remaining; // nullptr: not checked
    const char* printer;
    const char* printFile; // nullptr: not checked
};

// The dialog's sequence on a line as start-up hands it over: parse, decide, read the parts.
void expectParsed(const Case& c, const QString& line)
{
    CommandLine commandLine(line);
    int exitCode = 0;
    commandLine.Parse(exitCode);
    EXPECT_EQ(commandLine.Decide(), c.dispatch);
    EXPECT_EQ(exitCode, c.exitCode);
    EXPECT_EQ(commandLine.PrinterName(), QString::fromUtf8(c.printer));
    if (c.remaining) {
        EXPECT_EQ(commandLine.Remaining(), QString::fromUtf8(c.remaining));
    }
    if (c.printFile) {
        EXPECT_EQ(commandLine.PrintFile(), QString::fromUtf8(c.printFile));
    }
}

TEST(CommandLine, LinesDecideTheStartAndKeepTheirQuirks)
{
    const Case cases[] = {
        // Nothing or blanks: the designer with a new label.
        {"", Dispatch::Interactive, 0, nullptr, "", nullptr},
        {" \t ", Dispatch::Interactive, 0, nullptr, "", nullptr},
        // Anything else is a project path; leading blanks go, trailing ones and the case stay.
        {"  /home/ann/My Labels/Summer.DST  ", Dispatch::OpenProject, 0, "/home/ann/My Labels/Summer.DST  ", "",
         nullptr},
        // Printer and print go unattended; the print file is lower-cased, folders too.
        {"  -PRINTER \"Office/Disc Printer\"   -PRINT /srv/Jobs/Disc.DST  ", Dispatch::PrintProject, -1, nullptr,
         "Office/Disc Printer", "/srv/jobs/disc.dst"},
        // The print file loses trailing blanks, then trailing, then leading quotation marks.
        {"-PRINTER \"P\" -PRINT \"\"/tmp/A B.png\"\"   ", Dispatch::PrintFile, -1, nullptr, "P", "/tmp/a b.png"},
        {"-PRINTER \"P\" -PRINT \"x.png \" ", Dispatch::PrintFile, -1, nullptr, "P", "x.png "},
        {"-PRINTER \"P\" -PRINT  x.png", Dispatch::PrintFile, -1, nullptr, "P", " x.png"},
        // Nothing but quotation marks leaves no print file: the designer opens them as a path.
        {"-PRINTER \"P\" -PRINT \"\"", Dispatch::OpenProject, -1, nullptr, "P", ""},
        // Print without a printer opens the path as it stands and keeps -1.
        {"-PRINT \"/home/ann/Disc One.DST\" ", Dispatch::OpenProject, -1, "\"/home/ann/Disc One.DST\" ", "",
         "/home/ann/Disc One.DST"},
        {"-PRINT ", Dispatch::Interactive, -1, nullptr, "", nullptr},
        // A printer alone: the designer with that printer.
        {"-PRINTER \"Disc Printer\"  ", Dispatch::Interactive, 0, nullptr, "Disc Printer", nullptr},
        // A printer name needs its quotation marks; unterminated, it runs to the end of the line.
        {"-PRINTER PDF -PRINT a.dst", Dispatch::OpenProject, 0, "PDF -PRINT a.dst", "", nullptr},
        {"-PRINTER \"PDF -PRINT /tmp/a.dst", Dispatch::Interactive, 0, "", "PDF -PRINT /tmp/a.dst", nullptr},
        {"-PRINTER \"", Dispatch::Interactive, 0, nullptr, "", nullptr},
        // Options are case-sensitive, need their blank and come in order.
        {"-printer \"PDF\" -print a.dst", Dispatch::OpenProject, 0, nullptr, "", nullptr},
        {"-PRINTER\"PDF\" -PRINT a.dst", Dispatch::OpenProject, 0, nullptr, "", nullptr},
        {"-PRINTER \"PDF\" -PRINTa.dst", Dispatch::OpenProject, 0, nullptr, "PDF", nullptr},
        {"-PRINT a.dst -PRINTER \"PDF\"", Dispatch::OpenProject, -1, nullptr, "", "a.dst -PRINTER \"PDF"},
        // Only the last four characters make a project.
        {"-PRINTER \"PDF\" -PRINT label.Dst", Dispatch::PrintProject, -1, nullptr, "PDF", "label.dst"},
        {"-PRINTER \"PDF\" -PRINT .dst", Dispatch::PrintProject, -1, nullptr, "PDF", ".dst"},
        {"-PRINTER \"PDF\" -PRINT label.dst.bak", Dispatch::PrintFile, -1, nullptr, "PDF", "label.dst.bak"},
        {"-PRINTER \"PDF\" -PRINT labeldst", Dispatch::PrintFile, -1, nullptr, "PDF", "labeldst"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        expectParsed(c, QString::fromUtf8(c.line));
    }
}

TEST(CommandLine, StartUpTrimsQuotesFromTheLeftThenTheRight)
{
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral("\"\"/a b/c.dst\"")), QStringLiteral("/a b/c.dst"));
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral(" \"x\" ")), QStringLiteral(" \"x\" "));
    EXPECT_EQ(CommandLine::TrimQuotes(QStringLiteral("\"\"\"")), QString());
    // The closing mark of a quoted print file goes too; the parser copes without it.
    const QString line = CommandLine::TrimQuotes(QStringLiteral("-PRINTER \"PDF\" -PRINT \"/a b/c.dst\""));
    EXPECT_EQ(line, QStringLiteral("-PRINTER \"PDF\" -PRINT \"/a b/c.dst"));
    expectParsed({"", Dispatch::PrintProject, -1, nullptr, "PDF", "/a b/c.dst"}, line);
}

TEST(CommandLine, ShellArgumentsJoinWithQuotesWhereTheParserNeedsThem)
{
    const std::pair<QStringList, const char*> joins[] = {
        {{}, ""},
        {{"-PRINTER", "PDF", "-PRINT", "file.dst"}, "-PRINTER \"PDF\" -PRINT file.dst"},
        {{"/a/My Label.dst"}, "\"/a/My Label.dst\""},
        {{"-PRINTER", "\"PDF\""}, "-PRINTER \"PDF\""}, // kept through the shell: not doubled
        {{"a", "", "b"}, "a \"\" b"},
        {{"-PRINTER", "P", "x"}, "-PRINTER \"P\" x"}, // only the argument after the option
    };
    for (const auto& [arguments, line] : joins)
        EXPECT_EQ(CommandLine::FromArguments(arguments), QString::fromUtf8(line)) << line;

    // As the program sees a shell's arguments: joined, then trimmed by start-up.
    const std::pair<QStringList, Case> runs[] = {
        {{"-PRINTER", "Office Laser", "-PRINT", "/home/ann/My Disc.DST"},
         {"", Dispatch::PrintProject, -1, nullptr, "Office Laser", "/home/ann/my disc.dst"}},
        {{"-PRINTER", "PDF", "-PRINT", "photo.png"}, {"", Dispatch::PrintFile, -1, nullptr, "PDF", "photo.png"}},
        {{"/home/ann/My Label.dst"}, {"", Dispatch::OpenProject, 0, "/home/ann/My Label.dst", "", nullptr}},
        {{"-PRINTER", "PDF"}, {"", Dispatch::Interactive, 0, nullptr, "PDF", nullptr}},
    };
    for (const auto& [arguments, expected] : runs) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        expectParsed(expected, CommandLine::TrimQuotes(CommandLine::FromArguments(arguments)));
        // Without a display only these may start.
        EXPECT_EQ(CommandLine::IsUnattended(CommandLine::FromArguments(arguments)),
                  expected.dispatch == Dispatch::PrintProject || expected.dispatch == Dispatch::PrintFile);
    }
}

} // namespace
