#include "platform/graphics/FontFamily.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>

namespace gfx {

namespace {

QString metricTwin(const QString& name)
{
    static const struct {
        const char* windows;
        const char* twin;
    } twins[] = {
        {"Arial", "Liberation Sans"},
        {"Arial Narrow", "Liberation Sans Narrow"},
        {"Times New Roman", "Liberation Serif"},
        {"Courier New", "Liberation Mono"},
    };
    for (const auto& t : twins) {
        if (name.compare(QLatin1String(t.windows), Qt::CaseInsensitive) == 0)
            return QString::fromLatin1(t.twin);
    }
    return {};
}

} // namespace

FontFamily::FontFamily(const QString& name)
{
    if (name.isEmpty())
        return;
    if (QFontDatabase::hasFamily(name)) {
        m_face = name;
        return;
    }
    const QString twin = metricTwin(name);
    if (!twin.isEmpty() && QFontDatabase::hasFamily(twin))
        m_face = twin;
}

FontFamily FontFamily::GenericSansSerif()
{
    // fontconfig's "sans-serif" alias; Qt's style hint alone may land on a serif face.
    FontFamily family;
    family.m_face = QFontInfo(QFont(QStringLiteral("sans-serif"))).family();
    return family;
}

} // namespace gfx
