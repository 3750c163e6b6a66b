// The set of bands of a contour plot: colours, styles and levels from a list, a level file or the colour table.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {

namespace {

constexpr std::array<const char*, 15> DEFAULT_COLORS = {"Magenta", "LMagenta", "Blue",   "LBlue", "Cyan",
                                                        "LCyan",   "Green",    "LGreen", "Brown", "Yellow",
                                                        "Red",     "LRed",     "DGray",  "LGray", "White"};

/// Longest line of a contour level file.
constexpr int LEVEL_LINE = 80;

struct State {
    int entries = 0;  ///< entries decoded so far
};
State state;

void add_entry(const Gattribs& attrib, float level, const std::string& label) {
    if (state.entries >= CONT_LEVELS) return;
    cont.fill_attrib[state.entries] = attrib;
    cont.cont_value[state.entries] = level;
    cont.cont_label[state.entries] = fit_text(label, CONT_LABEL_LENGTH + 1);
    state.entries++;
}

/// The number that `text` begins with. False if it begins with none.
bool leading_number(const std::string& text, float* value) {
    char* end = nullptr;
    *value = std::strtof(text.c_str(), &end);
    return end != text.c_str() && std::isfinite(*value);
}

/// The text of a ":la=" field, in any case, or `label` without one.
std::string label_field(const std::string& text, const std::string& label) {
    for (std::size_t at = text.find(':'); at != std::string::npos; at = text.find(':', at + 1)) {
        if (strnicmp(text.substr(at + 1), "la=", 3) != 0) continue;
        return text.substr(at + 4, text.find(':', at + 1) - at - 4);
    }
    return label;
}

/// "first-last": one entry for each colour index of the span, without a level.
void decode_range(const std::string& text, std::size_t dash) {
    Gattribs first;
    Gattribs last;
    ATTRIB_init(&first);
    ATTRIB_init(&last);
    ATTRIB_parse(text.substr(0, dash).c_str(), &first);
    ATTRIB_parse(text.substr(dash + 1).c_str(), &last);
    const int step = last.color < first.color ? -1 : 1;
    const long span = std::labs(static_cast<long>(last.color) - first.color) + 1;
    for (long i = 0; i < std::min<long>(span, CONT_LEVELS); i++) {
        add_entry(first, FMISS, "");
        first.color += step;
    }
}

/// Missing levels between two present ones in equal steps.
void fill_in_levels(int count) {
    int start = 0;
    for (int end = 1; end < count; end++) {
        if (cont.cont_value[end] == FMISS) continue;
        const float rise = cont.cont_value[end] - cont.cont_value[start];
        const auto span = static_cast<float>(end - start);
        for (int i = start + 1; i < end; i++) {
            cont.cont_value[i] = cont.cont_value[start] + static_cast<float>(i - start) * rise / span;
        }
        start = end;
    }
    // What stands behind the last level goes on in the steps before it.
    const float step = start > 0 ? cont.cont_value[start] - cont.cont_value[start - 1] : 1.0F;
    for (int i = start + 1; i < count; i++) cont.cont_value[i] = cont.cont_value[i - 1] + step;
}

/// The entries of a contour level file. False, with a warning, without any: the chart gets other colours than asked
/// for.
bool read_level_file(const std::string& entry) {
    const std::string name = FILE_add_path(RES_get("file_path"), entry);
    file_ptr file;
    // The folder "letter" has the files that ship with other colours than they had.
    if (PLT_letter()) file = FILE_open(FILE_add_path(RES_get("file_path"), "letter/" + entry), "r");
    if (!file) file = FILE_open(name, "r");
    std::string line;
    while (file && state.entries < CONT_LEVELS && fgetnline(file.get(), line, LEVEL_LINE) >= 0) {
        if (line.empty() || line[0] == '@' || line[0] == '#') continue;
        wstrim_string(line);
        CONT_decode_fill_color(line);
    }
    if (state.entries > 0) return true;
    const char* fault = file ? "No levels in contour level file" : "Unable to read contour level file";
    MESS_print(MESS_WARN, "CONT_set_fill_colors: %s: %s\n", fault, name.c_str());
    ZAV_note(STATUS_LAYER);
    return false;
}

/// The bands are the first colours of the colour table.
void take_table_colors(int count) {
    count = std::min(count, CONT_LEVELS);
    cont.color_num = count;
    cont.num_cont = count;
    for (int i = 0; i < count; i++) {
        cont.fill_attrib[i].color = i;
        CONT_fill_attrib_init(&cont.fill_attrib[i]);
    }
    cont.cont_value[0] = FMISS;
    cont.color_fill_set = 1;
    if (!PLT_letter()) cont_spread_table(count);
}

/// The list that the resource gives in place of `string`, if it gives one.
std::string chosen_list(const char* string, int flag) {
    const std::string given = string != nullptr ? string : "";
    if (flag != 0) return given;
    const char* resource = RES_get("color_fill");
    if (resource == nullptr || *resource == '\0') return given;
    const bool keep = stricmp(resource, "miss") == 0 || strnicmp(resource, "def", 3) == 0;
    return keep ? given : resource;
}

void end_set() {
    // A list of levels keeps room for its end.
    const bool listed = state.entries > 0 && cont_has_values();
    const int count = listed ? std::min(state.entries, CONT_LEVELS - 1) : state.entries;
    cont.fill_attrib[count].color = -2;
    cont.cont_value[count] = FMISS;
    if (cont_has_values()) fill_in_levels(count);
    cont.color_num = count;
    cont.num_cont = count;
    if (!cont_has_values()) return;
    cont.intrvl = count > 1 ? cont.cont_value[1] - cont.cont_value[0] : 1.0F;
    cont.grid_min = cont.cont_value[0];
    cont.grid_max = cont.cont_value[count - 1];
}

}  // namespace

