#pragma once

#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/ImageAttributes.h"

#include <QColor>
#include <QImage>
#include <QStringList>
#include <QtMath>
#include <cstring>
#include <gtest/gtest.h>

// A small canvas for drawing tests: a bitmap filled with one opaque colour.
inline gfx::Bitmap makeCanvas(int width, int height, QColor fill = Qt::white)
{
    gfx::Bitmap bitmap(width, height);
    bitmap.image().fill(fill);
    return bitmap;
}

// A fresh canvas after `draw(graphics)` has run on it.
template <class Draw>
gfx::Bitmap drawOn(int width, int height, Draw draw, QColor fill = Qt::white)
{
    gfx::Bitmap bitmap = makeCanvas(width, height, fill);
    {
        gfx::Graphics g(bitmap);
        draw(g);
    }
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

// One pixel's expected colour, exact unless a tolerance is given.
struct Probe {
    int x, y;
    QColor color;
    int tolerance = 0;
};

inline void expectPixels(const gfx::Bitmap& bitmap, std::initializer_list<Probe> probes)
{
    for (const Probe& p : probes)
        EXPECT_TRUE(near(pixelAt(bitmap, p.x, p.y), p.color, p.tolerance)) << "at " << p.x << "," << p.y;
}

// Small pictures written as rows of letters, a letter a pixel: R G B Y for red, green, blue and
// yellow, '#' for black, '.' for white; any other colour reads as '?'.
inline const char Letters[] = "RGBY#.";
inline const QRgb LetterColors[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00, 0xFF000000, 0xFFFFFFFF};

inline QImage imageOf(const QStringList& rows)
{
    QImage image(int(rows.front().size()), int(rows.size()), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, LetterColors[std::strchr(Letters, rows[y][x].toLatin1()) - Letters]);
    return image;
}

inline QStringList rowsOf(const QImage& image)
{
    QStringList rows(image.height(), QString(image.width(), u'?'));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            for (int i = 0; i < 6; ++i)
                if (image.pixel(x, y) == LetterColors[i])
                    rows[y][x] = QLatin1Char(Letters[i]);
    return rows;
}

// A closed polygon as a path.
inline gfx::GraphicsPath polygonPath(std::initializer_list<QPointF> points)
{
    gfx::GraphicsPath path;
    path.AddPolygon(std::data(points), int(points.size()));
    return path;
}

// The number of figures in the path.
inline int figuresOf(const gfx::GraphicsPath& path)
{
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    return int(std::count(types.begin(), types.end(), std::uint8_t(gfx::GraphicsPath::Start)));
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
