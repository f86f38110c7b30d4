#include "platform/graphics/CustomLineCap.h"

namespace gfx {

CustomLineCap::CustomLineCap(const GraphicsPath* fillPath, const GraphicsPath* strokePath, LineCap baseCap,
                             float baseInset)
    : m_baseCap(baseCap), m_baseInset(baseInset)
{
    // A stroke path wins over a fill path.
    if (strokePath) {
        m_path = *strokePath;
        m_filled = false;
    } else if (fillPath) {
        m_path = *fillPath;
        m_filled = true;
    }
    // The cap's own outline always fills by winding.
    m_path.SetFillMode(FillMode::Winding);
}

} // namespace gfx
