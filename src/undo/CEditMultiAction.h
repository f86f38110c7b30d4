#pragma once

#include "undo/CMAction.h"

#include <memory>
#include <vector>

// The snapshot step of every property edit: clones of the objects before the change (taken at
// construction) and after it (taken by Do), copied back into the objects on undo and redo. It
// needs to know no field of any object.
class CEditMultiAction : public CMAction {
public:
    CEditMultiAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects);
    ~CEditMultiAction() override;

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    using Clones = std::vector<std::unique_ptr<CDrawObj>>;
    Clones Snapshot() const;
    void Restore(const Clones& clones);

    CDrawObjPtrList m_objects;
    Clones m_before;
    Clones m_after;
};
