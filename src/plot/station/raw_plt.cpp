// Not built yet: plots of raw data files. What follows is what a file that can't be opened does.

#include "plot/station/raw_plt.h"

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"

namespace zav {

int RAW_plot_file(const std::string& file, int) {
    const std::string path = FILE_add_path(RES_get("raw_path"), file);
    MESS_print(MESS_WARN, "RAW_file_open: Unable to open file:%s\n", path.c_str());
    return 0;
}

}  // namespace zav
