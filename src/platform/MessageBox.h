#pragma once

#include <QString>
#include <functional>

// Messages to the user with the program's fixed texts. The window layer installs a presenter
// that shows a dialog; without one (no display, unattended runs, tools, tests) the text goes
// to standard error and the question takes its default answer, so nothing ever waits.
class MessageBox {
public:
    enum Style { Ok = 0, YesNoCancel = 3, YesNo = 4, IconError = 0x10, IconQuestion = 0x20, IconWarning = 0x30, IconInformation = 0x40 };
    enum Answer { IdOk = 1, IdCancel = 2, IdYes = 6, IdNo = 7 };

    using Presenter = std::function<int(const QString& text, int style)>;

    static int Show(const QString& text, int style = Ok);
    static void SetPresenter(Presenter presenter);

    // The answer a question takes when nobody can be asked: No for Yes/No and Yes/No/Cancel,
    // OK otherwise.
    static int DefaultAnswer(int style);
};
