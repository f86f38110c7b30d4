#include "undo/CMoveStepsAction.h"

#include "document/CDrawObjList.h"
#include "objects/CDrawObj.h"

CMoveStepsAction::CMoveStepsAction(CView* view, std::uint32_t id, int direction, CDrawObj* neighbour,
                                   CDrawObj* object)
    : CMAction(view, id), m_pObject(object), m_bToFront(direction == 1), m_pNeighbour(neighbour)
{
}

void CMoveStepsAction::Do()
{
    CAction::Do();
    Move();
    Done();
}

void CMoveStepsAction::Redo()
{
    CMAction::Redo();
    Move();
}

void CMoveStepsAction::Move()
{
    CDrawObjList* list = ListOf(m_pObject);
    if (!list)
        return;
    std::unique_ptr<CDrawObj> object = list->Take(m_pObject);
    if (m_bToFront)
        list->AddTail(std::move(object));
    else
        list->AddHead(std::move(object));
    m_pView->InvalidateObject(m_pObject);
}

void CMoveStepsAction::Undo()
{
    CMAction::Undo();
    CDrawObjList* list = ListOf(m_pObject);
    if (!list)
        return;
    std::unique_ptr<CDrawObj> object = list->Take(m_pObject);
    // Before the neighbour; a neighbour not found (or none) leaves the object at the top.
    list->InsertAt(m_pNeighbour ? list->Find(m_pNeighbour) : -1, std::move(object));
    m_pView->InvalidateObject(m_pObject);
}
