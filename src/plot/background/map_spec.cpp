// Items of the map list: one piece of the background with the conditions under which it is drawn.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks.h"
#include "gks/gks_img.h"
#include "gks/meta/gks_meta.h"
#include "gks/zavgks.h"
#include "plot/background/map.h"
#include "plot/background/map_levels.h"
#include "plot/background/map_state.h"
#include "plot/page/colors.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr int DASHED = 4;

bool begins(const std::string& text, const char* word) { return text.rfind(word, 0) == 0; }

/// True if `word` is a number and nothing else.
bool is_number(const std::string& word, float& value) {
    char* end = nullptr;
    value = std::strtof(word.c_str(), &end);
    return end != word.c_str() && *end == '\0';
}

// ---- what stands in front of an item

/// Which items of a pass are drawn. Filled map files without a mark lie under the data, which they would hide, also
/// where the map's lines go over it.
enum class Kinds { NONE, ALL, FILLED, LINES };

Kinds plain_kinds(int passes) {
    if (PLT_letter()) return (passes & MAP_PASS_PLAIN) != 0 ? Kinds::ALL : Kinds::NONE;
    if ((passes & MAP_PASS_PLAIN) == 0) return (passes & MAP_PASS_UNDER) != 0 ? Kinds::FILLED : Kinds::NONE;
    return (passes & MAP_PASS_OVER) != 0 ? Kinds::LINES : Kinds::ALL;
}

/// Takes the prefix off, and tells which items of its kind belong to the pass.
Kinds kinds_in_pass(std::string& spec) {
    if (spec[0] != '-' && spec[0] != '+') return plain_kinds(map_background.over);
    const int pass = spec[0] == '-' ? MAP_PASS_UNDER : MAP_PASS_OVER;
    spec.erase(0, 1);
    return (map_background.over & pass) != 0 ? Kinds::ALL : Kinds::NONE;
}

bool is_filled(const std::string& spec) {
    const std::size_t cut = spec.find(':');
    Gattribs attrib;
    ATTRIB_init(&attrib);
    if (cut != std::string::npos) ATTRIB_parse(spec.substr(cut + 1), &attrib);
    return attrib.fill_pat != MISS;
}

/// Region lines make a list of which the first block that holds is drawn.
void open_region(const std::string& spec) {
    constexpr float ANY_SIZE = 1000.0F;
    int& found = map_background.reg_found;
    if (found == 2) {
        found = -1;
        return;
    }
    float lat1 = 0.0F;
    float lat2 = 0.0F;
    float lon1 = 0.0F;
    float lon2 = 0.0F;
    float size = ANY_SIZE;
    if (std::sscanf(spec.c_str() + 1, "%f,%f,%f,%f,%f", &lat1, &lat2, &lon1, &lon2, &size) < 4) {
        found = 2;
        return;
    }
    if (lat1 > lat2) std::swap(lat1, lat2);
    if (lon1 > lon2) std::swap(lon1, lon2);
    const float lat = MAP_get_clat();
    const float lon = MAP_get_clon();
    if (lat >= lat1 && lat <= lat2 && lon >= lon1 && lon <= lon2 && MAP_get_vert() <= size) {
        found = 2;
    } else if (found == 1) {
        found = 0;
    }
}

/// A condition on the plot's height in map units, and a second, opposite one.
struct Scale_form {
    const char* mark;
    bool at_least;
    char second;  ///< mark of an opposite bound that may follow, 0 for none
};
/// In the order in which they are looked for, so that one text can hold two of them.
constexpr Scale_form SCALE_FORMS[] = {
    {"s+", true, 0}, {">", true, '<'}, {"s-", false, 0}, {"<", false, '>'}, {"s+", true, 0}, {">", true, 0},
};

/// Takes the conditions off the text. False if one of them doesn't hold.
bool scale_fits(std::string& spec) {
    const float vert = MAP_get_vert();
    for (const Scale_form& form : SCALE_FORMS) {
        if (!begins(spec, form.mark)) continue;
        const std::size_t end = spec.find(':');
        const std::string text = spec.substr(0, end).substr(std::char_traits<char>::length(form.mark));
        spec.erase(0, end == std::string::npos ? end : end + 1);
        char* rest = nullptr;
        const float size = std::strtof(text.c_str(), &rest);
        if (form.at_least ? vert < size : vert > size) return false;
        if (form.second == 0 || *rest != form.second) continue;
        const float size2 = std::strtof(rest + 1, nullptr);
        if (form.at_least ? vert > size2 : vert < size2) return false;
    }
    return true;
}

// ---- items; `text` is what follows the item's word

int draw_image(const std::string& text) {
    constexpr int NAME_LENGTH = 49;
    const std::size_t cut = text.find(':');
    const std::string file = text.substr(0, cut);
    char format[NAME_LENGTH + 1] = "";
    int x = 0;
    int y = 0;
    if (cut != std::string::npos && std::sscanf(text.c_str() + cut, ":%49[^:]:%8d:%8d", format, &x, &y) < 1) {
        std::sscanf(text.c_str() + cut, "::%8d:%8d", &x, &y);
    }
    PLT_mess("Map-image: %s", file.c_str());
    goverlay_image_file(FILE_add_path(RES_get("image_path"), file), format[0] == '\0' ? nullptr : format, x, y);
    return 0;
}

