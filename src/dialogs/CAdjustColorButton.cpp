#include "dialogs/CAdjustColorButton.h"

#include "document/CDrawDoc.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Graphics.h"

#include <QPainter>

CAdjustColorButton::CAdjustColorButton(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedSize(sizeHint());
}

void CAdjustColorButton::SetBitmap(const QImage& bitmap)
{
    m_bitmap = bitmap;
    update();
}

void CAdjustColorButton::paintEvent(QPaintEvent*)
{
    // Composed off screen and shown in one piece, so that a slider drag never shows a half.
    gfx::Bitmap canvas(width(), height());
    {
        gfx::Graphics graphics(canvas);
        RenderQuality::Apply(graphics);
        const QColor ground = palette().window().color();
        graphics.Clear(gfx::Color(ground.red(), ground.green(), ground.blue()));
        if (!m_bitmap.isNull()) {
            const gfx::Bitmap picture(m_bitmap);
            const gfx::ImageAttributes attributes = CDrawDoc::PrintAdjustment(m_fGamma, m_fSaturation, false);
            const QRectF source(0, 0, m_bitmap.width(), m_bitmap.height());
            // The paper keeps its proportions, centred in the square.
            const QRectF dest(QPointF((width() - m_bitmap.width()) / 2, (height() - m_bitmap.height()) / 2),
                              QSizeF(m_bitmap.size()));
            graphics.DrawImage(picture, dest, source, &attributes);
        }
    }
    QPainter painter(this);
    painter.drawImage(0, 0, canvas.image());
}
