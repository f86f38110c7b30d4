#pragma once

#include <QString>
#include <cstdint>

class CDocument;

// One step the user can undo. It is made before or during the change, records what the change
// replaces, and replays the change either way. An action is open until Done; the undo manager
// owns it from its Do on. The concrete actions (CMAction and below) also know the view.
class CAction {
public:
    // The label's text comes from the string table when the id is not 0.
    CAction(CDocument* target, std::uint32_t id, bool record = true);
    CAction(const CAction&) = delete;
    CAction& operator=(const CAction&) = delete;
    // Clears the pointer of any view whose current action this is.
    virtual ~CAction();

    // Registers the action with the undo manager (when recording).
    virtual void Do();
    virtual void Undo();
    virtual void Redo();
    virtual void Done();
    virtual bool IsUndone() const { return m_bUndone; }

    bool IsDone() const { return m_bDone; }
    bool IsDoCalled() const { return m_bDoCalled; }
    std::uint32_t GetID() const { return m_nID; }
    const QString& GetName() const { return m_strName; }
    CDocument* GetTarget() const { return m_pTarget; }

    // The labels of the string table, by id; empty for an id it lacks.
    static QString LoadLabel(std::uint32_t id);

protected:
    CDocument* m_pTarget;
    bool m_bRecord;
    bool m_bDone = false;
    bool m_bUndone = false;
    std::uint32_t m_nID;
    QString m_strName;
    bool m_bDoCalled = false;
};
