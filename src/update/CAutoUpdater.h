#pragma once

#include <QString>

#include <array>
#include <memory>

class CDownload;
class QFile;
class QNetworkAccessManager;
class QNetworkReply;

// The network side of the update: asks the update server whether a newer release exists and,
// with the user's consent, fetches the update program into the install directory. It lives on
// the update worker's stack for one check and works there; its questions, its messages and the
// download window belong to the interface thread, which shows them while the worker waits.
//
// The server is addressed by http, the host of the profile's Settings/UpdateHost (a host name,
// optionally with ":port"; DefaultUpdateHost without one), and the folder the worker formats.
class CAutoUpdater {
public:
    // The host and the version are those of this run: the install directory receives the file.
    CAutoUpdater(const QString& installDir, const std::array<int, 4>& localVersion);
    ~CAutoUpdater();
    CAutoUpdater(const CAutoUpdater&) = delete;
    CAutoUpdater& operator=(const CAutoUpdater&) = delete;

    // True when the server's update.txt names a newer version and the user wants it. Without
    // a network, or with a version that is malformed or not newer, false without a word.
    bool CheckForUpdate(const QString& folderUrl);
    // True when fileName from the folder now lies in the install directory, complete and
    // executable. Shows its progress in a task-bar window whose Cancel ends it.
    bool DownloadUpdate(const QString& folderUrl, const QString& fileName);
    // 1 when a is newer, -1 when b is newer, 0 when equal; -21 when a is malformed, -22 when b
    // is. Up to four decimal numbers separated by full stops; the first counts most, missing
    // ones count 0, empty parts between stops are skipped.
    static int CompareVersions(const QString& a, const QString& b);

    static const QString DefaultUpdateHost;
    // The host in the profile, or the default.
    static QString UpdateHost();
    // How long the server may stay silent, in milliseconds, before a request is given up, so
    // that a server which stops answering ends the check as one that isn't there.
    static void SetWaitLimit(int milliseconds);

    // Asks one of the update's questions, titled "Tessarelle Update", with Yes and No, over the
    // user's work; answers MessageBox's IdYes or IdNo. From any thread: the interface thread asks.
    static int Ask(const QString& question);
    // Shows one of the update's messages. From any thread, as Ask.
    static void Tell(const QString& message);

private:
    enum class Transfer { Complete, Failed, Cancelled };

    // Sends the request and waits for the answer's head: null when the server can't be
    // reached, answers with an error status, or stays silent for the wait limit.
    QNetworkReply* OpenUrl(const QString& url);
    // Waits until the reply has at least count bytes, has ended, or progress was cancelled.
    void WaitForData(QNetworkReply* reply, qint64 count, const CDownload* progress) const;
    // The download proper, with the progress window already shown; its messages included.
    bool Fetch(const QString& url, const QString& fileName, CDownload* progress);
    Transfer DownloadToFile(QNetworkReply* reply, QFile& file, qint64 length, CDownload* progress);

    std::unique_ptr<QNetworkAccessManager> m_pSession;
    QString m_strInstallDir;
    std::array<int, 4> m_nVersion;
};
