#pragma once

#include "objects/CDrawObj.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>

// A text on the label. It is never drawn as text: Layout turns it, glyph by glyph, into one
// outline, and Draw paints that outline in one of six styles with edge, shadow and blur.
// Straight text fits its rectangle to its content about the rectangle's centre and turns by
// m_angle; curved and spiral text run along the ellipse of the rectangle.
class CDrawText : public CDrawObj {
public:
    // Low byte of m_textPathKind.
    enum TextPathKind { Straight = 0, CurvedCW = 1, CurvedCCW = 2, SpiralCW = 3, SpiralCCW = 4 };
    // Bit of m_textPathKind: curved text resizes about its centre, keeping m_aspect.
    static constexpr int AspectLock = 0x100;
    enum Justify { Left = 0, Centered = 1, Right = 2 };
    enum TextStyle { Normal = 0, Outline = 1, Embossed = 2, Chiseled = 3, Glowing = 4, Neon = 5 };
    // The resolution text is laid out at: the drawing view's, 300 units to the inch.
    static constexpr int LayoutResolution = 300;
    // Characters of the expanded text that are laid out; the rest is left out, so that a text
    // pasted by mistake can't exhaust memory (each glyph holds tens of points).
    static constexpr int MaxLaidOutCharacters = 10000;
    // The largest half-resolution bitmap a shadow or glow is blurred on, 4096 by 4096: a box of
    // 27 inches square. A larger text gets neither, rather than gigabytes of blurring.
    static constexpr double MaxEffectPixels = 4096.0 * 4096.0;

    CDrawText();
    explicit CDrawText(const CRect& position);

    int GetPathKind() const { return m_textPathKind & 0xFF; }
    bool IsStraight() const { return GetPathKind() == Straight; }
    bool IsAspectLocked() const { return (m_textPathKind & AspectLock) != 0; }

    void SetTextProperties(const QString& text, int pathKind, int justify, gfx::Color textColor,
                           std::uint8_t textTransparency, float angle, int tracking, int leading);
    void SetFont(const QString& fontName, int fontSize, int fontStyle);
    void SetEffects(gfx::Color edgeColor, std::uint8_t textStyle, std::uint8_t edgeSize, std::uint8_t edgeBlur,
                    std::uint8_t edgeTransparency, int shadowOn, int shadowX, int shadowY, std::uint8_t shadowBlur,
                    std::uint8_t shadowTransparency);

    int GetHandleCount() const override;
    void Layout() override;
    CPoint GetHandle(int handle) const override;
    CRect GetHandleRect(int handle, CView* view) const override;
    Qt::CursorShape GetHandleCursor(int handle) const override;
    void Draw(gfx::Graphics& graphics, int cx, int cy, CView* view) override;
    void DrawTracker(gfx::Graphics& graphics, int state, int cx, int cy) override;
    bool Intersects(const CRect& rect) override;
    bool IsInside(const CRect& rect) override;
    void MoveHandleTo(int handle, CPoint point, CView* view) override;
    void Serialize(CArchive& ar) override;
    std::unique_ptr<CDrawObj> Clone() const override;
    CRect GetDrawBounds(CRect rect) const override;
    // A text paints its own outline only, whatever the picture fields hold.
    bool DrawsOnlyWithinBounds() const override { return true; }
    void SetTextColor(gfx::COLORREF color) override;
    // Copies the rectangle too, and lays the text out again.
    void CopyProperties(const CDrawObj& source) override;

    // The font at a resolution: m_fontName from the program's collection, else the system's
    // sans-serif face; the size in pixels is (m_fontSize x resolution) / 72 in unsigned integers.
    gfx::Font MakeFont(int resolution) const;
    // The width of a string as the layout counts it: the characters' advances plus m_tracking
    // after each, at least 0.1.
    float MeasureLine(const gfx::Graphics& graphics, const gfx::Font& font, const QString& text) const;
    // The angle step along the ellipse (w, h about the origin, shrinking by `pitch` per turn of
    // progress) that moves a chord's length from (px, py); dir 1 steps forward, 0 backward.
    // Gives the step and sets (nx, ny) to the point reached and tangent to the chord's direction.
    static float AdvanceOnEllipse(float px, float py, float w, float h, float chord, float angle, float progress,
                                  float pitch, int dir, float& nx, float& ny, float& tangent);

