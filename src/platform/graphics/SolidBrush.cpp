#include "platform/graphics/SolidBrush.h"

namespace gfx {

void SolidBrush::Fill(QPainter& painter, const QPainterPath& path, const FillContext&) const
{
    if (m_color.GetA() == 0 && painter.compositionMode() == QPainter::CompositionMode_SourceOver)
        return;
    painter.fillPath(path, m_color.toQColor());
}

QBrush SolidBrush::QtBrush(const QPainter&, const FillContext&) const
{
    return QBrush(m_color.toQColor());
}

} // namespace gfx
