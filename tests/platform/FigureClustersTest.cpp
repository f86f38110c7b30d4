#include "platform/graphics/FigureClusters.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainterPathStroker>
#include <cmath>

using namespace gfx;

namespace {

// Letters "o" around a circle, each an outer and an inner contour turned the same way (a hole
// only under the alternate rule); where the circle closes the last one overlaps the first, as a
// line of text around a disc can.
QPainterPath ringOfLetters(Qt::FillRule rule)
{
    QPainterPath path;
    path.setFillRule(rule);
    for (int i = 0; i < 24; ++i) {
        const double angle = i * 2 * M_PI / 23.2;
        const QPointF centre(200 + 160 * std::cos(angle), 200 + 160 * std::sin(angle));
        path.addEllipse(centre, 14, 18);
        path.addEllipse(centre, 7, 11);
    }
    return path;
}

// The picture of `paint` on a white antialiased canvas.
template <class Paint> QImage painted(Paint paint)
{
    QImage image(400, 400, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(QTransform(1, 0.1, 0, -1, 5, 400)); // turned over, as labels are
    paint(painter);
    return image;
}

} // namespace

TEST(FigureClusters, FiguresFarApartAreFilledAloneToTheSamePixels)
{
    const QColor ink(20, 60, 200, 170);
    for (const Qt::FillRule rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        const QPainterPath path = ringOfLetters(rule);
        // Letters whose boxes meet share a cluster, each keeps both its contours, and none is
        // lost.
        const FigureClusters clusters(path, QTransform());
        EXPECT_GT(clusters.Paths().size(), 8u);
        int figures = 0;
        for (const QPainterPath& cluster : clusters.Paths()) {
            EXPECT_EQ(cluster.fillRule(), rule);
            const int count = int(cluster.toSubpathPolygons().size());
            EXPECT_EQ(count % 2, 0);
            figures += count;
        }
        EXPECT_EQ(figures, 48);
        EXPECT_EQ(painted([&](QPainter& p) { FigureClusters::FillPath(p, path, ink); }),
                  painted([&](QPainter& p) { p.fillPath(path, ink); }));
    }
    // A wide pen strokes alike as its outline filled cluster by cluster, as the program's
    // strokes of many figures are.
    const QPainterPath path = ringOfLetters(Qt::OddEvenFill);
    QPen pen(QColor(200, 30, 30), 5);
    pen.setJoinStyle(Qt::MiterJoin);
    QPainterPath outline = QPainterPathStroker(pen).createStroke(path);
    outline.setFillRule(Qt::WindingFill);
    EXPECT_EQ(painted([&](QPainter& p) { FigureClusters::FillPath(p, outline, pen.color()); }),
              painted([&](QPainter& p) { p.strokePath(path, pen); }));
}

TEST(FigureClusters, SmallOrOverlappingPathsStayWhole)
{
    QPainterPath one;
    one.addEllipse(QPointF(200, 200), 150, 150);
    EXPECT_TRUE(FigureClusters(one, QTransform()).Paths().empty());
    // Two figures in one band of rows: nothing to gain, until the device stretches them.
    QPainterPath low;
    low.addRect(0, 0, 10, 10);
    low.addRect(300, 0, 10, 10);
    EXPECT_TRUE(FigureClusters(low, QTransform()).Paths().empty());
    EXPECT_EQ(FigureClusters(low, QTransform::fromScale(1, 10)).Paths().size(), 2u);
    // Rings one inside the other overlap: their one cluster is the whole path.
    QPainterPath rings;
    for (int r = 20; r < 200; r += 20)
        rings.addEllipse(QPointF(200, 200), r, r);
    EXPECT_TRUE(FigureClusters(rings, QTransform()).Paths().empty());
    // Coordinates beyond any device are left to the painter.
    QPainterPath far = low;
    far.addRect(1e12, 0, 10, 10);
    EXPECT_TRUE(FigureClusters(far, QTransform::fromScale(1, 10)).Paths().empty());
}
