#pragma once

/// Private to the kernel: helpers that its primitives and workstations share.

#include "gks/gks.h"

namespace zav {

/// `value` truncated, and held to the range of an int; 0 for what isn't a number.
int gtruncate(double value);

/// Pixel coordinate as an X server takes it: rounded by adding 0.5.
short gpixel(float value);

/// A kernel's "GKS not opened" report in the name of `func`, unless a workstation is open. True if it is.
bool gcheck_open(const char* func);

/// True for a number from 0 up; anything else, infinite values included, is no size.
bool gis_size(float value);

/// The device rectangle, work copies and scales worked out again after a change of the device side.
void gtran_refresh();

/// Sets the clip of the device to the current viewport.
void gtran_clip();

}  // namespace zav
