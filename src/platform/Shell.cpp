#include "platform/Shell.h"

#include <QDesktopServices>
#include <QUrl>

bool Shell::Open(const QString& target)
{
    const QUrl url(target);
    const bool hasScheme = url.isValid() && url.scheme().size() > 1;
    return QDesktopServices::openUrl(hasScheme ? url : QUrl::fromLocalFile(target));
}
