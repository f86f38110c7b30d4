#include "platform/graphics/Matrix.h"

namespace gfx {

namespace {

// Qt composes row-vector matrices as A * B = "A first", so prepending is M * X.
void combine(QTransform& target, const QTransform& m, MatrixOrder order)
{
    target = order == MatrixOrder::Prepend ? m * target : target * m;
}

} // namespace

Matrix::Matrix(float m11, float m12, float m21, float m22, float dx, float dy) : m_t(m11, m12, m21, m22, dx, dy) {}

void Matrix::Multiply(const Matrix& m, MatrixOrder order)
{
    combine(m_t, m.m_t, order);
}

void Matrix::Translate(float dx, float dy, MatrixOrder order)
{
    combine(m_t, QTransform::fromTranslate(dx, dy), order);
}

void Matrix::Rotate(float degrees, MatrixOrder order)
{
    // QTransform::rotate keeps multiples of 90 degrees exact, which keeps pixel grids aligned.
    combine(m_t, QTransform().rotate(degrees), order);
}

void Matrix::Scale(float sx, float sy, MatrixOrder order)
{
    combine(m_t, QTransform::fromScale(sx, sy), order);
}

bool Matrix::Invert()
{
    bool invertible = false;
    const QTransform inverse = m_t.inverted(&invertible);
    if (invertible)
        m_t = inverse;
    return invertible;
}

void Matrix::TransformPoints(QPointF* points, int count) const
{
    for (int i = 0; i < count; ++i)
        points[i] = m_t.map(points[i]);
}

} // namespace gfx
