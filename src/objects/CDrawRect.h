#pragma once

#include "objects/CDrawObj.h"
#include "objects/ShapeAppearance.h"
#include "platform/graphics/GraphicsPath.h"

#include <Qt>

class CDrawDoc;

// Every object that a rectangle and a shape code describe: rectangle, round rectangle,
// ellipse, arc, halo, the two line objects, and pictures (plain rectangles with a picture
// fill). Adds the shapes' own handles (the round rectangle's corner, the halo's ring, the
// arc's start, end and ring) and picks by the outline that was last drawn.
class CDrawRect : public CDrawObj {
public:
    // Low byte of m_shape.
    enum Shape {
        Rectangle = 0,
        RoundRectangle = 1,
        Ellipse = 2,
        Arc = 3,
        Halo = 4,
        Line = 9,
        ArrowLine = 10,
    };
    // Bit of m_shape: resizing keeps m_aspect, about the centre.
    static constexpr int AspectLock = 0x100;

    CDrawRect();
    explicit CDrawRect(const CRect& position);

    int ShapeCode() const { return m_shape & 0xFF; }
    bool IsAspectLocked() const { return (m_shape & AspectLock) != 0; }

    int GetHandleCount() const override;
    CPoint GetHandle(int handle) const override;
    Qt::CursorShape GetHandleCursor(int handle) const override;
    void Draw(gfx::Graphics& graphics, int cx, int cy, CView* view) override;
    void DrawTracker(gfx::Graphics& graphics, int state, int cx, int cy) override;
    // Picks by the outline that Draw built last (an object never drawn can't be picked), and a
    // line by a band along it.
    bool Intersects(const CRect& rect) override;
    // A line's ends follow the view's modifiers: Alt snaps, Shift keeps 45 degrees. Without a
    // view no key is held, so nothing snaps: only a drag in a window can snap, and the window
    // knows its screen's resolution.
    void MoveHandleTo(int handle, CPoint point, CView* view) override;
    std::unique_ptr<CDrawObj> Clone() const override;
    void CopyProperties(const CDrawObj& source) override;
    void Serialize(CArchive& ar) override;

    // Loads the picture as Draw does and sizes the object to it at one unit a pixel, keeping
    // the left top corner.
    void FitToPicture();

    // The resize a locked object gets: about the centre, proportional to m_aspect, whichever
    // handle is dragged.
    CRect AspectRect(CPoint point) const;

    // Helpers that lines and polys share.
    // Alt: rounds the point down to the document's snap steps (the screen's resolution, in dots
    // per inch, scaled to the label, in tenths of an inch); without a document the point stays.
    static CPoint SnapPoint(CPoint point, CDrawDoc* document, int resolution);
    // Shift: the point held to the nearest multiple of 45 degrees about origin.
    static CPoint ConstrainAngle(CPoint point, CPoint origin);
    // Whether rect touches the band of half-thickness (lineWidth + 10) / 2 along from-to.
    static bool LineBandIntersects(CPoint from, CPoint to, int lineWidth, const CRect& rect);

    int m_shape = 0;
    // Outline of the shape, rebuilt by Draw and read by Intersects.
    gfx::GraphicsPath m_path;
    // Full width and height of the round rectangle's corner ellipse; limited only while drawing.
    CPoint m_cornerSize{100, 100};
    // Degrees. Arc: start and end; halo: the ring handle's angle. GetHandle may set them to 45
    // for a locked object, hence mutable.
    mutable float m_startAngle = 90;
    // Arc: the ring handle's angle; neither stored nor copied.
    mutable float m_ringAngle = 45;
    float m_endAngle = 0;
    // Ring thickness of arc and halo along each axis.
    float m_ringX = 40;
    float m_ringY = 40;

    // Picture cache and the brushes and pen of the last Draw.
    ShapeAppearance m_appearance;

private:
    void BuildPath(const QRectF& rect);
    void ResetRing();
    // Angle in degrees of the point about the centre of the normalised rectangle, as the ellipse
    // parameter sees it.
    float HandleAngle(CPoint point) const;
    void MoveRingHandle(float& angle, CPoint point);
};
