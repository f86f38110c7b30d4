#include "RenderCommand.h"

#include "CliQuestions.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/SolidBrush.h"
#include "templates/CTemplateFile.h"
#include "templates/CTemplateObject.h"

#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <cmath>

namespace {

// Label N's picture at a resolution: its outline with the bleed round it.
QSize labelPixels(CDrawDoc& doc, int label, int resolution)
{
    const CSize size = doc.GetLogicalSize(resolution, resolution, doc.FindLabelObject(label - 1));
    const double bleed = doc.IsPrinterTemplate() ? 0.0 : doc.GetTemplateBleed();
    return QSize(int(std::ceil(size.cx + 2 * bleed * resolution)), int(std::ceil(size.cy + 2 * bleed * resolution)));
}

bool writePdf(const QImage& image, const QString& path)
{
    QPdfWriter writer(path);
    writer.setResolution(RenderCommand::Resolution);
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    constexpr double resolution = RenderCommand::Resolution;
    writer.setPageSize(QPageSize(QSizeF(image.width() / resolution, image.height() / resolution),
                                 QPageSize::Inch, QString(), QPageSize::ExactMatch));
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    painter.drawImage(QRect(0, 0, image.width(), image.height()), image);
    return painter.end();
}

} // namespace

QString RenderCommand::Summary() const
{
    return QStringLiteral(
        "Opens a project and writes what would print (data fields expanded) at 300 units per\n"
        "inch: the whole sheet of the project's template, or with --label N only label N (1 to 3)\n"
        "on its outline with bleed. The extension chooses PNG or PDF. Templates come from the\n"
        "program's Templates/ folder. Exit code 1 when loading or writing fails.");
}

int RenderCommand::Run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QStringList rest = args;
    CliQuestions::Install(rest, err);
    int label = 0;
    const qsizetype labelOption = rest.indexOf(QStringLiteral("--label"));
    if (labelOption >= 0) {
        bool ok = false;
        label = labelOption + 1 < rest.size() ? rest[labelOption + 1].toInt(&ok) : 0;
        if (!ok || label < 1 || label > CDrawDoc::LabelCount)
            label = -1;
        rest.remove(labelOption, std::min<qsizetype>(2, rest.size() - labelOption));
    }
    const QString suffix = rest.size() == 2 ? QFileInfo(rest[1]).suffix().toLower() : QString();
    if (rest.size() != 2 || label < 0 || rest[0].startsWith('-') || (suffix != "png" && suffix != "pdf")) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    const QString target = QFileInfo(rest[1]).absoluteFilePath();

    const std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    if (!doc.OnOpenDocument(rest[0]))
        return ExitFailed;

    QImage image;
    if (label > 0) {
        image = RenderLabel(doc, label);
    } else if (const std::unique_ptr<gfx::Bitmap> sheet = doc.RenderBitmap(Resolution, Resolution, true, true)) {
        image = sheet->image();
    }
    if (image.isNull()) {
        err << "tessarelle-cli: nothing to render: the template has no paper or is too large\n";
        return ExitFailed;
    }
    const bool written = suffix == "pdf" ? writePdf(image, target) : image.save(target, "PNG");
    if (!written) {
        err << "tessarelle-cli: cannot write " << target << '\n';
        return ExitFailed;
    }
    out << target << '\n';
    return ExitOk;
}

QImage RenderCommand::RenderLabel(CDrawDoc& doc, int label, int resolution, gfx::Color outside)
{
    const int objectIndex = doc.FindLabelObject(label - 1);
    const QSize size = labelPixels(doc, label, resolution);
    const int width = size.width();
    const int height = size.height();
    if (width <= 0 || height <= 0 || qint64(width) * height > gfx::Image::MaxPixels)
        return {};
    gfx::Bitmap bitmap(width, height);
    gfx::Graphics graphics(bitmap);
    RenderQuality::Apply(graphics);
    graphics.Clear(outside);
    // The label is laid out in its own units, 300 to the inch, and scaled to the picture as the
    // window scales it to the screen.
    gfx::GraphicsPath outline;
    doc.BuildLabelPath(Resolution, Resolution, outline, objectIndex, true);
    const float scale = float(resolution) / Resolution;
    graphics.SetTransform(gfx::Matrix(scale, 0, 0, -scale, width / 2.0f, height / 2.0f));
    graphics.FillPath(gfx::SolidBrush(gfx::Color(255, 255, 255)), outline);
    graphics.SetClip(outline);
    doc.DrawLabel(graphics, Resolution, Resolution, nullptr, label - 1, true);
    return bitmap.image();
}

int RenderCommand::ResolutionFor(CDrawDoc& doc, int label, int pixels)
{
    // The picture grows with the resolution, so the first guess from a large one is at most one
    // step short.
    constexpr int Probe = 1000;
    const QSize probe = labelPixels(doc, label, Probe);
    const int longer = std::max(probe.width(), probe.height());
    if (longer <= 0)
        return Resolution;
    int resolution = std::max(1, int(qint64(pixels) * Probe / longer));
    for (QSize size = labelPixels(doc, label, resolution); std::max(size.width(), size.height()) < pixels;
         size = labelPixels(doc, label, resolution))
        ++resolution;
    return resolution;
}
