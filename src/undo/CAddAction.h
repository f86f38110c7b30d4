#pragma once

#include "undo/CMAction.h"

#include <memory>

// A new object. While undone the action holds it; otherwise the document does.
class CAddAction : public CMAction {
public:
    CAddAction(CView* view, std::uint32_t id, std::unique_ptr<CDrawObj> object);
    ~CAddAction() override;

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    // Puts the object on the showing label and makes it the selection.
    void Apply();

    CDrawObj* m_pObject;
    std::unique_ptr<CDrawObj> m_pOwned; // null while the document holds the object
};
