#pragma once

#include <QPointer>
#include <QSize>
#include <vector>

class QWidget;

// Keeps children of a window in place as it is resized: each moves or grows by the change of
// the window's size, never below the size it had when the children were registered.
class CControlPos {
public:
    enum Flags { MoveX = 1, MoveY = 2, GrowX = 4, GrowY = 8 };

    // The window whose size is followed; its present size is the least one.
    void SetParent(QWidget* parent);
    // A null child is skipped.
    void AddControl(QWidget* child, int flags);
    void MoveControls();

private:
    struct Entry {
        QPointer<QWidget> widget;
        int flags;
    };
    std::vector<Entry> m_entries;
    QWidget* m_pParent = nullptr;
    QSize m_leastSize;
    QSize m_size;
};
