#include "document/CDrawObjList.h"

#include "objects/CDrawObj.h"

CDrawObjList::CDrawObjList() = default;
CDrawObjList::~CDrawObjList() = default;
CDrawObjList::CDrawObjList(CDrawObjList&&) noexcept = default;
CDrawObjList& CDrawObjList::operator=(CDrawObjList&&) noexcept = default;

void CDrawObjList::AddTail(std::unique_ptr<CDrawObj> object)
{
    m_objects.push_back(std::move(object));
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
