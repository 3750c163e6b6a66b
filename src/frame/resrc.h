#pragma once

#include <string>
#include <variant>
#include <vector>

namespace zav {

struct Domain;

/// How the text of a resource becomes a value.
enum DEF_convert : int {
    CV_none = 0,
    CV_bool = 1,         ///< int: true, on, yes or no text give 1; false, off, no give 0
    CV_int = 2,          ///< int, decimal or hexadecimal
    CV_short = 3,        ///< short
    CV_long = 4,         ///< long
    CV_float = 5,        ///< float
    CV_string = 6,       ///< text
    CV_strcpy = 7,       ///< text
    CV_path = 8,         ///< text that ends in a slash; "none" gives an empty one
    CV_mess = 9,         ///< message levels
    CV_draw = 10,        ///< plot components
    CV_current = 11,     ///< read by the file selection
    CV_hour = 12,        ///< forced date
    CV_region = 13,      ///< Domain
    CV_name = 14,        ///< read by the file naming
    CV_ingestor = 15,    ///< nothing
    CV_file_param = 16,  ///< policy for existing files
    CV_device = 17,      ///< device flag, and text: the name behind the comma
    CV_plot_type = 18,   ///< plot type flag
    CV_color = 19,       ///< long
    CV_domain = 20,      ///< Domain
    CV_strings = 21,     ///< list of words, one a line
    CV_batch = 22,       ///< batch flag
    CV_help = 23,        ///< help flag
};

/// Where a conversion stores its result. A target of another type than the conversion gives is left as it is.
/// Conversions that set flags, messages or the forced date need none.
using res_out =
    std::variant<std::monostate, int*, short*, long*, float*, std::string*, std::vector<std::string>*, Domain*>;

/// Keys of the known resources; a list of them ends with RES_null.
enum res_type : int {
    RES_null = 0,
    RES_help,
    RES_batch,
    RES_message,
    RES_file_path,
    RES_data_path,
    RES_con_path,
    RES_grid_path,
    RES_raw_path,
    RES_image_path,
    RES_watch_path,
    RES_text_path,
    RES_model_path,
    RES_sat_path,
    RES_city_file,
    RES_map_file,
    RES_name_conv,
    RES_in_file,
    RES_out_file,
    RES_file_param,
    RES_inputg,  ///< "input" under the option -inp
    RES_output,
    RES_model,
    RES_current,
    RES_hour,
    RES_num_hour,
    RES_grid_num,
    RES_grid_type,
    RES_plot_domain,
    RES_grid_domain,
    RES_region,
    RES_stat_prior,
    RES_time,
    RES_level,
    RES_variable,
    RES_plot_type,
    RES_plot_scale,
    RES_plot_format,
    RES_plot_param,
    RES_draw,
    RES_label,
    RES_con_interval,
    RES_con_base,
    RES_font_list,
    RES_color_table,
    RES_color_text,
    RES_color_data,
    RES_color_map,
    RES_color_grid,
    RES_color_line,
    RES_color_cmap,
    RES_color_cont,
    RES_color_fill,
    RES_color_label,
    RES_color_clabel,
    RES_device,
    RES_title,
    RES_icon,
    RES_background,
    RES_geometry,
    RES_filenames,  ///< all positional words
    // Known for other programs of the kit; no part of this one asks for them.
    RES_bull_file,
    RES_color_cloud,
    RES_color_front,
    RES_color_hodo,
    RES_color_hodtxt,
    RES_color_pop,
    RES_color_sound,
    RES_color_therm,
    RES_color_thrmtxt,
    RES_color_wind,
    RES_color_wx,
    RES_commands,  ///< "command" as positional words
    RES_command,
    RES_decode_hour,
    RES_filename,  ///< "filename" as the first positional word
    RES_forecast,
    RES_identifier,
    RES_ingestor,
    RES_input,  ///< "input" under the option -in
    RES_object_param,
    RES_parameter,
    RES_product,
    RES_state,
    RES_table,
    RES_values,
    RES_window_num,
    RES_color_watch,
    RES_log_file,
};

/// One row of the option table.
struct RES_defobj {
    std::string def;            ///< resource name; empty: the row is not in use
    std::string env;            ///< environment variable
    std::string cmd;            ///< option key, empty for a positional resource
    int position = 0;           ///< 1 to 9: the word at that place, 10: all words, 0 for an option
    DEF_convert cvt = CV_none;  ///< conversion
    res_out out;                ///< where a conversion stores its result
};

/// Reads all settings: resource files, environment, command line, each over the one before, then converts those that
/// act at start. `res_key` lists the options, `res_pos` the positional resources, each ended by RES_null. Result 1.
int RES_init(int argc, const char* const* argv, const res_type* res_key, const res_type* res_pos);

/// As RES_init, from a made table. `progname` is the path of the program; `class_name` has no effect. Result 0.
int RES_decode(const std::string& progname, const std::string& class_name, int argc, const char* const* argv,
               const std::vector<RES_defobj>& def_table);

/// Makes or replaces a resource. `index` is its row or MISS, `data` absent for an option without a value. 0, or -1
/// without memory.
int RES_new(int index, const std::string& name, const char* data, DEF_convert cvt);
/// As RES_new, but a new value goes behind an existing one and a newline.
int RES_append(int index, const std::string& name, const char* data, DEF_convert cvt);
/// Sets a free text resource.
int RES_put(const std::string& name, const std::string& value);

/// The value of a resource: null for an unknown name, empty for one without data. Valid until it is set again.
const char* RES_get(const std::string& name);
/// Converts the value of a resource into `out`. 1, or 0 if the resource is unknown or nothing was converted. A target
/// that doesn't take what the conversion gives is the caller's fault, and told as an error.
int RES_getval(const std::string& name, const res_out& out, DEF_convert cvt);
/// The words of a value, cut at newlines for a CV_strings resource and at commas for others. Result: their number.
int RES_getvals(const std::string& name, std::vector<std::string>& paramv);
/// Converts a text, absent for an option without a value, into `out`. 1 when converted, 0 when there was nothing to do.
int RES_conv_data(const char* data, const res_out& out, DEF_convert cvt);

/// False for a value that a conversion to a number or from a list of words makes nothing of.
bool RES_is_readable(const std::string& data, DEF_convert cvt);

/// True if `out` takes what the conversion gives.
bool RES_target_fits(const res_out& out, DEF_convert cvt);

/// Prints all resources.
void RES_list();

/// Keeps the command line for RES_get_prog.
void RES_setCL(int argc, const char* const* argv);
/// Path of the program as called.
std::string RES_get_prog();
/// Name of the program: the last part of its path.
std::string RES_get_progname();

/// Workstation type of a device word: by the ending of a picture file, else by the first letter.
int RES_set_device(const std::string& str);

/// Fills a row of the option table. `position` as in RES_defobj.
void RES_fill_obj(RES_defobj& obj, const char* def, const char* env, const char* cmd, int position, DEF_convert cvt);
/// Fills the row of a key. An unknown key leaves an empty name, and its number is printed on standard output.
void RES_enter(RES_defobj& obj, res_type key);

/// Prints the syntax of the program `name` with its options and positional words.
void RES_help_print(const std::string& name, const res_type* res_key, const res_type* res_pos);
/// Prints the help of one resource.
void RES_help_item(res_type res);

}  // namespace zav
