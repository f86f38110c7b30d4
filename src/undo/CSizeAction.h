#pragma once

#include "platform/CPoint.h"
#include "undo/CMAction.h"

#include <QByteArray>

// A resize by one handle, made at the press before the drag does the change. An undo puts the
// handle at the stored point and keeps where it was. A handle stands on whole units, so putting
// it back can't give back exactly what a drag made (a text's angle would come back a little
// off): a redo therefore restores the object as it stood before the undo, record for record,
// and keeps the handle's place for the next undo.
class CSizeAction : public CMAction {
public:
    CSizeAction(CView* view, std::uint32_t id, int handle, CPoint point, CDrawObj* object);

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    // The object's record as a project file holds it, and back.
    QByteArray Snapshot() const;
    void Restore(const QByteArray& record);

    CDrawObj* m_pObject;
    int m_nHandle;
    // At first the press point, which lies within the handle's hit area but seldom on the
    // handle: the first undo takes the handle there, not exactly back to where it stood.
    CPoint m_point;
    // The object before the last undo.
    QByteArray m_beforeUndo;
};
