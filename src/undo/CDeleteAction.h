#pragma once

#include "undo/CMAction.h"

#include <memory>
#include <vector>

// The removal of objects. They are kept in the order of their levels, bottom first, each with
// its position in the label's list counted from 1, so that putting them back bottom first
// returns each to its own level. While done the action holds them.
class CDeleteAction : public CMAction {
public:
    CDeleteAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects);
    ~CDeleteAction() override;

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void Apply();

    CDrawObjPtrList m_objects;
    std::vector<int> m_positions;
    // Empty while the document holds the objects; a null where one was in no label.
    std::vector<std::unique_ptr<CDrawObj>> m_removed;
};
