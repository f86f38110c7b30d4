#include "TemplatesCommand.h"

#include "JsonWriter.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"

#include <QFileInfo>

QString TemplatesCommand::Summary() const
{
    return QStringLiteral(
        "Reads the templates of a folder in the program's order (Default.tmp first), or one\n"
        "template file, and prints them as JSON: header fields, areas and perforations under\n"
        "their model names, with each file's path, or its path and \"error\" when it fails.\n"
        "Without an argument, the program's own Templates/ folder. Exit code 1 when a file fails.");
}

int TemplatesCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.size() > 1 || (args.size() == 1 && (args[0].isEmpty() || args[0].startsWith('-')))) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }

    JsonWriter json(out);
    json.BeginArray();
    bool failed = false;
    const QString target = args.isEmpty() ? Folders::InstallDirectory() + QStringLiteral("Templates") : args[0];
    if (QFileInfo(target).isDir()) {
        std::vector<TemplateLoadResult> results;
        const std::vector<CTemplateFile> templates = CTemplateFile::LoadTemplateList(target, &results);
        size_t next = 0;
        for (const TemplateLoadResult& result : results) {
            if (result.loaded && next < templates.size()) {
                WriteTemplate(json, templates[next++]);
            } else {
                WriteFailure(json, result.path, result.error);
                failed = true;
            }
        }
    } else {
        CTemplateFile file;
        if (file.LoadTemplate(target)) {
            WriteTemplate(json, file);
        } else {
            WriteFailure(json, target, file.m_strError);
            failed = true;
        }
    }
    json.EndArray();
    out.flush();
    return failed ? ExitFailed : ExitOk;
}

void TemplatesCommand::WriteTemplate(JsonWriter& json, const CTemplateFile& file)
{
    json.BeginObject();
    json.Member(QStringLiteral("path"), file.m_strPath);
    json.Member(QStringLiteral("TemplateName"), file.TemplateName);
    json.Member(QStringLiteral("PrintNotice"), file.PrintNotice);
    json.Member(QStringLiteral("IsPrinter"), file.IsPrinter);
    json.Member(QStringLiteral("LabelCount"), file.LabelCount);
    json.Member(QStringLiteral("PaperWidth"), file.PaperWidth);
    json.Member(QStringLiteral("PaperHeight"), file.PaperHeight);
    json.Member(QStringLiteral("OriginX"), file.OriginX);
    json.Member(QStringLiteral("OriginY"), file.OriginY);
    json.Key(QStringLiteral("Objects")).BeginArray();
    for (const CTemplateObject& object : file.Objects) {
        json.BeginObject();
        json.Member(QStringLiteral("Selected"), object.Selected);
        json.Member(QStringLiteral("LabelNumber"), object.LabelNumber);
        json.Member(QStringLiteral("ObjectName"), object.ObjectName);
        json.Member(QStringLiteral("IsRect"), object.IsRect);
        json.Member(QStringLiteral("CentreX"), object.CentreX);
        json.Member(QStringLiteral("CentreY"), object.CentreY);
        json.Member(QStringLiteral("OuterDia"), object.OuterDia);
        json.Member(QStringLiteral("InnerDia"), object.InnerDia);
        json.Member(QStringLiteral("Rotation"), object.Rotation);
        json.Member(QStringLiteral("EdgeDia"), object.EdgeDia);
        json.Key(QStringLiteral("Perfs")).BeginArray();
        for (const Perf& perf : object.Perfs) {
            json.BeginObject();
            json.Member(QStringLiteral("Reserved"), perf.Reserved);
            json.Member(QStringLiteral("X1"), perf.X1);
            json.Member(QStringLiteral("Y1"), perf.Y1);
            json.Member(QStringLiteral("X2"), perf.X2);
            json.Member(QStringLiteral("Y2"), perf.Y2);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
}

void TemplatesCommand::WriteFailure(JsonWriter& json, const QString& path, const QString& error)
{
    json.BeginObject();
    json.Member(QStringLiteral("path"), path);
    json.Member(QStringLiteral("error"), error);
    json.EndObject();
}
