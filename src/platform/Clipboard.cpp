#include "platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

const QString Clipboard::MimeType = QStringLiteral("application/x-tessarelle");

namespace {

// Null without an application object, as in a tool that never made one.
QClipboard* systemClipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

} // namespace

bool Clipboard::HasObjects()
{
    const QClipboard* clipboard = systemClipboard();
    const QMimeData* data = clipboard ? clipboard->mimeData() : nullptr;
    return data && data->hasFormat(MimeType);
}

QByteArray Clipboard::Read()
{
    const QClipboard* clipboard = systemClipboard();
    const QMimeData* data = clipboard ? clipboard->mimeData() : nullptr;
    return data ? data->data(MimeType) : QByteArray();
}

void Clipboard::Write(const QByteArray& bytes)
{
    QClipboard* clipboard = systemClipboard();
    if (!clipboard)
        return;
    auto* data = new QMimeData;
    data->setData(MimeType, bytes);
    clipboard->setMimeData(data); // the clipboard owns it from here
}
