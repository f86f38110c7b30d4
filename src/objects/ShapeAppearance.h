#pragma once

#include "platform/CRect.h"
#include "platform/graphics/ArrowHeads.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"
#include "platform/graphics/Pen.h"
#include "platform/graphics/SolidBrush.h"

#include <QRectF>
#include <QString>
#include <memory>
#include <optional>

class CDrawObj;
namespace gfx {
class Graphics;
class GraphicsPath;
class Image;
class TextureBrush;
} // namespace gfx

// How a shape's appearance fields become the brushes and the pen of one Draw, shared by the
// rectangle family and the poly family. An object keeps one ShapeAppearance as a member: it
// holds the object's picture cache (the decoded picture and its texture brush) between draws,
// while every brush and the pen are built afresh on each Prepare, all of them, whichever one
// the fill kind is going to use.
//
// A Draw goes like this (CDrawPoly passes false for the metafile step, which is the rectangle
// family's only, and fills by its own kinds):
//
//     const QRectF r = ShapeAppearance::NormalizedRect(m_position);
//     ... rebuild the object's path from r or from its points ...
//     m_appearance.Prepare(*this, graphics, path, /*mirrorMetafile*/ false);
//     if (fills) {
//         if (!m_appearance.DrawPicture(graphics, path, /*plainRectangle*/ false))
//             graphics.FillPath(m_appearance.FillBrush(), path);
//     }
//     if (strokes)
//         graphics.DrawPath(m_appearance.LinePen(), path);
//
// Prepare loads the picture first if the cache asks for it. After Prepare, Rect() is the
// rectangle to fill and stroke; it differs from NormalizedRect only after the metafile step.
// A poly whose Center picture must clip to something other than its outline uses
// PicturePlacement, CenteredPictureRect and DrawPictureClipped instead of DrawPicture.
class ShapeAppearance {
public:
    // What a picture fill does with the picture.
    enum class Placement {
        NotPicture, // the fill kind isn't a picture
        Texture,    // tile, or flip: the shape is filled with the texture brush like any brush
        Stretched,  // Fit or Stretch: the picture stretched into the rectangle
        Centered,   // Center: pixel size, centred in the rectangle, clipped to the shape
    };

    ShapeAppearance();
    ~ShapeAppearance();
    // The cache belongs to one object instance: a copy starts empty and builds its own on its
    // first Draw, and assigning leaves the target's cache as it is.
    ShapeAppearance(const ShapeAppearance&) : ShapeAppearance() {}
    ShapeAppearance& operator=(const ShapeAppearance&) { return *this; }

    // The object's rectangle as floats with a non-negative width and height.
    static QRectF NormalizedRect(const CRect& position);

    // Loads the picture when the image or its brush is missing or the cached name is empty.
    // The cached name is deliberately not compared with m_pictureFile: a loaded picture stays
    // until the object is read again or cloned. An object without a picture retries (and fails
    // quietly) on every call, which leaves a zero-size image.
    void LoadPicture(const CDrawObj& object);
    const gfx::Image* Picture() const { return m_image.get(); }
    gfx::TextureBrush* Texture() const { return m_texture.get(); }
    const QString& LoadedFile() const { return m_loadedFile; }
    bool IsMetafile() const;

    // Builds the brushes and the pen for one Draw from the object's fields, its rebuilt path and
    // its normalised rectangle. With mirrorMetafile and a metafile picture, the graphics' world
    // transform is mirrored about the x axis and left so: what is drawn later in the same pass
    // is mirrored too. The hatch origin and the texture translation are applied here.
    void Prepare(const CDrawObj& object, gfx::Graphics& graphics, const gfx::GraphicsPath& path,
                 bool mirrorMetafile);

    bool DrawsLine() const { return m_drawsLine; }
    bool DrawsFill() const { return m_drawsFill; }
    const QRectF& Rect() const { return m_rect; }
    // The brush the fill kind chooses: solid, hatch, texture, path or linear gradient.
    const gfx::Brush& FillBrush() const;
    gfx::Pen& LinePen() { return *m_pen; }
    const gfx::Pen& LinePen() const { return *m_pen; }

    // The individual brushes of the last Prepare, whether chosen or not.
    const gfx::SolidBrush& SolidFill() const { return *m_solid; }
    const gfx::HatchBrush& HatchFill() const { return *m_hatch; }
    const gfx::PathGradientBrush& PathGradientFill() const { return *m_pathGradient; }
    const gfx::LinearGradientBrush& LinearGradientFill() const { return *m_linearGradient; }
    const gfx::LinearGradientBrush& LineGradient() const { return *m_lineGradient; }

    // The picture rule for a visible fill.
    Placement PicturePlacement() const;
    // Where Center puts the picture: its pixel size, centred in Rect().
    QRectF CenteredPictureRect() const;
    // The picture drawn into rect, clipped to clipPath; the clip in force before is put back.
    void DrawPictureClipped(gfx::Graphics& graphics, const gfx::GraphicsPath& clipPath, const QRectF& rect) const;
    // Draws a Stretched or Centered picture and answers true; answers false when the caller is
    // to fill the shape with FillBrush() (every other fill, a tiled picture included). A plain
    // rectangle draws a stretched picture without a clip.
    bool DrawPicture(gfx::Graphics& graphics, const gfx::GraphicsPath& shapePath, bool plainRectangle) const;

    // Arrow heads of a line object. selector: 0 both ends, 1 start only, 2 end only, 3 or more
    // neither (both ends then get NoAnchor and nothing else happens).
    static void ApplyArrowCaps(const CDrawObj& object, gfx::Pen& pen, int selector);
    // The arrow picker's index for a code (0 for codes it doesn't offer), and the reverse; the
    // heads themselves are gfx::ArrowHeads, which the picker draws too.
    static int ArrowPickerIndex(int code) { return gfx::ArrowHeads::PickerIndex(code); }
    static int ArrowCodeAt(int pickerIndex) { return gfx::ArrowHeads::CodeAt(pickerIndex); }

private:
    // The picture cache, kept between draws.
    std::unique_ptr<gfx::Image> m_image;
    std::unique_ptr<gfx::TextureBrush> m_texture;
    QString m_loadedFile;

    // Built by each Prepare.
    QRectF m_rect;
    bool m_drawsLine = false;
    bool m_drawsFill = false;
    int m_fillKind = 0;
    int m_wrapMode = 4;
    int m_pictureScale = 0;
    std::optional<gfx::SolidBrush> m_solid;
    std::optional<gfx::HatchBrush> m_hatch;
    std::optional<gfx::PathGradientBrush> m_pathGradient;
    std::optional<gfx::LinearGradientBrush> m_linearGradient;
    std::optional<gfx::LinearGradientBrush> m_lineGradient;
    std::optional<gfx::Pen> m_pen;
};
