#include "objects/CDrawObj.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "document/CView.h"
#include "objects/DefaultProperties.h"
#include "platform/MessageBox.h"
#include "platform/graphics/Graphics.h"

#include <cmath>
#include <cstdlib>

namespace {

// In doubles: the edges of a rectangle read from a damaged file may lie more than the range
// of int apart.
double aspectOf(const CRect& r)
{
    return std::abs(double(r.right) - r.left) / std::abs(double(r.bottom) - r.top);
}

} // namespace

CDrawObj::CDrawObj() : DrawObjProperties(g_defaultProperties) {}

CDrawObj::CDrawObj(const CRect& position)
    : DrawObjProperties(g_defaultProperties), m_position(position), m_aspect(aspectOf(position))
{
}

int CDrawObj::GetHandleCount() const
{
    return 8;
}

void CDrawObj::Layout() {}

CPoint CDrawObj::GetHandle(int handle) const
{
    const CRect& r = m_position;
    const int xCenter = r.left + r.Width() / 2;
    const int yCenter = r.top + r.Height() / 2;
    switch (handle) {
    case 2: return {xCenter, r.top};
    case 3: return {r.right, r.top};
    case 4: return {r.right, yCenter};
    case 5: return {r.right, r.bottom};
    case 6: return {xCenter, r.bottom};
    case 7: return {r.left, r.bottom};
    case 8: return {r.left, yCenter};
    default: return {r.left, r.top};
    }
}

CRect CDrawObj::GetHandleRect(int handle, CView*) const
{
    const CPoint p = GetHandle(handle);
    // Moved rather than added up: a handle of a damaged file's object lies at the end of the range.
    CRect r(-12, -12, 12, 12);
    r.OffsetRect(p.x, p.y);
    return r;
}

Qt::CursorShape CDrawObj::GetHandleCursor(int handle) const
{
    switch (handle) {
    case 1:
    case 5: return Qt::SizeFDiagCursor;
    case 2:
    case 6: return Qt::SizeVerCursor;
    case 3:
    case 7: return Qt::SizeBDiagCursor;
    case 4:
    case 8: return Qt::SizeHorCursor;
    default: return Qt::ArrowCursor;
    }
}

void CDrawObj::Draw(gfx::Graphics&, int, int, CView*) {}

void CDrawObj::DrawTracker(gfx::Graphics& graphics, int state, int, int)
{
    if (state != 1 && state != 2)
        return;
    const gfx::Pen black(gfx::Color(255, 0, 0, 0), 2.0f);
    const gfx::Pen white(gfx::Color(255, 255, 255, 255), 2.0f);
    for (int handle = 1; handle <= GetHandleCount(); ++handle) {
        const CPoint p = GetHandle(handle);
        graphics.DrawRectangle(black, QRectF(p.x - 10, p.y - 10, 20, 20));
        graphics.DrawRectangle(white, QRectF(p.x - 12, p.y - 12, 24, 24));
    }
}

void CDrawObj::MoveTo(const CRect& position, CView* view)
{
    if (position == m_position)
        return;
    Invalidate(view);
    m_position = position;
    m_aspect = aspectOf(position);
    Invalidate(view);
}

int CDrawObj::HitTest(CPoint point, CView* view, bool selected)
{
    if (!selected) {
        const CRect& r = m_position;
        return point.x >= r.left && point.x <= r.right && point.y >= r.top && point.y <= r.bottom ? 1 : 0;
    }
    for (int handle = GetHandleCount(); handle >= 1; --handle) {
        const CRect r = GetHandleRect(handle, view).Normalized();
        if (point.x >= r.left && point.x <= r.right && point.y >= r.top && point.y <= r.bottom)
            return handle;
    }
    return 0;
}

bool CDrawObj::Intersects(const CRect& rect)
{
    CRect overlap;
    return overlap.IntersectRect(rect.Normalized(), m_position.Normalized());
}

bool CDrawObj::IsInside(const CRect& rect)
{
    const CRect outer = rect.Normalized();
    CRect own = m_position.Normalized();
    if (own.Width() == 0)
        own.right = CRect::saturated(own.right + 1LL);
    if (own.Height() == 0)
        own.bottom = CRect::saturated(own.bottom + 1LL);
    CRect both;
    both.UnionRect(outer, own);
    return both == outer;
}

