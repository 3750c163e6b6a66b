// Not built yet: frames and the animation loop. What follows is what the kernel does without a display: no frame can be
// made, so there are none.

#include "gks/gks_loop.h"

namespace zav {
namespace {

constexpr float LOOP_DELAY = 0.5F;  // seconds

}  // namespace

void ginit_loop() {}
int gcreate_frame(int) { return -1; }
int gclear_frame(int) { return 0; }
int gselect_frame(int) { return 0; }
int gswitch_frame(int, int) { return 0; }
int gcopy_frame(int, int) { return 0; }
int gdisplay_frame(int) { return 0; }
int gdelete_frame(int) { return 0; }
int gdelete_all_frames() { return 0; }
int gget_num_images() { return 0; }
int gget_cur_frame() { return -1; }
void gloop_sleep() {}
void gset_looping(int) {}
int gget_looping() { return 0; }
void gset_loop_direct(int) {}
int gget_loop_direct() { return 1; }
void gtoggle_loop(int) {}
void gset_loop_delay(int, float) {}
void ginc_loop_delay(float) {}
float gget_loop_delay() { return LOOP_DELAY; }
float gget_frame_delay(int) { return LOOP_DELAY; }
int ginc_frame(int) { return -1; }
Gxid gget_frame_id(int) { return 0; }
void gset_frame_id(int, Gxid) {}
int gset_image_data(int, const char*, int) { return -1; }
int gget_image_data(int, char*) { return -1; }
void gprint_frame_ids() {}
void gset_loop_title(int) {}

}  // namespace zav
