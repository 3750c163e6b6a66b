#pragma once

#include <vector>

#include "frame/menu.h"
#include "map/region.h"

namespace zav {

/// Flag that tells how the last domain text was read.
constexpr int FLAG_DOMAIN = 5;

/// Entries of the region menu: the way back, the regions, the end.
constexpr int REGION_MENU_SIZE = 23;
/// Most regions that a file gives.
constexpr int REGION_FILE_MAX = 19;

/// State of the domains, shared by the files of this unit.
struct region_state {
    std::vector<MENU_item> menu;  ///< empty until the first need
    int num_regs = 0;             ///< entry behind the last one of a region file, 0 until one was read
    int menu_type = 0;            ///< display column of the menu
    int priority = 3;             ///< station priority of plots
    int loc_prior = 4;
    int prompt_region = 1;
    int depth = 0;  ///< region files that name regions that name regions
};
region_state& DOM_module();

/// A built-in region, drawn on a polar stereographic map of 25 by 17 points that is tangent at its centre.
struct def_region {
    const char* abbr;
    const char* name;
    float clat;
    float clon;
    float step;  ///< spacing in 100 km
};
constexpr def_region DEF_REGIONS[] = {
    {"us", "Contiguous US", 39.0F, -97.0F, 2.3F}, {"ne", "New England", 42.0F, -76.0F, 0.9F},
    {"at", "Atlantic", 37.0F, -82.0F, 0.9F},      {"se", "Southeastern", 31.0F, -88.0F, 1.1F},
    {"mw", "Midwestern", 43.0F, -93.0F, 1.1F},    {"sp", "Southern Plains", 32.5F, -100.0F, 1.2F},
    {"nw", "Northwestern", 44.0F, -112.0F, 1.0F}, {"sw", "Southwestern", 37.0F, -112.0F, 1.0F},
    {"var", "Variable", FMISS, FMISS, 1.2F},
};

/// Size and spacing of a domain whose text doesn't give them.
constexpr int DEF_NX = 25;
constexpr int DEF_NY = 17;
constexpr float DEF_STEP = 1.2F;

/// Name of the region file that ships with the program.
constexpr const char* REGION_FILE = "zav.reg";

}  // namespace zav
