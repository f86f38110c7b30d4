#pragma once

#include "CliCommand.h"

#include <vector>

class CTemplateFile;
class JsonWriter;

// "templates [FOLDER|FILE] [--contact-sheet OUT.png]": reads templates as the program does at
// start-up (a folder, by default the program's own Templates/ with the imported templates behind)
// or one file, and prints them as JSON; the contact sheet draws each as the template preview does.
class TemplatesCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("templates"); }
    QString Arguments() const override { return QStringLiteral("[FOLDER|FILE] [--contact-sheet OUT.png]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    static void WriteTemplate(JsonWriter& json, const CTemplateFile& file);
    static void WriteFailure(JsonWriter& json, const QString& path, const QString& error);
    // A picture per template, drawn as the preview draws it, with its name below, in rows.
    static bool WriteContactSheet(const std::vector<CTemplateFile>& templates, const QString& path);
};
