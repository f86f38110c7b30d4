#include "undo/CAction.h"

#include "document/CView.h"
#include "undo/CUndoManager.h"

#include <utility>

namespace {

// The labels of the steps, by string id. Several ids have no action any more; they stay so
// that the range is complete. The texts stand as they always have, spelling included.
constexpr std::pair<std::uint32_t, const char*> Labels[] = {
    {61450, "Add an object"},
    {61453, "Resize"},
    {61454, "Move"},
    {61455, "Add a polygon"},
    {61462, "Editing"},
    {61463, "change Background"},
    {61464, "Move position"},
    {61465, "change left arrow"},
    {61466, "change right arrow"},
    {61467, "chang line color"},
    {61468, "change fill color"},
    {61469, "Change text color"},
    {61470, "Change line width"},
    {61471, "Change line style"},
    {61472, "change font name or size"},
    {61473, "Delete the selections"},
    {61474, "paste"},
    {61475, "Change properties of multiple objects"},
    {61477, "Add a new page"},
    {61478, "Delete page"},
    {61479, "Move a object by arrows"},
};

} // namespace

CAction::CAction(CDocument* target, std::uint32_t id, bool record)
    : m_pTarget(target), m_bRecord(record), m_nID(id)
{
    if (id != 0)
        m_strName = LoadLabel(id);
}

CAction::~CAction()
{
    CView::ForgetAction(this);
}

void CAction::Do()
{
    if (m_bRecord)
        g_undoManager.Do(m_pTarget, this);
    m_bDoCalled = true;
}

void CAction::Undo()
{
    m_bUndone = true;
}

void CAction::Redo()
{
    m_bUndone = false;
}

void CAction::Done()
{
    m_bDone = true;
}

QString CAction::LoadLabel(std::uint32_t id)
{
    for (const auto& [labelId, text] : Labels) {
        if (labelId == id)
            return QString::fromLatin1(text);
    }
    return {};
}
