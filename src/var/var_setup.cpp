#include <algorithm>
#include <vector>

#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

constexpr M_type TRACE = 0x40000000;

/// Kinds of brackets with the mark of the entry in front of them.
struct bracket {
    char open;
    char close;
    int kind;
    const char* unmatched;
};
constexpr bracket BRACKETS[] = {
    {'(', ')', VKIND_FUNC, "Unmatched ()\n"},
    {'{', '}', VKIND_COMP, "Unmatched ()\n"},
    {'<', '>', VKIND_VECT, "Unmatched <>\n"},
};

/// Words that a square bracket belongs to: "ens[-3]temp".
constexpr const char* ENSEMBLE_WORDS[] = {"ens", "ensmean", "ensdev", "ensprob"};

/// Keyword entries, with their plot types.
struct keyword {
    const char* word;
    int type;
};
constexpr keyword KEYWORDS[] = {
    {"map", VTYPE_MAP}, {"plot", VTYPE_PLOT}, {"frame", VTYPE_FRAME}, {"panel", VTYPE_PANEL}};

/// The walk over one list of items.
struct walk {
    const std::string& text;
    std::size_t start = 0;  // first character of the item
    std::size_t pos = 0;    // present character
    int ind = MISS;         // entry of the last item

    std::string item() const { return text.substr(start, pos - start); }
    void go_behind(std::size_t place) { start = pos = place + 1; }
};

void refuse() { VAR_module().refused = true; }

void refuse_level(const std::string& level) {
    VAR_module().bad_level = level;
    refuse();
}

/// Where the next entry goes. Null, with the string refused, if the list is full.
VAR_data* next_entry() {
    var_state& state = VAR_module();
    if (state.varnum >= VAR_MAX) refuse();
    return state.refused ? nullptr : &state.var[state.varnum];
}

int place_flag() {
    const var_state& state = VAR_module();
    // A variable in a vector in a group is a component like any other.
    return state.plevel * 10 + std::min<int>(state.vlevel, VKIND_SUBREG);
}

bool escaped(const std::string& text, std::size_t pos) { return pos > 0 && text[pos - 1] == '\\'; }

/// An item without brackets behind it.
void take_item(walk& list) {
    const std::string item = list.item();
    if (string_is_blank(item)) return;
    var_state& state = VAR_module();
    if (next_entry() == nullptr) return;
    list.ind = state.varnum;
    VAR_process_var(item, 1);
    if (state.refused) return;
    if (state.varnum < VAR_MAX && !state.var[state.varnum].name.empty()) state.varnum++;
}

/// Place of the bracket that closes the one at `pos`, npos without one.
std::size_t closing(const std::string& text, std::size_t pos, const bracket& kind) {
    int depth = 0;
    for (; pos < text.size(); pos++) {
        if (escaped(text, pos)) continue;
        if (text[pos] == kind.open) depth++;
        if (text[pos] == kind.close && --depth == 0) return pos;
    }
    return std::string::npos;
}

/// The second entry of a function with two result grids.
void add_second_result(int ind) {
    var_state& state = VAR_module();
    VAR_data* second = next_entry();
    if (second == nullptr) return;
    VAR_copy(second, &state.var[ind]);
    second->flag = state.plevel * 10 + VKIND_FUNC_VECT;
    state.varnum++;
}

/// The list inside a bracket, one function, group or vector deeper.
void process_inside(const std::string& inside, const bracket& kind) {
    var_state& state = VAR_module();
    int& depth = kind.kind == VKIND_FUNC ? state.plevel : state.vlevel;
    depth++;
    VAR_process(inside);
    depth--;
}

/// Gives a vector's settings to its components, if it is drawn as contours of them.
void hand_down(int ind) {
    var_state& state = VAR_module();
    const VAR_data& vector = state.var[ind];
    if (vector.flag % 10 != VKIND_VECT || vector.type < VTYPE_CONT || vector.type > VTYPE_GVALUE) return;
    for (int i = ind + 1; i < state.varnum && state.var[i].flag == vector.flag - VKIND_VECT + VKIND_SUBREG; i++) {
        VAR_data& part = state.var[i];
        part.type = vector.type;
        if (part.units.empty()) part.units = vector.units;
        if (part.format.empty()) part.format = vector.format;
    }
}

