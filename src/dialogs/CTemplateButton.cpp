#include "dialogs/CTemplateButton.h"

#include "document/CDrawDoc.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/Pen.h"
#include "platform/graphics/SolidBrush.h"
#include "templates/CTemplateFile.h"

#include <QMouseEvent>
#include <QPainter>

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

CTemplateButton::CTemplateButton(QWidget* parent)
    : QAbstractButton(parent)
{
}

void CTemplateButton::SetTemplateIndex(int index)
{
    m_nTemplate = index;
    update();
}

QRectF CTemplateButton::PaperRect(const CTemplateFile& file, const QRectF& box)
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

void CTemplateButton::paintEvent(QPaintEvent* /*event*/)
{
    // Composed off screen, then shown in one piece.
    gfx::Bitmap bitmap(width(), height());
    {
        gfx::Graphics graphics(bitmap);
        graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
        const QRectF box(0, 0, width(), height());
        graphics.FillRectangle(gfx::SolidBrush(Background), box);

        const CTemplateFile* file = m_pDocument ? m_pDocument->GetTemplateFile(m_nTemplate) : nullptr;
        const QRectF paper = file ? PaperRect(*file, box) : QRectF();
        if (file && !paper.isEmpty()) {
            graphics.FillRectangle(gfx::SolidBrush(Paper), paper);
            const double sx = paper.width() / file->PaperWidth;
            const double sy = paper.height() / file->PaperHeight;
            const bool sheet = file->IsPrinter != 1;
            // A tray shows its first disc only: the others are the sizes it can take.
            const size_t count = sheet ? file->Objects.size() : std::min<size_t>(file->Objects.size(), 1);
            const gfx::Pen pen(Outline, 1.0f);
            const gfx::SolidBrush highlight(Highlight);
            for (size_t i = 0; i < count; ++i) {
                const CTemplateObject& object = file->Objects[i];
                const bool highlighted = sheet && isEnabled() && object.Selected;
                const QPointF centre(object.CentreX * sx + paper.left(), object.CentreY * sy + paper.top());
                gfx::GraphicsPath path;
                if (!object.IsRect) {
                    const QRectF disc(centre.x() - object.OuterDia * sx / 2, centre.y() - object.OuterDia * sy / 2,
                                      object.OuterDia * sx, object.OuterDia * sy);
                    if (object.OuterDia <= object.EdgeDia) {
                        path.AddEllipse(disc);
                    } else {
                        // Two arcs joined by their chords: the business card's flat top and bottom.
                        const double angle =
                            std::asin((object.EdgeDia / 2) / (object.OuterDia / 2)) * 180.0 / std::numbers::pi;
                        path.AddArc(disc, float(angle), float(-2 * angle));
                        path.AddArc(disc, float(180 + angle), float(-2 * angle));
                        path.CloseFigure();
                    }
                    path.AddEllipse(QRectF(centre.x() - object.InnerDia * sx / 2, centre.y() - object.InnerDia * sy / 2,
                                           object.InnerDia * sx, object.InnerDia * sy));
                } else {
                    path.AddRectangle(QRectF(centre.x() - object.OuterDia * sx / 2,
                                             centre.y() - object.InnerDia * sy / 2, object.OuterDia * sx,
                                             object.InnerDia * sy));
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
    }
    QPainter painter(this);
    painter.drawImage(0, 0, bitmap.image());
}

void CTemplateButton::mousePressEvent(QMouseEvent* event)
{
    const CTemplateFile* file = m_pDocument ? m_pDocument->GetTemplateFile(m_nTemplate) : nullptr;
    const QRectF paper = file ? PaperRect(*file, QRectF(0, 0, width(), height())) : QRectF();
    if (event->button() == Qt::LeftButton && isEnabled() && !paper.isEmpty()) {
        const double sx = paper.width() / file->PaperWidth;
        const double sy = paper.height() / file->PaperHeight;
        const QPointF point = event->position();
        bool toggled = false;
        for (size_t i = 0; i < file->Objects.size(); ++i) {
            const CTemplateObject& object = file->Objects[i];
            // The box as the area stands unrotated: a disc's square, a rectangle's own size.
            const double w = object.OuterDia * sx;
            const double h = (object.IsRect ? object.InnerDia : object.OuterDia) * sy;
            const double left = object.CentreX * sx + paper.left() - w / 2;
            const double top = object.CentreY * sy + paper.top() - h / 2;
            // Every area under the mouse, not only the topmost one.
            if (point.x() >= left && point.x() < left + w && point.y() >= top && point.y() < top + h)
                toggled |= m_pDocument->ToggleAreaSelected(m_nTemplate, int(i));
        }
        if (toggled)
            update();
    }
    QAbstractButton::mousePressEvent(event);
}
