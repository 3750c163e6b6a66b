#include "frame/zav.h"

namespace zav {

const char* ZAV_version() { return "5.60.4-LINUX-X11"; }

}  // namespace zav
