#pragma once

#include "undo/CMAction.h"

#include <QByteArray>
#include <memory>
#include <vector>

// A paste of the objects on the clipboard, taken from it when the action is made. Each paste
// since the last copy lands 10 units further right and down. While undone the action holds
// the objects.
class CPasteAction : public CMAction {
public:
    CPasteAction(CView* view, std::uint32_t id);
    ~CPasteAction() override;

    void Do() override;
    void Undo() override;
    void Redo() override;

private:
    QByteArray m_data; // empty when the clipboard held no objects
    CDrawObjPtrList m_objects;
    // Empty while the document holds the objects; a null where one was in no label.
    std::vector<std::unique_ptr<CDrawObj>> m_removed;
};