int draw_window_image(const std::string& text) {
    GPH_trans(1);
    draw_image(text);
    GPH_trans(2);
    return 0;
}

int draw_metafile(const std::string& text) {
    PLT_mess("Map-metafile: %s", text.c_str());
    gread_metafile(text);
    return 0;
}

int draw_raw_file(const std::string& text) {
    PLT_mess("Map-rawfile: %s", text.c_str());
    if (map_background.raw_plot != nullptr) map_background.raw_plot(FILE_add_path(RES_get("file_path"), text), 0);
    return 0;
}

/// `text`: a separator, dlat[:dlon][:attributes].
int draw_lines(const std::string& text) {
    constexpr float USUAL_STEP = 5.0F;
    std::string rest = text.empty() ? "" : text.substr(1);
    float steps[2] = {USUAL_STEP, USUAL_STEP};
    for (int i = 0; i < 2; ++i) {
        const std::size_t cut = rest.find(':');
        float value = 0.0F;
        const bool empty = cut == 0;
        if (!empty && !is_number(rest.substr(0, cut), value)) break;
        // An empty place keeps the step that it has.
        for (int k = i; k < 2 && !empty; ++k) steps[k] = value;
        rest.erase(0, cut == std::string::npos ? cut : cut + 1);
    }
    Gattribs attrib;
    ATTRIB_init(&attrib);
    attrib.style = DASHED;
    if (!rest.empty()) {
        ATTRIB_parse(rest, &attrib);
    } else {
        ATTRIB_get("color_line", "magenta:s4", &attrib);
    }
    GPH_line_attr(&attrib);
    GPH_text_attr(&attrib, map_text_height());
    if (attrib.color != CLR_NONE) MAP_lines(steps[0], steps[1]);
    return 0;
}

int draw_one_file(const std::string& path, const std::string& name, bool visible) {
    std::vector<char> buffer(1U << 16U);
    const file_ptr file = FILE_open_data(path);
    if (file == nullptr) {
        MESS_print(MESS_WARN, "MAP_process: Map file not found: %s\n", name.c_str());
        ZAV_note(STATUS_LAYER);
        return -1;
    }
    PLT_mess("Map: %s", name.c_str());
    std::setvbuf(file.get(), buffer.data(), _IOFBF, buffer.size());
    if (visible) MAP_map(file.get());
    return 0;
}

/// `text`: file[:attributes].
int draw_map_file(const std::string& text) {
    const std::size_t cut = text.find(':');
    const std::string name = text.substr(0, cut);
    const std::string attributes = cut == std::string::npos ? "" : text.substr(cut + 1);
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    Gattribs attrib;
    ATTRIB_init(&attrib);
    if (!attributes.empty()) {
        ATTRIB_parse(attributes, &attrib);
    } else if (!map_background.format.empty()) {
        ATTRIB_parse(map_background.format, &attrib);
    } else if (map_background.fill_cont != 0) {
        ATTRIB_get("color_cmap", "black", &attrib);
    } else {
        ATTRIB_get("color_map", "red", &attrib);
    }
    GPH_line_attr(&attrib);
    if (!PLT_letter()) map_background.fill = false;
    if (attrib.fill_pat != MISS) {
        GPH_fill_attr(&attrib);
        map_background.fill = true;
    }
    int status = 0;
    for (const std::string& path : map_levels(FILE_add_path(RES_get("file_path"), name))) {
        status = std::min(status, draw_one_file(path, name, attrib.color != CLR_NONE));
    }
    return status;
}

struct Item {
    const char* word;
    int (*draw)(const std::string& text);
};
constexpr Item ITEMS[] = {
    {"im:", draw_image},    {"if:", draw_window_image}, {"mf:", draw_metafile},
    {"rf:", draw_raw_file}, {"lalo", draw_lines},       {"", draw_map_file},
};

}  // namespace

int MAP_process(const std::string& str) {
    if (str.empty()) return -1;
    std::string spec = str;
    // A block without a prefix holds for the items of every pass.
    const Kinds kinds = begins(spec, "[") ? Kinds::ALL : kinds_in_pass(spec);
    if (kinds == Kinds::NONE) return -1;
    if (begins(spec, "[")) {
        open_region(spec);
        return -1;
    }
    if (map_background.reg_found < 1 || !scale_fits(spec) || spec.empty()) return -1;
    const Item* item =
        std::find_if(std::begin(ITEMS), std::end(ITEMS), [&](const Item& i) { return begins(spec, i.word); });
    const bool filled = item->draw == draw_map_file && is_filled(spec);
    if ((kinds == Kinds::FILLED && !filled) || (kinds == Kinds::LINES && filled)) return -1;
    return item->draw(spec.substr(std::char_traits<char>::length(item->word)));
}

}  // namespace zav
