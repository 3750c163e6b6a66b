#include <array>
#include <cctype>
#include <cstdlib>
#include <span>

#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"
#include "gks/gks_text.h"
#include "plot/page/colors.h"

namespace zav {
namespace {

struct Named_value {
    const char* name;
    int value;
};

constexpr std::array<Named_value, 15> PATTERN_NAMES{{
    {"sol", 0},
    {"st", 1},
    {"ost", 2},
    {"rst", 3},
    {"lst", 4},
    {"vln", 5},
    {"||", 5},
    {"dlr", 6},
    {"\\\\", 6},
    {"drl", 7},
    {"//", 7},
    {"hln", 8},
    {"--", 8},
    {"hat", 9},
    {"XX", 9},
}};

/// Dotted patterns, light to dark.
constexpr std::array<Named_value, 11> SHADE_NAMES{{
    {"clr", 10},
    {"0%", 10},
    {"1%", 11},
    {"2%", 12},
    {"3%", 13},
    {"4%", 14},
    {"5%", 15},
    {"6%", 16},
    {"7%", 17},
    {"8%", 18},
    {"9%", 19},
}};

/// Beginnings of marker names, in the order of testing.
constexpr std::array<Named_value, 18> MARKER_NAMES{{
    {"pnt", 1},
    {".", 1},
    {"plus", 2},
    {"+", 2},
    {"star", 3},
    {"*", 3},
    {"crcl", 4},
    {"circle", 4},
    {"o", 4},
    {"x", 5},
    {"sqr", 6},
    {"square", 6},
    {"#", 6},
    {"tri", 7},
    {"^", 7},
    {"itri", 9},
    {"v", 9},
    {"dot", 8},
}};

constexpr std::array<Named_value, 5> STYLE_NAMES{{
    {"sol", 1},
    {"dsh", 2},
    {"lsdsh", 3},
    {"llsdsh", 4},
    {"dot", 5},
}};

/// Value of a name that is the whole of `str`, else the number that `str` is.
int whole_name(const std::string& str, std::span<const Named_value> names) {
    for (const Named_value& entry : names) {
        if (stricmp(str, entry.name) == 0) return entry.value;
    }
    return text_to_int(str);
}

float number(const std::string& text) { return std::strtof(text.c_str(), nullptr); }

void set_color(const std::string& text, Gattribs& attrib) { attrib.color = CLR_get_ind(text); }
void set_width(const std::string& text, Gattribs& attrib) { attrib.width = number(text); }
void set_style_name(const std::string& text, Gattribs& attrib) { attrib.style = whole_name(text, STYLE_NAMES); }
void set_style(const std::string& text, Gattribs& attrib) { attrib.style = text_to_int(text); }
void set_font_name(const std::string& text, Gattribs& attrib) { attrib.font = gget_font_index(text); }
void set_font(const std::string& text, Gattribs& attrib) { attrib.font = text_to_int(text); }
void set_pattern_name(const std::string& text, Gattribs& attrib) { attrib.fill_pat = ATTR_parse_fill_pat(text); }
void set_height(const std::string& text, Gattribs& attrib) { attrib.height = number(text); }
void set_expan(const std::string& text, Gattribs& attrib) { attrib.expan = number(text); }
void set_pattern(const std::string& text, Gattribs& attrib) {
    attrib.fill_pat = !text.empty() && text[0] == 'M' ? MISS : text_to_int(text);
}

struct Field {
    const char* key;
    void (*set)(const std::string& text, Gattribs& attrib);  ///< takes the text behind the key
};

/// Fields of an attribute string, in the order of testing: the long forms before the one-letter forms.
constexpr std::array<Field, 15> FIELDS{{
    {"co=", set_color},
    {"wi=", set_width},
    {"st=", set_style_name},
    {"fo=", set_font_name},
    {"fi=", set_pattern_name},
    {"fp=", set_pattern_name},
    {"sc=", set_height},
    {"hi=", set_height},
    {"te=", set_expan},
    {"w", set_width},
    {"s", set_style},
    {"t", set_font},
    {"f", set_pattern},
    {"h", set_height},
    {"e", set_expan},
}};

void parse_field(const std::string& word, Gattribs& attrib) {
    for (const Field& field : FIELDS) {
        const std::string key = field.key;
        if (strnicmp(word, key, static_cast<int>(key.size())) != 0) continue;
        field.set(word.substr(key.size()), attrib);
        return;
    }
}

}  // namespace

int ATTR_parse_fill_pat(const std::string& str) {
    for (const Named_value& entry : PATTERN_NAMES) {
        if (stricmp(str, entry.name) == 0) return entry.value;
    }
    return whole_name(str, SHADE_NAMES);
}

int ATTR_parse_marker(const std::string& str) {
    for (const Named_value& entry : MARKER_NAMES) {
        const std::string name = entry.name;
        if (strnicmp(str, name, static_cast<int>(name.size())) == 0) return entry.value;
    }
    return text_to_int(str);
}

int ATTRIB_parse(const std::string& str, Gattribs* attrib) {
    const std::vector<std::string> words = parse_string(str, ':');
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const bool color = i == 0 && !word.empty() && word.find('=') == std::string::npos;
        if (color) {
            set_color(word, *attrib);
        } else if (!word.empty()) {
            parse_field(word, *attrib);
        }
    }
    return 0;
}

int ATTRIB_init(Gattribs* attrib) {
    *attrib = Gattribs{};
    return 0;
}

int ATTRIB_update(Gattribs* attr1, const Gattribs* attr2) {
    if (attr2->color != MISS) attr1->color = attr2->color;
    if (attr2->width != FMISS) attr1->width = attr2->width;
    if (attr2->height != FMISS) attr1->height = attr2->height;
    if (attr2->expan != FMISS) attr1->expan = attr2->expan;
    if (attr2->style != MISS) attr1->style = attr2->style;
    if (attr2->fill_pat != MISS) attr1->fill_pat = attr2->fill_pat;
    if (attr2->font != MISS) attr1->font = attr2->font;
    return 0;
}

int ATTRIB_get(const std::string& resrc, const std::string& def, Gattribs* attrib) {
    ATTRIB_parse(def, attrib);
    const char* value = RES_get(resrc);
    if (value == nullptr || *value == '\0') return 0;
    ATTRIB_parse(value, attrib);
    return 1;
}

int ATTRIB_print(const Gattribs* attrib) {
    MESS_print(MESS_PRINT, "Color: %d\n", attrib->color);
    MESS_print(MESS_PRINT, "Style: %d\n", attrib->style);
    MESS_print(MESS_PRINT, "Height: %5.2f\n", static_cast<double>(attrib->height));
    MESS_print(MESS_PRINT, "Width: %5.2f\n", static_cast<double>(attrib->width));
    MESS_print(MESS_PRINT, "Expansion: %5.2f\n", static_cast<double>(attrib->expan));
    MESS_print(MESS_PRINT, "Fill: %d\n", attrib->fill_pat);
    MESS_print(MESS_PRINT, "Font: %d\n", attrib->font);
    return 0;
}

}  // namespace zav
