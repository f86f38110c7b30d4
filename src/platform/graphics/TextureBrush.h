#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/Matrix.h"

#include <QImage>

namespace gfx {

enum class WrapMode { Tile = 0, TileFlipX = 1, TileFlipY = 2, TileFlipXY = 3, Clamp = 4 };

// A picture as a fill: one image pixel is one texture unit, mapped through the brush's
// transform and then the world transform. Clamp paints nothing outside the picture.
class TextureBrush : public Brush {
public:
    explicit TextureBrush(const Image& image, WrapMode mode = WrapMode::Tile);

    void SetTransform(const Matrix& matrix) { m_transform = matrix; }
    const Matrix& GetTransform() const { return m_transform; }
    void ResetTransform() { m_transform.Reset(); }
    void MultiplyTransform(const Matrix& matrix, MatrixOrder order = MatrixOrder::Prepend);
    void TranslateTransform(float dx, float dy, MatrixOrder order = MatrixOrder::Prepend);
    void ScaleTransform(float sx, float sy, MatrixOrder order = MatrixOrder::Prepend);
    void RotateTransform(float degrees, MatrixOrder order = MatrixOrder::Prepend);
    void SetWrapMode(WrapMode mode) { m_wrapMode = mode; }
    WrapMode GetWrapMode() const { return m_wrapMode; }

    std::unique_ptr<Brush> Clone() const override { return std::make_unique<TextureBrush>(*this); }
    void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const override;
    QBrush QtBrush(const QPainter& painter, const FillContext& context) const override;

private:
    // The image that tiles plainly for the wrap mode: the picture itself, or the picture beside
    // its mirror images (made once and kept while the mode stays).
    const QImage& tileImage() const;

    QImage m_image; // shares the picture's pixels
    Matrix m_transform;
    WrapMode m_wrapMode;
    mutable QImage m_mirrored;
    mutable WrapMode m_mirroredMode = WrapMode::Tile;
};

} // namespace gfx
