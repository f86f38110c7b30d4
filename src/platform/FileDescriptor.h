#pragma once

#include <cstddef>

// An open file descriptor, closed when it goes out of scope. Files whose bytes must stand
// exactly as written (a printer's records, a print stream rewritten in place, without
// truncation) are written through it rather than through buffered streams.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return m_fd; }
    bool IsOpen() const { return m_fd >= 0; }
    // Writes all the bytes, going on after interruptions; false at the first failure, with the
    // file as far as it got.
    bool WriteAll(const char* data, std::size_t size) const;

private:
    int m_fd;
};
