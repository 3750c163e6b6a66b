#include "plot/page/colors.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "files/files.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks_colr.h"
#include "gks/zavgks.h"

namespace zav {
namespace {

/// Longest line of a colour table file.
constexpr int LINE_SIZE = 100;
/// Size of a colour's name with its end.
constexpr std::size_t NAME_SIZE = 20;
/// Entries below this one keep their names when a table is read.
constexpr int FIRST_USER_ENTRY = 16;

struct State {
    std::array<RGB, CLR_COUNT> colors;
    int num_colors = 0;
    int num_fill = 0;
};
State state;

const std::string no_name;

/// What reading a table file found.
struct Table_file {
    int ind;              ///< index of the next entry
    int highest;          ///< highest index met
    int fill_count = -1;  ///< entries before "END", -1 without one
};

bool has_resource(const char* name) {
    const char* value = RES_get(name);
    return value != nullptr && *value != '\0';
}

bool is_digit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

float in_range(float value) { return value >= 0.0F ? std::min(value, 1.0F) : 0.0F; }

/// Reads `count` fields of `width` digits from the start of `text`; false unless all are numbers.
bool read_fields(const std::string& text, std::size_t width, int base, std::array<int, 3>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (text.size() < (i + 1) * width) return false;
        const char* first = text.data() + i * width;
        const auto [end, err] = std::from_chars(first, first + width, values[i], base);
        if (err != std::errc() || end != first + width || values[i] < 0) return false;
    }
    return true;
}

void set_components(RGB& color, const std::array<int, 3>& values) {
    color.red = in_range(static_cast<float>(values[0] / 255.0));
    color.grn = in_range(static_cast<float>(values[1] / 255.0));
    color.blu = in_range(static_cast<float>(values[2] / 255.0));
}

/// One line of a table: an optional number, a name, and three floats or "#" with three hexadecimal pairs. A line that
/// can't be read gives a black entry without a name.
RGB parse_entry(const std::string& line) {
    RGB color;
    std::size_t pos = line[0] == '-' || line[0] == '+' ? 1 : 0;
    if (pos >= line.size() || !is_digit(line[pos])) pos = 0;
    while (pos < line.size() && is_digit(line[pos])) ++pos;
    std::array<char, NAME_SIZE> name{};
    float red = 0.0F;
    float grn = 0.0F;
    float blu = 0.0F;
    int used = 0;
    const int num = std::sscanf(line.c_str() + pos, "%19s%n %f %f %f", name.data(), &used, &red, &grn, &blu);
    if (num < 1) return color;
    std::array<int, 3> values{};
    const std::size_t hash = line.find_first_not_of(' ', pos + static_cast<std::size_t>(used));
    const bool hex =
        hash != std::string::npos && line[hash] == '#' && read_fields(line.substr(hash + 1), 2, 16, values);
    if (!hex && num < 4) return color;
    color.name = name.data();
    if (hex) {
        set_components(color, values);
    } else {
        color.red = in_range(red);
        color.grn = in_range(grn);
        color.blu = in_range(blu);
    }
    return color;
}

void read_table_file(std::FILE* file, Table_file& table) {
    const int first = table.ind;
    std::string line;
    while (fgetnline(file, line, LINE_SIZE) >= 0) {
        wsstrip_string(line);
        fill_string(line, '\t', ' ');
        trim_string(line);
        line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
        if (table.ind >= CLR_COUNT) continue;
        table.highest = table.ind;
        if (!line.empty() && line[0] == '#') continue;
        if (stricmp(line, "END") == 0) {
            table.fill_count = table.ind - first;
            continue;
        }
        state.colors[table.ind++] = parse_entry(line);
    }
}

/// The entry nearest to a colour, for a table without room.
int nearest_entry(float red, float grn, float blu) {
    int best = CLR_NONE;
    float least = 0.0F;
    for (int i = 0; i < state.num_colors; ++i) {
        const RGB& color = state.colors[i];
        const float diff = std::fabs(color.red - red) + std::fabs(color.grn - grn) + std::fabs(color.blu - blu);
        if (best != CLR_NONE && diff >= least) continue;
        best = i;
        least = diff;
    }
    return best;
}

struct Named_index {
    const char* name;
    int ind;
};

/// Names that stand for no entry of the table.
constexpr std::array<Named_index, 13> SPECIAL_NAMES{{
    {"end", CLR_END},
    {"none", CLR_NONE},
    {"off", CLR_NONE},
    {"back", CLR_NONE},
    {"pblk", 500},
    {"pbblk", 501},
    {"ptblk", 502},
    {"pwht", 503},
    {"pbwht", 504},
    {"ptwht", 505},
    {"pgry", 506},
    {"pbgry", 507},
    {"ptgry", 508},
}};

}  // namespace

