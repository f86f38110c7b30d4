#include "templates/GlabelsTemplates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointF>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace {

// A length as the format writes it: a number with "pt" (the default), "in", "mm", "cm" or "pc",
// in inches. Nothing for text that isn't one, or for infinities and NaN.
std::optional<double> Length(QStringView text)
{
    text = text.trimmed();
    struct Unit {
        const char* name;
        double inches;
    };
    static const Unit units[] = {{"pt", 1.0 / 72}, {"in", 1.0}, {"mm", 1.0 / 25.4}, {"cm", 1.0 / 2.54},
                                 {"pc", 12.0 / 72}};
    double factor = 1.0 / 72;
    for (const Unit& unit : units) {
        if (text.endsWith(QLatin1String(unit.name))) {
            factor = unit.inches;
            text.chop(2);
            break;
        }
    }
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value * factor;
}

struct PaperSize {
    const char* id;
    double width;
    double height;
};
// The sheets the databases name by id; anything else gives its size as "Other".
const PaperSize Papers[] = {
    {"US-Letter", 8.5, 11.0},           {"US-Legal", 8.5, 14.0},
    {"A3", 297 / 25.4, 420 / 25.4},     {"A4", 210 / 25.4, 297 / 25.4},
    {"A5", 148 / 25.4, 210 / 25.4},     {"A6", 105 / 25.4, 148 / 25.4},
};

struct Layout {
    int nx = 0, ny = 0;
    double x0 = 0, y0 = 0, dx = 0, dy = 0;
};

struct DiscFrame {
    double radius = 0, hole = 0, width = 0, height = 0; // width, height 0: not clipped
    std::vector<Layout> layouts;
};

struct Template {
    QString brand, part, description, equiv;
    double paperWidth = 0, paperHeight = 0;
    QString paperProblem;
    std::optional<DiscFrame> disc; // the first Label-cd; other frames are skipped
    QString problem;               // why the disc can't be imported
};

// Reads one Template element, the reader standing on its start.
Template ReadTemplate(QXmlStreamReader& xml, int& depth)
{
    Template t;
    const QXmlStreamAttributes attributes = xml.attributes();
    t.brand = attributes.value(QLatin1String("brand")).toString().simplified();
    t.part = attributes.value(QLatin1String("part")).toString().simplified();
    t.description = attributes.value(QLatin1String("_description")).toString().simplified();
    if (t.description.isEmpty())
        t.description = attributes.value(QLatin1String("description")).toString().simplified();
    t.equiv = attributes.value(QLatin1String("equiv")).toString().simplified();
    const QStringView size = attributes.value(QLatin1String("size"));
    if (size == QLatin1String("Other")) {
        const auto width = Length(attributes.value(QLatin1String("width")));
        const auto height = Length(attributes.value(QLatin1String("height")));
        t.paperWidth = width.value_or(0);
        t.paperHeight = height.value_or(0);
    } else {
        for (const PaperSize& paper : Papers) {
            if (size == QLatin1String(paper.id)) {
                t.paperWidth = paper.width;
                t.paperHeight = paper.height;
            }
        }
        if (t.paperWidth == 0 && !size.isEmpty())
            t.paperProblem = QStringLiteral("the paper \"%1\" is not known").arg(size.left(40));
    }

    // Inside the template: its frames, and inside the first disc frame its layouts.
    const int templateDepth = depth;
    bool inDisc = false;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            if (--depth == templateDepth - 1)
                break;
            if (depth == templateDepth)
                inDisc = false;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (++depth > GlabelsTemplates::MaxDepth) {
            xml.raiseError(QStringLiteral("elements nested deeper than %1").arg(GlabelsTemplates::MaxDepth));
            break;
        }
        const QXmlStreamAttributes a = xml.attributes();
        auto length = [&](const char* name, const char* alternative = nullptr) {
            QStringView text = a.value(QLatin1String(name));
            if (text.isEmpty() && alternative)
                text = a.value(QLatin1String(alternative));
            return text.isEmpty() ? std::optional<double>(0.0) : Length(text);
        };
        if (depth == templateDepth + 1 && xml.name() == QLatin1String("Label-cd") && !t.disc) {
            inDisc = true;
            const auto radius = length("radius"), hole = length("hole"), width = length("width", "w"),
                       height = length("height", "h");
            if (!radius || !hole || !width || !height)
                t.problem = QStringLiteral("a length of the disc is not a number");
            t.disc = DiscFrame{radius.value_or(0), hole.value_or(0), width.value_or(0), height.value_or(0), {}};
        } else if (inDisc && depth == templateDepth + 2 && xml.name() == QLatin1String("Layout")) {
            auto count = [&](const char* name) {
                bool ok = false;
                const qlonglong value = a.value(QLatin1String(name)).toLongLong(&ok);
                return ok ? value : 0;
            };
            const qlonglong nx = count("nx"), ny = count("ny");
            const auto x0 = length("x0"), y0 = length("y0"), dx = length("dx"), dy = length("dy");
            if (!x0 || !y0 || !dx || !dy) {
                t.problem = QStringLiteral("a length of a layout is not a number");
            } else if (nx < 1 || ny < 1 || nx * ny > GlabelsTemplates::MaxAreas) {
                t.problem = QStringLiteral("a layout of %1 by %2 labels").arg(nx).arg(ny);
            } else if (t.disc->layouts.size() < size_t(GlabelsTemplates::MaxAreas)) {
                t.disc->layouts.push_back(Layout{int(nx), int(ny), *x0, *y0, *dx, *dy});
            }
        }
    }
    return t;
}

