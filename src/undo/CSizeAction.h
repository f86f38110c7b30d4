#pragma once

#include "platform/CPoint.h"
#include "undo/CMAction.h"

// A resize by one handle, made at the press before the drag does the change. Undo and redo
// are one operation: each puts the handle at the stored point and keeps where it was.
class CSizeAction : public CMAction {
public:
    CSizeAction(CView* view, std::uint32_t id, int handle, CPoint point, CDrawObj* object);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    void Swap();

    CDrawObj* m_pObject;
    int m_nHandle;
    // At first the press point, which lies within the handle's hit area but seldom on the
    // handle: the first undo takes the handle there, not exactly back to where it stood.
    CPoint m_point;
};
