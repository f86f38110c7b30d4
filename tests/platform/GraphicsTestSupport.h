#pragma once

#include "platform/graphics/Graphics.h"

#include <QColor>
#include <QImage>
#include <QtMath>

// A small canvas for drawing tests: a bitmap filled with one opaque colour.
inline gfx::Bitmap makeCanvas(int width, int height, QColor fill = Qt::white)
{
    gfx::Bitmap bitmap(width, height);
    bitmap.image().fill(fill);
    return bitmap;
}

// The pixel as a non-premultiplied QColor.
inline QColor pixelAt(const gfx::Bitmap& bitmap, int x, int y)
{
    return QColor::fromRgba(bitmap.image().pixel(x, y));
}

// The direction of the point seen from the centre, in degrees, turning from +x toward +y.
inline double angleFrom(QPointF centre, QPointF point)
{
    return qRadiansToDegrees(std::atan2(point.y() - centre.y(), point.x() - centre.x()));
}
