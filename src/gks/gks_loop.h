#pragma once

/// Frames of a display and the loop over them. Frame numbers are 0 up, -1 the last, -2 the current, -3 the base pixmap.

#include "gks/x11/gks_x11.h"

namespace zav {

/// Largest number of frames.
constexpr int GFRAME_MAX = 128;

void ginit_loop();
int gcreate_frame(int ind);
int gclear_frame(int ind);
int gselect_frame(int ind);
int gswitch_frame(int ind1, int ind2);
int gcopy_frame(int dest, int src);
int gdisplay_frame(int ind);
int gdelete_frame(int ind);
int gdelete_all_frames();
int gget_num_images();
int gget_cur_frame();
void gloop_sleep();
void gset_looping(int looping);
int gget_looping();

/// 1 forward, 0 backward, 2 and 3 rocking (going down, going up).
void gset_loop_direct(int direct);
int gget_loop_direct();
void gtoggle_loop(int looping);

/// Seconds that a frame stays; -4 all but the last.
void gset_loop_delay(int ind, float delay);
void ginc_loop_delay(float inc);
float gget_loop_delay();
float gget_frame_delay(int ind);

/// The frame `step` on, or with 0 the next in the direction; -1 if there are none.
int ginc_frame(int step);
Gxid gget_frame_id(int ind);
void gset_frame_id(int ind, Gxid pixmap);

/// A caller's block of at most 50 bytes with a frame.
int gset_image_data(int ind, const char* data, int size);
int gget_image_data(int ind, char* data);
void gprint_frame_ids();
void gset_loop_title(int show);

}  // namespace zav
