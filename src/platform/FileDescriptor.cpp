#include "platform/FileDescriptor.h"

#include <cerrno>
#include <unistd.h>

FileDescriptor::~FileDescriptor()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

bool FileDescriptor::WriteAll(const char* data, std::size_t size) const
{
    while (size > 0) {
        const ssize_t written = ::write(m_fd, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        data += written;
        size -= std::size_t(written);
    }
    return true;
}
