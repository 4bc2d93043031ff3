#include "files/file_io.h"

#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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

mode_t modeOfNewFiles() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// What stands at the place of a file that is to be written.
struct Target {
    std::string path;  ///< behind all links
    bool exists = false;
    struct stat info {};
};

std::string refusal(const struct stat& info) {
    if (S_ISDIR(info.st_mode))
        return "it is a folder";
    return S_ISREG(info.st_mode) ? "" : "it is no plain file";
}

// Why the file cannot be replaced; empty when it can.
std::string examine(const std::string& wanted, Target& target) {
    target.path = wanted;
    struct stat link {};
    if (::lstat(wanted.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
        std::error_code error;
        target.path = std::filesystem::canonical(wanted, error).string();
        if (error)
            return "it is a link that leads nowhere (" + error.message() + ")";
    }
    target.exists = ::stat(target.path.c_str(), &target.info) == 0;
    if (!target.exists)
        return {};
    if (const std::string why = refusal(target.info); !why.empty())
        return why;
    return ::access(target.path.c_str(), W_OK) == 0 ? "" : reason();
}

// New files bear the target's name, this mark, the process that writes them and six letters; they
// are locked while they are written.
constexpr std::string_view kMark = ".save-";
constexpr std::size_t kLettersAtEnd = 6;

std::string namePrefix(const std::filesystem::path& target) {
    constexpr std::size_t kRoomForRest = 32;  // of the longest name that a folder takes
    return target.filename().string().substr(0, NAME_MAX - kRoomForRest) + std::string(kMark);
}

bool isAbandoned(const std::filesystem::path& file, std::size_t prefixLength) {
    const std::string name = file.filename().string();
    pid_t owner = 0;
    const char* end = name.data() + name.size();
    const auto [at, error] = std::from_chars(name.data() + prefixLength, end, owner);
    if (error != std::errc() || owner <= 0 || *at != '-' ||
        static_cast<std::size_t>(end - at) != kLettersAtEnd + 1)
        return false;
    if (::kill(owner, 0) == 0 || errno != ESRCH)
        return false;
    // The number may be that of a process elsewhere (another machine, a container): it locks.
    const Descriptor handle(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    return handle.get() >= 0 && ::flock(handle.get(), LOCK_EX | LOCK_NB) == 0;
}

void removeAbandoned(const std::filesystem::path& target) {
    const std::string prefix = namePrefix(target);
    const std::filesystem::path folder = target.parent_path();
    std::vector<std::filesystem::path> found;
    std::error_code error;
    for (std::filesystem::directory_iterator at(folder.empty() ? "." : folder, error), end;
         !error && at != end; at.increment(error))
        if (at->path().filename().string().compare(0, prefix.size(), prefix) == 0 &&
            isAbandoned(at->path(), prefix.size()))
            found.push_back(at->path());
    for (const std::filesystem::path& path : found)
        std::filesystem::remove(path, error);
}

std::string lossOf(const Target& target, int file) {
    if (!target.exists)
        return {};
    std::string loss;
    struct stat now {};
    if (target.info.st_nlink > 1)
        loss = "its other hard links keep the old contents";
    if (::fstat(file, &now) == 0 &&
        (now.st_uid != target.info.st_uid || now.st_gid != target.info.st_gid))
        loss += std::string(loss.empty() ? "" : "; ") + "its owner or group is another one now";
    return loss;
}

// A file whose owner cannot be given keeps no bits that lend the owner's rights.
bool giveRights(int file, const Target& target) {
    if (!target.exists)
        return ::fchmod(file, modeOfNewFiles()) == 0;
    const bool owned = ::fchown(file, target.info.st_uid, target.info.st_gid) == 0;
    return ::fchmod(file, target.info.st_mode & (owned ? 07777 : 0777)) == 0;
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
    // A pipe without a writer would hold the program up.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (file.get() < 0 || ::fstat(file.get(), &info) != 0)
        return Status::failure("Cannot open " + path + ": " + reason());
    if (const std::string why = refusal(info); !why.empty())
        return Status::failure("Cannot open " + path + ": " + why);
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

Status replaceFile(const std::string& wanted, const std::string& text, std::string& loss) {
    const auto failed = [&wanted](const std::string& why) {
        return Status::failure("Cannot save " + wanted + ": " + why);
    };
    loss.clear();
    Target target;
    if (const std::string why = examine(wanted, target); !why.empty())
        return failed(why);
    removeAbandoned(target.path);
    const std::filesystem::path place(target.path);
    std::string beside =
        (place.parent_path() / (namePrefix(place) + std::to_string(::getpid()) + "-XXXXXX"))
            .string();
    const NoSizeSignal quiet;
    Descriptor file(makeTemporaryFile(beside));
    if (file.get() < 0)
        return failed(reason());
    ::flock(file.get(), LOCK_EX | LOCK_NB);
    const bool written =
        writeAll(file.get(), text) && giveRights(file.get(), target) && ::fsync(file.get()) == 0;
    loss = lossOf(target, file.get());
    if (!written || !file.close() || std::rename(beside.c_str(), target.path.c_str()) != 0) {
        const std::string why = reason();
        ::unlink(beside.c_str());
        forgetTemporaryFile(beside);
        return failed(why);
    }
    forgetTemporaryFile(beside);
    flushFolder(target.path);
    return Status::ok();
}

std::string absolutePath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

}  // namespace torvel
