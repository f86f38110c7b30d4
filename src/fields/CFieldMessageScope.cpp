#include "fields/CFieldMessageScope.h"

#include "platform/MessageBox.h"

#include <QStringList>
#include <utility>

namespace {

// Drawing happens on one thread at a time (the user interface thread, or a painting thread
// while that one waits), so plain statics do.
int s_depth = 0;
CFieldMessageScope::Holding s_holding = CFieldMessageScope::EachTextOnce;
bool s_showing = false;
QStringList s_pending;

void ShowNow(const QString& text)
{
    s_showing = true;
    MessageBox::Show(text);
    s_showing = false;
}

} // namespace

CFieldMessageScope::CFieldMessageScope(Holding holding)
{
    if (s_depth++ == 0)
        s_holding = holding;
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
    else if (s_holding == EveryOccurrence || !s_pending.contains(text))
        s_pending << text;
}
