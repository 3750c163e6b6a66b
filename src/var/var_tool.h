#pragma once

#include <array>
#include <string>
#include <vector>

#include "frame/mess.h"
#include "frame/zav.h"

namespace zav {

/// Most entries of the compiled variable list.
constexpr int VAR_MAX = 60;
/// Numbers that one variable may have.
constexpr int VAR_IND = 5;

/// Plot types, the field `type` of VAR_data.
enum : int {
    VTYPE_DATA = 1,   ///< plotted data value
    VTYPE_VALUE = 2,  ///< value at a station
    VTYPE_TEXT = 3,   ///< text
    VTYPE_MARK = 4,   ///< marker
    VTYPE_INT = 5,
    VTYPE_MAP = 6,      ///< the keyword map
    VTYPE_FRAME = 7,    ///< the keyword frame
    VTYPE_PANEL = 8,    ///< the keyword panel
    VTYPE_GRID = 10,    ///< a grid that isn't drawn by itself
    VTYPE_CONT = 11,    ///< contour of a kind chosen later
    VTYPE_LINE = 12,    ///< line contours
    VTYPE_DASH = 13,    ///< dashed line contours
    VTYPE_NDASH = 14,   ///< line contours, dashed below zero
    VTYPE_FILL = 15,    ///< colour fill
    VTYPE_BOTH = 16,    ///< lines and colour fill
    VTYPE_GVALUE = 17,  ///< grid point values
    VTYPE_WIND = 20,    ///< wind of a kind chosen later
    VTYPE_VECT = 21,    ///< vectors
    VTYPE_BARB = 22,    ///< barbs
    VTYPE_STRM = 23,    ///< streamlines
    VTYPE_PLOT = 30,    ///< the keyword plot
    VTYPE_CONST = 40,   ///< constant
    VTYPE_NONE = 99,    ///< nothing is drawn
};

/// Kinds of an entry: `flag` modulo 10. `flag` / 10 is the number of functions around the entry.
enum : int {
    VKIND_REG = 0,     ///< plain variable
    VKIND_SUBREG = 1,  ///< plain variable in a group or vector
    VKIND_FUNC = 2,    ///< function
    VKIND_SUBFUNC = 3,
    VKIND_KEYWORD = 4,    ///< map, plot, frame, panel
    VKIND_COMP = 5,       ///< group
    VKIND_VECT = 6,       ///< vector
    VKIND_FUNC_VECT = 8,  ///< second entry of a function with a vector result
    VKIND_SUBFUNC_VECT = 9,
    VKIND_DEEPER = 10,  ///< what each function around an entry adds
};

/// One entry of the compiled variable list; also a search key, in which MISS means "any".
struct VAR_data {
    int type = MISS;    ///< plot type
    std::string name;   ///< name as written, or the abbreviation from the table (19 characters)
    std::string units;  ///< units asked for (14 characters), empty for the data's own
    /// Variable numbers; [0] is the main one and carries the ensemble code.
    std::array<int, VAR_IND> var{MISS, MISS, MISS, MISS, MISS};
    int tstat = 0;    ///< 0 not decoded, 1 time inherited, 2 time given
    int time = MISS;  ///< time code: kind * 1000000 + begin * 1000 + end
    std::string tunits;
    int lstat = 0;     ///< as tstat, for the level
    int ltype = MISS;  ///< level type (GRIB 1 table 3, and codes of our own)
    int level = MISS;  ///< level, or layer as two numbers
    std::string lunits;
    std::string format;  ///< format word and what follows it (100 characters)
    int flag = 0;        ///< place in the tree: depth * 10 + kind
};

/// One variable of the variable table.
struct VAR_desc {
    std::array<int, VAR_IND> ind{MISS, MISS, MISS, MISS, MISS};  ///< numbers; [0] is the variable's own
    std::string name;                                            ///< long name, as labels show it
    std::string abbr;                                            ///< abbreviation
};

/// Calls into units above this one. An empty one has the effect that its line tells.
struct var_hooks {
    /// Style of labels, from -2 short to 1 long. Empty: the style that set_label_type would have set is kept here.
    int (*get_label_type)() = nullptr;
    void (*set_label_type)(int type) = nullptr;
    /// 1 if a function has two result grids. Empty: none has.
    int (*is_vect_func)(const std::string& name) = nullptr;
    /// Plot type that a function implies, 0 if it is none. Empty: none is.
    int (*is_math_func)(const std::string& name) = nullptr;
};
/// The hooks in force.
var_hooks& VAR_hooks();

// Variable table

/// Reads the variable table "variable.lup". 1, or 0 if it can't be opened.
int VAR_read_varfile();
/// Finds the macro `name` in the open variable menu file. 1 with its text in `str`, or 0.
int VAR_lookup(const std::string& name, std::string& str);
/// Label text of a variable: long name, or abbreviation with short labels, and the units in brackets.
std::string VAR_str(int variable, const std::string& units = "");
/// Abbreviation of a variable; "v" and the number for an unknown one.
std::string VAR_abbr(int variable);
/// Number of an abbreviation, any case; 0 if unknown.
int VAR_search_var_num(const std::string& str);
/// Makes a variable of a data file's own known, by its name in that file and its long name; an abbreviation that is
/// known stays what it is. Its number, which holds for this run.
int VAR_add(const std::string& abbr, const std::string& name);
/// Name that the variable menu file gives to an abbreviation, any case. 1, or 0.
int VAR_search_name_file(const std::string& str, std::string& name);
/// Name of a model; above 1000: source * 1000 + model. Empty if unknown.
std::string VAR_model(int rmod);
/// Name of a data source; empty if unknown.
std::string VAR_source(int source);

/// Texts that menu rules test, of up to 20 characters.
void VAR_set_model_str(const std::string& str);
void VAR_set_level_str(const std::string& str);
void VAR_set_time_str(const std::string& str);
const std::string& VAR_get_model_str();
const std::string& VAR_get_level_str();
const std::string& VAR_get_time_str();

/// Plot type of a word, any case; -1 for another word.
int VAR_dec_type(const std::string& str);
/// Word of a plot type for traces, "----" for an unknown one.
const char* VAR_print_type(int type);
/// Shows an entry as one line.
void VAR_print(M_type lev, const VAR_data* data);
/// Shows all entries of the variable list.
void VAR_print_all(M_type lev);

// Tests on an entry of the variable list: 1 or 0, and 0 for an index outside of it

int VAR_is_REG(int ind);
int VAR_is_SUBREG(int ind);
int VAR_is_FUNC(int ind);
int VAR_is_SUBFUNC(int ind);
int VAR_is_FUNC_VECT(int ind);
int VAR_is_SUBFUNC_VECT(int ind);
int VAR_is_COMP(int ind);
int VAR_is_VECT(int ind);
int VAR_is_LABEL(int ind);
int VAR_is_PLOT(int ind);
int VAR_is_SUBPLOT(int ind);
int VAR_is_CALC(int ind);
int VAR_is_SUBCALC(int ind);
int VAR_is_DATA(int ind);
int VAR_is_FRAME(int ind);
int VAR_is_PANEL(int ind);
int VAR_is_type_MAP(int ind);
int VAR_is_type_PLOT(int ind);
int VAR_is_type_GRID(int ind);
int VAR_is_type_CONT(int ind);
int VAR_is_type_VECT(int ind);
int VAR_is_plot_PLOT(int ind);
int VAR_is_plot_VECT(int ind);
int VAR_is_plot_FUNC(int ind);
int VAR_is_plot_FUNC_VECT(int ind);
int VAR_is_plot_GRID(int ind);
int VAR_is_plot_CONT(int ind);
int VAR_is_subplot_GRID(int ind);
int VAR_is_calc_GRID(int ind);
int VAR_is_fit_GRID(int ind);
int VAR_is_get_GRID(int ind);

// Variable strings

/// Compiles a variable string into the variable list. `filename` is the variable menu file, absent or empty for the one
/// that is open. 1 when the list has an entry, else 0. A string that needs more room than the list has is refused.
int VAR_setup(const char* filename, const std::string& var_str);
/// Indices of the plain variables that are drawn or feed a function and whose names nobody knows.
std::vector<int> VAR_unknown();
/// Compiles a list of items. Result 0.
int VAR_process(const std::string& str);
/// Compiles one item; `flag` 1 allows a macro. Result 0.
int VAR_process_var(const std::string& str, int flag);
/// Makes the type, time and level of the current entry those that the entries inside it inherit.
void VAR_base_push();
/// Decodes a name into plot type and variable numbers. Result: the main number, 0 if unknown, 1 for a constant.
int VAR_dec_var(const std::string& str, VAR_data* data);

void VAR_data_init(VAR_data* data);
/// Clears the whole list.
void VAR_init();
/// Copies an entry into `dat2`, without its format and units, its type set to 0.
void VAR_copy(VAR_data* dat2, const VAR_data* dat1);
/// Plot type of entries that name none.
void VAR_set_def_type(int val);

/// Number of entries.
int VAR_get_num();
void VAR_set_num(int num);
/// Makes the list empty.
void VAR_reset();
/// The list; its first VAR_get_num() entries are in use.
std::array<VAR_data, VAR_MAX>& VAR_get_vars();
/// One entry, null for an index outside the list.
VAR_data* VAR_get_var(int i);
/// Fields of an entry. An index outside the list gives the unset value.
const std::string& VAR_get_name(int i);
const std::string& VAR_get_units(int i);
const std::string& VAR_get_format(int i);
int VAR_get_time(int i);
int VAR_get_type(int i);
void VAR_set_type(int i, int val);
int VAR_get_flag(int i);
void VAR_set_flag(int i, int val);
/// Level or time of an entry as a number in text.
std::string VAR_get_level_key(int i);
std::string VAR_get_time_key(int i);

// Time and level keys

/// Decodes a time key into a time code. 0: no time, `time` unchanged; 1: inherited; 2: given.
int VAR_dec_time(const std::string& str, int* time);
/// Decodes a level key. 0: no level, the codes unchanged; 1: inherited; 2: given.
int VAR_dec_level(const std::string& str, int* ltype, int* level);
/// The numbers of a level or layer in its units: `l1` the lower, `l2` the higher, FMISS for a single level.
void VAR_get_level(int ltype, int level, float* l1, float* l2);
/// The inverse: a level type and one number, or two with `l2` not FMISS, into codes.
void VAR_enc_level(int coord, float l1, float l2, int* ltype, int* level);

// Labels

/// Text of a time and level, "12 hour acc Surface".
std::string VAR_make_datalevel(int time, int ltype, int level);
/// Text of time, level and variable with units, as the label style asks.
std::string VAR_make_datatype(int time, int ltype, int level, int variable, const std::string& units);
/// The same for an entry of the list, with its format if the label style asks for it.
std::string VAR_make_var_form_datatype(int ind);
/// The same for a loose record.
std::string VAR_make_vardata_form_datatype(const VAR_data* var);
/// Text of time and level with a name and units of the caller's.
std::string VAR_make_devtype(int time, int ltype, int level, const std::string& variable, const std::string& units);
/// Takes the label style from the words of the resource "plot_param".
void VAR_param_decode();
/// Shows the label text of a record.
void VAR_print_info(M_type lev, const VAR_data* data);

}  // namespace zav