// Our template for a disc frame on its paper, or the reason it can't be one.
std::optional<CTemplateFile> Convert(const Template& t, const QString& brandPart, QString& problem)
{
    problem = t.problem.isEmpty() ? t.paperProblem : t.problem;
    if (!problem.isEmpty())
        return std::nullopt;
    const DiscFrame& disc = *t.disc;
    if (!(t.paperWidth > 0 && t.paperWidth <= GlabelsTemplates::MaxPaper && t.paperHeight > 0 &&
          t.paperHeight <= GlabelsTemplates::MaxPaper)) {
        problem = QStringLiteral("the paper is %1 by %2 inches").arg(t.paperWidth).arg(t.paperHeight);
        return std::nullopt;
    }
    if (!(disc.radius > 0) || disc.hole < 0 || disc.hole >= disc.radius || disc.width < 0 || disc.height < 0) {
        problem = QStringLiteral("a disc of radius %1 with a hole of %2 inches").arg(disc.radius).arg(disc.hole);
        return std::nullopt;
    }

    // A clipped disc is a business card: its box is the clip, and our outline is flat at the top
    // and the bottom, so one flat at the sides is turned a quarter.
    const double diameter = 2 * disc.radius;
    const double boxWidth = disc.width > 0 && disc.width < diameter ? disc.width : diameter;
    const double boxHeight = disc.height > 0 && disc.height < diameter ? disc.height : diameter;
    const bool clipped = boxWidth < diameter || boxHeight < diameter;
    const bool sideways = boxWidth < boxHeight;

    std::vector<QPointF> centres;
    for (const Layout& layout : disc.layouts) {
        for (int iy = 0; iy < layout.ny && centres.size() <= size_t(GlabelsTemplates::MaxAreas); ++iy) {
            for (int ix = 0; ix < layout.nx && centres.size() <= size_t(GlabelsTemplates::MaxAreas); ++ix)
                centres.emplace_back(layout.x0 + ix * layout.dx + boxWidth / 2, layout.y0 + iy * layout.dy + boxHeight / 2);
        }
    }
    if (centres.empty() || centres.size() > size_t(GlabelsTemplates::MaxAreas)) {
        problem = QStringLiteral("%1 labels on the sheet").arg(centres.size());
        return std::nullopt;
    }
    constexpr double tolerance = 0.01; // inches: rounding in the databases' point values
    for (size_t i = 0; i < centres.size(); ++i) {
        const QPointF c = centres[i];
        if (c.x() - boxWidth / 2 < -tolerance || c.y() - boxHeight / 2 < -tolerance ||
            c.x() + boxWidth / 2 > t.paperWidth + tolerance || c.y() + boxHeight / 2 > t.paperHeight + tolerance) {
            problem = QStringLiteral("label %1 lies outside the paper").arg(i + 1);
            return std::nullopt;
        }
        for (size_t j = 0; j < i; ++j) {
            const QPointF d = c - centres[j];
            const bool apart = clipped ? std::abs(d.x()) >= boxWidth - tolerance || std::abs(d.y()) >= boxHeight - tolerance
                                       : std::hypot(d.x(), d.y()) >= diameter - tolerance;
            if (!apart) {
                problem = QStringLiteral("labels %1 and %2 overlap").arg(j + 1).arg(i + 1);
                return std::nullopt;
            }
        }
    }

    CTemplateFile file;
    file.IsPrinter = 0;
    file.TemplateName = QStringLiteral("%1 %2 (imported)").arg(brandPart, t.description).simplified();
    file.PaperWidth = t.paperWidth;
    file.PaperHeight = t.paperHeight;
    // The document has three labels: up to three discs each get their own, more share one.
    const bool ownLabels = centres.size() <= 3;
    file.LabelCount = ownLabels ? int(centres.size()) : 1;
    for (size_t i = 0; i < centres.size(); ++i) {
        CTemplateObject object;
        object.Selected = 1;
        object.LabelNumber = ownLabels ? int(i) + 1 : 1;
        object.ObjectName = ownLabels && centres.size() > 1 ? QStringLiteral("Disc %1").arg(i + 1) : QStringLiteral("Disc");
        object.CentreX = centres[i].x();
        object.CentreY = centres[i].y();
        object.OuterDia = diameter;
        object.InnerDia = 2 * disc.hole;
        if (clipped) {
            object.EdgeDia = std::min(boxWidth, boxHeight);
            object.Rotation = sideways ? 90 : 0;
        } else {
            // A plain disc's edge is the usual 4.72 inches, or more for a larger disc so that it
            // stays round.
            object.EdgeDia = std::max(4.72, diameter);
        }
        file.Objects.push_back(std::move(object));
    }
    return file;
}

