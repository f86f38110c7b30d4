#include "update/CAutoUpdater.h"

#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "update/CDownload.h"
#include "update/InterfaceThread.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QHostInfo>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkInformation>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStorageInfo>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <atomic>
#include <limits>

namespace {

const QString Settings = QStringLiteral("Settings");
const QString UpdateTitle = QStringLiteral("Tessarelle Update");
const QString CheckFailed = QStringLiteral("Unable to check for updates!");
const QString NoRoom = QStringLiteral("Insufficient disc space available!");
const QString DownloadFailed = QStringLiteral("Download failed!");
const QString DownloadQuestion = QStringLiteral("A new update is now available. Download the update?");

// update.txt is read in one read of this size, and the download in reads of this size.
constexpr qint64 ReadSize = 4096;

std::atomic<int> g_nWaitLimit{30000};

// The proxies the system is configured with, as the Windows program's preconfigured access.
class SystemProxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        return systemProxyForQuery(query);
    }
};

// Gives the update's questions their own title and keeps them over the user's work and in front
// while the application's message presenter shows them. Set as the box shows, before the window
// system sees it: the widget's own flags can't change then without making a new window.
class UpdateBoxStyle : public QObject {
protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* box = qobject_cast<QMessageBox*>(watched);
        if (!box || event->type() != QEvent::Show)
            return false;
        box->setWindowTitle(UpdateTitle);
        if (QWindow* window = box->windowHandle())
            window->setFlag(Qt::WindowStaysOnTopHint);
        box->raise();
        box->activateWindow();
        return false;
    }
};

QString ConnectFailed()
{
    return QStringLiteral("Unable to connect to ") + CAutoUpdater::UpdateHost() + QLatin1Char('!');
}

// What the platform knows of the network: only a definite "disconnected" counts, so that a
// system without a network service still checks.
bool NetworkSaysOffline()
{
    return OnInterfaceThread([] {
        if (!QNetworkInformation::instance())
            QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability);
        const QNetworkInformation* information = QNetworkInformation::instance();
        return information && information->reachability() == QNetworkInformation::Reachability::Disconnected;
    });
}

// Reads the bytes as the Windows program's buffer: UTF-16 little-endian in a cleared buffer of
// ReadSize bytes, up to the first null character. An odd last byte is a character's low half.
QString Utf16Buffer(const QByteArray& bytes)
{
    QByteArray buffer(ReadSize, '\0');
    std::copy_n(bytes.constData(), std::min<qint64>(bytes.size(), ReadSize), buffer.data());
    QString text;
    for (qint64 i = 0; i + 1 < ReadSize; i += 2) {
        const char16_t c = char16_t(uchar(buffer[i]) | uchar(buffer[i + 1]) << 8);
        if (c == 0)
            break;
        text.append(QChar(c));
    }
    return text;
}

// The version's numbers at positions 3 (the first) down to 0; false when it is malformed.
bool ParseVersion(const QString& version, std::array<int, 4>& numbers)
{
    numbers = {};
    int position = 3;
    // Cut as wcstok does: stops in a row make no empty tokens.
    const QStringList tokens = version.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    if (tokens.isEmpty() || tokens.size() > 4)
        return false;
    for (const QString& token : tokens) {
        qint64 value = 0;
        for (const QChar c : token) {
            if (c < QLatin1Char('0') || c > QLatin1Char('9'))
                return false;
            // Read as _wtoi reads: a number beyond int stays at its largest value.
            value = std::min<qint64>(value * 10 + (c.unicode() - '0'), std::numeric_limits<int>::max());
        }
        numbers[size_t(position--)] = int(value);
    }
    return true;
}

} // namespace

const QString CAutoUpdater::DefaultUpdateHost = QStringLiteral("updates.palvex-systems.example");

CAutoUpdater::CAutoUpdater(const QString& installDir, const std::array<int, 4>& localVersion)
    : m_pSession(std::make_unique<QNetworkAccessManager>()), m_strInstallDir(installDir), m_nVersion(localVersion)
{
    m_pSession->setProxyFactory(new SystemProxies);
}

CAutoUpdater::~CAutoUpdater() = default;

QString CAutoUpdater::UpdateHost()
{
    const QString host = Profile::GetString(Settings, QStringLiteral("UpdateHost"));
    return host.isEmpty() ? DefaultUpdateHost : host;
}

void CAutoUpdater::SetWaitLimit(int milliseconds)
{
    g_nWaitLimit = milliseconds;
}

int CAutoUpdater::Ask(const QString& question)
{
    return OnInterfaceThread([&question] {
        UpdateBoxStyle style;
        qApp->installEventFilter(&style);
        return MessageBox::Show(question, MessageBox::YesNo | MessageBox::IconQuestion);
    });
}

void CAutoUpdater::Tell(const QString& message)
{
    OnInterfaceThread([&message] { MessageBox::Show(message); });
}

int CAutoUpdater::CompareVersions(const QString& a, const QString& b)
{
    std::array<int, 4> numbersA{};
    std::array<int, 4> numbersB{};
    if (!ParseVersion(a, numbersA))
        return -21;
    if (!ParseVersion(b, numbersB))
        return -22;
    for (int position = 3; position >= 0; --position) {
        if (numbersB[size_t(position)] < numbersA[size_t(position)])
            return 1;
        if (numbersA[size_t(position)] < numbersB[size_t(position)])
            return -1;
    }
    return 0;
}

