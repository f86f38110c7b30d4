#pragma once

#include <QBrush>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <vector>

namespace gfx {

// The figures of a path gathered into clusters whose device pixels lie apart. Qt's rasteriser
// walks every edge of a path once for each band of a few dozen rows that the path spans, so a
// path of many small figures spread over a label, a line of text around a disc or a dotted
// ring, costs several times more as one fill than cluster by cluster. Filling the clusters one
// after the other paints the same pixels: no pixel is reached by two clusters, and a closed
// figure adds nothing to the winding outside itself.
class FigureClusters {
public:
    // The clusters of `path` painted through `toDevice`; none when the path is as cheap whole.
    FigureClusters(const QPainterPath& path, const QTransform& toDevice);

    const std::vector<QPainterPath>& Paths() const { return m_paths; }

    // Fills as painter.fillPath does, cluster by cluster where that is cheaper.
    static void FillPath(QPainter& painter, const QPainterPath& path, const QBrush& brush);

private:
    std::vector<QPainterPath> m_paths;
};

} // namespace gfx
