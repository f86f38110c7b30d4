#include "document/CDocument.h"

#include "document/CView.h"

#include <algorithm>

void CDocument::AddView(CView* view)
{
    if (std::find(m_views.begin(), m_views.end(), view) == m_views.end())
        m_views.push_back(view);
}

void CDocument::RemoveView(CView* view)
{
    std::erase(m_views, view);
}

void CDocument::UpdateAllViews(CView* sender, int hint, CDrawObj* object)
{
    for (CView* view : m_views) {
        if (view != sender)
            view->OnUpdate(sender, hint, object);
    }
}
