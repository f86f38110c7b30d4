#include "TemplatesCommand.h"

#include "JsonWriter.h"
#include "platform/Folders.h"
#include "templates/CTemplateFile.h"

#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"
#include "templates/TemplatePreview.h"

#include <QFileInfo>
#include <QFont>
#include <QPainter>

#include <algorithm>

QString TemplatesCommand::Summary() const
{
    return QStringLiteral(
        "Reads the templates of a folder in the program's order (Default.tmp first), or one\n"
        "template file, and prints them as JSON: header fields, areas and perforations under\n"
        "their model names, with each file's path, or its path and \"error\" when it fails.\n"
        "Without an argument, the program's own Templates/ folder followed by the disc templates\n"
        "imported from the installed template databases, marked \"imported\" with their file as\n"
        "path. --contact-sheet also draws every template loaded as the template preview does\n"
        "into a PNG. Exit code 1 when a file fails.");
}

int TemplatesCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QStringList rest = args;
    QString contactSheet;
    if (const qsizetype option = rest.indexOf(QStringLiteral("--contact-sheet")); option >= 0) {
        contactSheet = rest.value(option + 1);
        rest.remove(option, std::min<qsizetype>(2, rest.size() - option));
    }
    if (rest.size() > 1 || (rest.size() == 1 && (rest[0].isEmpty() || rest[0].startsWith('-'))) ||
        (args.contains(QStringLiteral("--contact-sheet")) && (contactSheet.isEmpty() || contactSheet.startsWith('-')))) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }

    JsonWriter json(out);
    json.BeginArray();
    bool failed = false;
    const QString target = rest.isEmpty() ? Folders::InstallDirectory() + QStringLiteral("Templates") : rest[0];
    std::vector<CTemplateFile> drawn;
    if (QFileInfo(target).isDir()) {
        std::vector<TemplateLoadResult> results;
        std::vector<CTemplateFile> templates = CTemplateFile::LoadTemplateList(target, &results);
        size_t next = 0;
        for (const TemplateLoadResult& result : results) {
            if (result.loaded && next < templates.size()) {
                WriteTemplate(json, templates[next++]);
            } else {
                WriteFailure(json, result.path, result.error);
                failed = true;
            }
        }
        drawn = std::move(templates);
    } else {
        CTemplateFile file;
        if (file.LoadTemplate(target)) {
            WriteTemplate(json, file);
            drawn.push_back(file);
        } else {
            WriteFailure(json, target, file.m_strError);
            failed = true;
        }
    }
    json.EndArray();
    out.flush();
    if (!contactSheet.isEmpty() && !WriteContactSheet(drawn, contactSheet)) {
        err << "cannot write " << contactSheet << '\n';
        return ExitFailed;
    }
    return failed ? ExitFailed : ExitOk;
}

void TemplatesCommand::WriteTemplate(JsonWriter& json, const CTemplateFile& file)
{
    json.BeginObject();
    json.Member(QStringLiteral("path"), file.m_strPath);
    if (file.m_bImported)
        json.Member(QStringLiteral("imported"), true);
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

bool TemplatesCommand::WriteContactSheet(const std::vector<CTemplateFile>& templates, const QString& path)
{
    constexpr int columns = 8;
    constexpr int cell = 180;   // the preview's square
    constexpr int caption = 44; // room for the name in up to three lines
    constexpr int gap = 8;
    const int rows = std::max<int>(1, (int(templates.size()) + columns - 1) / columns);
    QImage sheet(gap + columns * (cell + gap), gap + rows * (cell + caption + gap), QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(11);
    painter.setFont(font);
    for (size_t i = 0; i < templates.size(); ++i) {
        const int x = gap + int(i % columns) * (cell + gap);
        const int y = gap + int(i / columns) * (cell + caption + gap);
        gfx::Bitmap preview(cell, cell);
        {
            gfx::Graphics graphics(preview);
            graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
            TemplatePreview::Draw(graphics, &templates[i], QRectF(0, 0, cell, cell), true);
        }
        painter.drawImage(x, y, preview.image());
        painter.drawText(QRect(x, y + cell + 2, cell, caption - 2), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                         QStringLiteral("%1. %2").arg(i).arg(templates[i].TemplateName));
    }
    painter.end();
    return sheet.save(path, "PNG");
}
