#include <algorithm>
#include <string_view>

#include "frame/menu.h"

namespace zav {
namespace {

/// One element of a pattern that fits a single character.
struct Element {
    std::string_view set;  // between the brackets, of a set
    char character = '\0';
    bool any = false;
};

/// Takes the element in front off the pattern.
Element take_element(std::string_view& pattern) {
    Element element;
    element.character = pattern.front();
    pattern.remove_prefix(1);
    element.any = element.character == '?' || element.character == '.';
    if (element.character == '[') {
        const std::size_t end = std::min(pattern.find(']'), pattern.size());
        element.set = pattern.substr(0, end);
        pattern.remove_prefix(std::min(end + 1, pattern.size()));
    }
    return element;
}

bool in_set(std::string_view set, char c) {
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (i + 2 < set.size() && set[i + 1] == '-') {
            if (c >= set[i] && c <= set[i + 2]) return true;
            i += 2;
        } else if (set[i] == c) {
            return true;
        }
    }
    return false;
}

bool element_fits(const Element& element, char c) {
    if (element.any) return true;
    return element.character == '[' ? in_set(element.set, c) : element.character == c;
}

/// Passes over the text up to the first character that fits the next element, or to its end.
void pass_over(std::string_view pattern, std::string_view& text) {
    if (pattern.empty()) {
        text = {};
        return;
    }
    const Element next = take_element(pattern);
    while (!text.empty() && !element_fits(next, text.front())) text.remove_prefix(1);
}

/// Whether the whole text fits an alternative.
bool alternative_fits(std::string_view pattern, std::string_view text) {
    while (!pattern.empty()) {
        if (pattern.front() == '*') {
            pattern.remove_prefix(std::min(pattern.find_first_not_of('*'), pattern.size()));
            pass_over(pattern, text);
            continue;
        }
        const Element element = take_element(pattern);
        if (text.empty() || !element_fits(element, text.front())) return false;
        text.remove_prefix(1);
    }
    return text.empty();
}

bool alternative_holds(std::string_view alternative, std::string_view text) {
    if (!alternative.empty() && alternative.front() == '~') return !alternative_fits(alternative.substr(1), text);
    return alternative_fits(alternative, text);
}

}  // namespace

int VAR_menu_display(const std::string& fstr, const std::string& ustr) {
    if (fstr.empty() || ustr.empty()) return 0;
    std::string_view rest = fstr;
    while (true) {
        const std::size_t bar = rest.find('|');
        if (alternative_holds(rest.substr(0, bar), ustr)) return 1;
        if (bar == std::string_view::npos) return 0;
        rest.remove_prefix(bar + 1);
    }
}

}  // namespace zav
