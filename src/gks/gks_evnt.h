#pragma once

/// Interaction while a plot stands on a display.

#include "gks/gks.h"

namespace zav {

/// Called for a key or resize (type 2) or a mouse button (3), with the position in world coordinates.
using Gmouse_callback = void (*)(int type, const char* str, float x, float y);

void ginit_event(int type);

/// Handles the pending events; the number of those that came from the user.
int gcheck_event();

/// Waits for an event, then does as gcheck_event.
int gwait_event();

void gset_mouse_callback(Gmouse_callback callback);
int gis_mapped();

/// 1 begins a hold, any other value ends it.
void gset_input_mode(int mode);

/// True unless the user left the hold.
int gget_input_mode();

/// 0 none, 1 line, 2 rectangle, 3 joined lines.
void gset_rubber_band(int mode);

/// Points of a joined band in world coordinates; `con` 1 keeps x fixed, 2 keeps y fixed.
void gset_rubber_band_points(const Gpt* pts, int num, int con);

/// Two world points that bound the moving end.
void gset_rubber_band_limits(const Gpt* pts);

}  // namespace zav
