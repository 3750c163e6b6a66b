// Not built yet: events of a window. What follows is what the kernel does without a window: there are no events.

#include "gks/gks_evnt.h"

namespace zav {
namespace {

constexpr int LEAVE_HOLD = 3;

struct State {
    int input_mode = 0;
};
State state;

}  // namespace

void ginit_event(int type) {
    if (type == 0) state.input_mode = 0;
}

int gcheck_event() { return 0; }
int gwait_event() { return 0; }
void gset_mouse_callback(Gmouse_callback) {}
int gis_mapped() { return 0; }
void gset_input_mode(int mode) { state.input_mode = mode == 1 ? 1 : 0; }
int gget_input_mode() { return state.input_mode != LEAVE_HOLD; }
void gset_rubber_band(int) {}
void gset_rubber_band_points(const Gpt*, int, int) {}
void gset_rubber_band_limits(const Gpt*) {}

}  // namespace zav
