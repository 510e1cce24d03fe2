// One open file descriptor, closed with its owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace refpage {

/// Owns `fd` (negative: none) and closes it on destruction; move-only.
class FileDescriptor {
public:
    FileDescriptor() noexcept = default;
    explicit FileDescriptor(int fd) noexcept : fd_(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }
    FileDescriptor(FileDescriptor const&) = delete;
    FileDescriptor& operator=(FileDescriptor const&) = delete;
    ~FileDescriptor() { reset(); }

    int get() const noexcept { return fd_; }
    bool valid() const noexcept { return fd_ >= 0; }
    explicit operator bool() const noexcept { return valid(); }

    /// Closes the descriptor now; the close's own errno is lost (use release() and ::close to see it).
    void reset() noexcept {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
    }
    /// Gives the descriptor up to the caller, who must close it.
    int release() noexcept { return std::exchange(fd_, -1); }

private:
    int fd_ = -1;
};

}  // namespace refpage
