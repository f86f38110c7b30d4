#include "PrivateCups.h"

#include "platform/Spooler.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstdlib>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int TimeoutMs = 20000;

std::unique_ptr<PrivateCups> g_cups;

// Stops the scheduler after the last test, while the application object still exists.
class StopAtEnd : public ::testing::Environment {
public:
    void TearDown() override { PrivateCups::Shutdown(); }
};
[[maybe_unused]] ::testing::Environment* const g_stopAtEnd = ::testing::AddGlobalTestEnvironment(new StopAtEnd);

// With port 0: a free loopback port (bound and released). Otherwise whether that port accepts.
int loopback(int port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(quint16(port));
    socklen_t size = sizeof address;
    int result = 0;
    if (fd >= 0 && port != 0)
        result = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    else if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
             ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        result = ntohs(address.sin_port);
    if (fd >= 0)
        ::close(fd);
    return result;
}

bool writeFile(const QString& path, const QString& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text.toUtf8()) == text.toUtf8().size();
}

} // namespace

PrivateCups& PrivateCups::Instance()
{
    if (!g_cups) {
        g_cups.reset(new PrivateCups);
        g_cups->Start();
    }
    return *g_cups;
}

void PrivateCups::Shutdown()
{
    g_cups.reset();
}

PrivateCups::~PrivateCups()
{
    m_cupsd.terminate();
    if (m_cupsd.state() != QProcess::NotRunning && !m_cupsd.waitForFinished(10000)) {
        m_cupsd.kill();
        m_cupsd.waitForFinished(5000);
    }
}

bool PrivateCups::Start()
{
    const auto fail = [this](const QString& why) {
        m_failure = why;
        m_cupsd.kill();
        m_cupsd.waitForFinished(5000);
        return false;
    };
    const QString cupsd = QStringLiteral("/usr/sbin/cupsd");
    if (!QFile::exists(cupsd))
        return fail("cupsd is not installed (Debian packages cups-daemon, cups-client)");
    // cups-pdf's backend runs under a scheduler started as root only, which runs filters and
    // backends as lp.
    if (::geteuid() != 0)
        return fail("the printing tests need root for the scheduler");
    const passwd* user = ::getpwnam("lp");
    const group* userGroup = ::getgrnam("lp");
    if (!user || !userGroup || !m_dir.isValid())
        return fail("no user and group lp for the scheduler's filters, or no temporary folder");

    // Filters and backends must reach the spool through this folder.
    const QString base = m_dir.path();
    QFile::setPermissions(base, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner |
                                    QFileDevice::ReadGroup | QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                    QFileDevice::ExeOther);
    for (const char* folder : {"spool", "spool/tmp", "cache", "state", "log", "ppd", "ssl"})
        QDir(base).mkpath(QLatin1String(folder));
    for (const char* folder : {"spool", "spool/tmp", "cache"}) {
        const QByteArray path = QFile::encodeName(base + '/' + QLatin1String(folder));
        if (::chown(path.constData(), user->pw_uid, userGroup->gr_gid) != 0)
            return fail("can't give the scheduler's spool to lp");
    }

    m_printer = std::make_unique<SocketPrinter>();
    const int port = loopback(0);
    if (port == 0 || m_printer->Port() == 0)
        return fail("no free loopback port for the scheduler or the socket printer");
    m_server = QStringLiteral("127.0.0.1:%1").arg(port);

    const QString conf = QStringLiteral(
        "Listen 127.0.0.1:%1\nLogLevel warn\nWebInterface No\nBrowsing Off\nDefaultAuthType None\n"
        "PreserveJobHistory Yes\n<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
        "<Policy default>\n  JobPrivateAccess all\n  JobPrivateValues none\n"
        "  SubscriptionPrivateAccess all\n  SubscriptionPrivateValues none\n"
        "  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n").arg(port);
    const QString files = QStringLiteral(
        "User lp\nGroup lp\nSystemGroup root\n"
        "ServerRoot %1\nRequestRoot %1/spool\nTempDir %1/spool/tmp\nCacheDir %1/cache\nStateDir %1/state\n"
        "ServerKeychain %1/ssl\nErrorLog %1/log/error_log\nAccessLog %1/log/access_log\nPageLog %1/log/page_log\n")
            .arg(base);
    if (!writeFile(base + "/cupsd.conf", conf) || !writeFile(base + "/cups-files.conf", files))
        return fail("can't write the scheduler's configuration");

    m_cupsd.setProcessChannelMode(QProcess::MergedChannels);
    // A test program that dies (a crash, a time limit) takes its scheduler with it.
    m_cupsd.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_cupsd.start(cupsd, {"-f", "-c", base + "/cupsd.conf", "-s", base + "/cups-files.conf"});
    const QDeadlineTimer deadline(TimeoutMs);
    while (!loopback(port)) {
        // Waiting on the process, rather than sleeping, notices at once that it has ended.
        if (m_cupsd.waitForFinished(50) || m_cupsd.state() == QProcess::NotRunning || deadline.hasExpired())
            return fail(QStringLiteral("cupsd did not come up on %1: %2 %3 %4")
                            .arg(m_server, m_cupsd.errorString(), QString::fromLocal8Bit(m_cupsd.readAll()),
                                 ErrorLog()));
    }

    // The tools started below and the program's spooler both talk to this scheduler only.
    ::setenv("CUPS_SERVER", m_server.toLocal8Bit().constData(), 1);
    ::unsetenv("LPDEST");
    ::unsetenv("PRINTER");
    UseAgain();

    QString output;
    const QString rawUri = QStringLiteral("socket://127.0.0.1:%1").arg(m_printer->Port());
    if (!Run("lpadmin", {"-p", "Raw", "-E", "-v", rawUri}, &output) ||
        !Run("lpadmin", {"-p", "PDF", "-E", "-v", "cups-pdf:/", "-D", "PDF printer", "-P",
                         "/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd"}, &output) ||
        !Run("lpadmin", {"-d", "Raw"}, &output))
        return fail("the test queues could not be made: " + output);
    return true;
}

bool PrivateCups::Run(const QString& program, const QStringList& arguments, QString* output)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(program, arguments);
    const bool finished = tool.waitForStarted(TimeoutMs) && tool.waitForFinished(TimeoutMs);
    if (!finished)
        tool.kill();
    const QString text = QString::fromLocal8Bit(tool.readAll());
    if (output)
        *output = QStringLiteral("%1 %2: %3").arg(program, arguments.join(' '), finished ? text : tool.errorString());
    return finished && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

void PrivateCups::UseAgain() const
{
    Spooler::UseServer(m_server);
}

QString PrivateCups::ErrorLog() const
{
    QFile log(m_dir.path() + "/log/error_log");
    return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll()) : QString();
}
