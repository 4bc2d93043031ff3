#include "base/temporary_files.h"

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <set>

#include <unistd.h>

namespace torvel {

namespace {

// Of the process, as the signals are that end it.
struct Register {
    std::mutex mutex;
    std::set<std::string> paths;
    bool closed = false;
};

Register& current() {
    static auto* made = new Register;  // never deleted: a signal may come while the process ends
    return *made;
}

}  // namespace

int makeTemporaryFile(std::string& pattern) {
    Register& files = current();
    const std::lock_guard<std::mutex> lock(files.mutex);
    if (files.closed) {
        errno = EINTR;
        return -1;
    }
    const int file = ::mkstemp(pattern.data());
    if (file >= 0)
        files.paths.insert(pattern);
    return file;
}

void forgetTemporaryFile(const std::string& path) {
    Register& files = current();
    const std::lock_guard<std::mutex> lock(files.mutex);
    files.paths.erase(path);
}

void removeTemporaryFiles() {
    Register& files = current();
    const std::lock_guard<std::mutex> lock(files.mutex);
    files.closed = true;
    for (const std::string& path : files.paths)
        ::unlink(path.c_str());
    files.paths.clear();
}

}  // namespace torvel
