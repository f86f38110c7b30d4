#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"

#include <QLinearGradient>
#include <QPointF>
#include <QRectF>

namespace gfx {

enum class LinearGradientMode { Horizontal = 0, Vertical = 1, ForwardDiagonal = 2, BackwardDiagonal = 3 };

// Two colours blended across a rectangle: the first on the start boundary, the second on the
// end boundary, constant along lines parallel to them. The boundaries follow the mode; "upper"
// means smaller y in world coordinates. Outside the rectangle the ramp repeats (start colour
// again right after the end), and the blend is of the plain (not premultiplied) components.
class LinearGradientBrush : public Brush {
public:
    LinearGradientBrush(const QRectF& rect, Color color1, Color color2, LinearGradientMode mode);

    // With gamma correction the blend runs in linear light rather than in sRGB components.
    void SetGammaCorrection(bool useGammaCorrection) { m_gammaCorrection = useGammaCorrection; }
    bool GetGammaCorrection() const { return m_gammaCorrection; }

    QRectF GetRectangle() const { return m_rect; }
    Color GetStartColor() const { return m_color1; }
    Color GetEndColor() const { return m_color2; }
    LinearGradientMode GetMode() const { return m_mode; }
    // The gradient line: color1 at the start, color2 at the end, in world coordinates.
    QPointF GetStartPoint() const { return m_start; }
    QPointF GetEndPoint() const { return m_end; }

    // The colour at fraction t from a to b: plain components blended straight, or in linear light
    // with gamma correction; alpha always blends straight.
    static QColor Blend(Color a, Color b, double t, bool gammaCorrection);
    // The stops of a ramp from a to b for a Qt gradient set to component interpolation.
    static QGradientStops Ramp(Color a, Color b, bool gammaCorrection);

    std::unique_ptr<Brush> Clone() const override { return std::make_unique<LinearGradientBrush>(*this); }
    void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const override;
    QBrush QtBrush(const QPainter& painter, const FillContext& context) const override;

private:
    QLinearGradient gradient() const;

    QRectF m_rect;
    Color m_color1;
    Color m_color2;
    LinearGradientMode m_mode;
    QPointF m_start;
    QPointF m_end;
    bool m_gammaCorrection = false;
};

} // namespace gfx
