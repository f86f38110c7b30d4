#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"

namespace gfx {

class SolidBrush : public Brush {
public:
    explicit SolidBrush(Color color) : m_color(color) {}
    Color GetColor() const { return m_color; }
    void SetColor(Color color) { m_color = color; }

    std::unique_ptr<Brush> Clone() const override { return std::make_unique<SolidBrush>(*this); }
    void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const override;
    QBrush QtBrush(const QPainter& painter, const FillContext& context) const override;

private:
    Color m_color;
};

} // namespace gfx
