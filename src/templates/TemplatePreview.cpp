#include "templates/TemplatePreview.h"

#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/Pen.h"
#include "platform/graphics/SolidBrush.h"
#include "templates/CTemplateFile.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

const gfx::Color Background(192, 192, 192);
const gfx::Color Paper(255, 255, 255);
const gfx::Color Highlight(251, 242, 204);
const gfx::Color Outline(0, 0, 0);

// Turns a path about the area's centre, as the area lies rotated on the sheet.
void RotateAbout(gfx::GraphicsPath& path, QPointF centre, double degrees)
{
    path.Transform(gfx::Matrix(1, 0, 0, 1, float(-centre.x()), float(-centre.y())));
    gfx::Matrix rotation;
    rotation.Rotate(float(degrees));
    path.Transform(rotation);
    path.Transform(gfx::Matrix(1, 0, 0, 1, float(centre.x()), float(centre.y())));
}

} // namespace

QRectF TemplatePreview::PaperRect(const CTemplateFile& file, const QRectF& box)
{
    if (!(file.PaperWidth > 0) || !(file.PaperHeight > 0) || box.isEmpty())
        return {};
    const double rh = file.PaperHeight / box.height();
    const double rw = file.PaperWidth / box.width();
    if (rw < rh) {
        const double width = file.PaperWidth / rh;
        return QRectF(box.left() + (box.width() - width) / 2, box.top(), width, box.height());
    }
    const double height = file.PaperHeight / rw;
    return QRectF(box.left(), box.top() + (box.height() - height) / 2, box.width(), height);
}

void TemplatePreview::Draw(gfx::Graphics& graphics, const CTemplateFile* shown, const QRectF& box, bool enabled)
{
    graphics.FillRectangle(gfx::SolidBrush(Background), box);
    const QRectF paper = shown ? PaperRect(*shown, box) : QRectF();
    if (paper.isEmpty())
        return;
    const CTemplateFile& file = *shown;
    graphics.FillRectangle(gfx::SolidBrush(Paper), paper);
    const double sx = paper.width() / file.PaperWidth;
    const double sy = paper.height() / file.PaperHeight;
    const bool sheet = file.IsPrinter != 1;
    // A tray shows its first disc only: the others are the sizes it can take.
    const size_t count = sheet ? file.Objects.size() : std::min<size_t>(file.Objects.size(), 1);
    const gfx::Pen pen(Outline, 1.0f);
    const gfx::SolidBrush highlight(Highlight);
    for (size_t i = 0; i < count; ++i) {
        const CTemplateObject& object = file.Objects[i];
        const bool highlighted = sheet && enabled && object.Selected;
        const QPointF centre(object.CentreX * sx + paper.left(), object.CentreY * sy + paper.top());
        gfx::GraphicsPath path;
        if (!object.IsRect) {
            const QRectF disc(centre.x() - object.OuterDia * sx / 2, centre.y() - object.OuterDia * sy / 2,
                              object.OuterDia * sx, object.OuterDia * sy);
            if (object.OuterDia <= object.EdgeDia) {
                path.AddEllipse(disc);
            } else {
                // Two arcs joined by their chords: the business card's flat top and bottom.
                const double angle = std::asin((object.EdgeDia / 2) / (object.OuterDia / 2)) * 180.0 / std::numbers::pi;
                path.AddArc(disc, float(angle), float(-2 * angle));
                path.AddArc(disc, float(180 + angle), float(-2 * angle));
                path.CloseFigure();
            }
            path.AddEllipse(QRectF(centre.x() - object.InnerDia * sx / 2, centre.y() - object.InnerDia * sy / 2,
                                   object.InnerDia * sx, object.InnerDia * sy));
        } else {
            path.AddRectangle(QRectF(centre.x() - object.OuterDia * sx / 2, centre.y() - object.InnerDia * sy / 2,
                                     object.OuterDia * sx, object.InnerDia * sy));
        }
        RotateAbout(path, centre, object.Rotation);
        if (highlighted)
            graphics.FillPath(highlight, path);
        graphics.DrawPath(pen, path);

        if (object.IsRect && !object.Perfs.empty()) {
            gfx::GraphicsPath perforations;
            for (const Perf& perf : object.Perfs) {
                perforations.StartFigure();
                perforations.AddLine(QPointF(perf.X1 * sx + paper.left(), perf.Y1 * sy + paper.top()),
                                     QPointF(perf.X2 * sx + paper.left(), perf.Y2 * sy + paper.top()));
            }
            RotateAbout(perforations, centre, object.Rotation);
            gfx::Pen dashed(Outline, 1.0f);
            dashed.SetDashStyle(gfx::DashStyle::Dash);
            graphics.DrawPath(dashed, perforations);
        }
    }
}
