// The program's top level: resources, file, prompt loops, and the plot of each choice.

#include "program/grd_plt.h"

#include "calc/grd_calc.h"
#include "calc/grd_trans.h"
#include "files/date.h"
#include "files/files.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/system.h"
#include "gks/gks.h"
#include "gks/gks_loop.h"
#include "gks/gks_ws.h"
#include "gks/zavgks.h"
#include "grid/grd_out.h"
#include "grid/grd_tool.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/sequence/data_plt.h"
#include "plot/sequence/plt_plot.h"
#include "program/install.h"
#include "var/var_tool.h"

namespace zav {

namespace {

/// Plot type of variables that name none: a contour of a kind chosen later.
constexpr int DEFAULT_TYPE = 11;

// The accepted options, in the order of the help text. Grid number and type stand in it twice.
constexpr res_type KEYS[] = {
    RES_help,         RES_batch,        RES_message,     RES_file_path,   RES_data_path,   RES_con_path,
    RES_grid_path,    RES_raw_path,     RES_image_path,  RES_watch_path,  RES_text_path,   RES_model_path,
    RES_sat_path,     RES_city_file,    RES_map_file,    RES_name_conv,   RES_in_file,     RES_out_file,
    RES_file_param,   RES_inputg,       RES_output,      RES_model,       RES_current,     RES_hour,
    RES_num_hour,     RES_grid_num,     RES_grid_type,   RES_plot_domain, RES_grid_domain, RES_region,
    RES_stat_prior,   RES_time,         RES_level,       RES_variable,    RES_grid_num,    RES_grid_type,
    RES_plot_type,    RES_plot_scale,   RES_plot_format, RES_plot_param,  RES_draw,        RES_label,
    RES_con_interval, RES_con_base,     RES_font_list,   RES_color_table, RES_color_text,  RES_color_data,
    RES_color_map,    RES_color_grid,   RES_color_line,  RES_color_cmap,  RES_color_cont,  RES_color_fill,
    RES_color_label,  RES_color_clabel, RES_device,      RES_title,       RES_icon,        RES_background,
    RES_geometry,     RES_null,
};
constexpr res_type POSITIONS[] = {RES_filenames, RES_null};

void show_help() {
    const std::string name = RES_get_progname();
    MESS_print(MESS_PRINT, "%s: This program contours existing grids on a background map\n", name.c_str());
    RES_help_print(name, KEYS, POSITIONS);
    ZAV_exit(0);
}

/// Data on standard input are read before any question could take them for an answer.
void keep_input() {
    std::vector<std::string> words;
    if (RES_getvals("filename", words) > 0 && FILE_is_stdio(words[0])) FILE_keep_stream(words[0]);
}

/// The file to plot from. Ends the program if the one that the user named isn't there.
void choose_file() {
    std::string name;
    if (FILE_get_file("Enter the grid filename: ", name) == 1) return GRD_take_named_file();
    MESS_print(MESS_WARN, "File not found: %s\n", name.c_str());
    ZAV_exit(STATUS_NO_GRID);
}

void free_grids() {
    for (int i = 0; i < VAR_get_num(); i++) {
        if (VAR_is_type_GRID(i) != 0) GRD_free(GRD_get_grid(i));
    }
}

bool one_plot_only() {
    return RES_get("hour") != nullptr && RES_get("level") != nullptr && RES_get("variable") != nullptr;
}

void open_plot(const Domain* domain) {
    GRD_plot_param();
    PLT_open(DOM_aspect(domain));
    PLT_set_callback(GRD_callback);
    PLT_set_zoom_func(GRD_plot);
    PLT_set_resize_func(GRD_plot);
}

void fill_data(DATA_info& data, const Date& date, const Domain* domain) {
    data = DATA_info{};
    data.date = date;
    data.domain = *domain;
    data.callback = GRD_callback;
}

/// The variables anew for a time of a sequence, with none of the former time's grids.
void take_time(const std::string& time) {
    int hour = FLAG_get(FLAG_TIME);
    VAR_dec_time(time, &hour);
    FLAG_setl(FLAG_TIME, hour);
    VAR_setup(nullptr, GRD_get_variable());
    free_grids();
}

bool wants_grids() {
    for (int i = 0; i < VAR_get_num(); i++) {
        if (VAR_is_type_GRID(i) != 0) return true;
    }
    return false;
}

/// How deep in functions the grids lie that the layer of entry `ind` draws: the arguments of a function that only names
/// a plot, else what functions give.
int drawn_depth(int ind) {
    while (ind > 0 && VAR_get_flag(ind) >= VKIND_DEEPER) ind--;
    return VAR_is_FUNC(ind) != 0 && GRD_is_plot_func(VAR_get_name(ind)) != 0 ? 1 : 0;
}

/// Grids with values that are drawn themselves, not only calculated with.
int grids_with_values(int first, int last) {
    int count = 0;
    for (int i = first; i <= last && i < VAR_get_num(); i++) {
        const bool drawn = VAR_get_flag(i) / VKIND_DEEPER == drawn_depth(i);
        if (drawn && GRD_has_values(GRD_get_grid(i))) count++;
    }
    return count;
}

/// Whether the layer of these entries has what it draws: one grid, or the two of a layer of several entries.
bool has_data(int first, int last) {
    return VAR_get_flag(first) < VKIND_DEEPER && grids_with_values(first, last) >= (last > first ? 2 : 1);
}

/// Draws the layers one after the other. Output is kept from the first that has values on. False if none has.
bool draw_layers(DATA_info& data, Domain* domain) {
    bool drawn = !wants_grids();
    DATA_plot_start();
    for (int p = 0; p < VAR_get_num(); p++) {
        const int first = p;
        p = DATA_plot_grid(p, &data);
        drawn = drawn || has_data(first, p);
        if (drawn) gkeep_output();
        DATA_plot_map(p);
        DATA_plot_control(p, domain);
    }
    DATA_plot_end();
    return drawn;
}

/// The grids of a time of a sequence. False, with a warning, if the file has none of them.
bool find_time(const std::string& time, const Date* date) {
    take_time(time);
    if (GRD_search_file_date(date) == 1 && (!wants_grids() || grids_with_values(0, VAR_get_num() - 1) > 0)) return true;
    MESS_print(MESS_WARN, "GRD_plot: No data at the time: %s\n", time.c_str());
    ZAV_note(STATUS_TIME);
    return false;
}

/// Map, attributes and the place of the map's lines as the layers find them.
void begin_plot(const Domain* domain) {
    MAP_setup(domain);
    DATA_plot_init();
    MAP_fill_cont(0);
}

/// Tells of fields without a single value, whose chart is empty.
void tell_empty() {
    for (int i = 0; i < VAR_get_num(); i++) {
        const GRD_report* grid = GRD_get_grid(i);
        float max = FMISS;
        float min = FMISS;
        if ((VAR_is_fit_GRID(i) == 0 && VAR_is_calc_GRID(i) == 0) || GRD_maxmin(grid, &max, &min) != 0 || max != FMISS)
            continue;
        const std::string what = VAR_make_datatype(grid->time, grid->ltype, grid->level, grid->var, grid->units);
        MESS_print(MESS_WARN, "No point of the grid has a value: %s\n", what.c_str());
        ZAV_note(STATUS_LAYER);
    }
}

/// Tells of data that the page won't show, but not again at a redraw, whose map the user chose.
void tell_unseen(const Domain* domain, bool redraw) {
    if (redraw) return;
    tell_empty();
    GRD_tell_outside(domain);
}

/// Draws a page, or on a display a frame, for each time that has data. False if none has.
bool draw_sequence(const std::vector<std::string>& times, DATA_info& data, Domain* domain, bool redraw) {
    int pages = 0;
    for (int i = 0; i < static_cast<int>(times.size()); i++) {
        if (!find_time(times[i], &data.date)) continue;
        tell_unseen(domain, redraw);
        gselect_frame(gcreate_frame(i));
        if (pages > 0) {
            PLT_next_page(DOM_aspect(domain));
            begin_plot(domain);
        }
        data.plot = pages++;
        draw_layers(data, domain);
        gkeep_output();
        gdisplay_frame(i);
        PLT_dump(i);
    }
    gset_looping(1);
    return pages > 0;
}

bool draw_single(DATA_info& data, Domain* domain, bool redraw) {
    if (GRD_search_file_date(&data.date) != 1) PLT_exit(STATUS_NO_GRID);
    tell_unseen(domain, redraw);
    if (!draw_layers(data, domain)) return false;
    PLT_dump(0);
    return true;
}

}  // namespace

int GRD_plot_param() {
    std::vector<std::string> words;
    RES_getvals("plot_param", words);
    return 0;
}

void GRD_callback(int, const char* str, float x, float y) {
    const std::string event = str != nullptr ? str : "";
    PLT_print_values(event, x, y);
    PLT_plot_zoom(event, x, y);
    PLT_plot_resize(event, x, y);
    CONT_flash_value(event.c_str(), x, y);
}

int GRD_plot(Domain* domain) {
    const std::vector<std::string> times = GRD_get_times();
    const bool sequence = times.size() > 1;
    const bool redraw = gchk_graphics() != 0;
    ZAV_set_unfinished(true);
    gset_pages(sequence);
    if (redraw) {
        PLT_reset(DOM_aspect(domain));
    } else {
        open_plot(domain);
    }
    begin_plot(domain);
    Date file_date;
    GRD_get_date(&file_date);
    DATA_info data;
    fill_data(data, file_date, domain);
    const bool drawn = sequence ? draw_sequence(times, data, domain, redraw) : draw_single(data, domain, redraw);
    if (redraw) return 0;
    if (drawn) {
        PLT_close();
    } else {
        PLT_break_off();
        ZAV_note(STATUS_LAYER);
    }
    free_grids();
    ZAV_set_unfinished(false);
    return 0;
}

int GRD_main(int argc, const char* const* argv) {
    ZAV_open_standard_streams();
    ZAV_survive_broken_pipes();
    ZAV_install_hooks();
    RES_init(argc, argv, KEYS, POSITIONS);
    if (GPH_prints_on_stdout()) MESS_use_stderr();
    if (FLAG_help() != 0) show_help();
    GRD_in_file();
    VAR_set_def_type(DEFAULT_TYPE);
    keep_input();
    if (!GRD_read_domain()) ZAV_exit(STATUS_REGION);
    MESS_print_prog("MODEL GRIDDED DATA CONTOURING");

    choose_file();
    GRD_set_date(nullptr);
    Domain domain;
    GRD_choose_domain(&domain);

    while (GRD_prompt_time() != 0) {
        UPA_set_prompt_level(1);
        while (UPA_prompt_level() != 0) {
            GRD_set_prompt_variable(1);
            while (GRD_prompt_variable() != 0) {
                if (GRD_choose_domain(&domain)) GRD_plot(&domain);
                if (one_plot_only()) ZAV_exit(0);
            }
        }
    }
    return ZAV_noted();
}

}  // namespace zav
