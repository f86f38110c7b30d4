#include "app/CommandLine.h"

namespace {

const QChar Quote('"');
const QString PrinterOption = QStringLiteral("-PRINTER ");
const QString PrintOption = QStringLiteral("-PRINT ");

void trimLeadingBlanks(QString& text)
{
    qsizetype n = 0;
    while (n < text.size() && text[n].isSpace())
        ++n;
    text.remove(0, n);
}

void trimTrailingBlanks(QString& text)
{
    qsizetype n = text.size();
    while (n > 0 && text[n - 1].isSpace())
        --n;
    text.truncate(n);
}

void trimLeading(QString& text, QChar c)
{
    qsizetype n = 0;
    while (n < text.size() && text[n] == c)
        ++n;
    text.remove(0, n);
}

void trimTrailing(QString& text, QChar c)
{
    qsizetype n = text.size();
    while (n > 0 && text[n - 1] == c)
        --n;
    text.truncate(n);
}

bool holdsBlank(const QString& text)
{
    for (QChar c : text) {
        if (c.isSpace())
            return true;
    }
    return false;
}

} // namespace

QString CommandLine::FromArguments(const QStringList& arguments)
{
    QStringList parts;
    bool printerNameNext = false;
    for (const QString& argument : arguments) {
        const bool quote = !argument.startsWith(Quote) && (printerNameNext || argument.isEmpty() || holdsBlank(argument));
        parts << (quote ? Quote + argument + Quote : argument);
        printerNameNext = argument == PrinterOption.trimmed();
    }
    return parts.join(QLatin1Char(' '));
}

QString CommandLine::TrimQuotes(QString line)
{
    trimLeading(line, Quote);
    trimTrailing(line, Quote);
    return line;
}

void CommandLine::Parse(int& exitCode)
{
    if (m_strCmdLine.isEmpty())
        return;
    trimLeadingBlanks(m_strCmdLine);

    if (m_strCmdLine.startsWith(PrinterOption, Qt::CaseSensitive)) {
        m_strCmdLine.remove(0, PrinterOption.size());
        if (m_strCmdLine.startsWith(Quote)) {
            m_strCmdLine.remove(0, 1);
            // A name whose closing quotation mark is missing runs to the end of the line
            // instead of past it.
            const qsizetype close = m_strCmdLine.indexOf(Quote);
            if (close < 0) {
                m_strPrinterName = m_strCmdLine;
                m_strCmdLine.clear();
            } else {
                m_strPrinterName = m_strCmdLine.left(close);
                m_strCmdLine.remove(0, close + 1);
            }
        }
    }
    trimLeadingBlanks(m_strCmdLine);

    if (m_strCmdLine.startsWith(PrintOption, Qt::CaseSensitive)) {
        m_strCmdLine.remove(0, PrintOption.size());
        exitCode = -1;
        // The line keeps the path as typed: without a printer it is opened as a project
        // with its blanks and quotation marks.
        m_strPrintFile = m_strCmdLine;
        trimTrailingBlanks(m_strPrintFile);
        trimTrailing(m_strPrintFile, Quote);
        trimLeading(m_strPrintFile, Quote);
    }
}

bool CommandLine::IsUnattended(const QString& line)
{
    CommandLine commandLine(TrimQuotes(line));
    int exitCode = 0;
    commandLine.Parse(exitCode);
    const Dispatch dispatch = commandLine.Decide();
    return dispatch == Dispatch::PrintProject || dispatch == Dispatch::PrintFile;
}

CommandLine::Dispatch CommandLine::Decide()
{
    if (m_strCmdLine.isEmpty())
        return Dispatch::Interactive;
    if (!m_strPrintFile.isEmpty() && !m_strPrinterName.isEmpty()) {
        m_strPrintFile = m_strPrintFile.toLower();
        return m_strPrintFile.right(4) == QLatin1String(".dst") ? Dispatch::PrintProject : Dispatch::PrintFile;
    }
    return Dispatch::OpenProject;
}
