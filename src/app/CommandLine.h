#pragma once

#include <QString>
#include <QStringList>

// The command line and the three ways it can start the program: nothing (the designer with a
// new label), a project path (the designer with that project), or
//
//     -PRINTER "<printer name>" -PRINT <file>
//
// which prints the file unattended on that printer and ends. The options are accepted in this
// order only, in upper case, each followed by one blank, and the printer's name only inside
// quotation marks; anything else is taken as a project path.
//
// The parser works on one string, as the program receives its command line on Windows. On
// Linux the program gets its arguments one by one; FromArguments joins them back into that
// string (see there), so that the forms above work as typed in a shell.
class CommandLine {
public:
    enum class Dispatch {
        Interactive,  // nothing left: the designer with a new label
        PrintProject, // unattended: open the project, print it, save it back when modified
        PrintFile,    // unattended: hand the file to the print job as it is
        OpenProject,  // the whole remaining line is a project to open in the designer
    };

    // Joins the arguments (without the program's own name) with single blanks. An argument
    // that holds a blank, or is empty, goes inside quotation marks. The argument after
    // "-PRINTER" always does, because the parser takes the printer's name only in quotation
    // marks and the shell has already removed those the user typed. An argument that already
    // begins with a quotation mark is left as it is.
    static QString FromArguments(const QStringList& arguments);
    // What start-up does to the whole line before the parser sees it: quotation marks are cut
    // from the left end, then from the right end.
    static QString TrimQuotes(QString line);

    // Whether start-up would print the line's file unattended rather than open the designer.
    static bool IsUnattended(const QString& line);

    explicit CommandLine(QString line = {}) : m_strCmdLine(std::move(line)) {}

    // Takes the options from the front of the line. Finding the print option sets the exit
    // code to -1, which stays the program's result unless a print job replaces it.
    void Parse(int& exitCode);
    // What the parsed line asks for. For the unattended forms the print file is turned to
    // lower case first, and its last four characters decide between project and other file.
    Dispatch Decide();

    // What is left of the line after the options.
    const QString& Remaining() const { return m_strCmdLine; }
    const QString& PrinterName() const { return m_strPrinterName; }
    const QString& PrintFile() const { return m_strPrintFile; }

private:
    QString m_strCmdLine;
    QString m_strPrinterName;
    QString m_strPrintFile;
};