/// A function, group or vector with the list in its brackets. False when the walk can't go on.
bool take_bracket(walk& list, const bracket& kind) {
    var_state& state = VAR_module();
    VAR_data* data = next_entry();
    if (data == nullptr) return false;
    const int ind = list.ind = state.varnum;
    data->flag = state.plevel * 10 + kind.kind;
    VAR_process_var(list.item(), 0);
    data->flag = state.plevel * 10 + kind.kind;
    VAR_base_push();
    if (state.refused) return false;
    state.varnum++;
    const auto is_vect_func = VAR_hooks().is_vect_func;
    if (kind.kind == VKIND_FUNC && is_vect_func != nullptr && is_vect_func(data->name) != 0) add_second_result(ind);

    const std::size_t close = closing(list.text, list.pos, kind);
    if (close == std::string::npos) {
        MESS_print(TRACE, "%s", kind.unmatched);
    } else {
        process_inside(list.text.substr(list.pos + 1, close - list.pos - 1), kind);
        hand_down(ind);
        list.go_behind(close);
    }
    state.base_ind--;
    return close != std::string::npos && !state.refused;
}

/// Joins the fields from `first` on with colons.
std::string join_fields(const std::vector<std::string>& fields, std::size_t first) {
    std::string text;
    for (std::size_t i = first; i < fields.size(); i++) text += (i > first ? ":" : "") + fields[i];
    return text;
}

void set_format(VAR_data& data, const std::vector<std::string>& fields, std::size_t first) {
    if (first < fields.size()) data.format = fit_text(join_fields(fields, first), FORMAT_SIZE);
}

/// Type that a word in a variable string asks for, -1 for another word. Where grids are drawn, values are grid values.
int wanted_type(const std::string& word) {
    const int type = VAR_dec_type(word);
    const int own = VAR_module().def_type;
    return type == VTYPE_VALUE && own >= VTYPE_GRID && own <= VTYPE_STRM ? VTYPE_GVALUE : type;
}

/// Units, type and format of an entry, from the fields from `first` on. A word of a type may stand where the units may.
/// A plot type chosen by option is stronger than the type in the string.
void set_settings(VAR_data& data, const std::vector<std::string>& fields, std::size_t first) {
    const int chosen = FLAG_get(FLAG_PLOT_TYPE);
    std::size_t off = first;
    if (data.flag != VKIND_KEYWORD && off < fields.size() && wanted_type(fields[off]) == -1) {
        data.units = fit_text(fields[off++], UNITS_SIZE);
    }
    if (off < fields.size() && wanted_type(fields[off]) != -1) {
        const int type = wanted_type(fields[off++]);
        if (data.flag == VKIND_KEYWORD || chosen == MISS || chosen == VTYPE_NONE) data.type = type;
    }
    set_format(data, fields, off);
}

/// True if the item so far ends in a word that takes a square bracket into the name.
bool ensemble_word(const walk& list) {
    const std::string item = list.item();
    const std::string word = item.substr(item.rfind(':') + 1);
    for (const char* name : ENSEMBLE_WORDS) {
        if (word == name) return true;
    }
    return false;
}

/// Square brackets behind an item. False when the walk can't go on.
bool take_params(walk& list) {
    const std::size_t close = list.text.find(']', list.pos);
    if (ensemble_word(list) && close != std::string::npos) {
        list.pos = close + 1;
        return true;
    }
    take_item(list);
    var_state& state = VAR_module();
    if (close == std::string::npos) {
        MESS_print(TRACE, "Unmatched []\n");
        return false;
    }
    std::string params = list.text.substr(list.pos + 1, close - list.pos - 1);
    strip_escape(params);
    if (state.plevel == 0 && list.ind >= 0 && list.ind < state.varnum) {
        set_settings(state.var[list.ind], parse_string(params, ':'), 0);
        hand_down(list.ind);
    }
    list.go_behind(close);
    return !state.refused;
}

/// Handles the character at the present place and moves on. False when the walk can't go on.
bool take_character(walk& list) {
    const char here = list.text[list.pos];
    if (!escaped(list.text, list.pos)) {
        for (const bracket& kind : BRACKETS) {
            if (here == kind.open) return take_bracket(list, kind);
        }
        if (here == '[') return take_params(list);
        if (here == ',') {
            take_item(list);
            list.go_behind(list.pos);
            return !VAR_module().refused;
        }
    }
    list.pos++;
    return true;
}

/// Type and flag of a keyword entry. False for another word.
bool set_keyword(VAR_data& data, const std::string& word) {
    for (const keyword& row : KEYWORDS) {
        if (stricmp(word.c_str(), row.word) != 0) continue;
        data.name = row.word;
        data.type = row.type;
        data.flag = VKIND_KEYWORD;
        return true;
    }
    return false;
}

