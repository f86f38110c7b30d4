#pragma once

#include "platform/graphics/Graphics.h"
#include "platform/graphics/ImageAttributes.h"

#include <QColor>
#include <QImage>
#include <QtMath>
#include <gtest/gtest.h>

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

// The device rectangle of the pixels in the colour.
inline QRect paintedRect(const gfx::Bitmap& bitmap, QColor color)
{
    QRect r;
    for (int y = 0; y < bitmap.image().height(); ++y)
        for (int x = 0; x < bitmap.image().width(); ++x)
            if (pixelAt(bitmap, x, y) == color)
                r |= QRect(x, y, 1, 1);
    return r;
}

// Whether the colour is within tolerance of the expected one, alpha included.
inline ::testing::AssertionResult near(QColor actual, QColor expected, int tolerance = 3)
{
    const auto close = [tolerance](int a, int b) { return std::abs(a - b) <= tolerance; };
    if (close(actual.red(), expected.red()) && close(actual.green(), expected.green())
        && close(actual.blue(), expected.blue()) && close(actual.alpha(), expected.alpha()))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << qPrintable(actual.name(QColor::HexArgb)) << ", expected "
                                         << qPrintable(expected.name(QColor::HexArgb));
}

// The direction of the point seen from the centre, in degrees, turning from +x toward +y.
inline double angleFrom(QPointF centre, QPointF point)
{
    return qRadiansToDegrees(std::atan2(point.y() - centre.y(), point.x() - centre.x()));
}

// Saturation 0 about the luminance weights: every colour becomes its grey.
inline gfx::ColorMatrix greyMatrix()
{
    gfx::ColorMatrix grey{};
    for (int j = 0; j < 3; ++j) {
        grey.m[0][j] = 0.3086f;
        grey.m[1][j] = 0.6094f;
        grey.m[2][j] = 0.0820f;
    }
    grey.m[3][3] = grey.m[4][4] = 1;
    return grey;
}
