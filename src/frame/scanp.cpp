#include "frame/scanp.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "frame/mess.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr M_type TRACE = 0x80000000U;
constexpr int NO_WIDTH = 999;
constexpr int WORD_LIMIT = 80;
constexpr std::string_view WHITE = " \t\n\r";

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// One conversion of a pattern.
struct Conversion {
    char kind = '\0';
    bool store = true;
    bool at_most = false;  // the width is an upper limit
    int width = 0;         // 0: none was given
    std::optional<std::string_view> mark;
    std::string_view body;  // of a set or of alternatives
};

/// Text that a conversion takes, and what is in it.
struct Field {
    int taken = 0;
    std::string_view text;
    bool missing = false;
};

bool is_number(char kind) { return kind == 'd' || kind == 'D' || kind == 'f' || kind == 'F'; }

/// Reads the conversion behind a "%" and takes it off the pattern.
Conversion read_conversion(std::string_view& pat) {
    Conversion conv;
    const auto take = [&](char c) {
        if (pat.empty() || pat.front() != c) return false;
        pat.remove_prefix(1);
        return true;
    };
    conv.store = !take('*');
    conv.at_most = take('<');
    while (!pat.empty() && is_digit(pat.front())) {
        conv.width = std::min(conv.width * 10 + (pat.front() - '0'), INT_MAX / 20);
        pat.remove_prefix(1);
    }
    if (take('!')) {
        const std::size_t end = std::min(pat.find('!'), pat.size());
        conv.mark = pat.substr(0, end);
        pat.remove_prefix(std::min(end + 1, pat.size()));
    }
    if (pat.empty()) return conv;
    conv.kind = pat.front();
    pat.remove_prefix(1);
    if (conv.kind == '[' || conv.kind == '(') {
        const std::size_t end = std::min(pat.find(conv.kind == '[' ? ']' : ')'), pat.size());
        conv.body = pat.substr(0, end);
        pat.remove_prefix(std::min(end + 1, pat.size()));
    }
    return conv;
}

/// Whether a character is of a set, in which /A are the letters, /N the digits and // is a slash.
bool in_set(std::string_view set, char c) {
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (set[i] != '/' || i + 1 == set.size()) {
            if (set[i] == c) return true;
            continue;
        }
        ++i;
        if (set[i] == 'A' ? is_letter(c) : set[i] == 'N' ? is_digit(c) : set[i] == c) return true;
    }
    return false;
}

/// Whether a text conversion takes a character.
bool takes(const Conversion& conv, char c) {
    switch (conv.kind) {
        case 'N':
            return is_digit(c);
        case 'A':
            return is_letter(c);
        case 's':
            return WHITE.find(c) == std::string_view::npos;
        case 'w':
            return WHITE.find(c) != std::string_view::npos;
        case 'W':
            return c == ' ' || c == '\t' || c == '\r';
        case '[':
            if (!conv.body.empty() && conv.body.front() == '^') return !in_set(conv.body.substr(1), c);
            return in_set(conv.body, c);
        default:
            return true;  // S, c
    }
}

std::size_t count_digits(std::string_view text, std::size_t start) {
    std::size_t end = start;
    while (end < text.size() && is_digit(text[end])) ++end;
    return end - start;
}

/// Length of an exponent, 0 if there is none with digits.
std::size_t exponent_length(std::string_view text) {
    if (text.empty() || (text.front() != 'e' && text.front() != 'E')) return 0;
    const std::size_t sign = text.size() > 1 && (text[1] == '+' || text[1] == '-') ? 1 : 0;
    const std::size_t digits = count_digits(text, 1 + sign);
    return digits > 0 ? 1 + sign + digits : 0;
}

/// Length of the number at the start of the text, 0 if there is none.
std::size_t number_length(std::string_view text, bool with_fraction) {
    std::size_t end = !text.empty() && text.front() == '-' ? 1 : 0;
    std::size_t digits = count_digits(text, end);
    end += digits;
    if (with_fraction && end < text.size() && text[end] == '.') {
        const std::size_t behind = count_digits(text, end + 1);
        digits += behind;
        end += 1 + behind;
    }
    if (digits == 0) return 0;
    return with_fraction ? end + exponent_length(text.substr(end)) : end;
}

