#pragma once

#include "CliCommand.h"

class CTemplateFile;
class JsonWriter;

// "templates [FOLDER|FILE]": reads templates as the program does at start-up (a folder, by
// default the program's own Templates/) or one file, and prints them as JSON.
class TemplatesCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("templates"); }
    QString Arguments() const override { return QStringLiteral("[FOLDER|FILE]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    static void WriteTemplate(JsonWriter& json, const CTemplateFile& file);
    static void WriteFailure(JsonWriter& json, const QString& path, const QString& error);
};
