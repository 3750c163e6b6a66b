#pragma once

#include <array>
#include <string>
#include <vector>

#include "var/var_tool.h"

namespace zav {

/// Most levels of brackets and macros around an entry, with the outermost.
constexpr int BASE_MAX = 10;
/// Most items that one variable string may have with all its macros. Bounds the work of macros that call each other.
constexpr int ITEM_MAX = 500;

/// What the entries inside a bracket or macro inherit.
struct var_base {
    int type = MISS;
    int time = MISS;
    int tstat = MISS;
    int ltype = MISS;
    int level = MISS;
    int lstat = MISS;
};

/// The variable list and the state of its compilation, shared by the files of this unit.
struct var_state {
    std::array<VAR_data, VAR_MAX> var;
    int varnum = 0;  ///< entries in use
    int plevel = 0;  ///< functions around the present item
    int vlevel = 0;  ///< groups and vectors around the present item
    std::array<var_base, BASE_MAX> base;
    int base_ind = -1;      ///< top of `base`, -1 outside of a compilation
    int def_type = 2;       ///< plot type of entries that name none
    int items = 0;          ///< items so far in this compilation
    bool refused = false;   ///< the string needs more room than there is, or has a level that can't be read
    std::string bad_level;  ///< that level
};
var_state& VAR_module();

/// Widths of the text fields of VAR_data with their end.
constexpr std::size_t NAME_SIZE = 20;
constexpr std::size_t UNITS_SIZE = 15;
constexpr std::size_t FORMAT_SIZE = 101;

/// Numbers of an abbreviation, any case. Null if unknown.
const VAR_desc* VAR_find_abbr(const std::string& abbr);
/// Entry of a variable number. Null if unknown.
const VAR_desc* VAR_find_num(int num);

/// A number in a key: the value, and the text behind it up to a blank.
struct key_number {
    bool found = false;
    float value = 0.0F;
    std::string unit;
};
key_number VAR_read_number(const std::string& text);

/// Label style in force, from -2 to 1.
int VAR_label_type();

/// A real or long number as an int, held to the range of an int; 0 for what isn't a number.
int VAR_to_int(double value);

}  // namespace zav
