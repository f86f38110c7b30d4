#include "platform/HandleImages.h"

#include <QImage>
#include <QString>
#include <array>
#include <memory>

// The resources live in a static library: nothing would pull their registration into the
// executable unless something names it, so the loader does.
static void registerResources()
{
    Q_INIT_RESOURCE(resources);
}

namespace {

struct Entry {
    int id;
    const char* path;
};

constexpr std::array<Entry, 4> Entries{{
    {HandleImages::ResizeId, ":/handles/resize.xpm"},
    {HandleImages::RotateId, ":/handles/rotate.xpm"},
    {HandleImages::TextId, ":/handles/text.xpm"},
    {HandleImages::MoveId, ":/handles/move.xpm"},
}};

std::array<std::unique_ptr<gfx::Image>, 4>& pictures()
{
    static std::array<std::unique_ptr<gfx::Image>, 4> instance;
    return instance;
}

} // namespace

bool HandleImages::Load()
{
    Release();
    registerResources();
    bool all = true;
    for (size_t i = 0; i < Entries.size(); ++i) {
        QImage image(QString::fromLatin1(Entries[i].path));
        if (image.isNull()) {
            all = false;
            continue;
        }
        auto picture = std::make_unique<gfx::Image>(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
        if (picture->GetLastStatus() != gfx::Status::Ok) {
            all = false;
            continue;
        }
        pictures()[i] = std::move(picture);
    }
    return all;
}

void HandleImages::Release()
{
    for (auto& picture : pictures())
        picture.reset();
}

const gfx::Image* HandleImages::Get(int resourceId)
{
    for (size_t i = 0; i < Entries.size(); ++i) {
        if (Entries[i].id == resourceId)
            return pictures()[i].get();
    }
    return nullptr;
}
