#include "platform/graphics/SolidBrush.h"

#include "platform/graphics/FigureClusters.h"

namespace gfx {

void SolidBrush::Fill(QPainter& painter, const QPainterPath& path, const FillContext&) const
{
    if (m_color.GetA() == 0 && painter.compositionMode() == QPainter::CompositionMode_SourceOver)
        return;
    FigureClusters::FillPath(painter, path, m_color.toQColor());
}

QBrush SolidBrush::QtBrush(const QPainter&, const FillContext&) const
{
    return QBrush(m_color.toQColor());
}

} // namespace gfx
