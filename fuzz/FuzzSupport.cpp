#include "FuzzSupport.h"

#include "platform/MessageBox.h"

#include <QByteArray>
#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>

void FuzzEnvironment()
{
    // Lives as long as the process; the fuzzer ends it with exit, after which nothing is read.
    static QTemporaryDir home(QDir::tempPath() + QStringLiteral("/tessarelle-fuzz-XXXXXX"));
    const QByteArray base = home.path().toLocal8Bit();
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_CONFIG_HOME", (base + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (base + "/data").constData(), 1);
    setenv("HOME", (base + "/home").constData(), 1);
    setenv("XDG_RUNTIME_DIR", base.constData(), 1); // private to the user, as Qt wants it
}

void FuzzSetUp(int argc, char** argv, bool yes)
{
    FuzzEnvironment();

    // Text objects lay out their glyphs while they are read, which needs the font database.
    if (!QCoreApplication::instance()) {
        static int appArgc = 1;
        static char* appArgv[] = {argc > 0 ? argv[0] : const_cast<char*>("fuzz"), nullptr};
        static QGuiApplication app(appArgc, appArgv);
    }

    // Qt's own warnings (a file name with a NUL in it, say) would flood the output as well.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    const int answer = yes ? MessageBox::IdYes : MessageBox::IdNo;
    MessageBox::SetPresenter([answer](const QString&, int style) {
        return (style & 0xF) == MessageBox::YesNo ? answer : int(MessageBox::IdOk);
    });
}
