#include "platform/CRect.h"

#include <algorithm>
#include <utility>

void CRect::NormalizeRect()
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
}

CRect CRect::Normalized() const
{
    CRect r = *this;
    r.NormalizeRect();
    return r;
}

void CRect::InflateRect(int dx, int dy)
{
    left -= dx;
    top -= dy;
    right += dx;
    bottom += dy;
}

void CRect::OffsetRect(int dx, int dy)
{
    left += dx;
    right += dx;
    top += dy;
    bottom += dy;
}

bool CRect::IntersectRect(const CRect& a, const CRect& b)
{
    *this = CRect(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                  std::min(a.bottom, b.bottom));
    if (IsRectEmpty()) {
        *this = CRect();
        return false;
    }
    return true;
}

bool CRect::UnionRect(const CRect& a, const CRect& b)
{
    if (a.IsRectEmpty()) {
        *this = b;
    } else if (b.IsRectEmpty()) {
        *this = a;
    } else {
        *this = CRect(std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                      std::max(a.bottom, b.bottom));
    }
    if (IsRectEmpty()) {
        *this = CRect();
        return false;
    }
    return true;
}
