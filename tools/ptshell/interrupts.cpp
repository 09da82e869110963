#include "interrupts.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace ptshell {

namespace {

std::atomic<bool> interruptRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "the flag is set in a signal handler");
/// Ctrl-C also writes a byte here, so that a prompt waiting for a key wakes up, whichever
/// thread the signal reached.
int wakeRead = -1;
int wakeWrite = -1;
volatile std::sig_atomic_t endOnSecondInterrupt = 0;

extern "C" void onInterrupt(int) {
    const int saved = errno;
    if (interruptRequested.exchange(true) && endOnSecondInterrupt) {
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
    }
    if (wakeWrite >= 0) {
        const char byte = 0;
        [[maybe_unused]] const ssize_t written = write(wakeWrite, &byte, 1);
    }
    errno = saved;
}

void drainWakeUps() {
    char bytes[64];
    while (wakeRead >= 0 && read(wakeRead, bytes, sizeof bytes) > 0) {
    }
}

/// The next byte typed, waiting for it or for Ctrl-C; -1 for Ctrl-C or the end of input.
int readTypedByte() {
    for (;;) {
        if (interruptRequested.load()) {
            return EOF;
        }
        pollfd fds[2] = {{STDIN_FILENO, POLLIN, 0}, {wakeRead, POLLIN, 0}};
        if (poll(fds, wakeRead >= 0 ? 2 : 1, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return EOF;
        }
        if (wakeRead >= 0 && (fds[1].revents & POLLIN) != 0) {
            drainWakeUps();
            continue;
        }
        unsigned char byte = 0;
        const ssize_t got = read(STDIN_FILENO, &byte, 1);
        if (got < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        return got == 1 ? byte : -1;
    }
}

}  // namespace

std::atomic<bool>& interruptFlag() { return interruptRequested; }

void catchInterrupts(bool endOnSecond) {
    struct sigaction previous {};
    if (sigaction(SIGINT, nullptr, &previous) != 0 || previous.sa_handler == SIG_IGN) {
        return;
    }
    int fds[2];
    if (pipe2(fds, O_CLOEXEC | O_NONBLOCK) == 0) {
        wakeRead = fds[0];
        wakeWrite = fds[1];
    }
    endOnSecondInterrupt = endOnSecond ? 1 : 0;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
}

int readTypedCharacter(FILE*) {
    const int lead = readTypedByte();
    if (lead < 0x80) {
        return lead < 0 ? EOF : lead;
    }
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    int code = length == 1 ? lead : lead & (0x7F >> length);
    for (int i = 1; i < length; ++i) {
        const int next = readTypedByte();
        if (next < 0) {
            return EOF;
        }
        code = (code << 6) | (next & 0x3F);
    }
    return code;
}

}  // namespace ptshell
