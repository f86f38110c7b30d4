#include "view/CNetworkView.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"
#include "platform/graphics/DeviceContext.h"
#include "undo/CAction.h"
#include "undo/CUndoManager.h"
#include "view/CDrawTool.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>

namespace {

constexpr std::uint32_t ArrowMoveLabel = 61479;
// How far a selection handle reaches beyond its point, in label units.
constexpr int HandleReach = 16;
const QColor CanvasGrey(0x80, 0x80, 0x80);

QRect toQRect(const CRect& r)
{
    return QRect(QPoint(r.left, r.top), QPoint(r.right - 1, r.bottom - 1));
}

} // namespace

CNetworkView::CNetworkView(CDrawDoc& doc, QWidget* parent)
    : CZoomView(doc, parent), m_pDrawDoc(&doc)
{
    // Every pixel of a repaint is painted, into Qt's back buffer: no erase, no flicker.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(100, 100);
    m_pDrawDoc->AddView(this);
}

CNetworkView::~CNetworkView()
{
    m_pDrawDoc->RemoveView(this);
}

QCursor CNetworkView::PenCursor()
{
    static const QCursor cursor(QPixmap(QStringLiteral(":/cursors/pen.xpm")), 1, 1);
    return cursor;
}

int CNetworkView::ScreenResolution() const
{
    return logicalDpiX();
}

void CNetworkView::Remove(CDrawObj* object)
{
    CView::Remove(object);
    CDrawTool::ObjectRemoved(this, object);
}

void CNetworkView::SetViewFocus()
{
    setFocus();
}

void CNetworkView::SetActive(bool active)
{
    if (active == m_bActive)
        return;
    // Set first on activation, so that the repaint includes the handles.
    m_bActive = active;
    if (!m_selection.empty())
        OnUpdateList(nullptr, 2, nullptr);
}

// ---------------------------------------------------------------- coordinates

void CNetworkView::ClientToDoc(CPoint& point) const
{
    ViewDPtoLP(point);
}

void CNetworkView::ClientToDoc(CRect& rect) const
{
    CPoint topLeft(rect.left, rect.top);
    CPoint bottomRight(rect.right, rect.bottom);
    ViewDPtoLP(topLeft);
    ViewDPtoLP(bottomRight);
    rect = CRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y);
}

void CNetworkView::DocToClient(CRect& rect) const
{
    const CPoint topLeft = ViewLPtoDP(CPoint(rect.left, rect.top));
    const CPoint bottomRight = ViewLPtoDP(CPoint(rect.right, rect.bottom));
    rect = CRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y).Normalized();
}

// ---------------------------------------------------------------- repainting

void CNetworkView::OnUpdate(CView*, int hint, CDrawObj* object)
{
    if (hint == 0)
        viewport()->update();
    else if (hint == 1 && object)
        InvalidateObject(object);
}

void CNetworkView::InvalidateObject(CDrawObj* object)
{
    // Normalised first: a rectangle kept as drawn, y up, would shrink as it grows.
    CRect rect = object->GetDrawBounds(object->GetRect().Normalized());
    const bool withHandles = m_bActive && IsSelected(object);
    if (withHandles) {
        // The handles are drawn in label units round their points (squares of 24 with a pen of
        // 2, glyphs of 19), so at low zoom they reach further than the margin in pixels below.
        rect.InflateRect(HandleReach, HandleReach);
    }
    DocToClient(rect);
    if (withHandles) {
        const int handles = int(5.0 * m_fZoom);
        rect.InflateRect(handles, handles);
    }
    // A pixel more than the zoom's whole part: antialiased edges spill into the next pixel.
    const int margin = int(m_fZoom) + 1;
    rect.InflateRect(margin, margin);
    viewport()->update(toQRect(rect));
}

void CNetworkView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), CanvasGrey);
    {
        gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
        OnPrepareDC(dc);
        m_pDrawDoc->Draw(dc, this, true, false);
    }
    if (!m_focusRect.isNull()) {
        painter.resetTransform();
        painter.setClipRegion(event->region());
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(Qt::black, 1, Qt::DotLine));
        painter.drawRect(m_focusRect.adjusted(0, 0, -1, -1));
    }
}

void CNetworkView::DrawFocusRect(const CRect& clientRect)
{
    const QRect band(QPoint(clientRect.left, clientRect.top), QPoint(clientRect.right, clientRect.bottom));
    const QRect before = m_focusRect;
    // As the XOR rectangle it stands for: drawing the one that shows takes it away.
    m_focusRect = band == m_focusRect ? QRect() : band;
    viewport()->update(before.adjusted(-1, -1, 1, 1));
    viewport()->update(m_focusRect.adjusted(-1, -1, 1, 1));
}

