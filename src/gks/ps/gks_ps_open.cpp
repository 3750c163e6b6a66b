// Opening of the PostScript workstation: file name, parameter words, paper and geometry.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_tran.h"
#include "gks/gks_ws.h"
#include "gks/ps/gks_ps.h"

namespace zav {
namespace {

constexpr int PAPER_DEPTH = 10;          // reported in place of a display's
constexpr float SMALLEST_SCALE = 0.01F;  // with two decimals a smaller one would be 0
constexpr float LARGEST_PAPER = 1000;    // inches
constexpr double POINTS_PER_INCH = 72;
constexpr double MARGINS = 0.5;  // inches, both sides together

struct Paper {
    float sx = 11, sy = 8.5F;  // inches
};

bool is_size(float value) { return value > 0 && value <= LARGEST_PAPER; }

void read_value(const std::string& word, Paper* paper) {
    if (const char* value = gws_param_value(word, "scale")) {
        const float scale = std::strtof(value, nullptr);
        if (std::isfinite(scale) && scale >= SMALLEST_SCALE) gps_set_scale(scale);
    } else if (const char* width = gws_param_value(word, "lwidth")) {
        gps_set_base_width(std::max(0, gtruncate(std::strtod(width, nullptr))));
    } else if (const char* size = gws_param_value(word, "sz")) {
        Paper wanted;
        const int count = std::sscanf(size, "%fx%f", &wanted.sx, &wanted.sy);
        if (count == 2 && is_size(wanted.sx) && is_size(wanted.sy)) *paper = wanted;
    } else {
        gws_paper_size(word, &paper->sx, &paper->sy);
    }
}

/// Colour, with black for white, as the paper is white.
void set_color() {
    gps_set_colorPS(1);
    gset_inverse(1);
}

void read_word(const std::string& word, Paper* paper) {
    if (stricmp(word, "port") == 0) {
        gps_set_orient(1);
    } else if (stricmp(word, "land") == 0) {
        gps_set_orient(0);
    } else if (stricmp(word, "eps") == 0) {
        gps_set_EPS(1);
    } else if (stricmp(word, "noeps") == 0) {
        gps_set_EPS(0);
    } else if (stricmp(word, "color") == 0) {
        set_color();
    } else if (stricmp(word, "gray") == 0) {
        gps_set_colorPS(0);
    } else {
        read_value(word, paper);
    }
}

Paper read_parameters(const std::vector<std::string>& words) {
    Paper paper;
    for (const std::string& word : parse_string(std::getenv("zavps_param"), ',')) read_word(word, &paper);
    for (std::size_t i = 1; i < words.size(); ++i) read_word(words[i], &paper);
    return paper;
}

std::string geometry() {
    if (const char* resource = RES_get("geometry"); resource != nullptr && *resource != '\0') return resource;
    for (const char* variable : {"zavps_geometry", "PSGEOMETRY"}) {
        if (const char* value = std::getenv(variable)) return value;
    }
    return {};
}

Gdevice_area drawing_area(const Paper& paper) {
    Gdevice_area area;
    area.width = gtruncate(POINTS_PER_INCH * (paper.sx - MARGINS));
    area.height = gtruncate(POINTS_PER_INCH * (paper.sy - MARGINS));
    return area;
}

}  // namespace

std::string gps_file_name(const std::vector<std::string>& words) {
    if (!words.empty() && !words[0].empty()) return words[0];
    for (const char* variable : {"zavps_print", "PSPRINT"}) {
        if (const char* name = std::getenv(variable); name != nullptr && *name != '\0') return name;
    }
    return "zav.ps";
}

int gps_open(const std::vector<std::string>& words) {
    gset_cache(0);
    gset_redraw(0);
    gset_win_type(GWS_PS);
    gset_win_depth(PAPER_DEPTH);
    const bool opened = gps_open_file(gps_file_name(words));
    if (std::getenv("PSCOLOR") != nullptr) set_color();
    if (!opened) {
        gerr_printf("gopen_ws", "unable to open postscript file\n");
        return -1;
    }
    gps_init();
    const Paper paper = read_parameters(words);
    const Gdevice_area page = drawing_area(paper);
    Gdevice_area area = page;
    gws_geometry(geometry(), &area);
    gps_set_size(paper.sx, paper.sy);
    gps_set_box(area, page);
    gps_init_file();
    gset_area(area);
    return 0;
}

}  // namespace zav