    // Told whenever a handle turns the text, with the new angle as the text panel's Rotation
    // field shows it ("%.1f"). The panel sets it; the model knows no widgets.
    static inline std::function<void(const CDrawText&, const QString&)> s_angleChanged;

    gfx::GraphicsPath m_textPath;
    QString m_text;
    float m_angle = 90;
    float m_ringWidth = 0;
    gfx::Color m_textColor;
    QString m_aux1;
    gfx::Color m_auxColor1{0u};
    std::uint8_t m_auxByte1 = 0;
    int m_auxInt1 = 0;
    QString m_fontName;
    int m_fontSize = 12;
    int m_fontStyle = 0;
    int m_textPathKind = 0;
    std::uint8_t m_auxByte2 = 0;
    int m_justify = 1;
    std::uint8_t m_textTransparency = 0;
    std::uint8_t m_textStyle = 0;
    gfx::Color m_edgeColor{0u};
    QString m_aux2;
    gfx::Color m_auxColor2{0u};
    std::uint8_t m_auxByte3 = 0;
    int m_auxInt2 = 0;
    std::uint8_t m_edgeSize = 1;
    std::uint8_t m_edgeBlur = 0;
    std::uint8_t m_edgeTransparency = 0;
    int m_shadowOn = 0;
    int m_shadowX = 0;
    int m_shadowY = 0;
    std::uint8_t m_shadowBlur = 0;
    std::uint8_t m_shadowTransparency = 0;
    int m_tracking = 0;
    int m_leading = 0;

private:
    // What laying out one text needs: where it measures, its font and line height.
    struct Setting;
    // Glyph paths on their way into m_textPath.
    class GlyphBatch;

    // The fields a copy takes over, from another text or from the defaults.
    template <typename Source>
    void CopyTextFields(const Source& source);
    void NotifyAngle();
    // The expanded text, cut to MaxLaidOutCharacters, as lines.
    QStringList ExpandedLines() const;
    void LayoutStraight(const Setting& s, const QStringList& lines, float w, float h);
    // One line of straight text into the row at y of height q, x left of the box's start.
    void LayoutLine(const Setting& s, const QString& line, float x, float y, float w, float q);
    void LayoutCurved(const Setting& s, const QStringList& lines, float w, float h);
    void LayoutOnEllipse(const Setting& s, QString line, QRectF rect, int cw, float start);
    void LayoutOnSpiral(const Setting& s, const QString& line, QRectF rect, int cw, float pitch, float start);
    // Places one glyph of a curved line at (px, py), turned along the chord, in the frame of rect.
    void PlaceOnCurve(const Setting& s, QChar c, float advance, float px, float py, float tangent, float turn,
                      const QRectF& rect, GlyphBatch& batch);
    // A blurred effect as DrawBlurred composed it, with everything it was composed from. The
    // bitmap is in the text's own frame at half the label's resolution, whatever the device, so
    // it serves until one of these changes: moving the text only moves the box it is drawn into.
    struct BlurredLayer {
        gfx::GraphicsPath path; // the outline as painted on the bitmap
        int width = 0;
        int height = 0;
        gfx::Color color;
        bool stroked = false;
        float penWidth = 0;
        std::uint8_t blur = 0;
        gfx::SmoothingMode smoothing = gfx::SmoothingMode::Default;
        gfx::PixelOffsetMode pixelOffset = gfx::PixelOffsetMode::Default;
        bool composed = false;
        std::shared_ptr<const gfx::Bitmap> bitmap; // null when the blur could not be made
    };

    // Paints the outline, halved, on a half-resolution bitmap, blurs it and draws it back into
    // the box of the label that the bitmap stands for (turned text needs a square), moved by the
    // offset. A stroked outline takes a pen of the colour and width, else it is filled with the
    // colour. The blurred bitmap is kept in the layer and composed again only when what it is
    // made of changed.
    void DrawBlurred(gfx::Graphics& graphics, const QRectF& r, BlurredLayer& layer, gfx::Color color, bool stroked,
                     float penWidth, std::uint8_t blur, QPointF offset);
    // The frame the tracker draws and picks by, grown on all sides: two ellipses for curved
    // text, the turned rectangle for straight text.
    gfx::GraphicsPath FramePath(float grow) const;

    BlurredLayer m_shadowLayer;
    BlurredLayer m_edgeLayer;
};
