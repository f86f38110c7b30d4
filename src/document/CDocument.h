#pragma once

#include <QString>
#include <vector>

class CView;
class CDrawObj;

// The document base: its path, its modified flag and the views that show it.
class CDocument {
public:
    virtual ~CDocument() = default;

    void AddView(CView* view);
    void RemoveView(CView* view);
    const std::vector<CView*>& Views() const { return m_views; }
    // Tells every view but the sender what changed.
    void UpdateAllViews(CView* sender, int hint = 0, CDrawObj* object = nullptr);

    bool IsModified() const { return m_bModified; }
    void SetModifiedFlag(bool modified = true) { m_bModified = modified; }
    const QString& GetPathName() const { return m_strPathName; }
    void SetPathName(const QString& path) { m_strPathName = path; }

private:
    std::vector<CView*> m_views;
    bool m_bModified = false;
    QString m_strPathName;
};
