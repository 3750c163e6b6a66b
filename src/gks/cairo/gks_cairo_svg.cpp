// Texts of SVG. Cairo writes letters as outlines; behind them the same texts stand once more without paint, so that
// they can be searched and copied.

#include <algorithm>

#include "frame/string.h"
#include "gks/cairo/gks_cairo_state.h"

namespace zav {
namespace {

constexpr int DECIMALS = 2;  // of a point in a path
constexpr int NONE = -1;     // in front of a decimal point

struct State {
    std::string texts;
};
State state;

}  // namespace

std::string gcairo_svg_escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string gcairo_svg_short(std::string_view text) {
    constexpr std::string_view path = " d=\"";
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = text.find(path); at != std::string_view::npos; at = text.find(path)) {
        const std::size_t start = at + path.size();
        const std::size_t end = std::min(text.find('"', start), text.size());
        result.append(text.substr(0, start));
        int decimals = NONE;
        for (const char c : text.substr(start, end - start)) {
            const bool digit = c >= '0' && c <= '9';
            decimals = c == '.' ? 0 : !digit ? NONE : decimals == NONE ? NONE : decimals + 1;
            if (decimals <= DECIMALS) result += c;
        }
        text.remove_prefix(end);
    }
    return result.append(text);
}

void gcairo_svg_text(const std::string& utf8, const Gcairo_font& font, const cairo_matrix_t& matrix, double size,
                     double width) {
    state.texts += text_format("<text transform=\"matrix(%.5g,%.5g,%.5g,%.5g,%.2f,%.2f)\" font-size=\"%.2f\"",
                               matrix.xx, matrix.yx, matrix.xy, matrix.yy, matrix.x0, matrix.y0, size) +
                   text_format(" textLength=\"%.2f\" lengthAdjust=\"spacingAndGlyphs\"", width) + " font-family=\"" +
                   gcairo_svg_escaped(font.family) + "\"" + (font.bold ? " font-weight=\"bold\"" : "") +
                   (font.italic ? " font-style=\"italic\"" : "") + ">" + gcairo_svg_escaped(utf8) + "</text>\n";
}

std::string gcairo_svg_texts() {
    if (state.texts.empty()) return {};
    std::string group = "<g fill-opacity=\"0\" xml:space=\"preserve\">\n" + state.texts + "</g>\n";
    state.texts.clear();
    return group;
}

}  // namespace zav
