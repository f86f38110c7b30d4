#pragma once

#include <QPointF>
#include <QTransform>

namespace gfx {

// Prepend puts the new matrix first (it acts before the old one), Append last.
enum class MatrixOrder { Prepend = 0, Append = 1 };

// An affine matrix over row vectors [x y 1], elements (m11, m12, m21, m22, dx, dy).
class Matrix {
public:
    Matrix() = default;
    Matrix(float m11, float m12, float m21, float m22, float dx, float dy);
    explicit Matrix(const QTransform& t) : m_t(t) {}

    void Reset() { m_t.reset(); }
    void Multiply(const Matrix& m, MatrixOrder order = MatrixOrder::Prepend);
    void Translate(float dx, float dy, MatrixOrder order = MatrixOrder::Prepend);
    void Rotate(float degrees, MatrixOrder order = MatrixOrder::Prepend);
    void Scale(float sx, float sy, MatrixOrder order = MatrixOrder::Prepend);
    // False (and unchanged) when the matrix is singular.
    bool Invert();
    bool IsIdentity() const { return m_t.isIdentity(); }

    QPointF Map(QPointF p) const { return m_t.map(p); }
    void TransformPoints(QPointF* points, int count) const;

    const QTransform& transform() const { return m_t; }
    friend bool operator==(const Matrix& a, const Matrix& b) { return a.m_t == b.m_t; }

private:
    QTransform m_t;
};

} // namespace gfx
