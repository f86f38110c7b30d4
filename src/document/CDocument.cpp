#include "document/CDocument.h"

#include "document/CArchive.h"
#include "document/CView.h"
#include "platform/MessageBox.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

void CDocument::AddView(CView* view)
{
    if (std::find(m_views.begin(), m_views.end(), view) == m_views.end())
        m_views.push_back(view);
}

void CDocument::RemoveView(CView* view)
{
    std::erase(m_views, view);
}

void CDocument::UpdateAllViews(CView* sender, int hint, CDrawObj* object)
{
    for (CView* view : m_views) {
        if (view != sender)
            view->OnUpdate(sender, hint, object);
    }
}

// ---------------------------------------------------------------- files

const QString CDocument::FailedToOpenDoc = QStringLiteral("Failed to open document.");
const QString CDocument::FailedToSaveDoc = QStringLiteral("Failed to save document.");
const QString CDocument::FailedInvalidFormat = QStringLiteral("Unexpected file format.");
const QString CDocument::FailedInvalidPath =
    QStringLiteral("%1\nCannot find this file.\nPlease verify that the correct path and file name are given.");
const QString CDocument::FailedAccessRead =
    QStringLiteral("Unable to read from %1, it is read-only or opened by someone else.");
const QString CDocument::FailedAccessWrite =
    QStringLiteral("Unable to write to %1, it is read-only or opened by someone else.");
const QString CDocument::FailedDiskFull = QStringLiteral("Destination disk drive is full.");

namespace {

void report(const QString& message, const QString& path)
{
    QString text = message;
    if (text.contains(QLatin1String("%1")))
        text = text.arg(QFileInfo(path).fileName());
    MessageBox::Show(text, MessageBox::IconWarning);
}

// The message for a file that could not be opened: a path that leads nowhere, or a file or
// folder that refuses.
const QString& openFailure(const QString& path, bool saving)
{
    const QFileInfo info(path);
    const bool missing = saving ? !QFileInfo(info.absolutePath()).isDir() : !info.exists();
    if (missing)
        return CDocument::FailedInvalidPath;
    return saving ? CDocument::FailedAccessWrite : CDocument::FailedAccessRead;
}

} // namespace

bool CDocument::OnOpenDocument(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        report(openFailure(path, false), path);
        return false;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        report(FailedToOpenDoc, path);
        return false;
    }
    file.close();

    SetModifiedFlag(true); // modified while it reads: a half-read document matches no file
    CArchive ar(std::move(bytes));
    ar.m_pDocument = this;
    try {
        Serialize(ar);
    } catch (const CArchiveException& e) {
        report(e.m_cause == CArchiveException::genericException ? FailedToOpenDoc : FailedInvalidFormat, path);
        return false;
    }
    SetModifiedFlag(false);
    return true;
}

bool CDocument::OnSaveDocument(const QString& path)
{
    CArchive ar;
    ar.m_pDocument = this;
    try {
        Serialize(ar);
    } catch (const CArchiveException&) {
        report(FailedToSaveDoc, path);
        return false;
    }

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        report(openFailure(path, true), path);
        return false;
    }
    const QByteArray& bytes = ar.Buffer();
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        // An uncommitted QSaveFile removes its temporary file; the old one is untouched.
        report(file.error() == QFileDevice::ResourceError ? FailedDiskFull : FailedToSaveDoc, path);
        return false;
    }
    SetModifiedFlag(false);
    return true;
}
