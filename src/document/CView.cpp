#include "document/CView.h"

#include "objects/CDrawObj.h"
#include "objects/DefaultProperties.h"
#include "undo/CAction.h"

#include <algorithm>

namespace {

// Every view alive, so that a dying action can clear the pointer a view keeps to it. There is
// one view in the program; tests may make more.
std::vector<CView*>& liveViews()
{
    static std::vector<CView*> views;
    return views;
}

} // namespace

CView::CView()
{
    liveViews().push_back(this);
}

CView::~CView()
{
    SetCurrentAction(nullptr);
    std::erase(liveViews(), this);
}

void CView::ForgetAction(const CAction* action)
{
    for (CView* view : liveViews()) {
        if (view->m_pCurAction == action)
            view->m_pCurAction = nullptr;
    }
}

void CView::OnUpdateList(CView*, int hint, const CDrawObjPtrList* list)
{
    if (hint != 2 && hint != 3)
        return;
    const bool isSelection = list == nullptr || list == &m_selection;
    // A copy: invalidating may not change the list, but dropping from the selection does.
    const CDrawObjPtrList objects = isSelection ? m_selection : *list;
    for (CDrawObj* object : objects)
        InvalidateObject(object);
    if (hint == 3 && !isSelection) {
        for (CDrawObj* object : objects)
            std::erase(m_selection, object);
    }
}

bool CView::IsSelected(const CDrawObj* object) const
{
    return std::find(m_selection.begin(), m_selection.end(), object) != m_selection.end();
}

void CView::Remove(CDrawObj* object)
{
    std::erase(m_selection, object);
}

void CView::Select(CDrawObj* object, bool add)
{
    if (!add) {
        OnUpdateList(nullptr, 2, nullptr);
        m_selection.clear();
    }
    if (!object) {
        // A click on empty space forgets the look the last selected object left as default.
        ResetDefaultProperties();
        LoadPanels(nullptr);
        return;
    }
    LoadPanels(object);
    if (!IsSelected(object)) {
        m_selection.push_back(object);
        InvalidateObject(object);
    }
}

void CView::SetCurrentAction(CAction* action)
{
    if (m_pCurAction && m_pCurAction != action && !m_pCurAction->IsDoCalled())
        delete m_pCurAction; // clears m_pCurAction as it goes
    m_pCurAction = action;
}

void CView::CloseCurrentAction()
{
    if (m_pCurAction && !m_pCurAction->IsDone())
        m_pCurAction->Done();
}
