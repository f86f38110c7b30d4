#include "fields/CFieldMessageScope.h"

#include "platform/MessageBox.h"

#include <QStringList>
#include <utility>

namespace {

// The user interface thread is the only one that draws, so plain statics do.
int s_depth = 0;
bool s_showing = false;
QStringList s_pending;

void ShowNow(const QString& text)
{
    s_showing = true;
    MessageBox::Show(text);
    s_showing = false;
}

} // namespace

CFieldMessageScope::CFieldMessageScope()
{
    ++s_depth;
}

CFieldMessageScope::~CFieldMessageScope()
{
    if (--s_depth > 0)
        return;
    const QStringList pending = std::exchange(s_pending, {});
    for (const QString& text : pending)
        ShowNow(text);
}

void CFieldMessageScope::Report(const QString& text)
{
    if (s_showing)
        return;
    if (s_depth == 0)
        ShowNow(text);
    else if (!s_pending.contains(text))
        s_pending << text;
}
