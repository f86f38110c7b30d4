#include "document/CDrawObjList.h"

#include "document/CArchive.h"
#include "objects/CDrawObj.h"

CDrawObjList::CDrawObjList() = default;
CDrawObjList::~CDrawObjList() = default;
CDrawObjList::CDrawObjList(CDrawObjList&&) noexcept = default;
CDrawObjList& CDrawObjList::operator=(CDrawObjList&&) noexcept = default;

void CDrawObjList::AddTail(std::unique_ptr<CDrawObj> object)
{
    m_objects.push_back(std::move(object));
}

void CDrawObjList::AddHead(std::unique_ptr<CDrawObj> object)
{
    m_objects.insert(m_objects.begin(), std::move(object));
}

void CDrawObjList::InsertAt(int index, std::unique_ptr<CDrawObj> object)
{
    if (index < 0 || index >= GetCount())
        m_objects.push_back(std::move(object));
    else
        m_objects.insert(m_objects.begin() + index, std::move(object));
}

std::unique_ptr<CDrawObj> CDrawObjList::Take(const CDrawObj* object)
{
    const int index = Find(object);
    if (index < 0)
        return nullptr;
    std::unique_ptr<CDrawObj> taken = std::move(m_objects[size_t(index)]);
    m_objects.erase(m_objects.begin() + index);
    return taken;
}

void CDrawObjList::RemoveAll()
{
    m_objects.clear();
}

int CDrawObjList::Find(const CDrawObj* object) const
{
    for (int i = 0; i < GetCount(); ++i) {
        if (m_objects[size_t(i)].get() == object)
            return i;
    }
    return -1;
}

void CDrawObjList::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar.WriteCount(std::uint32_t(m_objects.size()));
        for (const auto& object : m_objects)
            ar.WriteObject(object.get());
        return;
    }
    const std::uint32_t count = ar.ReadCount();
    // Every element takes at least its two-byte tag.
    ar.EnsureAvailable(std::uint64_t(count) * 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (std::unique_ptr<CDrawObj> object = ar.ReadObject())
            m_objects.push_back(std::move(object));
    }
}
