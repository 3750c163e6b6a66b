// Opening of the HPGL workstation: file name, parameter words, paper and geometry.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "gks/gks_obj.h"
#include "gks/gks_tran.h"
#include "gks/gks_ws.h"
#include "gks/hpgl/gks_hpgl.h"

namespace zav {
namespace {

constexpr int PAPER_DEPTH = 10;  // reported in place of a display's
constexpr double UNITS = 1015;   // of an inch
constexpr double MARGINS = 0.5;  // inches, both sides together
constexpr int OFFSET = 10;       // of the plot on the page, plotter units
constexpr float ROLL_WIDTH = 23.5F;

// The kernel holds output units to this range.
constexpr double LARGEST_COORDINATE = 100000;
constexpr float LARGEST_PAPER = 98;  // inches

struct Paper {
    float sx = 10.5F, sy = 8;  // inches
};

bool is_size(float value) { return value > 0 && value <= LARGEST_PAPER; }

void tell(const char* why, const std::string& text) {
    MESS_print(MESS_WARN, "gopen_ws: %s: %s\n", why, text.c_str());
    ZAV_note(STATUS_WORD);
}

void set_paper(const std::string& word, const Paper& wanted, Paper* paper) {
    if (is_size(wanted.sx) && is_size(wanted.sy)) {
        *paper = wanted;
    } else {
        tell("Paper is up to 98 by 98 inches", word);
    }
}

void read_scale(const std::string& word, const char* value) {
    const float scale = std::strtof(value, nullptr);
    if (std::isfinite(scale)) ghpgl_set_scale(scale);
    if (scale != 1) MESS_print(MESS_WARN, "gopen_ws: HPGL has the size of its paper and no scale: %s\n", word.c_str());
}

void read_rotation(const std::string& word, const char* value) {
    const int degrees = std::atoi(value);
    ghpgl_set_rotate(degrees);
    if (degrees != 0 && degrees != 90 && degrees != 180 && degrees != 270) {
        tell("A page is turned by 0, 90, 180 or 270 degrees", word);
    }
}

void read_width(const std::string& word, const char* value) {
    char* end = nullptr;
    const float width = std::strtof(value, &end);
    if (end != value && gis_size(width)) {
        ghpgl_set_base_width(width);
    } else {
        tell("Line width out of range", word);
    }
}

/// Words of PostScript, which a connection may bring that the environment sends to a plotter.
bool is_postscript_word(const std::string& word) {
    constexpr const char* words[] = {"color", "gray", "eps", "noeps"};
    return std::any_of(std::begin(words), std::end(words),
                       [&word](const char* name) { return stricmp(word.c_str(), name) == 0; });
}

void read_value(const std::string& word, bool rolls, Paper* paper) {
    if (const char* scale = gws_param_value(word, "scale")) {
        read_scale(word, scale);
    } else if (const char* width = gws_param_value(word, "lwidth")) {
        read_width(word, width);
    } else if (const char* degrees = gws_param_value(word, "rot")) {
        read_rotation(word, degrees);
    } else if (const char* size = gws_param_value(word, "sz")) {
        Paper wanted{0, 0};
        std::sscanf(size, "%fx%f", &wanted.sx, &wanted.sy);
        set_paper(word, wanted, paper);
    } else if (const char* length = gws_param_value(word, "roll")) {
        if (rolls) {
            set_paper(word, {std::strtof(length, nullptr), ROLL_WIDTH}, paper);
        } else {
            MESS_print(MESS_WARN, "gopen_ws: A roll is a word of zavhp_param alone: %s\n", word.c_str());
        }
    } else if (!gws_paper_size(word, &paper->sx, &paper->sy) && !is_postscript_word(word)) {
        tell("Unknown word of HPGL", word);
    }
}

void read_word(const std::string& word, bool rolls, Paper* paper) {
    struct Setting {
        const char* word;
        void (*set)(int);
        int value;
    };
    constexpr Setting settings[] = {
        {"pcl", ghpgl_set_pcl, 1},      {"nopcl", ghpgl_set_pcl, 0},   {"lj", ghpgl_set_pcl, 2},
        {"port", ghpgl_set_rotate, 90}, {"land", ghpgl_set_rotate, 0},
    };
    if (word.empty()) return;
    for (const Setting& setting : settings) {
        if (stricmp(word.c_str(), setting.word) == 0) return setting.set(setting.value);
    }
    read_value(word, rolls, paper);
}

Paper read_parameters(const std::vector<std::string>& words) {
    Paper paper;
    for (const std::string& word : parse_string(std::getenv("zavhp_param"), ',')) read_word(word, true, &paper);
    for (std::size_t i = 1; i < words.size(); ++i) read_word(words[i], false, &paper);
    return paper;
}

std::string geometry() {
    if (const char* resource = RES_get("geometry"); resource != nullptr && *resource != '\0') return resource;
    const char* value = std::getenv("zavhp_geometry");
    return value != nullptr ? value : "";
}

Gdevice_area drawing_area(const Paper& paper) {
    return {OFFSET, OFFSET, gtruncate(UNITS * (paper.sx - MARGINS)), gtruncate(UNITS * (paper.sy - MARGINS))};
}

/// Geometry in hundredths of an inch: size and offset, size alone, or offset alone.
void read_hundredths(const std::string& text, Gdevice_area* area) {
    const auto units = [](int start, int hundredths) { return gtruncate(start + UNITS / 100 * hundredths); };
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
    const int count = std::sscanf(text.c_str(), "%dx%d+%d+%d", &width, &height, &x, &y);
    if (count >= 2) {
        area->width = units(0, width);
        area->height = units(0, height);
    }
    if (count == 4 || (count < 2 && std::sscanf(text.c_str(), "+%d+%d", &x, &y) == 2)) {
        area->x = units(OFFSET, x);
        area->y = units(OFFSET, y);
    }
}

bool in_range(int start, int extent) {
    return start >= -LARGEST_COORDINATE && static_cast<double>(start) + extent <= LARGEST_COORDINATE;
}

/// The place of the plot on the page. It keeps an extent of at least 2.
Gdevice_area plot_area(const Gdevice_area& page) {
    constexpr int least = 2;
    const std::string text = geometry();
    Gdevice_area area = page;
    if (!gws_panel_geometry(text, &area)) read_hundredths(text, &area);
    if (!in_range(area.x, area.width) || !in_range(area.y, area.height)) {
        tell("Geometry beyond 98 inches", text);
        area = page;
    }
    area.width = std::max(area.width, least);
    area.height = std::max(area.height, least);
    return area;
}

}  // namespace

std::string ghpgl_file_name(const std::vector<std::string>& words) {
    if (!words.empty() && !words[0].empty()) return words[0];
    const char* name = std::getenv("zavhp_out");
    return name != nullptr && *name != '\0' ? name : "zav.hpgl";
}

int ghpgl_open(const std::vector<std::string>& words) {
    gset_cache(0);
    gset_redraw(0);
    gset_win_type(GWS_HPGL);
    gset_win_depth(PAPER_DEPTH);
    const bool opened = ghpgl_open_file(ghpgl_file_name(words));
    if (std::getenv("PSCOLOR") != nullptr) ghpgl_set_colorPS(1);
    if (!opened) {
        gerr_printf("gopen_ws", "unable to open HPGL file\n");
        return -1;
    }
    ghpgl_init();
    const Gdevice_area page = drawing_area(read_parameters(words));
    const Gdevice_area area = plot_area(page);
    ghpgl_init_file();
    gset_area(area);
    return 0;
}

}  // namespace zav
