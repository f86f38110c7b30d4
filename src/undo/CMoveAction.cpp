#include "undo/CMoveAction.h"

#include "objects/CDrawObj.h"

CMoveAction::CMoveAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects)
    : CMAction(view, id), m_objects(objects)
{
    m_rects.reserve(m_objects.size());
    for (const CDrawObj* object : m_objects)
        m_rects.push_back(object->GetRect());
}

void CMoveAction::Do()
{
    // The drag has moved the objects already.
    CAction::Do();
    Done();
}

void CMoveAction::Undo()
{
    CMAction::Undo();
    Apply();
}

void CMoveAction::Redo()
{
    CMAction::Redo();
    Apply();
}

void CMoveAction::Apply()
{
    UpdateAllViews(2, &m_objects);
    for (size_t i = 0; i < m_objects.size(); ++i) {
        const CRect present = m_objects[i]->GetRect();
        m_objects[i]->MoveTo(m_rects[i], m_pView);
        m_rects[i] = present;
    }
    UpdateAllViews(2, &m_objects);
}