void CDrawObj::MoveHandleTo(int handle, CPoint point, CView* view)
{
    CRect r = m_position;
    switch (handle) {
    case 2: r.top = point.y; break;
    case 3: r.right = point.x; r.top = point.y; break;
    case 4: r.right = point.x; break;
    case 5: r.right = point.x; r.bottom = point.y; break;
    case 6: r.bottom = point.y; break;
    case 7: r.left = point.x; r.bottom = point.y; break;
    case 8: r.left = point.x; break;
    default: r.left = point.x; r.top = point.y; break;
    }
    MoveTo(r, view);
}

void CDrawObj::OnOpen(CView*)
{
    MessageBox::Show(QStringLiteral("This function should never be called"));
}

std::unique_ptr<CDrawObj> CDrawObj::Clone() const
{
    auto copy = std::make_unique<CDrawObj>(m_position);
    CopyInto(*copy);
    return copy;
}

CDrawObj* CDrawObj::CloneInto(CDrawDoc& document) const
{
    return document.Add(Clone());
}

void CDrawObj::CopyInto(CDrawObj& copy) const
{
    copy.CopyProperties(*this);
    copy.m_position = m_position;
}

void CDrawObj::Offset(int dx, int dy)
{
    m_position.OffsetRect(dx, dy);
}

CRect CDrawObj::GetDrawBounds(CRect rect) const
{
    rect.InflateRect(m_lineWidth, m_lineWidth);
    const int arrows = (m_startArrowSize + m_endArrowSize) * m_lineWidth + 5;
    rect.InflateRect(arrows, arrows);
    return rect;
}

bool CDrawObj::DrawsOnlyWithinBounds() const
{
    return m_pictureFile.isEmpty() && m_fillKind != 2;
}

void CDrawObj::SetTextColor(gfx::COLORREF) {}

void CDrawObj::SetArrow(int which, int type)
{
    if (which == StartArrowId)
        m_startArrow = type;
    else if (which == EndArrowId)
        m_endArrow = type;
    Invalidate();
}

int CDrawObj::GetArrow(int which) const
{
    if (which == StartArrowId)
        return m_startArrow;
    if (which == EndArrowId)
        return m_endArrow;
    return 16;
}

void CDrawObj::CopyProperties(const CDrawObj& source)
{
    static_cast<DrawObjProperties&>(*this) = source;
    m_aspect = source.m_aspect;
}

gfx::COLORREF CDrawObj::GetLineColor() const
{
    return m_lineColor1.ToCOLORREF();
}

void CDrawObj::Invalidate(CView* view)
{
    if (view)
        view->InvalidateObject(this);
    else if (m_pDocument)
        m_pDocument->UpdateAllViews(nullptr, 1, this);
}

void CDrawObj::Serialize(CArchive& ar)
{
    // Several fields that are 32 bits wide in memory take one byte in the file.
    if (ar.IsStoring()) {
        ar << m_position << m_flags << std::uint8_t(m_dashStyle) << std::uint8_t(m_dashCap)
           << std::uint8_t(m_fillKind) << std::uint8_t(m_lineReserved) << m_transparency;
        ar << m_fillColor1 << m_fillColor2 << m_lineColor1 << m_lineColor2;
        ar << m_lineWidth << std::uint8_t(m_gradientStyle) << std::int32_t(m_hatchStyle);
        ar << m_startArrowSize << m_endArrowSize << std::uint8_t(m_startArrow) << std::uint8_t(m_endArrow);
        ar << m_pictureFile;
        ar << std::uint8_t(m_wrapMode) << m_gradientSwap << m_pictureScale << std::uint8_t(m_lineKind)
           << std::uint8_t(m_lineGradientMode);
        return;
    }
    m_pDocument = dynamic_cast<CDrawDoc*>(ar.m_pDocument);
    ar >> m_position >> m_flags;
    m_dashStyle = ar.Read<std::uint8_t>();
    m_dashCap = ar.Read<std::uint8_t>();
    m_fillKind = ar.Read<std::uint8_t>();
    m_lineReserved = ar.Read<std::uint8_t>();
    ar >> m_transparency;
    ar >> m_fillColor1 >> m_fillColor2 >> m_lineColor1 >> m_lineColor2;
    ar >> m_lineWidth;
    m_gradientStyle = ar.Read<std::uint8_t>();
    ar >> m_hatchStyle;
    ar >> m_startArrowSize >> m_endArrowSize;
    m_startArrow = ar.Read<std::uint8_t>();
    m_endArrow = ar.Read<std::uint8_t>();
    ar >> m_pictureFile;
    m_wrapMode = ar.Read<std::uint8_t>();
    ar >> m_gradientSwap >> m_pictureScale;
    m_lineKind = ar.Read<std::uint8_t>();
    m_lineGradientMode = ar.Read<std::uint8_t>();
    m_aspect = aspectOf(m_position);
}
