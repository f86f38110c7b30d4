#pragma once

#include "CliCommand.h"

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

    // Label N (1 to 3) alone, clipped to its outline with bleed, on a picture of its own size.
    static QImage RenderLabel(CDrawDoc& doc, int label);
};