/// The number that stands in the text; D and F allow blanks on both sides.
std::optional<Field> match_number(const Conversion& conv, std::string_view text) {
    const bool padded = conv.kind == 'D' || conv.kind == 'F';
    std::size_t start = 0;
    while (padded && start < text.size() && text[start] == ' ') ++start;
    const std::size_t length = number_length(text.substr(start), conv.kind == 'f' || conv.kind == 'F');
    if (length == 0) return std::nullopt;
    std::size_t end = start + length;
    while (padded && end < text.size() && text[end] == ' ') ++end;
    return Field{static_cast<int>(end), text.substr(start, length)};
}

std::optional<Field> match_text(const Conversion& conv, std::string_view text) {
    std::size_t end = 0;
    while (end < text.size() && takes(conv, text[end])) ++end;
    if (end == 0) return std::nullopt;
    return Field{static_cast<int>(end), text.substr(0, end)};
}

std::optional<Field> match_alternative(const Conversion& conv, std::string_view text) {
    std::string_view rest = conv.body;
    while (true) {
        const std::size_t bar = rest.find('|');
        const std::string_view word = rest.substr(0, bar);
        if (text.substr(0, word.size()) == word) return Field{static_cast<int>(word.size()), word};
        if (bar == std::string_view::npos) break;
        rest.remove_prefix(bar + 1);
    }
    if (conv.at_most && conv.width == 0 && !conv.mark) return Field{};
    return std::nullopt;
}

/// What a conversion takes at the start of the text, by the rule of its width.
std::optional<Field> match(const Conversion& conv, std::string_view text) {
    if (conv.kind == '(') return match_alternative(conv, text);
    int limit = conv.width > 0 ? conv.width : conv.kind == 'c' ? 1 : NO_WIDTH;
    if (conv.kind == 's') limit = std::min(limit, WORD_LIMIT);
    if (conv.kind == 'S' && conv.width == 0) limit = INT_MAX;
    const std::string_view part = text.substr(0, static_cast<std::size_t>(limit));
    const std::optional<Field> field = is_number(conv.kind) ? match_number(conv, part) : match_text(conv, part);
    const bool exact = conv.width > 0 && !conv.at_most;
    if (field && exact && field->taken < conv.width) return std::nullopt;
    return field;
}

void store_field(const Conversion& conv, const Field& field, const scan_target& target) {
    const std::string text(field.text);
    if (int* const* number = std::get_if<int*>(&target); number != nullptr && *number != nullptr) {
        const long value = field.missing ? long{MISS} : std::strtol(text.c_str(), nullptr, 10);
        **number = static_cast<int>(std::clamp(value, long{INT_MIN}, long{INT_MAX}));
    } else if (float* const* real = std::get_if<float*>(&target); real != nullptr && *real != nullptr) {
        **real = field.missing ? FMISS : std::strtof(text.c_str(), nullptr);
    } else if (std::string* const* word = std::get_if<std::string*>(&target);
               word != nullptr && *word != nullptr && !is_number(conv.kind)) {
        **word = text;
    }
}

/// One pass over a pattern.
class Scan {
  public:
    Scan(parse_param& param, std::initializer_list<scan_target> targets) : param_(param), targets_(targets) {}

    void run(std::string_view pat) {
        while (!pat.empty()) {
            trace(pat);
            const char c = pat.front();
            pat.remove_prefix(1);
            if (c == '%' ? !convert(read_conversion(pat)) : !take_literal(c)) return;
        }
        param_.done = 1;
    }

  private:
    std::string_view text() const {
        return std::string_view(param_.ptr).substr(static_cast<std::size_t>(param_.off + param_.len));
    }

    void trace(std::string_view pat) const {
        if (!MESS_check(TRACE)) return;
        MESS_print(TRACE, "     :%s:%.50s:\n", std::string(pat).c_str(), std::string(text().substr(0, 50)).c_str());
    }

