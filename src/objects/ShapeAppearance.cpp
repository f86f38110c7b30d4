#include "objects/ShapeAppearance.h"

#include "objects/CDrawObj.h"
#include "platform/graphics/ArrowHeads.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/Region.h"
#include "platform/graphics/TextureBrush.h"

#include <QPointF>

namespace {

// Gamma correction of gradient fills. One switch for the whole program, and nothing turns it on.
bool g_gradientGammaCorrection = false;

gfx::Color withAlpha(gfx::Color color, int alpha)
{
    return gfx::Color(alpha, color.GetR(), color.GetG(), color.GetB());
}

gfx::LinearGradientMode gradientMode(int mode)
{
    return static_cast<gfx::LinearGradientMode>(mode);
}

} // namespace

ShapeAppearance::ShapeAppearance() = default;

ShapeAppearance::~ShapeAppearance()
{
    // The brush refers to the picture's pixels; it goes first.
    m_texture.reset();
    m_image.reset();
}

QRectF ShapeAppearance::NormalizedRect(const CRect& position)
{
    return QRectF(position.left, position.top, double(position.right) - position.left,
                  double(position.bottom) - position.top)
        .normalized();
}

void ShapeAppearance::LoadPicture(const CDrawObj& object)
{
    if (m_image && m_texture && !m_loadedFile.isEmpty())
        return;
    m_texture.reset();
    m_image.reset();
    m_loadedFile = object.m_pictureFile;
    m_image = std::make_unique<gfx::Image>(m_loadedFile);
    // The world transform of a label turns y upward; the picture is turned to match.
    m_image->RotateFlip(gfx::Rotate180FlipX);
    m_texture = std::make_unique<gfx::TextureBrush>(*m_image, gfx::WrapMode::Tile);
}

bool ShapeAppearance::IsMetafile() const
{
    return m_image && m_image->GetType() == gfx::ImageType::Metafile;
}

void ShapeAppearance::Prepare(const CDrawObj& object, gfx::Graphics& graphics, const gfx::GraphicsPath& path,
                              bool mirrorMetafile)
{
    LoadPicture(object);

    m_rect = NormalizedRect(object.m_position);
    m_drawsLine = (object.m_flags & 1) != 0;
    m_drawsFill = (object.m_flags & 2) != 0;
    m_fillKind = object.m_fillKind;
    m_wrapMode = object.m_wrapMode;
    m_pictureScale = object.m_pictureScale;

    // Solid and hatch fills take their transparency from m_transparency, not from the colour.
    const int alpha = (100 - object.m_transparency) * 255 / 100;
    m_solid.emplace(withAlpha(object.m_fillColor1, alpha));
    m_hatch.emplace(object.m_hatchStyle, withAlpha(object.m_fillColor1, alpha), object.m_fillColor2);

    // Gradients carry their transparency in the colours themselves.
    m_pathGradient.emplace(path);
    const bool fromCenter = object.m_gradientSwap != 0;
    m_pathGradient->SetCenterColor(fromCenter ? object.m_fillColor2 : object.m_fillColor1);
    const gfx::Color surround = fromCenter ? object.m_fillColor1 : object.m_fillColor2;
    int surroundCount = 1;
    m_pathGradient->SetSurroundColors(&surround, &surroundCount);
    m_pathGradient->SetGammaCorrection(g_gradientGammaCorrection);

    // Every shading but Horizontal runs from the second colour to the first; the gradient page's
    // sample shows them the other way round, and labels have always looked like this.
    switch (object.m_gradientStyle) {
    case 0:
        m_linearGradient.emplace(m_rect, object.m_fillColor1, object.m_fillColor2,
                                 gfx::LinearGradientMode::Horizontal);
        break;
    case 1:
        m_linearGradient.emplace(m_rect, object.m_fillColor2, object.m_fillColor1, gfx::LinearGradientMode::Vertical);
        break;
    case 2:
        m_linearGradient.emplace(m_rect, object.m_fillColor2, object.m_fillColor1,
                                 gfx::LinearGradientMode::BackwardDiagonal);
        break;
    default:
        m_linearGradient.emplace(m_rect, object.m_fillColor2, object.m_fillColor1,
                                 gfx::LinearGradientMode::ForwardDiagonal);
        break;
    }
    m_linearGradient->SetGammaCorrection(g_gradientGammaCorrection);

    if (mirrorMetafile && IsMetafile()) {
        // A metafile isn't turned by RotateFlip, so the drawing is mirrored instead. The
        // transform stays mirrored for the rest of the pass: objects above it are drawn mirrored.
        graphics.MultiplyTransform(gfx::Matrix(1, 0, 0, -1, 0, 0), gfx::MatrixOrder::Prepend);
        m_rect = QRectF(m_rect.x(), -m_rect.y(), m_rect.width(), -m_rect.height()).normalized();
    }

    if (m_pictureScale == 0)
        m_texture->SetWrapMode(static_cast<gfx::WrapMode>(m_wrapMode));

    if (m_fillKind == 1) {
        // Hatch tiles are anchored in device pixels; anchoring them at the object's corner keeps
        // the pattern still under the object when the view scrolls or the object moves.
        QPointF corner(std::trunc(m_rect.x()), std::trunc(m_rect.y()));
        graphics.TransformPoints(gfx::CoordinateSpace::Device, gfx::CoordinateSpace::World, &corner, 1);
        graphics.SetRenderingOrigin(int(std::lround(corner.x())) % 8, int(std::lround(corner.y())) % 8);
    } else if (m_fillKind == 2) {
        // The brush keeps its transform between draws, so the offset adds up from one Draw to
        // the next and a tiled picture away from the origin creeps with every repaint.
        m_texture->TranslateTransform(float(m_rect.x()), float(m_rect.y()), gfx::MatrixOrder::Prepend);
    }

    m_pen.emplace(object.m_lineColor1, float(object.m_lineWidth));
    m_lineGradient.emplace(m_rect.adjusted(-1, -1, 1, 1), object.m_lineColor1, object.m_lineColor2,
                           gradientMode(object.m_lineGradientMode));
    if (object.m_lineKind == 4)
        m_pen->SetBrush(*m_lineGradient);
    m_pen->SetDashStyle(static_cast<gfx::DashStyle>(object.m_dashStyle));
    m_pen->SetDashCap(static_cast<gfx::DashCap>(object.m_dashCap));
}