/// Time and level of an entry, from the first two fields or inherited. Result: the number of fields taken.
std::size_t set_place(VAR_data& data, const std::vector<std::string>& fields) {
    if (fields.size() > 2) {
        const int tstat = VAR_dec_time(fields[0], &data.time);
        if (tstat != 0) {
            data.tstat = tstat;
            data.lstat = VAR_dec_level(fields[1], &data.ltype, &data.level);
            if (data.lstat == 0) refuse_level(fields[1]);
            return 2;
        }
    }
    if (data.time == MISS) data.tstat = VAR_dec_time("", &data.time);
    if (data.level == MISS) data.lstat = VAR_dec_level("", &data.ltype, &data.level);
    return 0;
}

/// The name of an entry: a macro, whose entries then stand in its place, or a variable or function. `flag` 0: what
/// stands before a bracket, which has set the entry's flag.
void set_name(VAR_data& data, const std::string& name, int flag) {
    std::string macro;
    const bool plain = !name.empty() && name[0] == '+';
    if (!plain && flag == 1 && data.name != fit_text(name, NAME_SIZE)) {
        data.name = fit_text(name, NAME_SIZE);
        if (VAR_dec_type(name) != -1) data.type = VAR_dec_type(name);
        if (VAR_lookup(name, macro) != 0) {
            VAR_base_push();
            if (VAR_module().refused) return;
            VAR_process(macro);
            VAR_module().base_ind--;
            return;
        }
    }
    if (flag == 1) data.flag = place_flag();
    VAR_dec_var(plain ? name.substr(1) : name, &data);
}

/// The optional file in front of a variable string; it is cut off.
std::string take_file(std::string& text) {
    if (strnicmp(text.c_str(), "fi:", 3) != 0) return "";
    const std::size_t end = text.find(':', 3);
    std::string file = text.substr(3, end == std::string::npos ? end : end - 3);
    text.erase(0, end == std::string::npos ? end : end + 1);
    return file;
}

/// What the outermost entries inherit: the chosen plot type, time and level.
void start_base() {
    var_state& state = VAR_module();
    state.base.fill(var_base{});
    state.base_ind = -1;
    var_base& base = state.base[0];
    base.type = FLAG_get(FLAG_PLOT_TYPE);
    base.tstat = VAR_dec_time("", &base.time);
    base.lstat = VAR_dec_level("", &base.ltype, &base.level);
    state.base_ind = 0;
}

void trace_list() {
    const var_state& state = VAR_module();
    if (MESS_check(TRACE) == 0) return;
    for (int i = 0; i < state.varnum; i++) {
        MESS_print(TRACE, "Var: %d -- ", i);
        VAR_print(TRACE, &state.var[i]);
    }
}

}  // namespace

void VAR_base_push() {
    var_state& state = VAR_module();
    if (state.base_ind + 1 >= BASE_MAX) refuse();
    const VAR_data* data = next_entry();
    if (data == nullptr) return;
    state.base[++state.base_ind] = {data->type, data->time, data->tstat, data->ltype, data->level, data->lstat};
}

int VAR_process_var(const std::string& str, int flag) {
    var_state& state = VAR_module();
    if (++state.items > ITEM_MAX) refuse();
    VAR_data* data = next_entry();
    if (data == nullptr) return 0;
    std::string text = str;
    strip_escape(text);
    std::vector<std::string> fields = parse_string(text, ':');
    if (fields.empty()) fields.emplace_back();

    std::size_t off = 1;
    if (!set_keyword(*data, fields[0])) {
        off = set_place(*data, fields);
        set_name(*data, fields[off++], flag);
        if (state.refused) return 0;
    }
    set_settings(*data, fields, off);
    return 0;
}

int VAR_process(const std::string& str) {
    var_state& state = VAR_module();
    walk list{str};
    bool whole = !state.refused;
    while (whole && list.pos < str.size()) whole = take_character(list);
    if (whole) {
        list.pos = str.size();
        if (list.start < list.pos) take_item(list);
    }
    return 0;
}

int VAR_setup(const char* filename, const std::string& var_str) {
    var_state& state = VAR_module();
    VAR_param_decode();
    VAR_init();
    std::string text = var_str;
    std::string file = take_file(text);
    if (file.empty() && filename != nullptr) file = filename;
    if (!file.empty()) VAR_open_file(file.c_str());

    state.varnum = state.plevel = state.vlevel = state.items = 0;
    state.refused = false;
    state.bad_level.clear();
    start_base();
    VAR_process(text);
    state.base_ind = -1;
    if (state.refused) {
        if (state.bad_level.empty()) {
            MESS_print(64, "VAR_setup: variable string is too long or too deep\n");
        } else {
            MESS_print(64, "Level can't be read: %s\n", state.bad_level.c_str());
        }
        state.refused = false;
        VAR_init();
        VAR_reset();
    }
    trace_list();
    if (state.varnum < 1) {
        MESS_print(TRACE, "Unable to determine variables\n");
        return 0;
    }
    return 1;
}

}  // namespace zav
