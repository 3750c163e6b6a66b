#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

/// Words that name a plot type in a variable string, and how traces show the type.
struct type_word {
    int code;
    const char* word;   ///< null: no word gives this code
    const char* print;  ///< null: an earlier row of the code has it
};
constexpr type_word TYPE_WORDS[] = {
    {VTYPE_DATA, "data", "data"},
    {VTYPE_VALUE, "value", "value"},
    {VTYPE_TEXT, "text", "text"},
    {VTYPE_MARK, "mark", "mark"},
    {VTYPE_MARK, "mk", nullptr},
    {VTYPE_INT, nullptr, "int"},
    {VTYPE_MAP, nullptr, "map"},
    {VTYPE_FRAME, nullptr, "frame"},
    {VTYPE_PANEL, nullptr, "panel"},
    {VTYPE_GRID, nullptr, "grid"},
    {VTYPE_CONT, "cont", "cont"},
    {VTYPE_LINE, "ln", "lcont"},
    {VTYPE_DASH, "dln", "dln"},
    {VTYPE_NDASH, "ndln", "ndln"},
    {VTYPE_FILL, "cf", "fcont"},
    {VTYPE_BOTH, "lcf", "bcont"},
    {VTYPE_GVALUE, "gvalue", "gvalue"},
    {VTYPE_WIND, "wind", "wind"},
    {VTYPE_VECT, "vect", "vect"},
    {VTYPE_BARB, "barb", "barb"},
    {VTYPE_STRM, "strm", "strm"},
    {VTYPE_STRM, "track", nullptr},
    {VTYPE_PLOT, "plot", "plot"},
    {31, "cloud", "cloud"},
    {32, "wbarb", "wbarb"},
    {33, "cbarb", "cbarb"},
    {34, "dbarb", "dbarb"},
    {35, "vbarb", "vbarb"},
    {36, "symb", "symb"},
    {36, "wx", nullptr},
    {37, "line", "line"},
    {VTYPE_CONST, nullptr, "const"},
};

/// An entry of the list that is in use, null for any other index.
const VAR_data* entry(int ind) {
    const var_state& state = VAR_module();
    return ind >= 0 && ind < state.varnum ? &state.var[ind] : nullptr;
}

bool kind_is(int ind, int kind) {
    const VAR_data* data = entry(ind);
    return data != nullptr && data->flag % 10 == kind;
}

bool flag_below(int ind, int limit) {
    const VAR_data* data = entry(ind);
    return data != nullptr && data->flag < limit;
}

bool type_in(int ind, int low, int high) {
    const VAR_data* data = entry(ind);
    return data != nullptr && data->type >= low && data->type <= high;
}

}  // namespace

int VAR_dec_type(const std::string& str) {
    for (const type_word& row : TYPE_WORDS) {
        if (row.word != nullptr && stricmp(str.c_str(), row.word) == 0) return row.code;
    }
    return -1;
}

const char* VAR_print_type(int type) {
    for (const type_word& row : TYPE_WORDS) {
        if (row.code == type && row.print != nullptr) return row.print;
    }
    return "----";
}

int VAR_is_REG(int ind) { return kind_is(ind, VKIND_REG); }
int VAR_is_SUBREG(int ind) { return kind_is(ind, VKIND_SUBREG); }
int VAR_is_FUNC(int ind) { return kind_is(ind, VKIND_FUNC); }
int VAR_is_SUBFUNC(int ind) { return kind_is(ind, VKIND_SUBFUNC); }
int VAR_is_FUNC_VECT(int ind) {
    return kind_is(ind, VKIND_FUNC_VECT) || (kind_is(ind, VKIND_FUNC) && kind_is(ind + 1, VKIND_FUNC_VECT));
}
int VAR_is_SUBFUNC_VECT(int ind) { return kind_is(ind, VKIND_SUBFUNC_VECT); }
int VAR_is_COMP(int ind) { return kind_is(ind, VKIND_COMP); }
int VAR_is_VECT(int ind) { return kind_is(ind, VKIND_VECT); }

int VAR_is_LABEL(int ind) {
    const VAR_data* data = entry(ind);
    if (data == nullptr) return 0;
    return data->flag == VKIND_REG || data->flag == VKIND_FUNC || data->flag == VKIND_COMP || data->flag == VKIND_VECT;
}
int VAR_is_PLOT(int ind) { return flag_below(ind, 5); }
int VAR_is_SUBPLOT(int ind) {
    const VAR_data* data = entry(ind);
    return data != nullptr && (data->flag < 3 || data->flag == 10);
}
int VAR_is_CALC(int ind) { return kind_is(ind, VKIND_REG) || kind_is(ind, VKIND_SUBREG); }
int VAR_is_SUBCALC(int ind) { return VAR_is_CALC(ind); }
int VAR_is_DATA(int ind) { return flag_below(ind, 11) && !type_in(ind, VTYPE_WIND, VTYPE_STRM); }
int VAR_is_FRAME(int ind) { return type_in(ind, VTYPE_FRAME, VTYPE_FRAME); }
int VAR_is_PANEL(int ind) { return type_in(ind, VTYPE_PANEL, VTYPE_PANEL); }

int VAR_is_type_MAP(int ind) { return type_in(ind, VTYPE_MAP, VTYPE_MAP); }
int VAR_is_type_PLOT(int ind) {
    const VAR_data* data = entry(ind);
    if (data == nullptr || (data->type >= VTYPE_MAP && data->type <= VTYPE_PANEL)) return 0;
    return data->type <= 9 || data->type > VTYPE_STRM;
}
int VAR_is_type_GRID(int ind) {
    const VAR_data* data = entry(ind);
    return type_in(ind, VTYPE_GRID, VTYPE_STRM) && data->flag % 10 < VKIND_KEYWORD;
}
int VAR_is_type_CONT(int ind) { return type_in(ind, VTYPE_GRID, VTYPE_GVALUE); }
int VAR_is_type_VECT(int ind) { return type_in(ind, VTYPE_WIND, VTYPE_STRM); }

int VAR_is_plot_PLOT(int ind) { return VAR_is_PLOT(ind) && VAR_is_type_PLOT(ind); }
int VAR_is_plot_VECT(int ind) { return flag_below(ind, 10) && VAR_is_VECT(ind); }
int VAR_is_plot_FUNC(int ind) { return flag_below(ind, 10) && VAR_is_FUNC(ind); }
int VAR_is_plot_FUNC_VECT(int ind) { return flag_below(ind, 10) && VAR_is_FUNC_VECT(ind); }
int VAR_is_plot_GRID(int ind) { return VAR_is_PLOT(ind) && type_in(ind, VTYPE_GRID, VTYPE_STRM); }
int VAR_is_plot_CONT(int ind) { return type_in(ind, VTYPE_CONT, VTYPE_GVALUE); }
int VAR_is_subplot_GRID(int ind) { return VAR_is_SUBPLOT(ind) && type_in(ind, VTYPE_CONT, VTYPE_STRM); }
int VAR_is_calc_GRID(int ind) {
    return (VAR_is_FUNC(ind) || VAR_is_SUBFUNC(ind)) && type_in(ind, VTYPE_GRID, VTYPE_STRM);
}
int VAR_is_fit_GRID(int ind) { return VAR_is_CALC(ind) && type_in(ind, VTYPE_GRID, VTYPE_STRM); }
int VAR_is_get_GRID(int ind) { return !VAR_is_FUNC(ind) && type_in(ind, VTYPE_GRID, VTYPE_STRM); }

}  // namespace zav
