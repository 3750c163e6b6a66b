/// The colour bar.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/system.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float MOST_HEIGHT = 0.035F;  ///< of the bar with its texts, on a whole page
constexpr float LEAST_HEIGHT = 0.01F;
constexpr float LEFT_MARGIN = 0.03F;  ///< in widths of the plot
constexpr float GAP = 0.15F;          ///< to the plot, in heights of the bar
constexpr float TEXT_SHARE = 0.35F;   ///< of the bar's height
constexpr float NUMBER_SPACE = 0.9F;  ///< between numbers, in their heights
constexpr int MOST_BOXES = 200;
constexpr int LABELLED_BOXES = 15;
constexpr int BLINKS = 4;
constexpr float BLINK_SECONDS = 0.5F;

const char* contrast_color() { return gget_inverse() ? "black" : "white"; }

struct Value_range {
    float max;
    float min;
};

void read_attributes(Gattribs* text) {
    ATTRIB_init(text);
    ATTRIB_get("color_text", contrast_color(), text);
    ATTRIB_init(&cont.ln_cont_attr);
    ATTRIB_get("color_cont", contrast_color(), &cont.ln_cont_attr);
    if (cont.fill_pat != MISS) cont.ln_cont_attr.fill_pat = cont.fill_pat;
}

float number_of(const std::string& text) { return static_cast<float>(std::atof(text.c_str())); }

/// Base and cut-offs of the resource "con_base". A range given for the bar stands against the cut-offs.
void read_base(Value_range* range) {
    std::vector<std::string> items;
    RES_getvals("con_base", items);
    const bool own_range = cont.bar_max != FMISS;
    for (const std::string& item : items) {
        const char first = item.empty() ? '\0' : item[0];
        if (first != '>' && first != '<') {
            cont.base = number_of(item);
        } else if (!own_range && first == '>') {
            range->min = cont.base = number_of(item.substr(1));
        } else if (!own_range) {
            range->max = number_of(item.substr(1));
        }
    }
}

/// Works the levels out anew. False when no range is known.
bool settle_levels(const Value_range& range) {
    if (cont_has_values()) {
        cont.conlo = cont.cont_value[0];
        return true;
    }
    if (range.max == FMISS) return false;
    if (cont.intrvl <= 0.0F && cont.intrvl != FMISS) {
        cont.intrvl = CONT_calc_intrvl(range.max, range.min, cont.color_num - 1);
    }
    cont_set_levels(range.max, range.min);
    return true;
}

bool find_levels() {
    Value_range range{cont.grid_max, cont.grid_min};
    if (cont.bar_max != FMISS) range = {cont.bar_max, cont.bar_min};
    if (cont.intrvl == FMISS) RES_getval("con_interval", &cont.intrvl, CV_float);
    read_base(&range);
    if ((cont.conlo == FMISS || cont.bar_max != FMISS) && !settle_levels(range)) return false;
    if (cont_has_values()) cont.intrvl = cont.cont_value[1] - cont.cont_value[0];
    if (cont.num_cont < 1 || cont.num_cont > MOST_BOXES) return false;
    return cont.intrvl != 0.0F && cont.intrvl != FMISS;
}

/// Size of the panel in that of the page, by its longer side.
float panel_share(const Glim& panel) {
    float x = 1.0F;
    float y = 1.0F;
    if (PLT_letter() || ginq_maxview(PLT_get_work_type(), &x, &y) != 0) return 1.0F;
    return std::max((panel.x_max - panel.x_min) / x, (panel.y_max - panel.y_min) / y);
}

/// Places the bar in the page. False without room for it.
bool place_bar() {
    Glim page;
    Glim view;
    GPH_get_view_size(&page);
    PLT_get_view(&view);
    const bool inside = PLT_get_full_lab() != 0;
    const float share = panel_share(page);
    const float most = MOST_HEIGHT * share;
    const float height = inside ? most : std::min(view.y_min - page.y_min, most);
    if (height < LEAST_HEIGHT * share) return false;
    const float width = view.x_max - view.x_min;
    cont.bar_lim.x_min = view.x_min + LEFT_MARGIN * width;
    cont.bar_lim.x_max = view.x_min + width / 2.0F;
    cont.bar_lim.y_min = inside ? view.y_min + GAP * height : view.y_min - height;
    cont.bar_lim.y_max = inside ? view.y_min + height : view.y_min - GAP * height;
    cont.bar_inc = (cont.bar_lim.x_max - cont.bar_lim.x_min) / static_cast<float>(cont.num_cont);
    return true;
}

