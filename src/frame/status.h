#pragma once

namespace zav {

/// Exit statuses. Those from 20 up tell that the run came to its end but isn't what was asked for.
enum : int {
    STATUS_NO_PROCESS = 1,    ///< no background process in batch mode
    STATUS_NO_GRAPHICS = 4,   ///< the graphics can't be opened
    STATUS_NO_ANSWER = 7,     ///< a loop window doesn't answer
    STATUS_NO_GRID = 10,      ///< no data file, or no grid in it
    STATUS_LAYER = 20,        ///< a layer wasn't found or couldn't be drawn; the others are on the page
    STATUS_TIME = 21,         ///< a time of a list has no data
    STATUS_INPUT_ENDED = 22,  ///< a question met the end of the input
    STATUS_WORD = 23,         ///< a time, level, variable or other word that can't be read
    STATUS_REGION = 24,       ///< an unknown region or a faulty domain
    STATUS_OUTPUT = 25,       ///< output that couldn't be written whole
};

/// Notes that the run isn't what was asked for. Of several the highest stays.
void ZAV_note(int status);
/// The highest status noted, 0 without one.
int ZAV_noted();

/// Says whether a chart is still to come: at start, and from the beginning of each plot to its end.
void ZAV_set_unfinished(bool unfinished);
/// Status of a run whose input ends at a question: STATUS_INPUT_ENDED while a chart is still to come, else 0, as a
/// script that has no more answers is done.
int ZAV_input_ended();

}  // namespace zav
