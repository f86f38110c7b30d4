#include "app/CSendrillApp.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char** argv)
{
    // Unattended runs happen on machines without a display; they must neither fail for want
    // of one nor wait for a click, so they draw offscreen and messages go to standard error.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tessarelle"));
    QApplication::setApplicationName(QStringLiteral("Tessarelle"));

    // What Qt did not take for itself, without the program's own name.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    CSendrillApp app(arguments);
    app.InitInstance();
    return app.ExitInstance();
}
