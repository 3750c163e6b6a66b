#include "program/install.h"

#include "calc/grd_calc.h"
#include "calc/grd_trans.h"
#include "files/date.h"
#include "files/files.h"
#include "frame/hooks.h"
#include "gks/gks_colr.h"
#include "gks/gks_ws.h"
#include "grid/grd_tool.h"
#include "image/zavimg.h"
#include "map/region.h"
#include "plot/background/map.h"
#include "plot/page/colors.h"
#include "plot/page/plt_labl.h"
#include "plot/page/plt_tool.h"
#include "plot/station/raw_plt.h"
#include "var/var_tool.h"

namespace zav {
namespace {

void set_forced_date(const forced_date& fields) {
    Date date;
    date.year = fields.year;
    date.month = fields.month;
    date.day = fields.day;
    date.hour = fields.hour;
    date.min = fields.min;
    FILE_set_time(&date);
}

std::string current_time() {
    std::string text;
    DATE_get_current_str(text);
    return text;
}

void install_frame_hooks() {
    frame_hooks& hooks = ZAV_hooks();
    hooks.decode_domain = [](const std::string& text, Domain* domain) { return DOM_decode(text, domain); };
    hooks.set_forced_date = set_forced_date;
    hooks.open_file = FILE_open;
    hooks.add_path = [](const char* path, const std::string& file) { return FILE_add_path(path, file); };
    hooks.expand_user = [](const std::string& file) { return FILE_add_user_path(file); };
    hooks.set_time_zone = DATE_set_TZ;
    hooks.current_time = current_time;
    hooks.model_text = []() -> std::string { return VAR_get_model_str(); };
    hooks.level_text = []() -> std::string { return VAR_get_level_str(); };
    hooks.time_text = []() -> std::string { return VAR_get_time_str(); };
    hooks.init_variables = VAR_init;
    hooks.break_off = gbreak_off;
}

void install_variable_hooks() {
    var_hooks& hooks = VAR_hooks();
    hooks.get_label_type = PLT_get_label_type;
    hooks.set_label_type = [](int type) { PLT_set_label_type(type); };
    hooks.is_vect_func = GRD_is_vect_func;
    hooks.is_math_func = GRD_is_math_func;
}

void install_grid_hooks() {
    grid_hooks& hooks = GRD_hooks();
    hooks.units = [](GRD_report* grid, const std::string& units) -> int { return GRD_units(grid, units); };
    hooks.piece_setup = [](GRD_report* grid, int nx, int ny, const GRD_report* piece) -> int {
        return GRD_piece_setup(grid, nx, ny, piece);
    };
    hooks.piece_grid = [](GRD_report* grid, int x, int y, const GRD_report* piece) -> int {
        return GRD_piece_grid(grid, x, y, piece);
    };
    hooks.calc_var = GRD_calc_var;
}

/// The picture of the workstation is had by nothing yet: get_picture stays empty.
void install_image_hooks() {
    image_hooks& hooks = IMG_hooks();
    hooks.window_depth = gget_win_depth;
    hooks.background = gget_back_color;
    hooks.window_title = []() -> std::string { return gget_win_title(); };
    hooks.view_offset = PLT_get_view_offset;
    hooks.label = [](int position) -> std::string { return PLT_get_label(position, 0); };
}

}  // namespace

void ZAV_install_hooks() {
    install_frame_hooks();
    install_variable_hooks();
    install_grid_hooks();
    install_image_hooks();
    DATE_set_model_lookup(VAR_model);
    CLR_install();
    MAP_set_raw_func(RAW_plot_file);
}

}  // namespace zav
