#pragma once

#include <QString>

namespace gfx {

// A font family of the program's collection (the fonts shipped beside the program and the
// system's). A family that isn't installed is not available; the faces Windows labels are most
// often set in ("Arial", "Times New Roman", "Courier New") are found under their metric-compatible
// Liberation twins when only those are installed, so a label keeps its line widths.
class FontFamily {
public:
    FontFamily() = default; // not available
    explicit FontFamily(const QString& name);

    // The system's sans-serif face.
    static FontFamily GenericSansSerif();

    bool IsAvailable() const { return !m_face.isEmpty(); }
    // The installed family that draws, empty when not available.
    QString GetFamilyName() const { return m_face; }

private:
    QString m_face;
};

} // namespace gfx
