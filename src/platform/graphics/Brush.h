#pragma once

#include <QPainter>
#include <QPainterPath>
#include <QPoint>
#include <memory>

namespace gfx {

// What a fill needs from the Graphics beyond the painter (whose transform is world x mapping).
struct FillContext {
    QPoint renderingOrigin; // device pixels; hatch tiles are anchored here
};

class Brush {
public:
    virtual ~Brush();
    virtual std::unique_ptr<Brush> Clone() const = 0;
    // Fills the path, given in world coordinates.
    virtual void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const = 0;
    // A Qt brush for stroking a pen with this brush; patterns are set up as for a fill.
    virtual QBrush QtBrush(const QPainter& painter, const FillContext& context) const = 0;
};

} // namespace gfx
