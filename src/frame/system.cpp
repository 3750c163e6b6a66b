#include "frame/system.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "frame/status.h"

namespace zav {
namespace {

/// Longest single sleep, a day: a wait from outside can't hold the program for good.
constexpr float LONGEST_SLEEP = 86400.0F;

struct State {
    float elapsed = 0;
};
State state;

/// Opens the null device in place of a standard descriptor.
bool put_null_device(int descriptor) {
    const int file = open("/dev/null", O_RDWR);
    if (file < 0) return false;
    if (file == descriptor) return true;
    const bool done = dup2(file, descriptor) == descriptor;
    close(file);
    return done;
}

}  // namespace

int ZAV_back_proc() {
    // What the buffers hold would be written by both processes.
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) return 0;
    // Without the clean-up of an exit, which would move the positions of files and wait for pipes that the child uses.
    if (child > 0) _exit(ZAV_noted());

    std::signal(SIGINT, SIG_DFL);
    // What was read ahead of the questions so far answers none of the later ones.
    __fpurge(stdin);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(descriptor);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (!put_null_device(descriptor)) return 0;
    }
    setpgid(0, 0);
    return 1;
}

void ZAV_exit(int status) { std::exit(status != 0 ? status : ZAV_noted()); }

int ZAV_get_pid() { return static_cast<int>(getpid()); }

int ZAV_sleep(float secs) {
    if (!(secs > 0)) return -1;
    const float held = secs < LONGEST_SLEEP ? secs : LONGEST_SLEEP;
    std::fflush(stdout);
    std::this_thread::sleep_for(std::chrono::duration<float>(held));
    state.elapsed += held;
    return 0;
}

void ZAV_init_time() { state.elapsed = 0; }

float ZAV_elapse_time() { return state.elapsed; }

}  // namespace zav
