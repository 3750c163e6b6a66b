#include "frame/system.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "frame/hooks.h"
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

// An ignored signal would be handed down to the commands that the program starts; one that is caught isn't.
void note_broken_pipe(int) {}

}  // namespace

void ZAV_open_standard_streams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1) put_null_device(descriptor);
    }
}

void ZAV_survive_broken_pipes() {
    struct sigaction action {};
    action.sa_handler = note_broken_pipe;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGPIPE, &action, nullptr);
}

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

void ZAV_exit(int status) {
    void (*const break_off)() = std::exchange(ZAV_hooks().break_off, nullptr);
    if (break_off != nullptr) break_off();
    std::exit(status != 0 ? status : ZAV_noted());
}

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
