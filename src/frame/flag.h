#pragma once

namespace zav {

/// Numbered settings that the parts of a run hand each other. A flag that nobody set holds MISS.
constexpr int FLAG_COUNT = 30;

/// Flags in use.
enum : int {
    FLAG_DEVICE = 2,        ///< workstation type
    FLAG_TIME = 6,          ///< forecast time code of the current choice
    FLAG_LTYPE = 7,         ///< level type of the current choice
    FLAG_LEVEL = 8,         ///< level of the current choice
    FLAG_PLOT_TYPE = 11,    ///< plot type code, 99 for none
    FLAG_FILE_POLICY = 15,  ///< existing output files: 1 overwrite, 2 append, 3 use
    FLAG_GRID_FORMAT = 17,  ///< grid file format: 3 native, 12 netCDF, 23 GRIB
    FLAG_BATCH_RUN = 19,    ///< above 0: run without prompts
    FLAG_HELP_ASKED = 20,   ///< above 0: help was asked for
};

/// Value of `flag`, 0 for a number outside the table.
int FLAG_get(int flag);
long FLAG_getl(int flag);
/// Stores a value. 0, or -1 for a number outside the table.
int FLAG_set(int flag, int value);
int FLAG_setl(int flag, long value);
/// Stores `value` in all flags.
void FLAG_reset(int value);
void FLAG_resetl(long value);

/// 1 in batch mode, else 0.
int FLAG_batch();
/// 1 if help was asked for, else 0.
int FLAG_help();
void FLAG_set_batch(int val);

/// Components of a plot. Zero in a sum says that nothing of its kind is drawn.
enum : int {
    PLOT_TEXT = 0,  ///< sum of the six labels
    PLOT_TEXT_UL = 1,
    PLOT_TEXT_UC = 2,
    PLOT_TEXT_UR = 3,
    PLOT_TEXT_LL = 4,
    PLOT_TEXT_LC = 5,
    PLOT_TEXT_LR = 6,
    PLOT_DATA = 7,
    PLOT_MAP = 8,
    PLOT_GRID = 9,
    PLOT_SUMMARY = 10,
    PLOT_BORDER = 11,
    PLOT_ALL = 12,  ///< sum of all the others
    PLOT_COUNT = 13,
};

/// Switches a component, and those under a sum, and forms the sums anew. A number outside the table does nothing.
void FLAG_setplot(int type, int val);
/// Value of a component, 0 for a number outside the table.
int FLAG_getplot(int type);
/// Stores `val` in all components, sums included.
void FLAG_resetplot(int val);

}  // namespace zav
