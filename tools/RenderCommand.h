#pragma once

#include "CliCommand.h"

#include "platform/graphics/Color.h"

#include <QImage>

class CDrawDoc;

// "render PROJECT.dst OUT.png|OUT.pdf [--label N] [--yes]": what would print, as a picture or
// a one-page PDF at 300 units per inch, on the template the project names.
class RenderCommand : public CliCommand {
public:
    QString Name() const override { return QStringLiteral("render"); }
    QString Arguments() const override { return QStringLiteral("PROJECT.dst OUT.png|OUT.pdf [--label N] [--yes]"); }
    QString Summary() const override;
    int Run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    static constexpr int Resolution = 300;

    // Label N (1 to 3) alone, clipped to its outline with bleed, on a picture of its own size
    // at the given resolution: white within the outline, as a blank disc, `outside` beyond it
    // (a disc's hole included).
    static QImage RenderLabel(CDrawDoc& doc, int label, int resolution = Resolution,
                              gfx::Color outside = gfx::Color(255, 255, 255));
    // The lowest resolution at which label N's picture is at least `pixels` on its longer side.
    static int ResolutionFor(CDrawDoc& doc, int label, int pixels);
};
