#include <array>

#include "files/date.h"
#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_loop.h"
#include "gks/gks_ws.h"
#include "image/zavimg.h"
#include "plot/page/plt_state.h"
#include "plot/sequence/plt_plot.h"

namespace zav {
namespace {

struct Dump_format {
    int type;
    const char* file;   ///< default name
    const char* label;  ///< in messages
    int (*write)(const std::string& filename);
};

constexpr std::array<Dump_format, 4> FORMATS{{
    {PLT_DUMP_GIF, "zav.gif", "GIF", GIF_dump},
    {PLT_DUMP_IMG, "zav.xwd", "IMG", IMG_dump},
    {PLT_DUMP_PNG, "zav.png", "PNG", PNG_dump},
    {PLT_DUMP_XWD, "zav.xwd", "xdump", XWD_dump},
}};

/// The format of a type; XWD stands for all others.
const Dump_format& find_format(int type) {
    for (const Dump_format& format : FORMATS) {
        if (format.type == type) return format;
    }
    return FORMATS.back();
}

/// File of a frame: the pattern, filled in with the plot's date, title and frame.
std::string dump_path(const std::string& pattern) {
    constexpr char FRAME_KEY = 'i';
    constexpr char TITLE_KEY = 'p';
    Date date;
    FILE_get_date(&date);
    FILE_set_name(pattern);
    FILE_set_key(FRAME_KEY, gget_num_images() != 0 ? text_format("%2.2d", gget_cur_frame()) : "win");
    FILE_set_key(TITLE_KEY, gget_win_title());
    std::string name;
    FILE_set_date(&date, name);
    return FILE_add_path(RES_get("image_path"), name);
}

}  // namespace

int PLT_set_dump(int type, const std::string& filename) {
    PLT_state& plot = PLT_state_get();
    plot.dump = type;
    plot.dump_file = fit_text(!filename.empty() ? filename : find_format(type).file, FILE_NAME_SIZE);
    return 0;
}

int PLT_dump(int frame) {
    const PLT_state& plot = PLT_state_get();
    if (plot.dump == PLT_DUMP_NONE) return -1;
    FILE_save_name_conv();
    const std::string path = dump_path(plot.dump_file);
    if (gget_num_images() != 0) gselect_frame(frame);
    const Dump_format& format = find_format(plot.dump);
    const bool written = format.write(path) > 0;
    if (written) {
        MESS_print(MESS_PROGRESS, "Wrote %s file: %s\n", format.label, path.c_str());
    } else {
        MESS_print(MESS_WARN, "PLT_dump: Unable to write %s file: %s\n", format.label, path.c_str());
    }
    FILE_restore_name_conv();
    return written ? 0 : -1;
}

}  // namespace zav
