#pragma once

#include "document/CView.h"
#include "undo/CAction.h"

#include <memory>

class CDrawDoc;
class CDrawObj;
class CDrawObjList;

// An action made in a view: its target is the view's document, and an undo or a redo gives
// the keyboard back to the view.
class CMAction : public CAction {
public:
    CMAction(CView* view, std::uint32_t id);

    void Undo() override;
    void Redo() override;

protected:
    CDrawDoc* GetDocument() const;
    // The label's list that holds the object, the showing label's first; null when none does.
    // The user may have switched labels since the step was made.
    CDrawObjList* ListOf(const CDrawObj* object) const;
    // Takes the object out of the label that holds it and out of every view's selection;
    // null when no label holds it.
    std::unique_ptr<CDrawObj> TakeFromDocument(CDrawObj* object) const;
    // Hint 2 or 3 with a list (null: each view's selection) to every view of the document.
    void UpdateAllViews(int hint, const CDrawObjPtrList* list) const;

    CView* m_pView;
};