bool CLR_parse(const std::string& text, RGB* color) {
    const bool hex = text.size() == 7;
    if ((!hex && text.size() != 10) || text[0] != '#') return false;
    const std::string digits = text.substr(1);
    std::array<int, 3> values{};
    if (!(hex ? read_fields(digits, 2, 16, values) : read_fields(digits, 3, 10, values))) return false;
    set_components(*color, values);
    return true;
}

void CLR_install() {
    gset_color_table({CLR_get_ind, CLR_get_rgb});
    GPH_set_color_table({CLR_read_table, CLR_get_num, CLR_get_rgb});
}

int CLR_read_table(const char* filename) {
    const bool named = filename != nullptr && *filename != '\0';
    const bool by_resource = has_resource("color_table");
    const std::string list = named ? filename : by_resource ? RES_get("color_table") : "zav.clr";
    for (int i = FIRST_USER_ENTRY; i < CLR_COUNT; ++i) state.colors[i].name.clear();
    bool first = true;
    for (const std::string& name : parse_string(list, ',')) {
        const bool sets_fill = first && filename == nullptr && by_resource;
        const int start = first ? 0 : state.num_colors;
        first = false;
        const file_ptr file = FILE_open(FILE_add_path(RES_get("file_path"), name), "r");
        if (!file) continue;
        Table_file table{start, start - 1};
        read_table_file(file.get(), table);
        state.num_colors = table.highest + 1;
        if (sets_fill) state.num_fill = table.fill_count >= 0 ? table.fill_count : std::max(table.highest, 0);
    }
    return 0;
}

int CLR_clear_table() {
    state.num_colors = 0;
    return 0;
}

int CLR_add(const std::string& name, float red, float grn, float blu) {
    if (state.num_colors >= CLR_COUNT) return nearest_entry(red, grn, blu);
    const int ind = state.num_colors++;
    state.colors[ind] = {fit_text(name, NAME_SIZE), red, grn, blu};
    GPH_set_color(ind, red, grn, blu);
    return ind;
}

int CLR_get_ind(const std::string& name) {
    if (name.empty()) return CLR_NONE;
    for (const Named_index& special : SPECIAL_NAMES) {
        if (stricmp(name, special.name) == 0) return special.ind;
    }
    for (int i = 0; i < state.num_colors; ++i) {
        if (stricmp(name, state.colors[i].name) == 0) return i;
    }
    RGB color;
    if (CLR_parse(name, &color)) return CLR_add(name, color.red, color.grn, color.blu);
    return is_digit(name[0]) ? text_to_int(name) : CLR_NONE;
}

const std::string& CLR_get_name(int ind) {
    return ind >= 0 && ind < state.num_colors ? state.colors[ind].name : no_name;
}

int CLR_get_rgb(int ind, float* red, float* grn, float* blu) {
    *red = *grn = *blu = 0.0F;
    if (state.num_colors == 0 || ind < 0) return -1;
    const RGB& color = state.colors[std::min(ind, state.num_colors - 1)];
    *red = color.red;
    *grn = color.grn;
    *blu = color.blu;
    return 0;
}

int CLR_get_num() { return state.num_colors; }

int CLR_get_num_fill() { return state.num_fill; }

}  // namespace zav