int CONT_fill_attrib_init(Gattribs* attrib) {
    attrib->width = FMISS;
    attrib->height = FMISS;
    attrib->expan = FMISS;
    attrib->style = MISS;
    attrib->font = MISS;
    attrib->fill_pat = MISS;
    return 0;
}

int CONT_decode_fill_color(const std::string& str) {
    const std::size_t begin = str.find_first_not_of(' ');
    if (begin == std::string::npos) return 0;
    const std::string text = str.substr(begin);

    const std::size_t dash = text.find('-', 1);
    if (dash != std::string::npos) {
        decode_range(text, dash);
        return 0;
    }
    Gattribs attrib;
    ATTRIB_init(&attrib);
    float level = FMISS;
    const bool numbered = leading_number(text, &level);
    const std::size_t colon = text.find(':');
    if (numbered && colon != std::string::npos) {
        ATTRIB_parse(text.substr(colon + 1).c_str(), &attrib);
        add_entry(attrib, level, label_field(text, text.substr(0, colon)));
        return 0;
    }
    ATTRIB_parse(text.c_str(), &attrib);
    add_entry(attrib, numbered ? level : FMISS, label_field(text, ""));
    return 0;
}

int CONT_set_fill_colors(const char* string, int flag) {
    if (cont.color_fill_set != 0) return -1;
    const std::string list = chosen_list(string, flag);
    std::vector<std::string> entries;
    if (!list.empty()) entries = parse_string(list, ',');
    state.entries = 0;
    cont.color_fill_set = 1;
    const bool is_file = entries.size() == 1 && entries[0].find('-') == std::string::npos;
    if (is_file && cont_spread_named(entries[0])) return 0;
    if (is_file && !read_level_file(entries[0])) entries.clear();
    if (entries.empty()) {
        if (CLR_get_num_fill() > 0) {
            take_table_colors(CLR_get_num_fill());
            return -1;
        }
        if (!PLT_letter() && cont_spread_usual()) return 0;
        entries.assign(DEFAULT_COLORS.begin(), DEFAULT_COLORS.end());
    }
    if (state.entries == 0) {
        for (const std::string& entry : entries) CONT_decode_fill_color(entry);
    }
    end_set();
    return 0;
}

int CONT_get_fill_attrib_ind(int ind, Gattribs* attrib) {
    *attrib = cont.fill_attrib[std::clamp(ind, 0, CONT_LEVELS)];
    return 0;
}

int CONT_get_fill_attrib(float value, Gattribs* attrib) {
    ATTRIB_init(attrib);
    attrib->color = -1;
    if (value == FMISS) return 0;
    if (cont.min_cut != FMISS && value < cont.min_cut) return 0;
    if (cont.max_cut != FMISS && value > cont.max_cut) return 0;
    if (cont.cbase == FMISS) cont.cbase = cont.base;
    if (!cont_has_values()) {
        *attrib = cont.fill_attrib[cont_band_of(value)];
        return 0;
    }
    if (value < cont.cont_value[0]) return 0;
    const int last = std::clamp(cont.num_cont - 1, 0, CONT_LEVELS - 1);
    int band = 0;
    while (band < last && !(cont.cont_value[band] <= value && cont.cont_value[band + 1] > value)) band++;
    *attrib = cont.fill_attrib[band];
    return 0;
}

}  // namespace zav
