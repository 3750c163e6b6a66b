// What plot formats, plot parameters and the user tell the wind layer.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "plot/contour/cont.h"
#include "plot/page/colors.h"
#include "plot/wind/vect_state.h"

namespace zav {

Vect_state vect;

namespace {

/// Room for a plot format.
constexpr std::size_t FORMAT_SIZE = 100;

/// Types that stand for a wind plot whose kind isn't decided.
constexpr int PLOT_ASKED = 10;

float read_float(const char* text) { return std::strtof(text, nullptr); }

bool starts_with(const std::string& text, const std::string& prefix) {
    return strnicmp(text, prefix, static_cast<int>(prefix.size())) == 0;
}

void take_skip(const char* value) {
    vect.xskip = vect.yskip = std::max(text_to_int(value), 1);
    vect.skip_given = true;
}

/// The letter way knows bars of winds by the plot parameter alone.
void take_bar(int bar) {
    if (!PLT_letter()) CONT_set_bar(bar);
}

/// A whole field of a plot format.
struct Format_word {
    const char* word;
    int type;       ///< type that it names, MISS for none
    void (*act)();  ///< what else it does, null for nothing
};
constexpr std::array<Format_word, 8> FORMAT_WORDS = {{
    {"vect", VECT_VECTORS, nullptr},
    {"stream", VECT_STREAMLINES, nullptr},
    {"strm", VECT_STREAMLINES, nullptr},
    {"barb", VECT_BARBS, nullptr},
    {"vbar", MISS, [] { VECT_set_vect(1); }},
    {"nolr", MISS, [] { FLAG_setplot(PLOT_TEXT_LR, 0); }},
    {"bar", MISS, [] { take_bar(3); }},
    {"nobar", MISS, [] { take_bar(-2); }},
}};

/// A field with a value.
struct Format_value {
    const char* prefix;
    void (*act)(const char* value);
};
constexpr std::array<Format_value, 7> FORMAT_VALUES = {{
    {"sk=", take_skip},
    {"sc=", [](const char* value) { vect.scale = read_float(value); }},
    {"ss=", [](const char* value) { vect.arrow_scale = read_float(value); }},
    {"in=", [](const char* value) { vect.intrvl = read_float(value); }},
    {"cb=", [](const char* value) { vect.base = read_float(value); }},
    {"mn=", [](const char* value) { vect.min_cut = read_float(value); }},
    {"mx=", [](const char* value) { vect.max_cut = read_float(value); }},
}};

void take_arrow_scale(const char* value) {
    vect.arrow_scale = read_float(value);
    if (!(vect.arrow_scale > 0.0F)) vect.arrow_scale = 1.0F;
}

/// Two steps, or one that serves both ways.
void take_steps(const char* value) {
    char* end = nullptr;
    int x = vect.xskip;
    int y = vect.yskip;
    const auto read = [&end](const char* text, int* step) {
        const long number = std::strtol(text, &end, 10);
        if (end == text) return false;
        *step = static_cast<int>(std::clamp<long>(number, 1, 1000000));
        return true;
    };
    if (!read(value, &x)) return;
    if (*end != ':' || !read(end + 1, &y)) y = x;
    vect.xskip = x;
    vect.yskip = y;
    vect.skip_given = true;
}

/// A word of the resource "plot_param"; `skip` characters stand in front of the value of a prefix.
struct Param_word {
    const char* word;
    bool prefix;
    std::size_t skip;
    void (*act)(const char* value);
};
constexpr std::array<Param_word, 8> PARAM_WORDS = {{
    {"vect", false, 0, [](const char*) { VECT_set_vect(1); }},
    {"vbar", false, 0, [](const char*) { VECT_set_vect(1); }},
    {"uvgrid", false, 0, [](const char*) { vect.uvgrid = 1; }},
    {"uvew", false, 0, [](const char*) { vect.uvgrid = 0; }},
    {"strm_sc", true, 8, take_arrow_scale},
    {"wv_skip", true, 8, take_steps},
    {"bar", false, 0, [](const char*) { CONT_set_bar(1); }},
    {"nobar", false, 0, [](const char*) { CONT_set_bar(-1); }},
}};

/// An answer to the question for the type: a whole word, or its first letter.
struct Answer {
    const char* word;
    int type;
};
constexpr std::array<Answer, 5> ANSWERS = {{
    {"none", VECT_NONE},
    {"vect", VECT_VECTORS},
    {"barb", VECT_BARBS},
    {"stream", VECT_STREAMLINES},
    {"strm", VECT_STREAMLINES},
}};
constexpr std::array<Answer, 3> FIRST_LETTERS = {{
    {"sS", VECT_STREAMLINES},
    {"bB", VECT_BARBS},
    {"yY", VECT_STREAMLINES},
}};

int ask_type() {
    std::string answer;
    ZAV_prompts("Vectors (V) or Streamlines (S): ", answer, 10);
    for (const Answer& known : ANSWERS) {
        if (stricmp(answer, known.word) == 0) return known.type;
    }
    for (const Answer& known : FIRST_LETTERS) {
        if (!answer.empty() && std::string(known.word).find(answer[0]) != std::string::npos) return known.type;
    }
    return VECT_VECTORS;
}

}  // namespace

int VECT_init() {
    if (vect.type_set == 0) vect.vect_type = MISS;
    vect.intrvl = FMISS;
    vect.base = FMISS;
    vect.min_cut = FMISS;
    vect.max_cut = FMISS;
    return 0;
}

int VECT_prompt_type() {
    int type = vect.vect_type;
    if (type == MISS || type == VECT_ANY || type == PLOT_ASKED) {
        type = FLAG_get(FLAG_PLOT_TYPE);
        if (type < 1 && FLAG_batch() != 0) type = VECT_VECTORS;
    }
    if (type < VECT_VECTORS || type > VECT_STREAMLINES) type = ask_type();
    VECT_set_type(type);
    vect.type_set = 0;
    return type;
}

int VECT_format_decode_type() {
    int type = MISS;
    if (vect.plot_type == VECT_STREAMLINES || vect.plot_type == VECT_VECTORS) type = vect.plot_type;
    for (const std::string& field : parse_string(vect.format, ':')) {
        for (const Format_word& word : FORMAT_WORDS) {
            if (stricmp(field, word.word) != 0) continue;
            if (word.type != MISS) type = word.type;
            if (word.act != nullptr) word.act();
        }
        for (const Format_value& value : FORMAT_VALUES) {
            if (starts_with(field, value.prefix)) value.act(field.c_str() + std::string(value.prefix).size());
        }
    }
    if (type != MISS) VECT_set_type(type);
    return 0;
}

int VECT_format_decode_attrib(Gattribs* attr) {
    for (const std::string& field : parse_string(vect.format, ':')) {
        if (field.size() < 3) continue;
        const char* value = field.c_str() + 3;
        if (starts_with(field, "co=")) attr->color = CLR_get_ind(value);
        if (starts_with(field, "wi=")) attr->width = read_float(value);
        if (starts_with(field, "st=")) attr->style = text_to_int(value);
    }
    return 0;
}

int VECT_param_decode() {
    std::vector<std::string> items;
    RES_getvals("plot_param", items);
    for (const std::string& item : items) {
        for (const Param_word& word : PARAM_WORDS) {
            if (word.prefix ? !starts_with(item, word.word) : stricmp(item, word.word) != 0) continue;
            word.act(item.size() > word.skip ? item.c_str() + word.skip : "");
        }
    }
    return 0;
}

int VECT_set_format(int type, const char* form) {
    vect.plot_type = type;
    vect.format = form != nullptr ? fit_text(form, FORMAT_SIZE) : "";
    return 0;
}

int VECT_grid(const float* grx, const float* gry) {
    vect.grdx = grx;
    vect.grdy = gry;
    return 0;
}

int VECT_set_scale(float scale) {
    vect.scale = scale;
    return 0;
}

int VECT_set_intrvl(float intrvl) {
    vect.intrvl = intrvl;
    return 0;
}

float VECT_get_intrvl() { return vect.intrvl; }

int VECT_set_max(float max) {
    vect.grid_max = max;
    return 0;
}

int VECT_set_type(int type) {
    vect.vect_type = type;
    vect.type_set = 1;
    return 0;
}

int VECT_get_type() { return vect.vect_type; }

int VECT_set_vect(int val) {
    PLT_layer_requests().vector_key = val;
    return 0;
}

int VECT_get_vect() { return PLT_layer_requests().vector_key; }

float VECT_get_vector_size() { return vect.vect_size; }

int VECT_set_base(float base) {
    vect.base = base;
    return 0;
}

}  // namespace zav
