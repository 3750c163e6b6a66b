// Not built yet: weather symbols and station circles. What follows is what they do without a symbol file: nothing is
// drawn.

#include "plot/wx_symb.h"

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"

namespace zav {

int WX_symb_file(const char* file) {
    const std::string path = FILE_add_path(RES_get("file_path"), file != nullptr ? file : "wx.smb");
    MESS_print(0x40U, "WX_symb_file: Unable to open file: %s\n", path.c_str());
    return -1;
}

int WX_symb(float, float, const std::string&, float) { return 0; }

int WX_cloud(float, float, float, char) { return 0; }

}  // namespace zav
