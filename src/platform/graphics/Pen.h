#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/CustomLineCap.h"

#include <QList>
#include <QPen>
#include <memory>
#include <optional>

namespace gfx {

enum class DashStyle { Solid = 0, Dash = 1, Dot = 2, DashDot = 3, DashDotDot = 4 };
enum class DashCap { Flat = 0, Round = 2, Triangle = 3 };
enum class LineJoin { Miter = 0, Bevel = 1, Round = 2, MiterClipped = 3 };

// An outline: width in world units (0 draws as 1), a colour or a brush, dashes measured in
// pen widths, flat ends and mitred corners unless told otherwise; line caps (plain, anchors or
// custom heads) on the ends of open figures. Nothing is drawn thinner
// than one device pixel.
class Pen {
public:
    explicit Pen(Color color, float width = 1.0f);
    Pen(const Brush& brush, float width);
    Pen(const Pen& other);
    Pen& operator=(const Pen& other);
    ~Pen();

    void SetColor(Color color);
    Color GetColor() const { return m_color; }
    void SetBrush(const Brush& brush);
    const Brush* GetBrush() const { return m_brush.get(); }
    void SetWidth(float width) { m_width = width; }
    float GetWidth() const { return m_width; }
    void SetDashStyle(DashStyle style) { m_dashStyle = style; }
    DashStyle GetDashStyle() const { return m_dashStyle; }
    void SetDashCap(DashCap cap) { m_dashCap = cap; }
    DashCap GetDashCap() const { return m_dashCap; }
    void SetLineJoin(LineJoin join) { m_lineJoin = join; }
    LineJoin GetLineJoin() const { return m_lineJoin; }

    // The ends of open figures. NoAnchor draws a flat end; a custom cap is copied into the pen
    // and makes that end's cap LineCap::Custom.
    void SetStartCap(LineCap cap);
    void SetEndCap(LineCap cap);
    LineCap GetStartCap() const { return m_startCap; }
    LineCap GetEndCap() const { return m_endCap; }
    void SetCustomStartCap(const CustomLineCap& cap);
    void SetCustomEndCap(const CustomLineCap& cap);
    const CustomLineCap* GetCustomStartCap() const { return m_customStartCap ? &*m_customStartCap : nullptr; }
    const CustomLineCap* GetCustomEndCap() const { return m_customEndCap ? &*m_customEndCap : nullptr; }
    // Whether either end needs more than Qt's flat cap.
    bool HasLineCaps() const;

    // The dash pattern in pen widths, empty for a solid line.
    static QList<qreal> DashPattern(DashStyle style);

    // The Qt pen that draws this outline under the painter's combined transform: cosmetic (one
    // device pixel) when the width would come out thinner than that. Its brush is the colour.
    QPen QtPen(const QTransform& combined) const;
    // Whether the outline needs its brush rather than one colour.
    bool HasPatternBrush() const;

private:
    Color m_color;
    std::unique_ptr<Brush> m_brush;
    float m_width;
    DashStyle m_dashStyle = DashStyle::Solid;
    DashCap m_dashCap = DashCap::Flat;
    LineJoin m_lineJoin = LineJoin::Miter;
    LineCap m_startCap = LineCap::Flat;
    LineCap m_endCap = LineCap::Flat;
    std::optional<CustomLineCap> m_customStartCap;
    std::optional<CustomLineCap> m_customEndCap;
};

} // namespace gfx
