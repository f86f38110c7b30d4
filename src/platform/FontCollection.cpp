#include "platform/FontCollection.h"

#include <QDir>
#include <QFontDatabase>

namespace {

FontCollection*& published()
{
    static FontCollection* instance = nullptr;
    return instance;
}

} // namespace

FontCollection::~FontCollection()
{
    if (published() == this)
        published() = nullptr;
    for (int id : m_fontIds)
        QFontDatabase::removeApplicationFont(id);
}

int FontCollection::AddFontFiles(const QString& folder)
{
    int added = 0;
    const QDir dir(folder);
    // Hidden files too: every file of the folder is offered, and whatever is no font falls out.
    const QStringList names = dir.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString& name : names) {
        const int id = QFontDatabase::addApplicationFont(dir.filePath(name));
        if (id < 0)
            continue;
        m_fontIds.push_back(id);
        ++added;
    }
    return added;
}

QStringList FontCollection::Families() const
{
    return QFontDatabase::families();
}

FontCollection* FontCollection::Published()
{
    return published();
}

void FontCollection::Publish(FontCollection* collection)
{
    published() = collection;
}
