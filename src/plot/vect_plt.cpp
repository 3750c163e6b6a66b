// Not built yet: the drawing of vectors, barbs and streamlines. What follows is what it does with absent grids: the
// set-up settles nothing and VECT_draw says that it has nothing to draw. The plain settings are kept.

#include "plot/vect_plt.h"

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/zav.h"

namespace zav {
namespace {

struct State {
    int plot_type = MISS;
    int vect_type = MISS;
    float intrvl = FMISS;
    float scale = 1.0F;
    float base = FMISS;
    float grid_max = FMISS;
    int plt_vect = 0;
    std::string format;
};
State state;

}  // namespace

int VECT_plot_setup(int, int, GRD_report*, GRD_report*, Domain*, PLT_event_func) { return 0; }

int VECT_draw(GRD_report*, GRD_report*) {
    if (!FLAG_getplot(PLOT_DATA)) return 0;
    MESS_print(MESS_WARN, "VECT_draw: Invalid grids\n");
    return -1;
}

int VECT_draw_vect() { return 0; }

int VECT_stream(GRD_report*, GRD_report*, int, int, float) { return 0; }

int VECT_plot_grid(GRD_report*, GRD_report*, Domain*, PLT_event_func) { return 0; }

int VECT_plot(Domain*) { return 0; }

int VECT_init() {
    state.vect_type = MISS;
    state.intrvl = FMISS;
    state.base = FMISS;
    return 0;
}

int VECT_prompt_type() {
    const int type = state.vect_type != MISS ? state.vect_type : FLAG_get(FLAG_PLOT_TYPE);
    return type >= VECT_VECTORS && type <= VECT_STREAMLINES ? type : static_cast<int>(VECT_VECTORS);
}

int VECT_format_decode_type() { return 0; }

int VECT_format_decode_attrib(Gattribs*) { return 0; }

int VECT_param_decode() { return 0; }

int VECT_set_format(int type, const char* form) {
    state.plot_type = type;
    state.format = form != nullptr ? form : "";
    return 0;
}

int VECT_grid(const float*, const float*) { return 0; }

int VECT_set_scale(float scale) {
    state.scale = scale;
    return 0;
}

int VECT_set_intrvl(float intrvl) {
    state.intrvl = intrvl;
    return 0;
}

float VECT_get_intrvl() { return state.intrvl; }

int VECT_set_max(float max) {
    state.grid_max = max;
    return 0;
}

int VECT_set_type(int type) {
    state.vect_type = type;
    return 0;
}

int VECT_get_type() { return state.vect_type; }

int VECT_set_vect(int val) {
    state.plt_vect = val;
    return 0;
}

int VECT_get_vect() { return state.plt_vect; }

float VECT_get_vector_size() { return state.scale; }

int VECT_set_base(float base) {
    state.base = base;
    return 0;
}

}  // namespace zav
