#include "PrivateCups.h"

#include "platform/Spooler.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

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

constexpr int StartTimeoutMs = 20000;
constexpr int ToolTimeoutMs = 30000;

std::unique_ptr<PrivateCups>& instance()
{
    static std::unique_ptr<PrivateCups> cups;
    return cups;
}

// Stops the scheduler after the last test, while the application object still exists.
class StopAtEnd : public ::testing::Environment {
public:
    void TearDown() override { PrivateCups::Shutdown(); }
};
[[maybe_unused]] ::testing::Environment* const g_stopAtEnd = ::testing::AddGlobalTestEnvironment(new StopAtEnd);

int freePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    int port = 0;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    if (fd >= 0)
        ::close(fd);
    return port;
}

bool accepts(int port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(quint16(port));
    const bool ok = fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    if (fd >= 0)
        ::close(fd);
    return ok;
}

bool writeFile(const QString& path, const QString& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text.toUtf8()) == text.toUtf8().size();
}

} // namespace

PrivateCups& PrivateCups::Instance()
{
    if (!instance()) {
        instance().reset(new PrivateCups);
        if (!instance()->Start())
            instance()->Stop();
    }
    return *instance();
}

void PrivateCups::Shutdown()
{
    instance().reset();
}

PrivateCups::PrivateCups() = default;

PrivateCups::~PrivateCups()
{
    Stop();
}

bool PrivateCups::Start()
{
    const QString cupsd = QStringLiteral("/usr/sbin/cupsd");
    if (!QFile::exists(cupsd)) {
        m_failure = QStringLiteral("cupsd is not installed (Debian packages cups-daemon, cups-client)");
        return false;
    }
    const passwd* lp = ::getpwnam("lp");
    const group* lpGroup = ::getgrnam("lp");
    if (!lp || !lpGroup) {
        m_failure = QStringLiteral("there is no user and group lp for the scheduler's filters");
        return false;
    }
    if (!m_dir.isValid()) {
        m_failure = QStringLiteral("no temporary folder for the scheduler");
        return false;
    }

    // The scheduler runs filters and backends as lp, which must reach the spool through
    // this folder.
    const QString root = m_dir.path();
    QFile::setPermissions(root, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner |
                                    QFileDevice::ReadGroup | QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                    QFileDevice::ExeOther);
    for (const char* folder : {"spool", "spool/tmp", "cache", "state", "log", "ppd", "ssl"})
        QDir(root).mkpath(QLatin1String(folder));
    for (const char* folder : {"spool", "spool/tmp", "cache"}) {
        const QByteArray path = QFile::encodeName(root + '/' + QLatin1String(folder));
        if (::chown(path.constData(), lp->pw_uid, lpGroup->gr_gid) != 0) {
            m_failure = QStringLiteral("can't give the scheduler's spool to lp (the tests need to run as root)");
            return false;
        }
    }

    m_printer = std::make_unique<SocketPrinter>();
    const int port = freePort();
    if (port == 0 || m_printer->Port() == 0) {
        m_failure = QStringLiteral("no free loopback port for the scheduler or the socket printer");
        return false;
    }
    m_server = QStringLiteral("127.0.0.1:%1").arg(port);

    const QString conf = QStringLiteral(
        "Listen 127.0.0.1:%1\n"
        "LogLevel warn\n"
        "WebInterface No\n"
        "Browsing Off\n"
        "DefaultAuthType None\n"
        "PreserveJobHistory Yes\n"
        "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
        "<Policy default>\n"
        "  JobPrivateAccess all\n  JobPrivateValues none\n"
        "  SubscriptionPrivateAccess all\n  SubscriptionPrivateValues none\n"
        "  <Limit All>\n    Order deny,allow\n  </Limit>\n"
        "</Policy>\n").arg(port);
    const QString files = QStringLiteral(
        "User lp\nGroup lp\nSystemGroup root\n"
        "ServerRoot %1\nRequestRoot %1/spool\nTempDir %1/spool/tmp\nCacheDir %1/cache\nStateDir %1/state\n"
        "ServerKeychain %1/ssl\n"
        "ErrorLog %1/log/error_log\nAccessLog %1/log/access_log\nPageLog %1/log/page_log\n").arg(root);
    if (!writeFile(root + "/cupsd.conf", conf) || !writeFile(root + "/cups-files.conf", files)) {
        m_failure = QStringLiteral("can't write the scheduler's configuration");
        return false;
    }

    m_cupsd.setProcessChannelMode(QProcess::MergedChannels);
    // A test program that dies (a crash, a time limit) takes its scheduler with it.
    m_cupsd.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_cupsd.start(cupsd, {"-f", "-c", root + "/cupsd.conf", "-s", root + "/cups-files.conf"});
    if (!m_cupsd.waitForStarted(StartTimeoutMs)) {
        m_failure = QStringLiteral("cupsd did not start: %1").arg(m_cupsd.errorString());
        return false;
    }
    const QDeadlineTimer deadline(StartTimeoutMs);
    while (!accepts(port)) {
        if (m_cupsd.state() != QProcess::Running || deadline.hasExpired()) {
            m_failure = QStringLiteral("cupsd did not come up on %1: %2 %3")
                            .arg(m_server, QString::fromLocal8Bit(m_cupsd.readAll()), ErrorLog());
            return false;
        }
        QThread::msleep(50);
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
        !Run("lpadmin", {"-d", "Raw"}, &output)) {
        m_failure = QStringLiteral("the test queues could not be made: %1").arg(output);
        return false;
    }
    return true;
}

void PrivateCups::Stop()
{
    if (m_cupsd.state() != QProcess::NotRunning) {
        m_cupsd.terminate();
        if (!m_cupsd.waitForFinished(10000)) {
            m_cupsd.kill();
            m_cupsd.waitForFinished(5000);
        }
    }
    m_printer.reset();
}

bool PrivateCups::Run(const QString& program, const QStringList& arguments, QString* output)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(program, arguments);
    const bool finished = tool.waitForStarted(ToolTimeoutMs) && tool.waitForFinished(ToolTimeoutMs);
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
