#pragma once

#include <QByteArray>
#include <QList>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

// Plays a network printer on a free loopback port (the raw "socket://" protocol): every
// connection is one job, and all the bytes it brings are kept. Runs on its own thread.
class SocketPrinter {
public:
    SocketPrinter();
    ~SocketPrinter();

    int Port() const { return m_port; } // 0 when no port could be opened
    // The jobs received so far, each complete (its connection has closed).
    QList<QByteArray> Jobs() const;
    // Waits until at least count jobs have come, or the time is up.
    bool WaitForJobs(int count, int timeoutMs) const;
    void Clear();

private:
    void Serve();

    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_received;
    QList<QByteArray> m_jobs;
};
