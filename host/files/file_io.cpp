#include "files/file_io.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "base/temporary_files.h"

namespace torvel {
namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_number; }
    bool close() {
        const int number = m_number;
        m_number = -1;
        return number < 0 || ::close(number) == 0;
    }

  private:
    int m_number;
};

// A file that grows past the limit of the process is an error of write(), not the end of the
// program.
class NoSizeSignal {
  public:
    NoSizeSignal() {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        m_blocked = pthread_sigmask(SIG_BLOCK, &m_signal, &m_old) == 0;
    }
    ~NoSizeSignal() {
        if (!m_blocked)
            return;
        if (!sigismember(&m_old, SIGXFSZ)) {
            const timespec now{};
            while (sigtimedwait(&m_signal, nullptr, &now) > 0) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
    }
    NoSizeSignal(const NoSizeSignal&) = delete;
    NoSizeSignal& operator=(const NoSizeSignal&) = delete;

  private:
    sigset_t m_signal{}, m_old{};
    bool m_blocked = false;
};

std::string reason() {
    return std::strerror(errno);
}

bool writeAll(int file, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = ::write(file, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

mode_t modeFor(const std::string& path) {
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0)
        return old.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// A link keeps standing: the file that it leads to is the one replaced.
std::string behindLinks(const std::string& path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

void flushFolder(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const Descriptor handle(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.get() >= 0)
        ::fsync(handle.get());
}

}  // namespace

Status loadFile(const std::string& path, std::string& text) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (file.get() < 0 || ::fstat(file.get(), &info) != 0)
        return Status::failure("Cannot open " + path + ": " + reason());
    if (S_ISDIR(info.st_mode))
        return Status::failure("Cannot open " + path + ": it is a folder");
    if (!S_ISREG(info.st_mode))
        return Status::failure("Cannot open " + path + ": it is no plain file");
    text.resize(static_cast<std::size_t>(info.st_size));
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = ::read(file.get(), &text[done], text.size() - done);
        if (count < 0 && errno != EINTR)
            return Status::failure("Cannot read " + path + ": " + reason());
        if (count == 0)
            break;
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    text.resize(done);
    return Status::ok();
}

Status replaceFile(const std::string& wanted, const std::string& text) {
    const std::string path = behindLinks(wanted);
    const auto failed = [&wanted](const std::string& why) {
        return Status::failure("Cannot save " + wanted + ": " + why);
    };
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return failed("it is a folder");
    if (::access(path.c_str(), F_OK) == 0 && ::access(path.c_str(), W_OK) != 0)
        return failed(reason());
    std::string beside = path + ".XXXXXX";
    const mode_t mode = modeFor(path);
    const NoSizeSignal quiet;
    Descriptor file(makeTemporaryFile(beside));
    if (file.get() < 0)
        return failed(reason());
    const bool written = writeAll(file.get(), text) && ::fchmod(file.get(), mode) == 0 &&
                         ::fsync(file.get()) == 0 && file.close() &&
                         std::rename(beside.c_str(), path.c_str()) == 0;
    if (!written) {
        const std::string why = reason();
        ::unlink(beside.c_str());
        forgetTemporaryFile(beside);
        return failed(why);
    }
    forgetTemporaryFile(beside);
    flushFolder(path);
    return Status::ok();
}

std::string absolutePath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

}  // namespace torvel
