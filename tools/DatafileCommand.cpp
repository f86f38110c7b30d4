#include "DatafileCommand.h"

#include "JsonWriter.h"
#include "fields/CTextFileRead.h"
#include "fields/DataFields.h"

namespace {

const char* const DelimiterNames[] = {"line", "comma", "semicolon"};
const char* const EncodingNames[] = {"ASCII", "UNI16_BE", "UNI16_LE", "UTF_8"};

int DelimiterFromName(const QString& name)
{
    for (int i = 0; i < 3; ++i) {
        if (name == QLatin1String(DelimiterNames[i]))
            return i;
    }
    return -1;
}

} // namespace

QString DatafileCommand::Summary() const
{
    return QStringLiteral(
        "Reads a data file as a Data File field does and prints, as JSON, its encoding (ASCII,\n"
        "UNI16_BE, UNI16_LE or UTF_8), its lines, and its records in index order: record i is\n"
        "what the field shows with Start Index i, and every later index shows an empty text.\n"
        "Lines are joined by CR LF before splitting, so records of a line file end in CR.\n"
        "The delimiter is line unless given. Exit code 1 when the file can't be opened.");
}

int DatafileCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QString path;
    int delimiter = DATAFIELD::Line;
    bool usage = false;
    for (qsizetype i = 0; i < args.size() && !usage; ++i) {
        if (args[i] == QLatin1String("--delimiter") && i + 1 < args.size()) {
            delimiter = DelimiterFromName(args[++i]);
            usage = delimiter < 0;
        } else if (path.isEmpty() && !args[i].isEmpty() && !args[i].startsWith('-')) {
            path = args[i];
        } else {
            usage = true;
        }
    }
    if (usage || path.isEmpty()) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }

    JsonWriter json(out);
    json.BeginObject();
    json.Member(QStringLiteral("path"), path);
    CTextFileRead lineReader(path);
    if (!lineReader.IsOpen()) {
        json.Member(QStringLiteral("error"), QStringLiteral("The file can't be opened."));
        json.EndObject();
        out.flush();
        return ExitFailed;
    }
    json.Member(QStringLiteral("encoding"), EncodingNames[lineReader.GetEncoding()]);
    json.Member(QStringLiteral("delimiter"), DelimiterNames[delimiter]);

    json.Key(QStringLiteral("lines")).BeginArray();
    QString line;
    while (lineReader.ReadLine(line))
        json.Value(line);
    json.EndArray();

    // The pieces between separators, less the last, which has no separator behind it.
    CTextFileRead recordReader(path);
    QString content;
    recordReader.ReadAll(content, QStringLiteral("\r\n"));
    QStringList records = content.split(FieldSeparator(delimiter));
    records.removeLast();
    json.Key(QStringLiteral("records")).BeginArray();
    for (const QString& record : records)
        json.Value(record);
    json.EndArray();
    json.EndObject();
    out.flush();
    return ExitOk;
}
