#include "app/CSendrillApp.h"
#include "app/CommandLine.h"

#include <QApplication>
#include <QIcon>
#include <QStringList>

#include <cstdio>

int main(int argc, char** argv)
{
    // What Qt did not take for itself, without the program's own name.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    // Unattended runs happen on machines without a display; they must neither fail for want
    // of one nor wait for a click, so they draw offscreen and messages go to standard error.
    // The designer itself would wait there forever, unseen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        if (!CommandLine::IsUnattended(CommandLine::FromArguments(arguments))) {
            std::fputs("Tessarelle needs a display to show its window. To print without one, start it as\n"
                       "  tessarelle -PRINTER \"printer name\" -PRINT file\n",
                       stderr);
            return 1;
        }
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tessarelle"));
    QApplication::setApplicationName(QStringLiteral("Tessarelle"));
    // The installed menu entry and icons carry this id; docks match the window to them by it.
    const QString applicationId = QStringLiteral("example.palvex_systems.Tessarelle");
    QGuiApplication::setDesktopFileName(applicationId);
    QApplication::setWindowIcon(QIcon::fromTheme(applicationId));

    CSendrillApp app(arguments);
    app.InitInstance();
    return app.ExitInstance();
}
