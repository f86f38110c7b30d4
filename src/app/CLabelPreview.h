#pragma once

#include "document/CView.h"
#include "platform/CPoint.h"
#include "platform/CSize.h"

#include <QSize>
#include <QWidget>

class CDrawDoc;
namespace gfx {
class DeviceContext;
}

// A plain window that shows the document's current label fitted into it, centred, with the
// grey mask around the label. It stands in the main dialog until the drawing view with zoom,
// scrolling, tools and selection takes its place; it selects nothing and edits nothing.
class CLabelPreview : public QWidget, public CView {
public:
    // The view joins the document's views and leaves them when destroyed, so the document
    // must outlive it.
    CLabelPreview(CDrawDoc& doc, QWidget* parent = nullptr);
    ~CLabelPreview() override;

    CDrawDoc* GetDocument() const override { return &m_doc; }
    void OnUpdate(CView* sender, int hint, CDrawObj* object) override;
    bool IsSelected(const CDrawObj*) const override { return false; }
    bool IsActive() const override { return false; }
    void Remove(CDrawObj*) override {}
    void InvalidateObject(CDrawObj* object) override;

    // Where the label lands in a client area of the given size: the label (logical size in
    // 1/300 inch, hundredths its size in 1/100 inch) scaled to fit with the given margin
    // factor, and centred. Empty sizes give an empty device size.
    struct Fit {
        CSize deviceSize;
        CPoint viewportOrg;
    };
    static Fit FitLabel(CSize hundredths, QSize client, double zoom = 0.99);
    // Sets the anisotropic mapping: logical (0, 0) at the middle of the fitted area, y up.
    static void PrepareMapping(gfx::DeviceContext& dc, CSize logical, const Fit& fit);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CDrawDoc& m_doc;
};
