#include <cstdlib>
#include <set>
#include <vector>

#include "files/time_code.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

int label_type = 0;  // style while no plot layer holds one

constexpr int LABEL_MINIMAL = -2;  // time and level left out, abbreviations for names
constexpr int LABEL_SIMPLE = -1;   // abbreviations for names
constexpr int LABEL_NORMAL = 0;    // long names
constexpr int LABEL_COMPLETE = 1;  // and the format text

struct style_word {
    const char* word;  // its first four letters count
    int type;
};
constexpr style_word STYLES[] = {
    {"labmin", LABEL_MINIMAL}, {"labsimp", LABEL_SIMPLE}, {"labnorm", LABEL_NORMAL}, {"labcomp", LABEL_COMPLETE}};

struct kind_text {
    int kind;
    const char* text;
};
constexpr kind_text KINDS[] = {{2, "rng "}, {3, "avg "},   {4, "acc "},   {5, "dif "}, {6, "max "},
                               {7, "min "}, {13, "iavg "}, {23, "uavg "}, {18, "var "}};

/// Level types whose label is a fixed text.
struct level_text {
    int ltype;
    const char* text;
};
constexpr level_text LEVEL_TEXTS[] = {
    {0, ""},
    {2, "Cloud base"},
    {3, "Cloud top"},
    {4, "Frz level"},
    {5, "LCL"},
    {6, "Max wind"},
    {7, "Tropopause"},
    {8, "Top"},
    {9, ""},
    {10, ""},
    {102, "Sea level"},
    {200, "Whole atms"},
    {204, "Top frz level"},
    {206, "Grid cld bot lvl"},
    {207, "Grid cld top lvl"},
    {209, "Bound lyr cld bot"},
    {210, "Bound lyr cld top"},
    {211, "Bound lyr cld lyr"},
    {212, "Low cld bot lvl"},
    {213, "Low cld top lvl"},
    {214, "Low cld lyr"},
    {215, "Cld ceiling"},
    {222, "Mid cld bot lvl"},
    {223, "Mid cld top lvl"},
    {224, "Mid cld lyr"},
    {232, "High cld bot lvl"},
    {233, "High cld top lvl"},
    {234, "High cld lyr"},
    {242, "Conv cld bot lvl"},
    {243, "Conv cld top lvl"},
    {244, "Conv cld lyr"},
    {245, "Wet bulb zero lvl"},
    {246, "Max eq pot temp lvl"},
    {247, "Equilibrium lvl"},
    {248, "Shal Conv cld bot lvl"},
    {249, "Shal Conv cld top lvl"},
    {251, "Deep Conv cld bot lvl"},
    {252, "Deep Conv cld top lvl"},
    {253, "Supercool liq wat bot"},
    {254, "Supercool liq wat top"},
};

/// Bottom values of a pressure layer that name no pressure.
constexpr int BOTTOM_SURFACE = 1900;
constexpr int BOTTOM_TROPOPAUSE = 1950;
constexpr int BOTTOM_NUMBERED = 2000;
constexpr int BOTTOM_NUMBERED_FIRST = 2001;
/// First number of a height layer above the tropopause.
constexpr int ABOVE_TROPOPAUSE = 99500;

std::string pressure_layer(int level) {
    switch (level) {
        case 510:
            return "1000-500 mb";
        case 508:
            return "850-500 mb";
        case 599:
            return "SFC-500 mb";
        default:
            break;
    }
    if (level < 1001) return "";
    const int high = 10 * (level / 1000);
    const int low = 10 * (level % 1000);
    if (low == BOTTOM_SURFACE || low == BOTTOM_NUMBERED) return text_format("sfc-%d mb", high);
    if (low == BOTTOM_TROPOPAUSE) return text_format("trop-%d mb", high);
    if (low < BOTTOM_NUMBERED_FIRST) return text_format("%d-%d mb", low, high);
    return text_format("sfc[%d]-%d mb", low - BOTTOM_NUMBERED, high);
}

std::string height_layer(int level) {
    const int high = 100 * (level / 1000);
    const int low = 100 * (level % 1000);
    return low == ABOVE_TROPOPAUSE ? text_format("trop+%d m", high) : text_format("%d-%d m", low, high);
}

std::string surface(int level) {
    if (level == 0) return "Surface";
    return text_format("Surface[%d]", level > BOTTOM_NUMBERED ? level - BOTTOM_NUMBERED : level);
}

/// How the number of a level, or the two of a layer, stand in a label.
enum class shape {
    whole,          // the number
    whole_pair,     // the two numbers
    padded_pair,    // the two, three characters wide
    hundreds_pair,  // the two in hundreds
    fraction,       // ten-thousandths
    fraction_pair,  // hundredths
};

