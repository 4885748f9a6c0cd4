#include "cli/file_io.hpp"

#include "cli/tool_error.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tool {

namespace {

/// Some systems refuse larger transfers.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = other.fd_;
        other.fd_ = -1;
    }
    return *this;
}

void Descriptor::close() noexcept {
    if (fd_ > STDERR_FILENO) ::close(fd_);
    fd_ = -1;
}

Descriptor openInput(std::string const& path) {
    if (path == "-") return Descriptor(STDIN_FILENO);
    int const fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw fileError(path, errno);
    return Descriptor(fd);
}

std::size_t readSome(int fd, char* buffer, std::size_t size, std::string const& path) {
    for (;;) {
        ssize_t const n = ::read(fd, buffer, std::min(size, kLargestTransfer));
        if (n >= 0) return static_cast<std::size_t>(n);
        if (errno != EINTR) throw fileError(path, errno);
    }
}

std::string readFile(std::string const& path) {
    Descriptor const file = openInput(path);
    std::string bytes;
    std::size_t used = 0;
    for (;;) {
        bytes.resize(std::max<std::size_t>(1 << 16, used * 2));
        std::size_t const n = readSome(file.get(), bytes.data() + used, bytes.size() - used, path);
        if (n == 0) break;
        used += n;
    }
    bytes.resize(used);
    return bytes;
}

void writeStandardOutput(std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const n = ::write(STDOUT_FILENO, bytes.data(), std::min(bytes.size(), kLargestTransfer));
        if (n >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(n));
        } else if (errno == EPIPE) {
            throw OutputClosed();
        } else if (errno != EINTR) {
            throw fileError("standard output", errno);
        }
    }
}

void ignoreBrokenPipes() noexcept { std::signal(SIGPIPE, SIG_IGN); }

}  // namespace tool
