#include "platform/graphics/TextureBrush.h"

#include "platform/graphics/FigureClusters.h"

#include <QPainter>

#include <cmath>

namespace gfx {

TextureBrush::TextureBrush(const Image& image, WrapMode mode) : m_image(image.image()), m_wrapMode(mode)
{
    // Pictures are kept premultiplied; anything else would be converted on every fill.
    if (!m_image.isNull() && m_image.format() != QImage::Format_ARGB32_Premultiplied
        && m_image.format() != QImage::Format_RGB32)
        m_image = m_image.convertToFormat(m_image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                                     : QImage::Format_RGB32);
}

void TextureBrush::MultiplyTransform(const Matrix& matrix, MatrixOrder order)
{
    m_transform.Multiply(matrix, order);
}

void TextureBrush::TranslateTransform(float dx, float dy, MatrixOrder order)
{
    m_transform.Translate(dx, dy, order);
}

void TextureBrush::ScaleTransform(float sx, float sy, MatrixOrder order)
{
    m_transform.Scale(sx, sy, order);
}

void TextureBrush::RotateTransform(float degrees, MatrixOrder order)
{
    m_transform.Rotate(degrees, order);
}

const QImage& TextureBrush::tileImage() const
{
    const bool flipX = m_wrapMode == WrapMode::TileFlipX || m_wrapMode == WrapMode::TileFlipXY;
    const bool flipY = m_wrapMode == WrapMode::TileFlipY || m_wrapMode == WrapMode::TileFlipXY;
    if (!flipX && !flipY)
        return m_image;
    if (m_mirrored.isNull() || m_mirroredMode != m_wrapMode) {
        // Tile (0, 0) is the picture as it is; its neighbours across the mirrored axes are flipped.
        const int w = m_image.width(), h = m_image.height();
        QImage block(flipX ? 2 * w : w, flipY ? 2 * h : h, m_image.format());
        QPainter p(&block);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(0, 0, m_image);
        if (flipX)
            p.drawImage(w, 0, m_image.mirrored(true, false));
        if (flipY)
            p.drawImage(0, h, m_image.mirrored(false, true));
        if (flipX && flipY)
            p.drawImage(w, h, m_image.mirrored(true, true));
        p.end();
        m_mirrored = block;
        m_mirroredMode = m_wrapMode;
    }
    return m_mirrored;
}

QBrush TextureBrush::QtBrush(const QPainter&, const FillContext&) const
{
    if (m_image.isNull())
        return QBrush(Qt::NoBrush);
    QBrush brush(tileImage());
    brush.setTransform(m_transform.transform());
    return brush;
}

namespace {

// Whether texels land exactly on device pixels (whole-pixel offsets, quarter turns and mirrors
// at scale 1), where interpolating would only cost time.
bool pixelExact(const QTransform& t)
{
    const auto unit = [](double v) { return std::abs(std::abs(v) - 1.0) < 1e-9; };
    const auto zero = [](double v) { return std::abs(v) < 1e-9; };
    const auto whole = [](double v) { return std::abs(v - std::round(v)) < 1e-6; };
    if (!t.isAffine() || !whole(t.dx()) || !whole(t.dy()))
        return false;
    return (unit(t.m11()) && unit(t.m22()) && zero(t.m12()) && zero(t.m21()))
           || (zero(t.m11()) && zero(t.m22()) && unit(t.m12()) && unit(t.m21()));
}

} // namespace

void TextureBrush::Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const
{
    if (m_image.isNull())
        return;
    const QBrush brush = QtBrush(painter, context);
    const bool smooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    const bool exact = smooth && pixelExact(m_transform.transform() * painter.combinedTransform());
    if (exact)
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    if (m_wrapMode != WrapMode::Clamp) {
        FigureClusters::FillPath(painter, path, brush);
    } else {
        // Nothing outside the picture: confine the fill to the picture's place.
        QPainterPath picture;
        picture.addRect(QRectF(0, 0, m_image.width(), m_image.height()));
        painter.save();
        painter.setClipPath(m_transform.transform().map(picture), Qt::IntersectClip);
        FigureClusters::FillPath(painter, path, brush);
        painter.restore();
    }
    if (exact)
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
}

} // namespace gfx
