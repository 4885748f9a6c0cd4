// Reading and writing through file descriptors.
#ifndef TAVO_TOOL_FILE_IO_HPP
#define TAVO_TOOL_FILE_IO_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Owns a descriptor; standard input and output are not closed.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) noexcept : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { close(); }

    int get() const noexcept { return fd_; }
    void close() noexcept;

private:
    int fd_;
};

/// Opens @p path, "-" for standard input. Throws ToolError (data).
Descriptor openInput(std::string const& path);
/// read() that goes on after signals. Throws ToolError naming @p path.
std::size_t readSome(int fd, char* buffer, std::size_t size, std::string const& path);
/// The whole of a file. Throws ToolError (data).
std::string readFile(std::string const& path);
/// Writes everything to standard output. Throws OutputClosed when its reader is
/// gone, ToolError (data) on any other failure.
void writeStandardOutput(std::string_view bytes);
/// Makes writes to a closed pipe fail instead of ending the process.
void ignoreBrokenPipes() noexcept;

}  // namespace tool

#endif