    bool take_literal(char c) {
        const std::string_view rest = text();
        std::size_t taken = 0;
        if (c == ' ') {
            taken = std::min(rest.find_first_not_of(WHITE), rest.size());
        } else if (!rest.empty() && rest.front() == c) {
            taken = 1;
        }
        param_.len += static_cast<int>(taken);
        return taken > 0;
    }

    /// The target of this conversion; an empty one if none is left.
    scan_target next_target() {
        return next_ < targets_.size() ? *(targets_.begin() + next_++) : scan_target(static_cast<int*>(nullptr));
    }

    bool convert(const Conversion& conv) {
        if (std::string_view("ndDfFNAsScwW[(").find(conv.kind) == std::string_view::npos || conv.kind == '\0')
            return true;
        const scan_target target = conv.store ? next_target() : scan_target(static_cast<int*>(nullptr));
        if (conv.kind == 'n') {
            accept(conv, {}, target);
            if (int* const* count = std::get_if<int*>(&target); count != nullptr && *count != nullptr)
                **count = param_.len;
            return true;
        }
        if (const std::optional<Field> field = match(conv, text())) {
            accept(conv, *field, target);
            return true;
        }
        if (!conv.mark) return false;
        const std::string_view mark = *conv.mark;
        if (text().substr(0, mark.size()) == mark) accept(conv, {static_cast<int>(mark.size()), {}, true}, target);
        return true;
    }

    void accept(const Conversion& conv, const Field& field, const scan_target& target) {
        store_field(conv, field, target);
        param_.len += field.taken;
        ++param_.matched;
        if (conv.store) ++param_.assigned;
    }

    parse_param& param_;
    std::initializer_list<scan_target> targets_;
    std::size_t next_ = 0;
};

}  // namespace

int scanp_list(parse_param* param, const char* pat, std::initializer_list<scan_target> targets) {
    param->len = param->assigned = param->matched = param->done = 0;
    if (pat == nullptr || *pat == '\0' || param->off < 0 || param->off >= param->length) return -1;
    Scan(*param, targets).run(pat);
    MESS_print(TRACE, "SCANP:%.50s:%s:%d:%d:%d:%d:%d\n", scanp_str(param), pat, param->off, param->len, param->assigned,
               param->matched, param->done);
    return param->matched;
}

void scanp_set(parse_param* param, const std::string& str) {
    *param = parse_param();
    param->ptr = str.c_str();  // up to a zero byte, which no pattern could pass
    param->length = static_cast<int>(param->ptr.size());
}

int scanp_get_off(const parse_param* param) { return param->off; }

void scanp_off(parse_param* param, int off) { param->off = std::clamp(off, 0, param->length); }

void scanp_inc_off(parse_param* param, int off) {
    const long place = long{param->off} + off;
    param->off = static_cast<int>(std::clamp(place, 0L, long{param->length}));
}

void scanp_inc(parse_param* param) { scanp_inc_off(param, param->len); }

const char* scanp_str(const parse_param* param) { return param->ptr.c_str() + param->off; }

char scanp_char(const parse_param* param, int off) {
    const long place = long{param->off} + off;
    return place >= 0 && place < param->length ? param->ptr[static_cast<std::size_t>(place)] : '\0';
}

void scanp_replace(parse_param* param, int off, char ch) {
    const long place = long{param->off} + off;
    if (place >= 0 && place < param->length) param->ptr[static_cast<std::size_t>(place)] = ch;
}

int scanp_search(parse_param* param, const std::string& str) {
    const std::size_t place = param->ptr.find(str);
    if (place == std::string::npos) return 0;
    param->off = static_cast<int>(place);
    return 1;
}

void scanp_print(const parse_param* param) {
    MESS_print(TRACE, "scanp:%s:%d:%d:%d:%d\n", scanp_str(param), param->off, param->len, param->assigned,
               param->matched);
}

}  // namespace zav
