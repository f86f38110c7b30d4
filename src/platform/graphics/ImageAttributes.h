#pragma once

#include <QImage>
#include <optional>

namespace gfx {

// Row i, column j; the row vector [r g b a 1] (components 0..1) is multiplied by it.
struct ColorMatrix {
    float m[5][5] = {};
};

// The colour adjustment of an image drawn through it: the colour matrix first, then gamma
// (c' = 255 (c / 255)^gamma per red, green and blue; alpha is kept).
class ImageAttributes {
public:
    void SetColorMatrix(const ColorMatrix& matrix) { m_matrix = matrix; }
    void ClearColorMatrix() { m_matrix.reset(); }
    void SetGamma(float gamma) { m_gamma = gamma; }
    void ClearGamma() { m_gamma.reset(); }

    bool HasAdjustment() const { return m_matrix || m_gamma; }
    // A copy of the image with the adjustment applied, in non-premultiplied ARGB.
    QImage Apply(const QImage& image) const;

private:
    std::optional<ColorMatrix> m_matrix;
    std::optional<float> m_gamma;
};

} // namespace gfx
