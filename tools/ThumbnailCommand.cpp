#include "ThumbnailCommand.h"

#include "RenderCommand.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/FontCollection.h"
#include "platform/MessageBox.h"
#include "templates/CTemplateFile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

// ITIMER_PROF counts the processor time of all the process's threads; ITIMER_REAL the clock.
void armTimer(int which, int milliseconds)
{
    itimerval timer{};
    timer.it_value.tv_sec = milliseconds / 1000;
    timer.it_value.tv_usec = milliseconds % 1000 * 1000;
    ::setitimer(which, &timer, nullptr);
}

// A damaged project may take minutes to draw (or a picture it names may block its reading); a
// file manager would wait for it and hold back every other thumbnail. Nothing has been written
// yet when this fires, since the picture is written only after the timers are disarmed.
void onTimeLimit(int)
{
    static const char message[] = "tessarelle-cli: thumbnail: time limit reached\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, message, sizeof message - 1);
    ::_exit(CliCommand::ExitFailed);
}

} // namespace

QString ThumbnailCommand::Summary() const
{
    return QStringLiteral(
        "Draws the project's first label as it would print, SIZE pixels (1 to 2048) on its longer\n"
        "side, transparent around the label, into a PNG: the desktop's thumbnailer of projects.\n"
        "Reads no profile and shows no message; gives up after two seconds of work or five of\n"
        "waiting. Exit code 1 when the file is no project or the picture can't be made in time.");
}

void ThumbnailCommand::Confine()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The profile lives in the XDG config home. Below a device no folder can ever be made, so
    // the user's settings (a chosen printer's template and diameters) don't change the picture,
    // and the profile writes of a project's open (a template index out of range resets the
    // saved one) go nowhere.
    qputenv("XDG_CONFIG_HOME", "/dev/null/tessarelle");
    struct sigaction action{};
    action.sa_handler = onTimeLimit;
    ::sigaction(SIGPROF, &action, nullptr);
    ::sigaction(SIGALRM, &action, nullptr);
    armTimer(ITIMER_PROF, CpuLimitMs);
    armTimer(ITIMER_REAL, WallLimitMs);
}

int ThumbnailCommand::Run(const QStringList& args, QTextStream&, QTextStream& err)
{
    bool ok = false;
    const int size = args.size() == 4 && args[0] == QLatin1String("-s") ? args[1].toInt(&ok) : 0;
    if (!ok || size < 1 || size > MaxSize || args[2].startsWith('-')) {
        err << "usage: tessarelle-cli " << Name() << ' ' << Arguments() << '\n';
        return ExitUsage;
    }
    const QString source = args[2];
    // Opening a project makes its folder the current one.
    const QString target = QFileInfo(args[3]).absoluteFilePath();

    // Nobody is there to read a message: the first is kept for the reason of a failure, and a
    // question takes its default answer.
    QString message;
    MessageBox::SetPresenter([&message](const QString& text, int style) {
        if (message.isEmpty())
            message = text;
        return MessageBox::DefaultAnswer(style);
    });
    const auto fail = [&](const QString& why) {
        err << "tessarelle-cli: no thumbnail of " << source << ": " << why << '\n';
        return ExitFailed;
    };

    // The fonts the program ships draw as they print.
    FontCollection fonts;
    fonts.AddFontFiles(Folders::InstallDirectory() + QStringLiteral("fonts"));
    const std::vector<CTemplateFile> templates =
        CTemplateFile::LoadTemplateList(Folders::InstallDirectory() + QStringLiteral("Templates"));
    CDrawDoc doc;
    doc.SetTemplates(&templates);
    // A file of another kind opens as an empty document once the question whether to read it
    // anyway is answered No; it has no label to show.
    if (!doc.OnOpenDocument(source) || !doc.m_strFileId.startsWith(QLatin1String("Tessarelle")))
        return fail(message.isEmpty() ? QStringLiteral("not a Tessarelle project") : message);

    const int resolution = RenderCommand::ResolutionFor(doc, 1, size);
    const QImage label = RenderCommand::RenderLabel(doc, 1, resolution, gfx::Color(0, 255, 255, 255));
    if (label.isNull())
        return fail(QStringLiteral("the template has no label or one too large"));
    const QImage thumbnail = label.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !thumbnail.save(&buffer, "PNG"))
        return fail(QStringLiteral("the picture can't be encoded"));

    armTimer(ITIMER_PROF, 0);
    armTimer(ITIMER_REAL, 0);
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return fail(QStringLiteral("can't write ") + target);
    if (file.write(png) != png.size() || !file.flush()) {
        file.remove(); // half a picture would be taken for the thumbnail
        return fail(QStringLiteral("can't write ") + target);
    }
    return ExitOk;
}
