#include "undo/CPaperAction.h"

#include "document/CDrawDoc.h"

CPaperAction::CPaperAction(CView* view, std::uint32_t id) : CMAction(view, id), m_before(GetDocument()->GetBackground())
{
}

void CPaperAction::Do()
{
    CAction::Do();
    m_after = GetDocument()->GetBackground();
    Done();
}

void CPaperAction::Undo()
{
    CMAction::Undo();
    Restore(m_before);
}

void CPaperAction::Redo()
{
    CMAction::Redo();
    Restore(m_after);
}

void CPaperAction::Restore(const LabelBackground& background)
{
    CDrawDoc* document = GetDocument();
    document->Background(document->GetCurLabel()) = background;
    m_pView->OnUpdate(nullptr, 0, nullptr);
}
