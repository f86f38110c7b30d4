#include "undo/CClipboardObjects.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "document/CDrawObjList.h"
#include "objects/CDrawObj.h"

QByteArray CClipboardObjects::Store(const CDrawObjPtrList& objects)
{
    CArchive ar;
    ar.WriteCount(std::uint32_t(objects.size()));
    for (const CDrawObj* object : objects)
        ar.WriteObject(object);
    return ar.Buffer();
}

std::vector<std::unique_ptr<CDrawObj>> CClipboardObjects::Load(const QByteArray& bytes, CDrawDoc* document)
{
    // Read through a list of their own, which destroys what it holds if the bytes end badly.
    CDrawObjList loaded;
    try {
        CArchive ar(bytes);
        ar.m_pDocument = document;
        loaded.Serialize(ar);
    } catch (const CArchiveException&) {
        return {};
    }
    std::vector<std::unique_ptr<CDrawObj>> objects;
    while (!loaded.IsEmpty())
        objects.push_back(loaded.Take(loaded.GetAt(0)));
    return objects;
}
