#pragma once

#include "CliCommand.h"

class CDrawDoc;
class CDrawObj;
class JsonWriter;

// "dump PROJECT.dst [--yes]": the whole project as JSON: header, diameters, the three labels
// with background and objects (keys are the members' names without "m_", plus "class"), and
// the data fields. A project that fails to load prints what was read, with "error".
class DumpCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("dump"); }
    QString Arguments() const override { return QStringLiteral("PROJECT.dst [--yes]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    static void WriteProject(JsonWriter& json, CDrawDoc& doc);
    static void WriteObject(JsonWriter& json, const CDrawObj& object);
};
