#pragma once

#include <string>

#include "frame/mess.h"
#include "grid/grd_read.h"
#include "program/install.h"

/// Opens the grid file that a benchmark program walks through, with warnings alone shown. The handle, or -1.
inline int open_grid_file(const std::string& name) {
    zav::ZAV_install_hooks();
    zav::MESS_set(0, zav::MESS_WARN);
    int type = 0;
    const int fd = zav::GRD_open(name, 0, &type);
    zav::GRD_info info;
    return fd >= 0 && zav::GRD_getinfo(fd, &info) == 0 ? fd : -1;
}
