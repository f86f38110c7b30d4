#include "dialogs/CTemplateButton.h"

#include "document/CDrawDoc.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"
#include "templates/CTemplateFile.h"
#include "templates/TemplatePreview.h"

#include <QMouseEvent>
#include <QPainter>

CTemplateButton::CTemplateButton(QWidget* parent)
    : QAbstractButton(parent)
{
}

void CTemplateButton::SetTemplateIndex(int index)
{
    m_nTemplate = index;
    update();
}

void CTemplateButton::paintEvent(QPaintEvent* /*event*/)
{
    // Composed off screen, then shown in one piece.
    gfx::Bitmap bitmap(width(), height());
    {
        gfx::Graphics graphics(bitmap);
        graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
        const CTemplateFile* file = m_pDocument ? m_pDocument->GetTemplateFile(m_nTemplate) : nullptr;
        TemplatePreview::Draw(graphics, file, QRectF(0, 0, width(), height()), isEnabled());
    }
    QPainter painter(this);
    painter.drawImage(0, 0, bitmap.image());
}

void CTemplateButton::mousePressEvent(QMouseEvent* event)
{
    const CTemplateFile* file = m_pDocument ? m_pDocument->GetTemplateFile(m_nTemplate) : nullptr;
    const QRectF paper = file ? TemplatePreview::PaperRect(*file, QRectF(0, 0, width(), height())) : QRectF();
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
