#include "platform/MessageBox.h"

#include <cstdio>

namespace {

MessageBox::Presenter& presenter()
{
    static MessageBox::Presenter instance;
    return instance;
}

} // namespace

int MessageBox::Show(const QString& text, int style)
{
    if (presenter())
        return presenter()(text, style);
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    std::fflush(stderr);
    return DefaultAnswer(style);
}

void MessageBox::SetPresenter(Presenter p)
{
    presenter() = std::move(p);
}

int MessageBox::DefaultAnswer(int style)
{
    return (style & 0xF) == YesNo || (style & 0xF) == YesNoCancel ? IdNo : IdOk;
}