const gfx::Brush& ShapeAppearance::FillBrush() const
{
    static const gfx::SolidBrush nothing(gfx::Color(0, 0, 0, 0));
    switch (m_fillKind) {
    case 0: return *m_solid;
    case 1: return *m_hatch;
    case 2: return *m_texture;
    case 3: return *m_pathGradient;
    case 4: return *m_linearGradient;
    default: return nothing;
    }
}

ShapeAppearance::Placement ShapeAppearance::PicturePlacement() const
{
    if (m_fillKind != 2)
        return Placement::NotPicture;
    if (m_pictureScale != 0)
        return Placement::Stretched;
    if (m_wrapMode == 4)
        return Placement::Centered;
    return Placement::Texture;
}

QRectF ShapeAppearance::CenteredPictureRect() const
{
    const double width = m_image ? m_image->GetWidth() : 0.0;
    const double height = m_image ? m_image->GetHeight() : 0.0;
    return QRectF(m_rect.x() + (m_rect.width() - width) / 2, m_rect.y() + (m_rect.height() - height) / 2, width,
                  height);
}

void ShapeAppearance::DrawPictureClipped(gfx::Graphics& graphics, const gfx::GraphicsPath& clipPath,
                                         const QRectF& rect) const
{
    if (!m_image)
        return;
    // Saved and restored rather than read and set again: the same clip comes back, without
    // rasterising the label's outline once more for every picture.
    const gfx::GraphicsState state = graphics.Save();
    graphics.SetClip(gfx::Region(clipPath), gfx::CombineMode::Intersect);
    graphics.DrawImage(*m_image, rect);
    graphics.Restore(state);
}

bool ShapeAppearance::DrawPicture(gfx::Graphics& graphics, const gfx::GraphicsPath& shapePath,
                                  bool plainRectangle) const
{
    switch (PicturePlacement()) {
    case Placement::Stretched:
        if (plainRectangle) {
            if (m_image)
                graphics.DrawImage(*m_image, m_rect);
        } else {
            DrawPictureClipped(graphics, shapePath, m_rect);
        }
        return true;
    case Placement::Centered:
        DrawPictureClipped(graphics, shapePath, CenteredPictureRect());
        return true;
    case Placement::Texture:
    case Placement::NotPicture:
        break;
    }
    return false;
}

void ShapeAppearance::ApplyArrowCaps(const CDrawObj& object, gfx::Pen& pen, int selector)
{
    if (selector >= 3 || selector < 0) {
        pen.SetStartCap(gfx::LineCap::NoAnchor);
        pen.SetEndCap(gfx::LineCap::NoAnchor);
        return;
    }
    // The end that isn't selected is taken as having no head.
    const int startCode = selector == 2 ? gfx::ArrowHeads::NoArrow : object.m_startArrow;
    const int endCode = selector == 1 ? gfx::ArrowHeads::NoArrow : object.m_endArrow;
    gfx::ArrowHeads::SetCaps(pen, startCode, object.m_startArrowSize, endCode, object.m_endArrowSize,
                             object.m_lineWidth);
}
