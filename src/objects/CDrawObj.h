#pragma once

#include "objects/DrawObjProperties.h"
#include "platform/CPoint.h"
#include "platform/CRect.h"

#include <Qt>
#include <memory>

class CArchive;
class CDrawDoc;
class CView;
namespace gfx {
class Graphics;
}

// Everything that lies on a label: its rectangle in document units (300 to the inch, y up,
// kept as drawn), the shared appearance, and the one interface through which the document,
// the view, the tools and the undo actions draw, pick, move, resize and copy it.
class CDrawObj : public DrawObjProperties {
public:
    // Command ids that name the two ends of a line in SetArrow and GetArrow.
    static constexpr int StartArrowId = 61465;
    static constexpr int EndArrowId = 61466;

    CDrawObj();
    explicit CDrawObj(const CRect& position);
    virtual ~CDrawObj() = default;

    // The object's record in a project file or on the clipboard, in both directions. Loading
    // takes the archive's document as the object's own.
    virtual void Serialize(CArchive& ar);

    virtual int GetHandleCount() const;
    virtual void Layout();
    virtual CPoint GetHandle(int handle) const;
    virtual CRect GetHandleRect(int handle, CView* view) const;
    virtual Qt::CursorShape GetHandleCursor(int handle) const;
    virtual void Draw(gfx::Graphics& graphics, int cx, int cy, CView* view);
    virtual void DrawTracker(gfx::Graphics& graphics, int state, int cx, int cy);
    virtual void MoveTo(const CRect& position, CView* view);
    // Unselected: 1 when the point lies in the stored rectangle, edges included. Selected: the
    // highest-numbered handle whose square holds the point, or 0.
    virtual int HitTest(CPoint point, CView* view, bool selected);
    virtual bool Intersects(const CRect& rect);
    virtual bool IsInside(const CRect& rect);
    virtual void MoveHandleTo(int handle, CPoint point, CView* view);
    virtual void OnOpen(CView* view);
    // A deep copy of the same class, without the document and without caches.
    virtual std::unique_ptr<CDrawObj> Clone() const;
    // A copy added to the document, which owns it.
    CDrawObj* CloneInto(CDrawDoc& document) const;
    virtual void Offset(int dx, int dy);
    CRect GetRect() const { return m_position; }
    // The rectangle grown by everything that can paint outside it.
    virtual CRect GetDrawBounds(CRect rect) const;
    // Whether a Draw changes nothing but pixels within GetDrawBounds, so that a repaint of a part
    // of the label it can't reach may leave it out. Not so for an object with a picture: a
    // metafile's mirror stays in force for the objects drawn after it, and a tiled picture's
    // offset adds up from one Draw to the next.
    virtual bool DrawsOnlyWithinBounds() const;
    virtual void SetTextColor(gfx::COLORREF color);
    virtual void SetArrow(int which, int type);
    virtual void CopyProperties(const CDrawObj& source);
    virtual gfx::COLORREF GetLineColor() const;
    virtual int GetArrow(int which) const;

    // Repaints the object in the given view, or in every view of its document.
    void Invalidate(CView* view = nullptr);

    CDrawDoc* m_pDocument = nullptr;
    CRect m_position;
    double m_aspect = 0.0;

protected:
    // Clone's second half: the fields a copy takes over, for the derived classes to extend.
    void CopyInto(CDrawObj& copy) const;
};
