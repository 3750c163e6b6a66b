#include <algorithm>
#include <cstdio>
#include <iterator>

#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/zav.h"

namespace zav {
namespace {

/// One known resource. `position` is 10 for all positional words, 0 for an option.
struct Row {
    res_type type;
    const char* def;
    const char* env;
    const char* cmd;
    int position;
    DEF_convert cvt;
    const char* label;  ///< of the help, null for a resource of another program
    const char* help;
};

// clang-format off
constexpr Row ROWS[] = {
    {RES_help, "help", "zavhelp", "h", 0, CV_help, "-h", "Print this help"},
    {RES_batch, "batch", "zavbatch", "ba", 0, CV_batch, "-ba", "Run program in batch mode"},
    {RES_message, "message", "zavmess", "me", 0, CV_mess, "-me level", "Message level to be displayed:"},
    {RES_file_path, "file_path", "zavfile", "fp", 0, CV_path, "-fp path", "File path"},
    {RES_data_path, "data_path", "zavdata", "dp", 0, CV_path, "-dp path", "Raw data path"},
    {RES_con_path, "con_path", "zavcon", "cp", 0, CV_path, "-cp path", "Converted data path"},
    {RES_grid_path, "grid_path", "zavgrid", "gp", 0, CV_path, "-gp path", "Gridded data path"},
    {RES_raw_path, "raw_path", "zavraw", "rp", 0, CV_path, "-rp path", "Raw files path"},
    {RES_image_path, "image_path", "zavimage", "ip", 0, CV_string, "-ip path", "Image file path"},
    {RES_watch_path, "watch_path", "zavwatch", "wp", 0, CV_path, "-wp path", "Watch file data path"},
    {RES_text_path, "text_path", "zavtext", "tp", 0, CV_path, "-tp path", "Text file path"},
    {RES_model_path, "model_path", "zavmpath", "mp", 0, CV_path, "-mp path", "Model file path"},
    {RES_sat_path, "sat_path", "zavsat", "sp", 0, CV_path, "-sp path", "Satellite file path"},
    {RES_city_file, "city_file", "zavcity", "cf", 0, CV_string, "-cf file", "City database file name"},
    {RES_map_file, "map_file", "zavmap", "mf", 0, CV_string, "-mf file[,file]", "Map database files"},
    {RES_name_conv, "name_conv", "zavnameconv", "nc", 0, CV_name, "-nc type", "Naming convention file name"},
    {RES_in_file, "in_file", "zavinfile", "if", 0, CV_string, "-if type", "Input data file type"},
    {RES_out_file, "out_file", "zavoutfile", "of", 0, CV_string, "-of type", "Output file type"},
    {RES_file_param, "file_param", "zavfileparam", "pf", 0, CV_file_param, "-pf param", "File parameters: use,calc,over,app"},
    {RES_inputg, "input", "zavin", "inp", 0, CV_string, "-inp type", "Type of input"},
    {RES_output, "output", "zavout", "ou", 0, CV_string, "-ou type", "Type of output"},
    {RES_model, "model", "zavmodel", "mo", 0, CV_string, "-mo model", "Specific model to use"},
    {RES_current, "current", "zavcurrent", "cu", 0, CV_current, "-cu [hour]", "Use current data file"},
    {RES_hour, "hour", "zavhour", "ho", 0, CV_hour, "-ho hour", "Actual hour of the file"},
    {RES_num_hour, "num_hour", "zavnumhour", "nh", 0, CV_string, "-nh hour[,step]", "Number of hours to view"},
    {RES_grid_num, "grid_num", "zavgridnum", "gn", 0, CV_string, "-gn number", "Specific grid index in file to use"},
    {RES_grid_type, "grid_type", "zavgridtype", "gt", 0, CV_int, "-gt number", "Specific grid type (number) to use"},
    {RES_plot_domain, "plot_domain", "zavdomain", "pd", 0, CV_domain, "-pd region or [proj],clat,clon[,nx,ny][,dx,dy]", "Output plot domain"},
    {RES_grid_domain, "grid_domain", "zavgrddomain", "gd", 0, CV_domain, "-gd region or [proj],clat,clon[,nx,ny][,dx,dy]", "Grid domain"},
    {RES_region, "region", "zavregion", "re", 0, CV_region, "-re region or [proj],clat,clon[,nx,ny][,dx,dy]", "Region to be used for plotting and gridding"},
    {RES_stat_prior, "stat_prior", "zavprior", "pr", 0, CV_int, "-pr prior", "Priority of stations used in the plot"},
    {RES_time, "time", "zavtime", "ft", 0, CV_string, "-ft time", "Forecast time to be plotted or contoured"},
    {RES_level, "level", "zavlevel", "le", 0, CV_string, "-le level", "Vertical level to be plotted or contoured"},
    {RES_variable, "variable", "zavvar", "va", 0, CV_string, "-va var", "Variable to be plotted or contoured"},
    {RES_plot_type, "plot_type", "zavplot", "pl", 0, CV_plot_type, "-pl type", "Plot type: cf,lcf,ln,dln,ndln,value,vect,barb,strm,none"},
    {RES_plot_scale, "plot_scale", "zavscale", "sc", 0, CV_float, "-sc scale", "Text and wind vector scale factor"},
    {RES_plot_format, "plot_format", "zavformat", "fm", 0, CV_string, "-fm format", "Numeric format"},
    {RES_plot_param, "plot_param", "zavpltparam", "pp", 0, CV_string, "-pp param", "Plot parameters"},
    {RES_draw, "draw", "zavdraw", "dr", 0, CV_draw, "-dr param[,...]", "Draw components: text,data,sum,map,none"},
    {RES_label, "label", "zavlabel", "la", 0, CV_string, "-la label", "Plot labels"},
    {RES_con_interval, "con_interval", "zavconint", "in", 0, CV_float, "-in intrvl", "Contour interval"},
    {RES_con_base, "con_base", "zavconbase", "cb", 0, CV_float, "-cb base", "Color fill contour/vector base value"},
    {RES_font_list, "font_list", "zavfontlist", "fl", 0, CV_string, "-fl list", "List of fonts to use"},
    {RES_color_table, "color_table", "zavclrtbl", "ct", 0, CV_string, "-ct file", "Color table file name"},
    {RES_color_text, "color_text", "zavclrtext", "cot", 0, CV_string, "-cot clr", "Text color"},
    {RES_color_data, "color_data", "zavclrdata", "cod", 0, CV_string, "-cod clr", "Data plotting color"},
    {RES_color_map, "color_map", "zavclrmap", "com", 0, CV_string, "-com clr", "line map color"},
    {RES_color_grid, "color_grid", "zavclrgrid", "cogr", 0, CV_string, "-cogr clr", "grid color"},
    {RES_color_line, "color_line", "zavclrln", "coln", 0, CV_string, "-coln clr", "Lat-lon line color"},
    {RES_color_cmap, "color_cmap", "zavclrcmap", "cocm", 0, CV_string, "-cocm clr", "Fill map color"},
    {RES_color_cont, "color_cont", "zavclrcont", "coco", 0, CV_string, "-coco clr", "Line contour color"},
    {RES_color_fill, "color_fill", "zavclrfill", "cof", 0, CV_string, "-cof clr[,...]", "Fill contour colors"},
    {RES_color_label, "color_label", "zavclrlab", "cola", 0, CV_string, "-cola clr", "Line label color"},
    {RES_color_clabel, "color_clabel", "zavclrclab", "cocl", 0, CV_string, "-cocl clr", "Fill label color"},
    {RES_device, "device", "zavdevice", "de", 0, CV_device, "-de dev[,name]", "Output device: p,m,i,d,q,w, or a picture file"},
    {RES_title, "title", "zavtitle", "ti", 0, CV_string, "-ti title", "Window title"},
    {RES_icon, "icon", "zavicon", "ic", 0, CV_bool, "-ic", "Open window iconified"},
    {RES_background, "background", "zavback", "bg", 0, CV_string, "-bg clr", "Background color"},
    {RES_geometry, "geometry", "zavgeometry", "ge", 0, CV_string, "-ge wxh+x+y", "Window geometry"},
    {RES_filenames, "filename", "zavfilename", "", 10, CV_strings, "file [file...]", "Input file names"},
    {RES_bull_file, "bull_file", "zavbullfile", "bf", 0, CV_string, nullptr, nullptr},
    {RES_color_cloud, "color_cloud", "zavclrcld", "cocd", 0, CV_string, nullptr, nullptr},
    {RES_color_front, "color_front", "zavclrfront", "cofr", 0, CV_string, nullptr, nullptr},
    {RES_color_hodo, "color_hodo", "zavclrhodo", "coh", 0, CV_string, nullptr, nullptr},
    {RES_color_hodtxt, "color_hodtxt", "zavclrhdtxt", "coht", 0, CV_string, nullptr, nullptr},
    {RES_color_pop, "color_pop", "zavclrpop", "copp", 0, CV_string, nullptr, nullptr},
    {RES_color_sound, "color_sound", "zavclrsnd", "cosd", 0, CV_string, nullptr, nullptr},
    {RES_color_therm, "color_therm", "zavclrtherm", "coth", 0, CV_string, nullptr, nullptr},
    {RES_color_thrmtxt, "color_thrmtxt", "zavclrthtxt", "cott", 0, CV_string, nullptr, nullptr},
    {RES_color_wind, "color_wind", "zavclrwind", "cowd", 0, CV_string, nullptr, nullptr},
    {RES_color_wx, "color_wx", "zavclrwx", "cowx", 0, CV_string, nullptr, nullptr},
    {RES_commands, "command", "zavcommand", "", 10, CV_strings, nullptr, nullptr},
    {RES_command, "command", "zavcommand", "cd", 0, CV_string, nullptr, nullptr},
    {RES_decode_hour, "decode_hour", "zavdecode", "dh", 0, CV_string, nullptr, nullptr},
    {RES_filename, "filename", "zavfilename", "", 1, CV_strcpy, nullptr, nullptr},
    {RES_forecast, "forecast", "zavforecast", "fc", 0, CV_string, nullptr, nullptr},
    {RES_identifier, "identifier", "zavident", "id", 0, CV_string, nullptr, nullptr},
    {RES_ingestor, "ingestor", "zavingestor", "di", 0, CV_ingestor, nullptr, nullptr},
    {RES_input, "input", "zavin", "in", 0, CV_string, nullptr, nullptr},
    {RES_object_param, "object_param", "zavobject", "oa", 0, CV_string, nullptr, nullptr},
    {RES_parameter, "parameter", "zavparam", "pa", 0, CV_string, nullptr, nullptr},
    {RES_product, "product", "zavproduct", "ph", 0, CV_string, nullptr, nullptr},
    {RES_state, "state", "zavstate", "st", 0, CV_string, nullptr, nullptr},
    {RES_table, "table", "zavtable", "ta", 0, CV_bool, nullptr, nullptr},
    {RES_values, "value", "zavvalue", "", 10, CV_strings, nullptr, nullptr},
    {RES_window_num, "window_num", "zavwindownum", "wn", 0, CV_int, nullptr, nullptr},
    {RES_color_watch, "color_watch", "zavclrwatch", "cowa", 0, CV_string, nullptr, nullptr},
    {RES_log_file, "log_file", "zavlog", "lf", 0, CV_string, nullptr, nullptr},
};
// clang-format on

constexpr const char* DOMAIN_HELP[] = {
    "               region=predefined region:\n",
    "                  us,ne,at,se,mw,sp,nw,sw,etc\n",
    "               proj=projection, clat=central latitude, clon=central longitude,\n",
    "               nx,ny=number of gridpoints and dx,dy=grid spacing\n",
};
constexpr const char* REGION_HELP = "               us,ne,at,se,mw,sp,nw,sw,var\n";
constexpr const char* MESSAGE_HELP = "               none,print,error,warn,mess,out1,*out2,out3,out4,debug\n";

const Row* find_row(res_type type) {
    const auto found =
        std::find_if(std::begin(ROWS), std::end(ROWS), [type](const Row& row) { return row.type == type; });
    return found != std::end(ROWS) ? found : nullptr;
}

void print_line(const char* label, const char* text) { MESS_print(MESS_PRINT, " %-10s  %s\n", label, text); }

void print_domain_help(const Row& row) {
    MESS_print(MESS_PRINT, " %-10s\n", row.label);
    MESS_print(MESS_PRINT, "             %s\n", row.help);
    for (const char* line : DOMAIN_HELP) MESS_text(MESS_PRINT, line);
    if (row.type == RES_region) MESS_text(MESS_PRINT, REGION_HELP);
}

void print_items(const res_type* res) {
    for (; res != nullptr && *res != RES_null; ++res) RES_help_item(*res);
}

}  // namespace

void RES_fill_obj(RES_defobj& obj, const char* def, const char* env, const char* cmd, int position, DEF_convert cvt) {
    obj.def = def;
    obj.env = env;
    obj.cmd = cmd;
    obj.position = position;
    obj.cvt = cvt;
    obj.out = std::monostate();
}

void RES_enter(RES_defobj& obj, res_type key) {
    const Row* row = find_row(key);
    if (row == nullptr) {
        obj.def.clear();
        std::printf("%d\n", static_cast<int>(key));
        return;
    }
    RES_fill_obj(obj, row->def, row->env, row->cmd, row->position, row->cvt);
}

void RES_help_print(const std::string& name, const res_type* res_key, const res_type* res_pos) {
    MESS_print(MESS_PRINT, "%s syntax (version:%s)\n", name.c_str(), ZAV_version());
    MESS_print(MESS_PRINT, "   %s [options...]\n", name.c_str());
    MESS_print(MESS_PRINT, "Keyed options...\n");
    print_line("-df file", "Resource/defaults file name");
    print_line("-na name", "Program name");
    print_items(res_key);
    MESS_print(MESS_PRINT, "Positional options...\n");
    print_items(res_pos);
}

void RES_help_item(res_type res) {
    const Row* row = find_row(res);
    if (row == nullptr || row->label == nullptr) return;
    if (row->cvt == CV_domain || row->cvt == CV_region) return print_domain_help(*row);
    print_line(row->label, row->help);
    if (res == RES_message) MESS_text(MESS_PRINT, MESSAGE_HELP);
}

}  // namespace zav
