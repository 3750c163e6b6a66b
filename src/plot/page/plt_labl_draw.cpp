/// Border and labels on the page.

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_colr.h"
#include "gks/gks_ws.h"
#include "plot/page/colors.h"
#include "plot/page/plt_labl.h"
#include "plot/page/plt_state.h"
#include "plot/page/plt_titles.h"

namespace zav {
namespace {

/// Least space under the plot that takes labels.
constexpr float LEAST_SPACE = 0.005F;
constexpr float MOST_STEP = 0.03F;   ///< from line to line, in heights of the plot
constexpr float TEXT_SHARE = 0.75F;  ///< of a line
constexpr float STACK_SHARE = 0.6F;  ///< of each of several, so that what hangs down doesn't reach the next
constexpr float GAP = 0.2F;          ///< to the plot, in lines
constexpr float MARGIN = 0.01F;      ///< at the ends of a line, in widths of the plot
/// What the numbers of a colour bar may take beyond the plot's middle, and where the vector key begins, in widths of
/// it.
constexpr float BAR_NUMBERS = 0.03F;
constexpr float KEY_START = 0.6F;
/// More lines than these wouldn't be read.
constexpr int MOST_LINES = 60;

/// Positions that hold one text of the resource "label".
using Done = std::array<bool, PLT_LABELS>;

constexpr std::array<const char*, PLT_LABELS> POSITION_NAMES{"ul", "uc", "ur", "ll", "lc", "lr"};

/// Stores one item of the resource "label".
void take_label_item(const std::string& item, Done* done) {
    const auto is_position = [&item](const char* name) { return strnicmp(item, name, 2) == 0; };
    const auto found = std::find_if(POSITION_NAMES.begin(), POSITION_NAMES.end(), is_position);
    if (found == POSITION_NAMES.end() || item.size() < 3) return;
    const int lab = static_cast<int>(found - POSITION_NAMES.begin());
    const bool single = item[2] == ':';
    const std::size_t start = single ? 3 : 4;
    std::string text;
    PLT_label_format(item.size() > start ? item.substr(start) : "", text);
    const bool digit = std::isdigit(static_cast<unsigned char>(item[2])) != 0;
    PLT_set_overlay(digit ? item[2] - '0' : 0);
    PLT_set_label(lab, text);
    PLT_set_overlay(0);
    if (single) (*done)[lab] = true;
}

/// False where the colour bar or the vector key takes a label's place.
bool has_room(int lab) {
    if (lab == 3 || lab == 4) return PLT_layer_requests().bar < 1;
    if (lab == 5) return PLT_layer_requests().vector_key <= 0;
    return true;
}

bool is_drawn(int lab) { return FLAG_getplot(PLOT_TEXT_UL + lab) && has_room(lab); }

PLT_title_space title_space(const PLT_state& plot, bool upper) {
    const Glim& view = plot.dis_view;
    const float width = view.x_max - view.x_min;
    const float middle = 0.5F * (view.x_min + view.x_max);
    PLT_title_space space{{view.x_min + MARGIN * width, middle, view.x_max - MARGIN * width},
                          plot.full_lab ? view.x_min : plot.dis_size.x_min,
                          plot.full_lab ? view.x_max : plot.dis_size.x_max};
    if (!upper && !has_room(3)) space.x_min = middle + BAR_NUMBERS * width;
    if (!upper && !has_room(5)) space.x_max = view.x_min + KEY_START * width;
    return space;
}

/// The labels above or below the plot, a row for each overlay, from the bottom up.
std::vector<PLT_title_line> label_rows(bool upper, int num, const Done& done) {
    std::vector<PLT_title_line> rows(static_cast<std::size_t>(std::min(num, PLT_OVERLAYS)));
    for (int column = 0; column < 3; ++column) {
        const int lab = upper ? column : 3 + column;
        if (!is_drawn(lab)) continue;
        const std::size_t last = done[lab] ? 1 : rows.size();
        for (std::size_t i = 0; i < last; ++i) rows[i][column] = PLT_get_label(lab, static_cast<int>(i));
    }
    return rows;
}

/// The titles of the page as a whole.
void tell_titles(const std::vector<PLT_title_line>& rows) {
    for (int column = 0; column < 3; ++column) {
        for (const PLT_title_line& row : rows) {
            if (!row[column].empty()) gadd_page_title(row[column]);
        }
    }
}

/// Rows broken into as many lines as their texts need to stand apart, from the bottom up.
std::vector<PLT_title_line> break_rows(const std::vector<PLT_title_line>& rows, const PLT_title_space& space,
                                       float height) {
    std::vector<PLT_title_line> stack;
    for (const PLT_title_line& row : rows) {
        const std::vector<PLT_title_line> lines = PLT_title_lines(row, space, height);
        stack.insert(stack.end(), lines.rbegin(), lines.rend());
    }
    return stack;
}

/// The labels as they are drawn.
struct Titles {
    std::vector<PLT_title_line> above;
    std::vector<PLT_title_line> below;
    float step = 0.0F;  ///< from line to line
    int spare = 0;      ///< lines that room is made for beyond those of overlays
};

Titles lay_out(const PLT_state& plot, float space, const Done& done, const Gattribs& attrib) {
    const Glim& view = plot.dis_view;
    const int num = PLT_get_label_type() < 0 ? 1 : std::max(PLT_get_num_over(), 1);
    Titles titles;
    titles.above = label_rows(true, num, done);
    titles.below = label_rows(false, num, done);
    tell_titles(titles.above);
    titles.spare = num - static_cast<int>(titles.above.size());
    titles.step = std::min(space / static_cast<float>(num), MOST_STEP * (view.y_max - view.y_min));
    GPH_text_attr(&attrib, TEXT_SHARE * titles.step);
    if (PLT_letter()) return titles;
    // Each further line makes all of them smaller, until they hold the texts.
    const std::vector<PLT_title_line> above = titles.above;
    const std::vector<PLT_title_line> below = titles.below;
    const float usual = titles.step;
    const float least_space = plot.full_lab ? space : std::min(space, plot.dis_size.y_max - view.y_max);
    for (int lines = num; lines < num + MOST_LINES; ++lines) {
        if (lines > num) titles.step = std::min(usual, least_space / static_cast<float>(lines));
        const float height = (lines > 1 ? STACK_SHARE : TEXT_SHARE) * titles.step;
        titles.above = break_rows(above, title_space(plot, true), height);
        titles.below = break_rows(below, title_space(plot, false), height);
        GPH_text_attr(&attrib, height);
        if (static_cast<int>(std::max(titles.above.size(), titles.below.size())) + titles.spare <= lines) break;
    }
    return titles;
}

void print_lines(const std::vector<PLT_title_line>& lines, const PLT_title_space& space, float first, float step,
                 bool upper) {
    constexpr std::array<int, 3> ALIGN{GLEFT_HOR, GCENTER_HOR, GRIGHT_HOR};
    for (int column = 0; column < 3; ++column) {
        if (!is_drawn(upper ? column : 3 + column)) continue;
        GPH_text_align(ALIGN[column], upper ? GBASE_VERT : GCAP_VERT);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const Gpt point{space.anchor[column], first + static_cast<float>(i) * step};
            if (!lines[i][column].empty()) GPH_pprint(&point, lines[i][column]);
        }
    }
}

void print_titles(const PLT_state& plot, const Titles& titles) {
    const float step = titles.step;
    const float base = static_cast<float>(PLT_get_overlay_base()) * step;
    // Distance of the lines next to the plot from its edge, inside of it with full labels.
    const auto gap = [&](const std::vector<PLT_title_line>& lines) {
        const auto num = static_cast<float>(titles.spare + static_cast<int>(lines.size()));
        return plot.full_lab ? -GAP * step - num * step : GAP * step;
    };
    const auto last_below = static_cast<float>(titles.spare + static_cast<int>(titles.below.size())) - 1.0F;
    print_lines(titles.above, title_space(plot, true), plot.dis_view.y_max + gap(titles.above) + base, step, true);
    print_lines(titles.below, title_space(plot, false),
                plot.dis_view.y_min - gap(titles.below) - last_below * step + base, step, false);
}

}  // namespace

int PLT_labels() {
    Done done{};
    std::vector<std::string> items;
    RES_getvals("label", items);
    for (const std::string& item : items) take_label_item(item, &done);

    PLT_state& plot = PLT_state_get();
    Gattribs attrib;
    ATTRIB_get("color_text", gget_inverse() ? "black" : "white", &attrib);
    PLT_mess("Labels");
    gsel_norm_tran(1);
    GPH_get_view_size(&plot.dis_size);
    GPH_line_attr(nullptr);
    GPH_text_attr(nullptr, 1.0F);
    GPH_text_font(nullptr);
    GPH_text_rotate(0.0F);
    GPH_line_attr(&attrib);

    if (plot.border && FLAG_getplot(PLOT_BORDER)) GPH_border(&plot.dis_view);
    const float space = plot.full_lab ? PLT_FULL_LABEL_SPACE : plot.dis_view.y_min - plot.dis_size.y_min;
    if (space < LEAST_SPACE) return -1;
    if (!FLAG_getplot(PLOT_TEXT)) return 0;

    const Titles titles = lay_out(plot, space, done, attrib);
    print_titles(plot, titles);
    return 0;
}

}  // namespace zav