void WriteLine(const QString& line)
{
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}

// A folder the system's packages fill, rather than the user's own.
bool IsSystemFolder(const QString& folder)
{
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        if (data != own && folder.startsWith(data + QLatin1Char('/')))
            return true;
    }
    return false;
}

} // namespace

QStringList GlabelsTemplates::SearchFolders()
{
    QStringList folders;
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders.append(data + QStringLiteral("/libglabels-3.0/templates"));
        folders.append(data + QStringLiteral("/glabels-qt/templates"));
    }
    folders.append(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                   QStringLiteral("/libglabels/templates"));
    return folders;
}

bool GlabelsTemplates::Read(const QByteArray& bytes, const QString& path, std::vector<CTemplateFile>& out,
                            QString& error, QStringList* skipped)
{
    QXmlStreamReader xml(bytes);
    std::vector<Template> templates;
    int depth = 0;
    bool isDatabase = false;
    while (!xml.atEnd() && !xml.hasError()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (++depth > MaxDepth) {
            xml.raiseError(QStringLiteral("elements nested deeper than %1").arg(MaxDepth));
            break;
        }
        if (depth == 1) {
            isDatabase = xml.name() == QLatin1String("Glabels-templates");
            if (!isDatabase)
                break; // paper sizes, categories, vendors: nothing to import
        } else if (depth == 2 && xml.name() == QLatin1String("Template")) {
            if (templates.size() >= size_t(MaxTemplates)) {
                xml.raiseError(QStringLiteral("more than %1 templates").arg(MaxTemplates));
                break;
            }
            templates.push_back(ReadTemplate(xml, depth));
        }
    }
    if (xml.hasError()) {
        error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
        return false;
    }

    // An equivalent is another part number of a product of the same brand in the file.
    QHash<QString, size_t> byPart;
    for (size_t i = 0; i < templates.size(); ++i) {
        if (templates[i].disc)
            byPart.insert(templates[i].brand + QLatin1Char('\n') + templates[i].part, i);
    }
    for (const Template& t : templates) {
        const Template* source = &t;
        if (!t.disc && !t.equiv.isEmpty()) {
            const auto found = byPart.constFind(t.brand + QLatin1Char('\n') + t.equiv);
            if (found == byPart.constEnd())
                continue;
            source = &templates[*found];
        }
        if (!source->disc)
            continue;
        const QString brandPart = (t.brand + QLatin1Char(' ') + t.part).simplified();
        QString problem;
        std::optional<CTemplateFile> file = Convert(*source, brandPart, problem);
        if (!file) {
            if (skipped)
                skipped->append(QStringLiteral("%1: template \"%2\" skipped: %3").arg(path, brandPart.left(80), problem));
            continue;
        }
        file->m_strPath = path;
        file->m_bImported = true;
        out.push_back(std::move(*file));
    }
    return true;
}

void GlabelsTemplates::AppendFolders(const QStringList& folders, std::vector<CTemplateFile>& list,
                                     std::vector<TemplateLoadResult>* results)
{
    QSet<QString> known;
    for (const QString& folderPath : folders) {
        const QDir folder(folderPath);
        QStringList names = folder.entryList({QStringLiteral("*.xml"), QStringLiteral("*.template")}, QDir::Files,
                                             QDir::Name);
        for (const QString& name : names) {
            const QString path = folder.filePath(name);
            QString error;
            QByteArray bytes;
            QFile file(path);
            const QFileInfo info(path);
            if (!info.isFile())
                error = QStringLiteral("not a regular file");
            else if (info.size() > MaxFileSize)
                error = QStringLiteral("larger than %1 MB").arg(MaxFileSize / (1024 * 1024));
            else if (!file.open(QIODevice::ReadOnly))
                error = file.errorString();
            else
                bytes = file.read(MaxFileSize + 1);
            // Most databases hold no disc at all; they need no parsing.
            if (error.isEmpty() && !bytes.contains("Label-cd"))
                continue;
            std::vector<CTemplateFile> read;
            QStringList skipped;
            if (error.isEmpty() && bytes.size() > MaxFileSize)
                error = QStringLiteral("larger than %1 MB").arg(MaxFileSize / (1024 * 1024));
            if (error.isEmpty())
                Read(bytes, path, read, error, &skipped);
            // A product of an installed package that can't be taken is left out without a word:
            // nobody can mend it, and a line at every start of every run would only bury the
            // lines that matter. The user's own templates are told about.
            if (!IsSystemFolder(folderPath)) {
                for (const QString& line : skipped)
                    WriteLine(line);
            }
            if (!error.isEmpty()) {
                WriteLine(QStringLiteral("%1: template file skipped: %2").arg(path, error));
                if (results)
                    results->push_back({path, false, error});
                continue;
            }
            for (CTemplateFile& imported : read) {
                // The same database installed for two programs, or a product listed twice.
                if (known.contains(imported.TemplateName))
                    continue;
                known.insert(imported.TemplateName);
                if (results)
                    results->push_back({path, true, QString()});
                list.push_back(std::move(imported));
            }
        }
    }
}
