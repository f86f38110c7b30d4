#pragma once

class CDocument;
class CDrawObj;

// What the document asks of a window that shows it. The drawing view implements it; the
// model never sees a widget.
class CView {
public:
    virtual ~CView() = default;

    // A hint of what changed: 0 repaint all, 1 one object, 2 a list or the selection,
    // 3 drop a list from the selection.
    virtual void OnUpdate(CView* sender, int hint, CDrawObj* object) = 0;
    // Whether the object is in this view's selection.
    virtual bool IsSelected(const CDrawObj* object) const = 0;
    // Whether this is the view the user works in now; only that one shows trackers.
    virtual bool IsActive() const = 0;
    // Takes an object that leaves the document out of the selection.
    virtual void Remove(CDrawObj* object) = 0;
    // Repaints the place of one object, with its line and effect margins.
    virtual void InvalidateObject(CDrawObj* object) = 0;
};
