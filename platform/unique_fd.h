// A file descriptor with one owner: closed when the owner goes.
//
//   unique_fd file(open(path, O_RDONLY | O_CLOEXEC));
//   if (!file)
//       return -1;   // errno is still open's
//   read(file.get(), ...);
#ifndef PLATFORM_UNIQUE_FD_H
#define PLATFORM_UNIQUE_FD_H

#include <unistd.h>

#include <utility>

class unique_fd {
  public:
    unique_fd() = default;
    explicit unique_fd(int fd) : fd_(fd) {}
    unique_fd(unique_fd&& other) noexcept : fd_(other.release()) {}
    unique_fd& operator=(unique_fd&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~unique_fd() { reset(); }

    explicit operator bool() const { return fd_ >= 0; }
    int get() const { return fd_; }  // -1: owns nothing
    int release() { return std::exchange(fd_, -1); }
    void reset(int fd = -1) {
        if (fd_ >= 0)
            close(fd_);
        fd_ = fd;
    }

  private:
    int fd_ = -1;
};

#endif