// ---------------------------------------------------------------- selection

void CNetworkView::SelectWithinRect(CRect clientRect, bool add)
{
    if (!add)
        Select(nullptr, false);
    ClientToDoc(clientRect);
    for (const auto& object : m_pDrawDoc->GetObjects()) {
        if (object->IsInside(clientRect))
            Select(object.get(), true);
    }
}

void CNetworkView::Deselect(CDrawObj* object)
{
    if (!IsSelected(object))
        return;
    InvalidateObject(object);
    Remove(object);
}

void CNetworkView::ClearSelection()
{
    OnUpdateList(nullptr, 2, nullptr);
    m_selection.clear();
}

void CNetworkView::SelectAll()
{
    for (const auto& object : m_pDrawDoc->GetObjects())
        Select(object.get(), true);
}

// ---------------------------------------------------------------- input

void CNetworkView::SetCapture()
{
    m_bCapture = true;
}

void CNetworkView::ReleaseCapture()
{
    m_bCapture = false;
}

void CNetworkView::SetToolCursor(const QCursor& cursor)
{
    viewport()->setCursor(cursor);
}

CDrawTool* CNetworkView::ActiveTool() const
{
    return m_bActive ? CDrawTool::FindTool(g_currentTool) : nullptr;
}

unsigned CNetworkView::MouseFlags(const QMouseEvent* event)
{
    m_modifiers = event->modifiers();
    unsigned flags = 0;
    if (event->buttons() & Qt::LeftButton)
        flags |= MK_LBUTTON;
    if (event->buttons() & Qt::RightButton)
        flags |= MK_RBUTTON;
    if (m_modifiers & Qt::ShiftModifier)
        flags |= MK_SHIFT;
    if (m_modifiers & Qt::ControlModifier)
        flags |= MK_CONTROL;
    return flags;
}

void CNetworkView::CloseArrowMove()
{
    if (m_pCurAction && !m_pCurAction->IsDone() && m_pCurAction->GetID() == ArrowMoveLabel)
        m_pCurAction->Done();
}

static CPoint clientPoint(const QMouseEvent* event)
{
    const QPoint p = event->position().toPoint();
    return CPoint(p.x(), p.y());
}

void CNetworkView::mousePressEvent(QMouseEvent* event)
{
    const unsigned flags = MouseFlags(event);
    if (event->button() == Qt::LeftButton) {
        setFocus();
        CloseArrowMove();
        if (CDrawTool* tool = ActiveTool())
            tool->OnLButtonDown(this, flags, clientPoint(event));
    } else if (event->button() == Qt::RightButton) {
        CloseArrowMove();
        if (CDrawTool* tool = ActiveTool())
            tool->OnRButtonDown(this, flags, clientPoint(event));
    }
}

void CNetworkView::mouseReleaseEvent(QMouseEvent* event)
{
    const unsigned flags = MouseFlags(event);
    if (event->button() != Qt::LeftButton)
        return;
    if (CDrawTool* tool = ActiveTool())
        tool->OnLButtonUp(this, flags, clientPoint(event));
}

void CNetworkView::mouseMoveEvent(QMouseEvent* event)
{
    const unsigned flags = MouseFlags(event);
    if (CDrawTool* tool = ActiveTool())
        tool->OnMouseMove(this, flags, clientPoint(event));
}

void CNetworkView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const unsigned flags = MouseFlags(event);
    if (event->button() != Qt::LeftButton)
        return;
    if (CDrawTool* tool = ActiveTool())
        tool->OnLButtonDblClk(this, flags, clientPoint(event));
}

void CNetworkView::keyPressEvent(QKeyEvent* event)
{
    m_modifiers = event->modifiers();
    const int key = event->key();
    if (key < Qt::Key_Left || key > Qt::Key_Down) {
        CZoomView::keyPressEvent(event);
        return;
    }
    // Each press, repeated ones included, reaches the tool exactly once: one unit a press.
    if (m_selection.empty())
        return;
    if (CDrawTool* tool = CDrawTool::FindTool(g_currentTool)) {
        if (m_modifiers & Qt::ControlModifier)
            tool->OnKeyUp(this, key);
        else
            tool->OnKeyDown(this, key);
    }
}

void CNetworkView::keyReleaseEvent(QKeyEvent* event)
{
    m_modifiers = event->modifiers();
    CZoomView::keyReleaseEvent(event);
}

void CNetworkView::changeEvent(QEvent* event)
{
    // A disabled view (the window is busy printing) shows no handles and takes no input.
    if (event->type() == QEvent::EnabledChange)
        SetActive(isEnabled());
    CZoomView::changeEvent(event);
}