float middle_height() { return (cont.bar_lim.y_min + cont.bar_lim.y_max) / 2.0F; }

/// Height of the numbers.
float text_height(const Gattribs& text) {
    const float usual = TEXT_SHARE * (cont.bar_lim.y_max - cont.bar_lim.y_min);
    return text.height == FMISS ? usual : usual * text.height;
}

void start_attributes(const Gattribs& text) {
    const Gtext_align align{GCENTER_HOR, GBASE_VERT};
    GPH_trans(1);
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    GPH_text_attr(nullptr, 1.0F);
    gset_text_align(&align);
    GPH_text_attr(&text, TEXT_SHARE * (cont.bar_lim.y_max - cont.bar_lim.y_min));
    GPH_line_attr(&text);
}

bool has_fill() { return cont_is_filled() || cont.cont_type == CONT_VALUE; }

bool has_lines() { return cont.cont_type == CONT_LINE || cont.cont_type == CONT_FILL_LINE; }

void set_line_sample(float nlevel) {
    const Gattribs& band = cont.fill_attrib[has_lines() ? cont_wrap_band(cont.con_off + 1.0) : cont.con_off];
    const Gattribs& line = cont.ln_cont_attr;
    if (line.color == CLR_NONE && band.color != CLR_NONE) gset_line_colr_ind(band.color);
    const bool low = (cont.base != FMISS && cont.base > nlevel) || nlevel < 0.0F;
    const bool dashed = cont.dash == 1 || (cont.dash == -1 && low);
    const bool plain = cont.dash == -1 || line.style == MISS;
    const int own_type = plain ? 1 : line.style;
    gset_linetype(band.style != MISS ? band.style : dashed ? 2 : own_type);
    const float own_width = line.width == FMISS ? 1.0F : line.width;
    gset_linewidth(band.width == FMISS ? own_width : band.width);
}

void draw_box(float x, float nlevel) {
    const float right = x + cont.bar_inc;
    const float low = middle_height();
    const float high = cont.bar_lim.y_max;
    if (has_fill()) cont_set_fill_attributes();
    set_line_sample(nlevel);
    if (has_fill() && cont.fill_attrib[cont.con_off].color >= 0) {
        std::array<Gpt, 5> box{{{x, low}, {right, low}, {right, high}, {x, high}, {x, low}}};
        CONT_draw_lines(CONT_FILL, 5, box.data());
    }
    if (has_lines()) {
        std::array<Gpt, 2> edge{{{right, low}, {right, high}}};
        CONT_draw_lines(CONT_LINE, 2, edge.data());
    }
}

/// The number under a box's left edge.
struct Bar_text {
    int box;
    Gpt pt;
    std::string text;
};

std::string bar_text(int i, float level, int decimals) {
    if (i < CONT_LEVELS && !cont.cont_label[i].empty()) return cont.cont_label[i];
    return PLT_letter() ? set_num("2.2.0", level) : cont_value_text(level, decimals);
}

/// Moves numbers that would leave the page.
void keep_on_page(std::vector<Bar_text>* texts, float height) {
    Glim page;
    GPH_get_view_size(&page);
    for (Bar_text& text : *texts) {
        const float half = ginq_text_size(text.text, height).x / 2.0F;
        text.pt.x = std::max(std::min(text.pt.x, page.x_max - half), page.x_min + half);
    }
}

/// True when every `skip`-th number stands apart from the next.
bool stand_apart(const std::vector<Bar_text>& texts, int skip, float height) {
    const Bar_text* last = nullptr;
    for (const Bar_text& text : texts) {
        if (text.box % skip != 0) continue;
        if (last != nullptr) {
            const float widths = ginq_text_size(last->text, height).x + ginq_text_size(text.text, height).x;
            if (text.pt.x - last->pt.x < widths / 2.0F + NUMBER_SPACE * height) return false;
        }
        last = &text;
    }
    return true;
}

/// The texts of all boxes, and of the bar's end.
std::vector<Bar_text> level_texts() {
    std::vector<Bar_text> texts;
    const int decimals = cont_decimals();
    float x = cont.bar_lim.x_min;
    float clevel = cont.conlo;
    for (int i = 0; i < cont.num_cont; ++i) {
        cont_step_level(i, &clevel);
        texts.push_back({i, {x, cont.bar_lim.y_min}, bar_text(i, clevel, decimals)});
        x += cont.bar_inc;
    }
    if (cont_has_values()) return texts;
    const float top = clevel + cont.intrvl;
    texts.push_back({cont.num_cont, {x, cont.bar_lim.y_min}, bar_text(cont.num_cont, top, decimals)});
    return texts;
}

