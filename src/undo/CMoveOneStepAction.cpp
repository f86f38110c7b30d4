#include "undo/CMoveOneStepAction.h"

#include "document/CDrawObjList.h"
#include "objects/CDrawObj.h"

CMoveOneStepAction::CMoveOneStepAction(CView* view, std::uint32_t id, int direction, CDrawObj* object)
    : CMAction(view, id), m_pObject(object), m_bForward(direction == 1)
{
}

void CMoveOneStepAction::Do()
{
    CAction::Do();
    m_bForward ? MoveUp() : MoveDown();
    Done();
}

void CMoveOneStepAction::Undo()
{
    CMAction::Undo();
    m_bForward ? MoveDown() : MoveUp();
}

void CMoveOneStepAction::Redo()
{
    CMAction::Redo();
    m_bForward ? MoveUp() : MoveDown();
}

void CMoveOneStepAction::MoveUp()
{
    CDrawObjList* list = ListOf(m_pObject);
    if (!list)
        return;
    const int index = list->Find(m_pObject);
    if (index == list->GetCount() - 1)
        return;
    // After the one above it, which takes its place once it is out.
    list->InsertAt(index + 1, list->Take(m_pObject));
    m_pView->InvalidateObject(m_pObject);
}

void CMoveOneStepAction::MoveDown()
{
    CDrawObjList* list = ListOf(m_pObject);
    if (!list)
        return;
    const int index = list->Find(m_pObject);
    if (index == 0)
        return;
    list->InsertAt(index - 1, list->Take(m_pObject));
    m_pView->InvalidateObject(m_pObject);
}
