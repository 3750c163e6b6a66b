#include "files/unittool.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "files/files.h"
#include "files/lookup_lines.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

/// One line of the lookup file.
struct UnitLine {
    std::string from;
    std::string to;
    float scale = 1.0F;
    float offset = 0.0F;
};

struct State {
    LookupLines file;
    std::string in;  // the last pair, and what was found for it
    std::string out;
    UnitConversion last;
    bool has_last = false;
};
State state;

/// Reads a number at `at`, which moves behind it. Words such as "inf" are no numbers here.
bool read_number(const std::string& text, std::size_t& at, float& value) {
    std::size_t start = at;
    if (start < text.size() && text[start] == '+') start++;
    std::size_t digit = start;
    if (digit < text.size() && text[digit] == '-' && digit == at) digit++;
    if (digit >= text.size() || !(text[digit] == '.' || (text[digit] >= '0' && text[digit] <= '9'))) return false;
    const auto read = std::from_chars(text.data() + start, text.data() + text.size(), value);
    if (read.ec != std::errc()) return false;
    at = read.ptr - text.data();
    return true;
}

/// A unit text cut into factor and name.
struct UnitText {
    float factor = 1.0F;
    std::string name;
};

UnitText split_unit(const std::string& text) {
    UnitText unit;
    std::size_t at = 0;
    float number = 1.0F;
    if (read_number(text, at, number)) {
        std::size_t behind = at + 1;
        float power = 1.0F;
        if (at < text.size() && text[at] == '^' && read_number(text, behind, power)) {
            number = std::pow(number, power);
            at = behind;
        }
        // A factor that can't be undone is no factor.
        unit.factor = std::isfinite(number) && number != 0.0F ? number : 1.0F;
    } else if (text.starts_with('-')) {
        unit.factor = -1.0F;
        at = 1;
    }
    at = std::min(text.find_first_not_of(' ', at), text.size());
    unit.name = text.substr(at);
    return unit;
}

UnitLine read_unit_line(const std::string& line) {
    std::vector<std::string> words = split_blanks(line);
    words.resize(3);
    UnitLine entry{words[0], words[1]};
    const std::string& rule = words[2];
    std::size_t at = 1;
    float scale = 1.0F;
    float offset = 0.0F;
    if (!rule.starts_with('*') || !read_number(rule, at, scale)) return entry;
    entry.scale = scale;
    if (at >= rule.size() || (rule[at] != '+' && rule[at] != '-')) return entry;
    const float sign = rule[at] == '-' ? -1.0F : 1.0F;
    if (read_number(rule, ++at, offset)) entry.offset = sign * offset;
    return entry;
}

/// The lines of the lookup file. False without the file.
bool load_table() {
    const std::string path = FILE_add_path(RES_get("file_path"), "units.lup");
    if (state.file.load(path)) return true;
    MESS_print(0x80000000U, "Unable to open units file: %s\n", path.c_str());
    return false;
}

/// Whether a line may be of a unit, without cutting it into words: the file has thousands.
bool begins_with(const std::string& line, const std::string& name) {
    const std::size_t start = line.find_first_not_of(" \t");
    return start != std::string::npos &&
           strnicmp(line.c_str() + start, name.c_str(), static_cast<int>(name.size())) == 0;
}

std::string with_fill(const std::string& text, char from, char to) {
    std::string filled = text;
    fill_string(filled, from, to);
    return filled;
}

/// Scale and offset by the lookup file, if it holds the pair.
void look_up(const std::string& from, const std::string& to, UnitConversion& conversion) {
    for (const std::string& text : state.file.lines()) {
        if (!begins_with(text, from)) continue;
        const UnitLine line = read_unit_line(text);
        if (stricmp(line.from, from) != 0 || stricmp(line.to, to) != 0) continue;
        conversion.scale = line.scale;
        conversion.offset = line.offset;
        conversion.kind = UnitConversion::Kind::lookup;
        return;
    }
}

}  // namespace

float UnitConversion::operator()(float value) const {
    if (value == FMISS) return value;
    switch (kind) {
        case Kind::keep:
            return value;
        case Kind::scale:
            return ifac * value / ofac;
        case Kind::lookup:
        case Kind::unknown:
            return (offset + scale * ifac * value) / ofac;
        default:
            return 0.0F;
    }
}

UnitConversion UNIT_find(const std::string& iunit, const std::string& ounit) {
    UnitConversion conversion;
    const std::string in = with_fill(iunit, '_', ' ');
    const std::string out = with_fill(ounit, '_', ' ');
    if (stricmp(in, out) == 0 || (!in.empty() && out.empty())) return conversion;

    const UnitText from = split_unit(in);
    const UnitText to = split_unit(out);
    conversion.ifac = from.factor;
    conversion.ofac = to.factor;
    if (stricmp(from.name, to.name) == 0) {
        conversion.kind = UnitConversion::Kind::scale;
        return conversion;
    }
    if (!load_table()) {
        conversion.kind = UnitConversion::Kind::none;
        return conversion;
    }
    conversion.kind = UnitConversion::Kind::unknown;
    look_up(with_fill(from.name, ' ', '_'), with_fill(to.name, ' ', '_'), conversion);
    return conversion;
}

float UNIT_cvt(float value, const std::string& iunit, const std::string& ounit) {
    if (value == FMISS) return value;
    if (!state.has_last || iunit != state.in || ounit != state.out) {
        state.last = UNIT_find(iunit, ounit);
        state.in = iunit;
        state.out = ounit;
        // Without the file a later call looks for it again.
        state.has_last = state.last.kind != UnitConversion::Kind::none;
    }
    return state.last(value);
}

int UNIT_scale(const std::string& in, float scale, const std::string& mstr, std::string& out) {
    const UnitText unit = split_unit(in);
    out = text_format("%.0e %s%s", static_cast<double>(unit.factor * scale), unit.name.c_str(), mstr.c_str());
    return 0;
}

void UNIT_parse(const std::string& str, std::string& var, std::string& units) {
    const std::size_t open = str.find('(');
    var = str.substr(0, open);
    units.clear();
    if (open != std::string::npos && open > 0) units = str.substr(open + 1, str.find(')', open) - open - 1);
    trim_string(var);
}

void UNIT_change(std::string& str, const std::string& units) {
    std::string var;
    std::string old_units;
    UNIT_parse(str, var, old_units);
    str = text_format("%s (%s)", var.c_str(), units.c_str());
}

}  // namespace zav
