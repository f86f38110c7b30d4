// tessarelle-cli: the program's model without its windows, for scripts and diagnostics.

#include "CliCommand.h"
#include "DatafileCommand.h"
#include "DumpCommand.h"
#include "PrintCommand.h"
#include "RenderCommand.h"
#include "ResaveCommand.h"
#include "RewriteCommand.h"
#include "TemplatesCommand.h"
#include "ThumbnailCommand.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

std::vector<std::unique_ptr<CliCommand>> AllCommands()
{
    std::vector<std::unique_ptr<CliCommand>> commands;
    commands.push_back(std::make_unique<TemplatesCommand>());
    commands.push_back(std::make_unique<RewriteCommand>());
    commands.push_back(std::make_unique<DatafileCommand>());
    commands.push_back(std::make_unique<DumpCommand>());
    commands.push_back(std::make_unique<ResaveCommand>());
    commands.push_back(std::make_unique<RenderCommand>());
    commands.push_back(std::make_unique<ThumbnailCommand>());
    commands.push_back(std::make_unique<PrintCommand>());
    return commands;
}

void PrintUsage(QTextStream& stream, const std::vector<std::unique_ptr<CliCommand>>& commands)
{
    stream << "usage: tessarelle-cli COMMAND [ARGUMENTS]\n\ncommands:\n";
    for (const auto& command : commands) {
        stream << "  " << command->Name() << ' ' << command->Arguments() << '\n';
        for (const QString& line : command->Summary().split('\n'))
            stream << "      " << line << '\n';
    }
}

} // namespace

int main(int argc, char** argv)
{
    // No command needs a display, but those that open projects lay out text and so need fonts,
    // which take QGuiApplication; it runs on the offscreen platform when QT_QPA_PLATFORM is unset.
    const bool thumbnail = argc > 1 && qstrcmp(argv[1], "thumbnail") == 0;
    if (thumbnail)
        ThumbnailCommand::Confine();
    const bool opensProjects = thumbnail || (argc > 1 && qstrcmp(argv[1], "templates") == 0) || (argc > 1
        && (qstrcmp(argv[1], "dump") == 0 || qstrcmp(argv[1], "resave") == 0 || qstrcmp(argv[1], "render") == 0
            || qstrcmp(argv[1], "print") == 0));
    if (opensProjects && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app = opensProjects ? std::make_unique<QGuiApplication>(argc, argv)
                                                                : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessarelle-cli"));

    QTextStream out(stdout);
    QTextStream err(stderr);
    const auto commands = AllCommands();
    const QStringList args = QCoreApplication::arguments().mid(1);

    if (args.isEmpty()) {
        PrintUsage(err, commands);
        return CliCommand::ExitUsage;
    }
    const QString& name = args.first();
    if (name == QLatin1String("help") || name == QLatin1String("-h") || name == QLatin1String("--help")) {
        PrintUsage(out, commands);
        return CliCommand::ExitOk;
    }
    for (const auto& command : commands) {
        if (command->Name() == name) {
            const QStringList rest = args.mid(1);
            if (rest.size() == 1 && (rest[0] == QLatin1String("-h") || rest[0] == QLatin1String("--help"))) {
                out << "usage: tessarelle-cli " << command->Name() << ' ' << command->Arguments() << '\n'
                    << command->Summary() << '\n';
                return CliCommand::ExitOk;
            }
            const int code = command->Run(rest, out, err);
            out.flush();
            err.flush();
            return code;
        }
    }
    err << "tessarelle-cli: unknown command " << name << "\n\n";
    PrintUsage(err, commands);
    return CliCommand::ExitUsage;
}
