#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "files/date.h"
#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks_colr.h"
#include "gks/gks_loop.h"
#include "gks/gks_obj.h"
#include "gks/gks_text.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "image/zavimg.h"
#include "map/maptran.h"
#include "map/region.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/page/plt_state.h"
#include "plot/sequence/plt_plot.h"
#include "station/cty_tool.h"

namespace zav {
namespace {

/// A word of "plot_param". The text behind the word and one separator is handed to `act`.
struct Param {
    const char* word;
    bool whole;  ///< the word is all of the item
    void (*act)(const std::string& value);
};

/// A count, `least` where the value has none of at least 1.
int count_or(const std::string& value, int least) {
    const int num = text_to_int(value);
    return num < 1 ? least : num;
}

void full_labels(const std::string&) {
    PLT_set_view_offset(0.0F);
    PLT_state_get().full_lab = 1;
}

void overlays(const std::string& value) {
    int base = 0;
    int num = 0;
    const int read = std::sscanf(value.c_str(), "%d:%d", &base, &num);
    if (read >= 1) PLT_set_overlay_base(base);
    if (read >= 2) PLT_set_num_overlay(num);
}

void latlon_lines(const std::string& value) {
    float lat = 0.0F;
    float lon = 0.0F;
    int marks = 0;
    int labels = 0;
    const int read = std::sscanf(value.c_str(), "%f:%f:%d:%d", &lat, &lon, &marks, &labels);
    if (read >= 1) MAP_latlon(lat, read >= 2 ? lon : lat, marks, labels);
}

void skip(const std::string& value) {
    int x = 0;
    int y = 0;
    const int read = std::sscanf(value.c_str(), "%d:%d", &x, &y);
    if (read >= 1) CONT_set_usual_skip(x, read >= 2 ? y : x);
}

void plot_offset(const std::string& value) {
    float x = 0.0F;
    float y = 0.0F;
    const int read = std::sscanf(value.c_str(), "%f:%f", &x, &y);
    if (read >= 1) CONT_set_plot_offset(x, read >= 2 ? y : x);
}

void plot_limit(const std::string& value) {
    char* end = nullptr;
    std::strtol(value.c_str(), &end, 10);
    MAP_set_plot_limit(end == value.c_str() ? 1 : text_to_int(value));
}

void color_bar(const std::string& value) {
    CONT_set_bar(2);
    float low = 0.0F;
    float high = 0.0F;
    if (std::sscanf(value.c_str(), "%f:%f", &low, &high) == 2) CONT_set_bar_range(high, low);
}

void paper_colors(const std::string&) {
    gps_set_colorPS(1);
    gset_inverse(1);
}

/// The name of a font of the list, or "system:" and the name of one of the system.
void default_font(const std::string& value) {
    const std::string prefix = "system:";
    const bool of_system = strnicmp(value, prefix, static_cast<int>(prefix.size())) == 0;
    gset_system_font(of_system ? value.substr(prefix.size()) : "");
    GPH_set_def_font(of_system ? "" : value);
}

/// Words in the order of testing.
constexpr std::array<Param, 46> PARAMS{{
    {"letter", true, [](const std::string&) { PLT_set_letter(true); }},
    {"noletter", true, [](const std::string&) { PLT_set_letter(false); }},
    {"full", true, [](const std::string&) { PLT_set_view_offset(0.0F); }},
    {"fullab", true, full_labels},
    {"nopage", true, [](const std::string&) { MESS_set_page(0); }},
    {"page", true, [](const std::string&) { MESS_set_page(1); }},
    {"noredraw", true, [](const std::string&) { gset_redraw(0); }},
    {"id", true, [](const std::string&) { CTY_set_id_type(0); }},
    {"wmo", true, [](const std::string&) { CTY_set_id_type(1); }},
    {"cod_wmo", true, [](const std::string&) { CTY_set_id_type(2); }},
    {"tz", false, [](const std::string& value) { DATE_set_TZ(value); }},
    {"over", false, overlays},
    {"lalo", false, latlon_lines},
    {"gridx", false, nullptr},
    {"plt_skip", false, skip},
    {"plt_off", false, plot_offset},
    {"sm", false, [](const std::string& value) { CONT_set_usual_smooth(value); }},
    {"plt_grid", false, plot_limit},
    {"loc_pr", false, [](const std::string& value) { DOM_set_loc_prior(text_to_int(value)); }},
    {"vp_size", false, [](const std::string& value) { PLT_panel_decode(value); }},
    {"font", false, default_font},
    {"gif_inter", true, [](const std::string&) { GIF_interlace(1); }},
    {"gif_norm", true, [](const std::string&) { GIF_interlace(0); }},
    {"gif_trans", true, [](const std::string&) { GIF_transparent(1); }},
    {"inv", true, [](const std::string&) { gset_inverse(1); }},
    {"lcmap", true, [](const std::string&) { gset_local_colormap(1); }},
    {"nolcmap", true, [](const std::string&) { gset_local_colormap(0); }},
    {"rwclr", true, [](const std::string&) { gset_rw_colors(1); }},
    {"norwclr", true, [](const std::string&) { gset_rw_colors(0); }},
    {"nolooptitle", true, [](const std::string&) { gset_loop_title(0); }},
    {"pscolor", true, paper_colors},
    {"psrev", true, [](const std::string&) { gps_set_reverse(1); }},
    {"clear", true, [](const std::string&) { gset_pix_mode(1); }},
    {"new", true, [](const std::string&) { gset_pix_mode(2); }},
    {"kill", true, [](const std::string&) { gset_pix_mode(9); }},
    {"bar", false, color_bar},
    {"nobar", true, [](const std::string&) { CONT_set_bar(-2); }},
    {"nohdr", true, [](const std::string&) { GRD_use_hdr_file(0); }},
    {"shadow", false, [](const std::string& value) { gset_font_drop(count_or(value, 4)); }},
    {"max_bad", false, [](const std::string& value) { GRIB_set_max_bad(count_or(value, 5)); }},
    {"min_size", false, [](const std::string& value) { FILE_set_min_size(count_or(value, 0)); }},
    {"grdfmt", false, [](const std::string& value) { GRD_set_format(value); }},
    {"gif", false, [](const std::string& value) { PLT_set_dump(PLT_DUMP_GIF, value); }},
    {"png", false, [](const std::string& value) { PLT_set_dump(PLT_DUMP_PNG, value); }},
    {"img", false, [](const std::string& value) { PLT_set_dump(PLT_DUMP_IMG, value); }},
    {"xwd", false, [](const std::string& value) { PLT_set_dump(PLT_DUMP_XWD, value); }},
}};

bool matches(const std::string& item, const Param& param, int length) {
    return param.whole ? stricmp(item, param.word) == 0 : strnicmp(item, param.word, length) == 0;
}

void take_param(const std::string& item) {
    for (const Param& param : PARAMS) {
        const std::size_t length = std::char_traits<char>::length(param.word);
        if (!matches(item, param, static_cast<int>(length))) continue;
        if (param.act == nullptr) {
            GRD_set_grid_factor(text_to_int(item.substr(length)));  // the one word without a separator
        } else {
            param.act(item.size() > length ? item.substr(length + 1) : "");
        }
        return;
    }
}

void take_out_file(const std::string& item) {
    const std::string file = item.size() > 3 ? item.substr(4) : "";
    if (strnicmp(item, "gif", 3) == 0) PLT_set_dump(PLT_DUMP_GIF, file);
    if (strnicmp(item, "png", 3) == 0) PLT_set_dump(PLT_DUMP_PNG, file);
}

}  // namespace

int PLT_open(float aspect) {
    GPH_set_view_size(1.0F, 1.0F, 0.0F, 0.0F);  // not the last panel's
    PLT_param_decode();
    return PLT_open_page(aspect);
}

int PLT_next_page(float aspect) {
    gnew_page();
    PLT_init_labels();
    GPH_set_view_size(1.0F, 1.0F, 0.0F, 0.0F);
    PLT_param_decode();
    return PLT_reset(aspect);
}

int PLT_param_decode() {
    std::vector<std::string> items;
    RES_getvals("plot_param", items);
    for (const std::string& item : items) take_param(item);
    items.clear();
    RES_getvals("out_file", items);
    for (const std::string& item : items) take_out_file(item);
    return 0;
}

}  // namespace zav
