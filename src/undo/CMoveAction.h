#pragma once

#include "platform/CRect.h"
#include "undo/CMAction.h"

#include <vector>

// A drag of the selection. Made at the first step of the drag with the rectangles before it,
// recorded at the release; each undo or redo swaps the objects' rectangles with the stored
// ones, so one array serves both ways.
class CMoveAction : public CMAction {
public:
    CMoveAction(CView* view, std::uint32_t id, const CDrawObjPtrList& objects);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void Apply();

    CDrawObjPtrList m_objects;
    std::vector<CRect> m_rects;
};
