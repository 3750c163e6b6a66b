#include "var/var_state.h"

namespace zav {
namespace {

var_state state;
var_hooks hooks;
const std::string EMPTY;

bool in_list(int i) { return i >= 0 && i < VAR_MAX; }

}  // namespace

var_state& VAR_module() { return state; }

var_hooks& VAR_hooks() { return hooks; }

void VAR_data_init(VAR_data* data) {
    if (data != nullptr) *data = VAR_data{};
}

void VAR_init() { state.var.fill(VAR_data{}); }

void VAR_copy(VAR_data* dat2, const VAR_data* dat1) {
    if (dat1 == nullptr || dat2 == nullptr) return;
    *dat2 = *dat1;
    dat2->type = 0;
    dat2->format.clear();
    dat2->units.clear();
}

void VAR_set_def_type(int val) { state.def_type = val; }

int VAR_get_num() { return state.varnum; }
void VAR_set_num(int num) { state.varnum = num < 0 ? 0 : (num > VAR_MAX ? VAR_MAX : num); }
void VAR_reset() { state.varnum = 0; }

std::array<VAR_data, VAR_MAX>& VAR_get_vars() { return state.var; }
VAR_data* VAR_get_var(int i) { return in_list(i) ? &state.var[i] : nullptr; }

const std::string& VAR_get_name(int i) { return in_list(i) ? state.var[i].name : EMPTY; }
const std::string& VAR_get_units(int i) { return in_list(i) ? state.var[i].units : EMPTY; }
const std::string& VAR_get_format(int i) { return in_list(i) ? state.var[i].format : EMPTY; }
int VAR_get_time(int i) { return in_list(i) ? state.var[i].time : MISS; }
int VAR_get_type(int i) { return in_list(i) ? state.var[i].type : MISS; }
void VAR_set_type(int i, int val) {
    if (in_list(i)) state.var[i].type = val;
}
int VAR_get_flag(int i) { return in_list(i) ? state.var[i].flag : 0; }
void VAR_set_flag(int i, int val) {
    if (in_list(i)) state.var[i].flag = val;
}
std::string VAR_get_level_key(int i) { return std::to_string(in_list(i) ? state.var[i].level : MISS); }
std::string VAR_get_time_key(int i) { return std::to_string(VAR_get_time(i)); }

std::vector<int> VAR_unknown() {
    std::vector<int> unknown;
    for (int i = 0; i < state.varnum; i++) {
        if (VAR_is_fit_GRID(i) != 0 && state.var[i].var[0] == 0) unknown.push_back(i);
    }
    return unknown;
}

void VAR_print(M_type lev, const VAR_data* data) {
    if (data == nullptr) return;
    MESS_print(lev, "V: %-10s U: %-10s FH: %7ld LT: %6d L: %7ld VN: %6d T: %5s F: %2d FM: %s\n", data->name.c_str(),
               data->units.c_str(), static_cast<long>(data->time), data->ltype, static_cast<long>(data->level),
               data->var[0], VAR_print_type(data->type), data->flag, data->format.c_str());
}

void VAR_print_all(M_type lev) {
    for (int i = 0; i < state.varnum; i++) VAR_print(lev, &state.var[i]);
}

}  // namespace zav
