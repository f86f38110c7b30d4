#pragma once

#include <QRectF>

class CTemplateFile;

namespace gfx {
class Graphics;
}

// The picture of a template: its paper on grey, fitted into a box, with its label areas
// outlined (discs, business-card discs with their flat edges, rotated rectangles and their
// perforations). The template preview and the tool's contact sheet both draw it.
namespace TemplatePreview {

// The paper fitted into the box and centred on the other axis; empty for a paper without size.
QRectF PaperRect(const CTemplateFile& file, const QRectF& box);

// Draws the template into the box, or the bare grey without one. With `enabled`, the areas of a sheet that take part in
// printing are highlighted; a tray shows its first disc only.
void Draw(gfx::Graphics& graphics, const CTemplateFile* file, const QRectF& box, bool enabled);

} // namespace TemplatePreview
