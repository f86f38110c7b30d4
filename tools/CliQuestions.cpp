#include "CliQuestions.h"

#include "platform/MessageBox.h"

namespace {

QString& lastMessage()
{
    static QString text;
    return text;
}

} // namespace

void CliQuestions::Install(QStringList& args, QTextStream& err)
{
    const bool yes = args.removeAll(QStringLiteral("--yes")) > 0;
    MessageBox::SetPresenter([yes, &err](const QString& text, int style) {
        lastMessage() = text;
        const bool question = (style & 0xF) == MessageBox::YesNo;
        err << text << (question ? (yes ? " [Yes]" : " [No]") : "") << '\n';
        err.flush();
        if (question)
            return int(yes ? MessageBox::IdYes : MessageBox::IdNo);
        return MessageBox::DefaultAnswer(style);
    });
}

QString CliQuestions::LastMessage()
{
    return lastMessage();
}
