// Not built yet: fonts of the display's server. What follows is what a workstation without a display does: no such
// font can be loaded, so none is ever drawn with.

#include "gks/gks_text_state.h"

namespace zav {

bool gxfont_load(const std::string&) { return false; }

void gxfont_text(const Gpt&, const std::string&) {}

}  // namespace zav
