#include "app/interruption.h"

#include <csignal>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include "base/temporary_files.h"

namespace torvel {

namespace {

// What a signal handler may use: plain numbers, written once before it is installed.
int g_bell = -1;
pid_t g_process = 0;

extern "C" void ring(int signal) {
    if (::getpid() != g_process) {  // a fork has no thread that waits
        ::signal(signal, SIG_DFL);
        ::raise(signal);
        return;
    }
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t sent = ::write(g_bell, &number, 1);
}

[[noreturn]] void endProcess(int signal) {
    removeTemporaryFiles();
    // A print that is stuck in a full pipe holds the stream.
    if (::ftrylockfile(stdout) == 0)
        ::fflush_unlocked(stdout);
    ::_exit(128 + signal);
}

void waitForBell(int end) {
    unsigned char signal = 0;
    while (::read(end, &signal, 1) != 1) {
    }
    endProcess(signal);
}

}  // namespace

void endOnSignals() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return;
    g_bell = ends[1];
    g_process = ::getpid();
    std::thread(waitForBell, ends[0]).detach();
    struct sigaction action {};
    action.sa_handler = ring;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction old {};
        // Ignored from outside, as by nohup or a background job of a shell: it stays so.
        if (::sigaction(signal, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace torvel
