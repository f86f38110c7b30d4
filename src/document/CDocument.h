#pragma once

#include <QString>
#include <vector>

class CArchive;
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

    // The content as a file holds it, in both directions.
    virtual void Serialize(CArchive& ar) = 0;
    // Reads the file through Serialize, modified while it reads. A file that can't be opened or
    // read is reported with the standard file-error message and gives false; what was read
    // until then stays.
    virtual bool OnOpenDocument(const QString& path);
    // Writes through Serialize to a temporary file beside the target, which takes the target's
    // place only once everything was written. A failure is reported, gives false, and leaves
    // the old file as it was.
    virtual bool OnSaveDocument(const QString& path);

    // The standard file-error messages; %1 stands for the file's name.
    static const QString FailedToOpenDoc;
    static const QString FailedToSaveDoc;
    static const QString FailedInvalidFormat;
    static const QString FailedInvalidPath;
    static const QString FailedAccessRead;
    static const QString FailedAccessWrite;
    static const QString FailedDiskFull;

private:
    std::vector<CView*> m_views;
    bool m_bModified = false;
    QString m_strPathName;
};
