#include "platform/graphics/FigureClusters.h"

#include <QRect>
#include <algorithm>
#include <cmath>
#include <limits>

namespace gfx {

namespace {

// A path no taller than this is rasterised in a band or two: nothing to gain.
constexpr double MinDeviceHeight = 64;
// Beyond this many groups, sorting them out costs more than it can save.
constexpr std::size_t MaxGroups = 1024;
// Device coordinates beyond this are left to Qt whole.
constexpr double MaxCoordinate = 1e8;

struct Figure {
    int first; // the element that starts it
    int end;   // one past its last element
    QRect pixels; // every device pixel it may touch, and one more all round
};

// The figures of the path with their pixels; empty when some coordinate is out of reach.
std::vector<Figure> figuresOf(const QPainterPath& path, const QTransform& toDevice, double& height)
{
    std::vector<Figure> figures;
    double top = std::numeric_limits<double>::infinity(), bottom = -top;
    const int count = path.elementCount();
    for (int first = 0; first < count;) {
        int end = first + 1;
        while (end < count && !path.elementAt(end).isMoveTo())
            ++end;
        double left = std::numeric_limits<double>::infinity(), right = -left, high = left, low = -left;
        for (int i = first; i < end; ++i) {
            // Control points bound their curves.
            const QPointF p = toDevice.map(QPointF(path.elementAt(i)));
            left = std::min(left, p.x());
            right = std::max(right, p.x());
            high = std::min(high, p.y());
            low = std::max(low, p.y());
        }
        if (!(std::max(std::abs(left), std::abs(right)) < MaxCoordinate)
            || !(std::max(std::abs(high), std::abs(low)) < MaxCoordinate))
            return {};
        figures.push_back({first, end,
                           QRect(QPoint(int(std::floor(left)) - 1, int(std::floor(high)) - 1),
                                 QPoint(int(std::ceil(right)) + 1, int(std::ceil(low)) + 1))});
        top = std::min(top, high);
        bottom = std::max(bottom, low);
        first = end;
    }
    height = bottom - top;
    return figures;
}

} // namespace

FigureClusters::FigureClusters(const QPainterPath& path, const QTransform& toDevice)
{
    double height = 0;
    const std::vector<Figure> figures = figuresOf(path, toDevice, height);
    if (figures.size() < 2 || height <= MinDeviceHeight)
        return;

    // Neighbours in a path mostly touch, the contours of one glyph or the dashes of one side:
    // runs of them make the first groups.
    std::vector<QRect> boxes;
    std::vector<std::vector<int>> members;
    for (int i = 0; i < int(figures.size()); ++i) {
        if (!boxes.empty() && boxes.back().intersects(figures[size_t(i)].pixels)) {
            boxes.back() |= figures[size_t(i)].pixels;
            members.back().push_back(i);
        } else {
            boxes.push_back(figures[size_t(i)].pixels);
            members.push_back({i});
        }
    }
    // Then groups that overlap are merged until none do; a merged group grows, so another
    // round follows any merge.
    for (bool merged = true; merged;) {
        if (boxes.size() > MaxGroups)
            return;
        merged = false;
        for (std::size_t a = 0; a < boxes.size(); ++a) {
            for (std::size_t b = a + 1; b < boxes.size();) {
                if (!boxes[a].intersects(boxes[b])) {
                    ++b;
                    continue;
                }
                boxes[a] |= boxes[b];
                members[a].insert(members[a].end(), members[b].begin(), members[b].end());
                if (b + 1 < boxes.size()) {
                    boxes[b] = boxes.back();
                    members[b] = std::move(members.back());
                }
                boxes.pop_back();
                members.pop_back();
                merged = true;
            }
        }
    }
    if (boxes.size() < 2)
        return;

    for (std::vector<int>& group : members) {
        std::sort(group.begin(), group.end());
        QPainterPath cluster;
        cluster.setFillRule(path.fillRule());
        for (const int index : group) {
            const Figure& figure = figures[size_t(index)];
            for (int i = figure.first; i < figure.end; ++i) {
                const QPainterPath::Element e = path.elementAt(i);
                if (e.isMoveTo()) {
                    cluster.moveTo(e);
                } else if (e.isLineTo()) {
                    cluster.lineTo(e);
                } else if (e.isCurveTo()) {
                    cluster.cubicTo(e, path.elementAt(i + 1), path.elementAt(i + 2));
                    i += 2;
                }
            }
        }
        m_paths.push_back(std::move(cluster));
    }
}

void FigureClusters::FillPath(QPainter& painter, const QPainterPath& path, const QBrush& brush)
{
    const FigureClusters clusters(path, painter.combinedTransform());
    if (clusters.Paths().empty()) {
        painter.fillPath(path, brush);
        return;
    }
    for (const QPainterPath& cluster : clusters.Paths())
        painter.fillPath(cluster, brush);
}

} // namespace gfx