struct level_number {
    int ltype;
    shape form;
    const char* behind;  // text behind the numbers
};
constexpr level_number LEVEL_NUMBERS[] = {
    {100, shape::whole, " mb"},         {103, shape::whole, " m"},
    {105, shape::whole, " m AG"},       {106, shape::hundreds_pair, " m AG"},
    {107, shape::fraction, " sigma"},   {108, shape::fraction_pair, " sigma"},
    {109, shape::whole, " lev"},        {111, shape::whole, " cm BG"},
    {112, shape::whole_pair, " cm BG"}, {113, shape::whole, " K"},
    {114, shape::padded_pair, " K"},    {115, shape::whole, " mb AG"},
    {116, shape::whole_pair, " mb AG"}, {117, shape::whole, "*10^-6 Km2/kgs"},
    {119, shape::fraction, " Eta"},     {120, shape::fraction_pair, " Eta"},
};

std::string number_text(shape form, int level) {
    const int high = level / 1000;
    const int low = level % 1000;
    switch (form) {
        case shape::whole_pair:
            return text_format("%d-%d", low, high);
        case shape::padded_pair:
            return text_format("%3d-%3d", low, high);
        case shape::hundreds_pair:
            return text_format("%d-%d", 100 * low, 100 * high);
        case shape::fraction:
            return text_format("%3.2f", level / 10000.0);
        case shape::fraction_pair:
            return text_format("%3.2f-%3.2f", low / 100.0, high / 100.0);
        default:
            return text_format("%d", level);
    }
}

std::string level_label(int ltype, int level) {
    if (ltype == 1) return surface(level);
    if (ltype == 101) return pressure_layer(level);
    if (ltype == 104) return height_layer(level);
    for (const level_number& row : LEVEL_NUMBERS) {
        if (row.ltype == ltype && level == MISS) return "";
        if (row.ltype == ltype) return number_text(row.form, level) + row.behind;
    }
    for (const level_text& row : LEVEL_TEXTS) {
        if (row.ltype == ltype) return row.text;
    }
    static std::set<int> told;
    if (ltype > 0 && told.insert(ltype).second) MESS_print(192, "VAR_make_datatype: no ltype: %d\n", ltype);
    return "";
}

/// Length and kind of a range; nothing for a single time.
std::string time_label(int time) {
    constexpr int LAST_OF_SPANS = 9;  // kinds above it are ranges over several forecasts; their end is told
    const TIME_range range = TIME_split(time);
    if (range.kind <= 1) return "";
    const long span = range.kind <= LAST_OF_SPANS ? std::labs(range.end - range.begin) : range.end;
    std::string text = TIME_text(span, range.unit) + " ";
    for (const kind_text& row : KINDS) {
        if (row.kind == range.kind) text += row.text;
    }
    return text;
}

/// Time and level with a blank behind, as far as the label style wants them.
std::string label_start(int time, int ltype, int level) {
    const int style = VAR_label_type();
    if (style < LABEL_SIMPLE || style > LABEL_COMPLETE) return "";
    std::string text = VAR_make_datalevel(time, ltype, level);
    if (!text.empty()) text += " ";
    return text;
}

/// Label of an entry. A variable that nobody knows has the name that was typed.
std::string label_of(const VAR_data& data) {
    if (data.var[0] != 0 || data.name.empty()) {
        return VAR_make_datatype(data.time, data.ltype, data.level, data.var[0], data.units);
    }
    const std::string units = data.units.empty() ? "" : " (" + data.units + ")";
    return label_start(data.time, data.ltype, data.level) + data.name + units;
}

}  // namespace

int VAR_label_type() { return VAR_hooks().get_label_type != nullptr ? VAR_hooks().get_label_type() : label_type; }

std::string VAR_make_datalevel(int time, int ltype, int level) { return time_label(time) + level_label(ltype, level); }

std::string VAR_make_datatype(int time, int ltype, int level, int variable, const std::string& units) {
    return label_start(time, ltype, level) + VAR_str(variable, units);
}

std::string VAR_make_var_form_datatype(int ind) { return VAR_make_vardata_form_datatype(VAR_get_var(ind)); }

std::string VAR_make_vardata_form_datatype(const VAR_data* var) {
    if (var == nullptr) return "";
    std::string text = label_of(*var);
    if (!var->format.empty() && VAR_label_type() >= LABEL_COMPLETE) text += " - " + var->format;
    return text;
}

std::string VAR_make_devtype(int time, int ltype, int level, const std::string& variable, const std::string& units) {
    return label_start(time, ltype, level) + variable + " (" + units + ")";
}

void VAR_param_decode() {
    constexpr int LETTERS = 4;
    std::vector<std::string> words;
    RES_getvals("plot_param", words);
    for (const std::string& word : words) {
        for (const style_word& row : STYLES) {
            if (strnicmp(word.c_str(), row.word, LETTERS) != 0) continue;
            label_type = row.type;
            if (VAR_hooks().set_label_type != nullptr) VAR_hooks().set_label_type(row.type);
        }
    }
}

void VAR_print_info(M_type lev, const VAR_data* data) {
    if (data == nullptr) return;
    const std::string text = label_of(*data);
    MESS_print(lev, "%s\n", text.c_str());
}

}  // namespace zav
