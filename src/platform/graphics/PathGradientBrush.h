#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h" // Status

#include <QPointF>

namespace gfx {

// A fill that blends from a centre colour to a surround colour along every ray from the centre
// to the path's boundary; nothing is painted outside the path. The centre is the arithmetic
// mean of the path's stored points (every vertex and Bezier control point).
class PathGradientBrush : public Brush {
public:
    explicit PathGradientBrush(const GraphicsPath& path);

    void SetCenterColor(Color color) { m_centerColor = color; }
    Color GetCenterColor() const { return m_centerColor; }
    // Takes *count colours (at least one); only one surround colour is kept and the first is
    // used all round. *count is left as it was.
    Status SetSurroundColors(const Color* colors, int* count);
    Color GetSurroundColor() const { return m_surroundColor; }
    void SetCenterPoint(QPointF point) { m_center = point; }
    QPointF GetCenterPoint() const { return m_center; }
    // With gamma correction the blend runs in linear light rather than in sRGB components.
    void SetGammaCorrection(bool useGammaCorrection) { m_gammaCorrection = useGammaCorrection; }
    bool GetGammaCorrection() const { return m_gammaCorrection; }

    std::unique_ptr<Brush> Clone() const override { return std::make_unique<PathGradientBrush>(*this); }
    void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const override;
    QBrush QtBrush(const QPainter& painter, const FillContext& context) const override;

private:
    GraphicsPath m_path;
    QPointF m_center;
    Color m_centerColor{255, 255, 255, 255};
    Color m_surroundColor{255, 255, 255, 255};
    bool m_gammaCorrection = false;
};

} // namespace gfx
