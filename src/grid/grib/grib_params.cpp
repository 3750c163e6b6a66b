#include <array>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "files/files.h"
#include "files/lookup_lines.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr const char* LOOKUP_FILE = "grib2_var.lup";

struct State {
    LookupLines file;
    /// Lines by discipline, category and parameter, in file order.
    std::map<std::array<int, 3>, std::vector<GribParam>> params;
};

State state;

bool parse_line(const std::string& line, GribParam* param) {
    std::array<char, 20> name{};
    std::array<char, 30> units{};
    std::array<char, 80> lname{};
    GribParam_init(param);
    const int found = std::sscanf(line.c_str(), "%9d %9d %9d %9d %19s %29s %79[^\n]\n", &param->src, &param->disc,
                                  &param->cat, &param->param, name.data(), units.data(), lname.data());
    param->name = name.data();
    param->units = units.data();
    param->lname = lname.data();
    return found >= 4;
}

/// Reads the file, unless it is the one read before and hasn't changed. False without a file.
bool load() {
    const int before = state.file.changes();
    const bool loaded = state.file.load(FILE_add_path(RES_get("file_path"), LOOKUP_FILE));
    if (state.file.changes() == before) return loaded;
    state.params.clear();
    for (const std::string& line : state.file.lines()) {
        GribParam param;
        if (parse_line(line, &param)) state.params[{param.disc, param.cat, param.param}].push_back(param);
    }
    return loaded;
}

}  // namespace

void GribParam_init(GribParam* param) {
    param->ind = MISS;
    param->src = MISS;
    param->disc = MISS;
    param->cat = MISS;
    param->param = MISS;
    param->name.clear();
    param->units.clear();
    param->lname.clear();
}

GribParam GRIB_get_ver2_param(int src, int disc, int cat, int param) {
    GribParam result;
    GribParam_init(&result);
    if (!load()) return result;
    const auto lines = state.params.find({disc, cat, param});
    if (lines != state.params.end()) {
        for (const GribParam& line : lines->second) {
            if (line.src != 0 && line.src != src) continue;
            result = line;
            result.ind = VAR_search_var_num(line.name);
            break;
        }
    }
    // An unknown name gives 0; composite numbers and table numbers are above it.
    if (result.ind <= 0) {
        result.ind = disc * 1000000 + cat * 1000 + param;
        MESS_print(MESS_DEBUG, "VER2: %d %d %d %d\n", src, disc, cat, param);
    }
    return result;
}

}  // namespace zav
