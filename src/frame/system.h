#pragma once

namespace zav {

/// Puts the null device where a standard stream is closed, so that no file takes its number and with it what is read or
/// said there. Called once, before any file is opened.
void ZAV_open_standard_streams();

/// From here on writing to a command that has ended is an error of that write and doesn't end the program.
void ZAV_survive_broken_pipes();

/// Goes to the background: the parent process exits with the noted status, the child goes on, detached, with its
/// standard streams on the null device. 1, or 0 if that can't be.
int ZAV_back_proc();

/// Ends the program with `status`, or with the noted one (frame/status.h) where it is 0. All its ends go through here
/// but the return of main and the parent of a background process. Output that is open is brought to its end first, by
/// the hook break_off.
[[noreturn]] void ZAV_exit(int status);

/// Number of this process.
int ZAV_get_pid();

/// Sleeps and adds to the elapsed time. 0, or -1 for a time not above 0.
int ZAV_sleep(float secs);
/// Starts the stopwatch at 0.
void ZAV_init_time();
/// Seconds slept since then.
float ZAV_elapse_time();

}  // namespace zav
