#include "SocketPrinter.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <vector>

SocketPrinter::SocketPrinter()
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (m_listener < 0 || ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(m_listener, 8) != 0 || ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return;
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { Serve(); });
}

SocketPrinter::~SocketPrinter()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_listener >= 0)
        ::close(m_listener);
}

QList<QByteArray> SocketPrinter::Jobs() const
{
    std::lock_guard lock(m_mutex);
    return m_jobs;
}

bool SocketPrinter::WaitForJobs(int count, int timeoutMs) const
{
    std::unique_lock lock(m_mutex);
    return m_received.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] { return m_jobs.size() >= count; });
}

void SocketPrinter::Clear()
{
    std::lock_guard lock(m_mutex);
    m_jobs.clear();
}

void SocketPrinter::Serve()
{
    std::map<int, QByteArray> open;
    while (!m_stop) {
        std::vector<pollfd> fds{{m_listener, POLLIN, 0}};
        for (const auto& entry : open)
            fds.push_back({entry.first, POLLIN, 0});
        if (::poll(fds.data(), fds.size(), 100) <= 0)
            continue;
        if (fds[0].revents & POLLIN) {
            const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (client >= 0)
                open[client];
        }
        for (size_t i = 1; i < fds.size(); ++i) {
            if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            char buffer[65536];
            const ssize_t got = ::recv(fds[i].fd, buffer, sizeof buffer, 0);
            if (got > 0) {
                open[fds[i].fd].append(buffer, got);
                continue;
            }
            // The sender has finished: the job is complete. A connection that brought nothing
            // was the spooler looking for the printer, not a job.
            ::close(fds[i].fd);
            if (!open[fds[i].fd].isEmpty()) {
                std::lock_guard lock(m_mutex);
                m_jobs.append(open[fds[i].fd]);
            }
            open.erase(fds[i].fd);
            m_received.notify_all();
        }
    }
    for (const auto& entry : open)
        ::close(entry.first);
}
