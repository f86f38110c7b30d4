#include "undo/CEditMultiAction.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"

CEditMultiAction::CEditMultiAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects)
    : CMAction(view, id), m_objects(objects), m_before(Snapshot())
{
}

CEditMultiAction::~CEditMultiAction() = default;

CEditMultiAction::Clones CEditMultiAction::Snapshot() const
{
    Clones clones;
    clones.reserve(m_objects.size());
    for (const CDrawObj* object : m_objects)
        clones.push_back(object->Clone());
    return clones;
}

void CEditMultiAction::Do()
{
    CAction::Do();
    m_after = Snapshot();
    Done();
}

void CEditMultiAction::Undo()
{
    CMAction::Undo();
    Restore(m_before);
}

void CEditMultiAction::Redo()
{
    CMAction::Redo();
    Restore(m_after);
}

void CEditMultiAction::Restore(const Clones& clones)
{
    CDrawDoc* document = GetDocument();
    for (size_t i = 0; i < m_objects.size(); ++i) {
        CDrawObj* object = m_objects[i];
        // A text's rectangle follows its font: repaint the place it leaves.
        if (object->GetRect() != clones[i]->GetRect())
            document->UpdateAllViews(nullptr, 1, object);
        object->CopyProperties(*clones[i]);
        document->UpdateAllViews(nullptr, 1, object);
    }
}
