// Palettes of the lookup file "zav.pal", and which of them colours what.

#include "plot/page/palette.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "files/files.h"
#include "files/lookup_lines.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "var/var_tool.h"

namespace zav {
namespace {

struct State {
    LookupLines file;
};
State state;

using Words = std::vector<std::string>;

/// Words of the file's lines of a kind that have at least `count` of them.
std::vector<Words> lines_of(const char* kind, std::size_t count) {
    std::vector<Words> found;
    state.file.load(FILE_add_path(RES_get("file_path"), "zav.pal"));
    for (const std::string& line : state.file.lines()) {
        Words words = split_blanks(line);
        if (words.size() >= count && words[0] == kind) found.push_back(std::move(words));
    }
    return found;
}

bool names_variable(const std::string& list, int variable) {
    if (list == "*") return true;
    const Words names = parse_string(list, ',');
    return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        const int number = VAR_search_var_num(name);
        return number != 0 && number == variable;
    });
}

/// A component between two colours as it can be written in 8 bits.
int component(float low, float high, float part) {
    return static_cast<int>(std::lround(255.0F * (low + (high - low) * part)));
}

}  // namespace

Palette PAL_find(const std::string& name) {
    Palette palette;
    for (const Words& words : lines_of("palette", 3)) {
        if (stricmp(words[1], name) != 0) continue;
        for (std::size_t i = 2; i < words.size(); ++i) {
            RGB color;
            if (CLR_parse("#" + words[i], &color)) palette.push_back(color);
        }
        break;
    }
    return palette;
}

Field_palette PAL_of_field(int variable) {
    for (const Words& words : lines_of("field", 3)) {
        if (!names_variable(words[1], variable)) continue;
        Field_palette field;
        field.palette = words[2];
        field.diverges = words.size() > 3;
        if (field.diverges) field.middle = std::strtof(words[3].c_str(), nullptr);
        if (words.size() > 4) field.units = words[4];
        return field;
    }
    return {};
}

std::string PAL_of_lines(bool paper) {
    for (const Words& words : lines_of("lines", 3)) {
        if (words[1] == (paper ? "paper" : "screen")) return words[2];
    }
    return "";
}

int PAL_color(const Palette& palette, float part) {
    if (palette.empty()) return CLR_NONE;
    const auto last = static_cast<float>(palette.size() - 1);
    const float place = std::clamp(std::isfinite(part) ? part : 0.0F, 0.0F, 1.0F) * last;
    const auto below = static_cast<std::size_t>(place);
    const RGB& low = palette[below];
    const RGB& high = palette[std::min(below + 1, palette.size() - 1)];
    const float rest = place - static_cast<float>(below);
    return CLR_get_ind(text_format("#%02x%02x%02x", component(low.red, high.red, rest),
                                   component(low.grn, high.grn, rest), component(low.blu, high.blu, rest)));
}

}  // namespace zav
