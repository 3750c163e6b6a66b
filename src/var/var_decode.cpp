#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "frame/flag.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "var/var_state.h"

namespace zav {
namespace {

/// Codes that mark ensemble products in a variable number.
constexpr std::int64_t ENS_MEAN = 19000000;
constexpr std::int64_t ENS_DEV = 19001000;
constexpr std::int64_t ENS_CONTROL = 19300000;
constexpr std::int64_t ENS_LOW = 19320000;
constexpr std::int64_t ENS_HIGH = 19340000;
constexpr std::int64_t ENS_MEMBER_STEP = 1000;
constexpr std::int64_t PROB_VARIABLE_STEP = 10000;

/// Kinds of ensemble probability, with the codes for a value of either sign.
struct prob_kind {
    char sign;
    std::int64_t positive;
    std::int64_t negative;
};
constexpr prob_kind PROBS[] = {
    {'<', 1910001000, 1910006000}, {'>', 1910002000, 1910007000}, {'^', 1910003000, 1910008000}};

/// An ensemble form taken from a name: what is to be done to the number of the variable.
struct ensemble {
    bool used = false;
    std::int64_t factor = 1;
    std::int64_t add = 0;
    std::string abbr;  // the variable behind the bracket
};

bool begins(const std::string& text, const std::string& word) { return text.compare(0, word.size(), word) == 0; }

/// What stands in the square brackets of a text, and what is behind them. False without a closing bracket.
bool cut_brackets(const std::string& text, std::string& inside, std::string& behind) {
    const std::size_t open = text.find('[');
    const std::size_t close = text.find(']', open);
    if (close == std::string::npos) return false;
    inside = text.substr(open + 1, close - open - 1);
    behind = text.substr(close + 1);
    return true;
}

/// The code that a member text "-N", "+N" or "N" adds; false for another text.
bool member_code(const std::string& inside, std::int64_t& add) {
    const bool sign = !inside.empty() && (inside[0] == '-' || inside[0] == '+');
    const std::string digits = sign ? inside.substr(1) : inside;
    if (digits.empty() || !string_is_num_len(digits, static_cast<int>(digits.size()))) return false;
    const std::int64_t member = text_to_int(digits);
    add = !sign ? ENS_CONTROL : member * ENS_MEMBER_STEP + (inside[0] == '-' ? ENS_LOW : ENS_HIGH);
    return true;
}

/// The code that a threshold text "<V", ">V" or "^V" adds; false for another text.
bool prob_code(const std::string& inside, std::int64_t& add) {
    for (const prob_kind& row : PROBS) {
        if (inside.empty() || inside[0] != row.sign) continue;
        const key_number value = VAR_read_number(inside.substr(1));
        if (!value.found || !std::isfinite(value.value)) return false;
        const int coded = float2int(value.value);
        add = coded < 0 ? row.negative - coded : row.positive + coded;
        return true;
    }
    return false;
}

ensemble read_ensemble(const std::string& text) {
    ensemble ens;
    std::string inside;
    if (!begins(text, "ens") || !cut_brackets(text, inside, ens.abbr)) return ens;
    if (begins(text, "ensmean[")) {
        ens.used = true;
        ens.add = ENS_MEAN;
    } else if (begins(text, "ensdev[")) {
        ens.used = true;
        ens.add = ENS_DEV;
    } else if (begins(text, "ensprob[")) {
        ens.used = prob_code(inside, ens.add);
        ens.factor = PROB_VARIABLE_STEP;
    } else if (begins(text, "ens[")) {
        ens.used = member_code(inside, ens.add);
    }
    return ens;
}

bool in_range(int value, int low, int high) { return value >= low && value <= high; }

/// A chosen plot type that says how grids are drawn.
bool draws_grids(int type) {
    return in_range(type, VTYPE_LINE, VTYPE_GVALUE) || in_range(type, VTYPE_VECT, VTYPE_STRM);
}

/// The plot type of an entry, from its kind, the types around it and the chosen plot type.
void choose_type(const std::string& name, VAR_data& data) {
    const var_state& state = VAR_module();
    const int chosen = FLAG_get(FLAG_PLOT_TYPE);
    const bool chosen_grid = in_range(chosen, VTYPE_GRID, VTYPE_STRM);
    const int kind = data.flag % 10;
    const int inherited = state.base_ind >= 0 ? state.base[state.base_ind].type : MISS;
    const auto is_math_func = VAR_hooks().is_math_func;
    const int func_type = kind == VKIND_FUNC && is_math_func != nullptr ? is_math_func(name) : 0;
    if (kind == VKIND_VECT) {
        data.type = chosen_grid ? chosen : VTYPE_GRID;
    } else if (func_type != 0) {
        data.type = chosen_grid ? chosen : func_type;
    } else if (draws_grids(chosen)) {
        data.type = chosen;
    } else if (in_range(inherited, VTYPE_GRID, VTYPE_STRM)) {
        data.type = VTYPE_GRID;
    } else if (data.type == MISS) {
        data.type = state.def_type;
    }
}

/// A number as text: digits, and a point if `point`. In front a minus is allowed.
bool is_number(const std::string& text, bool point) {
    std::size_t digits = 0;
    std::size_t points = 0;
    for (std::size_t i = !text.empty() && text[0] == '-' ? 1 : 0; i < text.size(); i++) {
        if (std::isdigit(static_cast<unsigned char>(text[i])) != 0) {
            digits++;
        } else if (text[i] == '.' && point) {
            points++;
        } else {
            return false;
        }
    }
    return digits > 0 && points < 2;
}

/// True for a number that can't be that of a variable: one with a point or a minus.
bool is_plain_value(const std::string& text) {
    return is_number(text, true) && text.find_first_of(".-") != std::string::npos;
}

/// Variable number of a text that is one, alone or as labels show it, "v1198"; 0 for another.
int variable_number(const std::string& text) {
    const bool marked = text.size() > 1 && std::tolower(static_cast<unsigned char>(text[0])) == 'v';
    const std::string digits = marked ? text.substr(1) : text;
    return is_number(digits, false) && digits[0] != '-' ? text_to_int(digits) : 0;
}

void add_ensemble(const ensemble& ens, VAR_data& data) {
    const std::int64_t coded = static_cast<std::int64_t>(data.var[0]) * ens.factor + ens.add;
    data.var[0] = coded == VAR_to_int(static_cast<double>(coded)) ? static_cast<int>(coded) : 0;
}

}  // namespace

int VAR_dec_var(const std::string& str, VAR_data* data) {
    data->name = fit_text(str, NAME_SIZE);
    const bool argument = data->flag >= 10 && data->flag % 10 < VKIND_FUNC;
    if (!str.empty() && str[0] == '#') {
        data->type = VTYPE_CONST;
        return 1;
    }
    if (argument && is_plain_value(str)) {
        data->name = fit_text("#" + str, NAME_SIZE);
        data->type = VTYPE_CONST;
        return 1;
    }
    choose_type(str, *data);
    if (str.empty()) return 0;

    const ensemble ens = read_ensemble(str);
    const std::size_t dash = str.find('-');
    const bool whole = dash == std::string::npos || VAR_find_abbr(str) != nullptr;
    const std::string rest = ens.used ? ens.abbr : (whole ? str : str.substr(dash + 1));
    const int num = variable_number(rest);
    data->var[0] = num;
    if (num != 0) {
        const VAR_desc* desc = VAR_find_num(num);
        if (desc != nullptr) data->name = fit_text(desc->abbr, NAME_SIZE);
    } else {
        const VAR_desc* desc = VAR_find_abbr(rest);
        if (desc == nullptr && !rest.empty() && rest[0] == '+') desc = VAR_find_abbr(rest.substr(1));
        if (desc != nullptr) data->var = desc->ind;
    }
    if (ens.used && data->var[0] != 0) add_ensemble(ens, *data);
    return data->var[0];
}

}  // namespace zav