bool CAutoUpdater::CheckForUpdate(const QString& folderUrl)
{
    // A host no name server knows is as good as no connection: the machine is offline, or no
    // update server has been set up for it; neither is worth a message at every start.
    if (NetworkSaysOffline() || QHostInfo::fromName(QUrl(folderUrl).host()).error() == QHostInfo::HostNotFound)
        return false;
    std::unique_ptr<QNetworkReply> reply(OpenUrl(folderUrl + QStringLiteral("update.txt")));
    if (!reply) {
        Tell(ConnectFailed());
        return false;
    }
    // One read: whatever the first ReadSize bytes hold is the whole answer.
    WaitForData(reply.get(), ReadSize, nullptr);
    const QByteArray bytes = reply->isOpen() ? reply->read(ReadSize) : QByteArray();
    reply.reset();
    if (bytes.isEmpty()) {
        Tell(CheckFailed);
        return false;
    }

    const QString localVersion = QStringLiteral("%1.%2.%3.%4")
                                     .arg(unsigned(m_nVersion[0]))
                                     .arg(unsigned(m_nVersion[1]))
                                     .arg(unsigned(m_nVersion[2]))
                                     .arg(unsigned(m_nVersion[3]));
    // A version that isn't newer, or text that is no version, ends the check silently.
    if (CompareVersions(Utf16Buffer(bytes), localVersion) != 1)
        return false;
    return Ask(DownloadQuestion) != MessageBox::IdNo;
}

bool CAutoUpdater::DownloadUpdate(const QString& folderUrl, const QString& fileName)
{
    CDownload* progress = OnInterfaceThread([] {
        auto* window = new CDownload;
        window->Start();
        return window;
    });
    const bool result = Fetch(folderUrl + fileName, fileName, progress);
    // Posted progress still waiting for the window goes with it.
    OnInterfaceThread([progress] {
        progress->hide();
        delete progress;
    });
    return result;
}

bool CAutoUpdater::Fetch(const QString& url, const QString& fileName, CDownload* progress)
{
    std::unique_ptr<QNetworkReply> reply(OpenUrl(url));
    const QVariant lengthHeader = reply ? reply->header(QNetworkRequest::ContentLengthHeader) : QVariant();
    // Without its length announced the file can't be checked for room, nor for completeness.
    if (!lengthHeader.isValid()) {
        Tell(ConnectFailed());
        return false;
    }
    const qint64 length = lengthHeader.toLongLong();
    const QStorageInfo storage(m_strInstallDir);
    if ((storage.isValid() ? storage.bytesFree() : 0) < length) {
        Tell(NoRoom);
        return false;
    }

    // The old file goes whatever case its name has: to the platform the program came from,
    // those names were one file.
    const QDir installDir(m_strInstallDir);
    for (const QString& name : installDir.entryList(QDir::Files)) {
        if (name.compare(fileName, Qt::CaseInsensitive) == 0)
            QFile::remove(installDir.filePath(name));
    }
    QFile file(installDir.filePath(fileName));
    const Transfer transfer = file.open(QIODevice::WriteOnly | QIODevice::Truncate)
                                  ? DownloadToFile(reply.get(), file, length, progress)
                                  : Transfer::Failed;
    reply.reset();
    file.close();
    if (transfer != Transfer::Complete) {
        // A cancelled download's partial file stays until the next download deletes it.
        if (transfer == Transfer::Failed)
            file.remove();
        Tell(DownloadFailed);
        return false;
    }
    // The updater is started as a program at the exit.
    file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser | QFileDevice::ExeGroup
                        | QFileDevice::ExeOther);
    return true;
}

QNetworkReply* CAutoUpdater::OpenUrl(const QString& url)
{
    // Tolerant parsing escapes what a browser would, such as blanks in the folder's name.
    QNetworkRequest request(QUrl(url, QUrl::TolerantMode));
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("AutoUpdateAgent"));
    // Always the server's current file, never a cached one.
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // The bytes as the server has them, so that their count is the announced length.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setTransferTimeout(g_nWaitLimit);

    QNetworkReply* reply = m_pSession->get(request);
    const auto status = [reply] { return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); };
    // Redirections are followed; the head that counts is that of the final answer.
    const auto answered = [&] { return reply->isFinished() || (status() >= 200 && status() < 300); };
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::metaDataChanged, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    while (!answered())
        loop.exec();
    // An error page is no update: a missing file or a refusing server is one that can't be
    // reached.
    if (status() < 200 || status() >= 300) {
        delete reply;
        return nullptr;
    }
    return reply;
}

void CAutoUpdater::WaitForData(QNetworkReply* reply, qint64 count, const CDownload* progress) const
{
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (progress)
        QObject::connect(progress, &CDownload::Cancelled, &loop, &QEventLoop::quit);
    while (reply->bytesAvailable() < count && !reply->isFinished() && !(progress && progress->IsCancelled()))
        loop.exec();
}

CAutoUpdater::Transfer CAutoUpdater::DownloadToFile(QNetworkReply* reply, QFile& file, qint64 length, CDownload* progress)
{
    qint64 total = 0;
    for (;;) {
        WaitForData(reply, 1, progress);
        // A reply broken off by a time-out or an abort is closed, and has nothing to read.
        const QByteArray chunk = reply->isOpen() ? reply->read(ReadSize) : QByteArray();
        if (chunk.isEmpty()) {
            if (progress->IsCancelled())
                return Transfer::Cancelled;
            // A connection that ends before the announced length is an error too: the program
            // it brought would be damaged.
            return reply->error() == QNetworkReply::NoError ? Transfer::Complete : Transfer::Failed;
        }
        total += chunk.size();
        const unsigned percent = length > 0 ? unsigned(total * 100 / length) : 100u;
        QMetaObject::invokeMethod(progress, [progress, percent] { progress->SetPercent(percent); }, Qt::QueuedConnection);
        if (progress->IsCancelled())
            return Transfer::Cancelled;
        if (file.write(chunk) != chunk.size())
            return Transfer::Failed;
    }
}