/// Which of the texts are drawn: so few that they stand apart.
std::vector<Bar_text> chosen_texts(float height) {
    std::vector<Bar_text> texts = level_texts();
    int skip = cont.num_cont / LABELLED_BOXES + 1;
    if (!PLT_letter()) {
        keep_on_page(&texts, height);
        while (skip <= cont.num_cont && !stand_apart(texts, skip, height)) ++skip;
    }
    const auto is_left_out = [skip](const Bar_text& text) { return text.box % skip != 0; };
    texts.erase(std::remove_if(texts.begin(), texts.end(), is_left_out), texts.end());
    return texts;
}

void draw_boxes(float height) {
    const std::vector<Bar_text> texts = chosen_texts(height);
    auto next = texts.begin();
    const auto write_text_of = [&](int box) {
        if (next == texts.end() || next->box != box) return;
        cont.text(&next->pt, next->text);
        ++next;
    };
    float x = cont.bar_lim.x_min;
    float clevel = cont.conlo;
    cont.con_off = cont_has_values() ? 0 : cont_band_of(cont.conlo);
    for (int i = 0; i < cont.num_cont; ++i) {
        cont_step_level(i, &clevel);
        if (i > 0) cont.con_off = cont_wrap_band(cont.con_off + 1.0);
        draw_box(x, cont.cont_type == CONT_LINE ? clevel : clevel + cont.intrvl);
        write_text_of(i);
        x += cont.bar_inc;
    }
    write_text_of(cont.num_cont);
}

void draw_bar_label(const std::string& label) {
    if (label.empty()) return;
    Glim view;
    PLT_get_view(&view);
    GPH_text_align(GLEFT_HOR, GCAP_VERT);
    GPH_printf(view.x_max, view.y_min - 0.01F, "%s", label.c_str());
}

}  // namespace

int CONT_draw_bar(int orient, const std::string& label) {
    if (orient != 1) return -1;
    Gattribs text;
    read_attributes(&text);
    if (!find_levels() || !place_bar()) return -1;
    start_attributes(text);
    draw_boxes(text_height(text));
    GPH_line_attr(&text);
    GPH_rect(cont.bar_lim.x_min, middle_height(), cont.bar_lim.x_max, cont.bar_lim.y_max);
    draw_bar_label(label);
    return 0;
}

float CONT_bar_room() {
    if (PLT_letter()) return 0.0F;
    Glim page;
    Glim view;
    GPH_get_view_size(&page);
    PLT_get_view(&view);
    return std::clamp(view.y_min - page.y_min, 0.0F, MOST_HEIGHT * panel_share(page));
}

float CONT_get_bar_value(float x, float y) {
    const Glim& bar = cont.bar_lim;
    const bool inside = x >= bar.x_min && x <= bar.x_max && y >= bar.y_min && y <= bar.y_max;
    if (cont.bar_inc == 0.0F || !inside) return FMISS;
    const int box = static_cast<int>((x - bar.x_min) / cont.bar_inc);
    if (!cont_has_values()) return cont.conlo + static_cast<float>(box) * cont.intrvl;
    return cont.cont_value[std::clamp(box, 0, CONT_LEVELS)];
}

int CONT_flash_value(const char* str, float x, float y) {
    if (str == nullptr || std::strncmp(str, "f-Al", 4) != 0) return 0;
    const float value = CONT_get_bar_value(xW_trans(x, 2, 1), yW_trans(y, 2, 1));
    if (value == FMISS) return 0;
    Gattribs band;
    float red = 0.0F;
    float grn = 0.0F;
    float blu = 0.0F;
    CONT_get_fill_attrib(value, &band);
    if (band.color < 0 || CLR_get_rgb(band.color, &red, &grn, &blu) < 0) return 0;
    for (int i = 0; i < BLINKS; ++i) {
        ZAV_sleep(BLINK_SECONDS);
        GPH_set_color(band.color, 0.0F, 0.0F, 0.0F);
        ZAV_sleep(BLINK_SECONDS);
        GPH_set_color(band.color, red, grn, blu);
    }
    return 0;
}

}  // namespace zav
