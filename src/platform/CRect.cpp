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

// Edges stop at the ends of the int range, as the extents do: a damaged file's rectangle can
// already touch them, and one that wrapped round would lie on the other side of the label.
void CRect::InflateRect(int dx, int dy)
{
    left = saturated((long long)left - dx);
    top = saturated((long long)top - dy);
    right = saturated((long long)right + dx);
    bottom = saturated((long long)bottom + dy);
}

void CRect::OffsetRect(int dx, int dy)
{
    left = saturated((long long)left + dx);
    right = saturated((long long)right + dx);
    top = saturated((long long)top + dy);
    bottom = saturated((long long)bottom + dy);
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
