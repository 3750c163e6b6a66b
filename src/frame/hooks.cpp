#include "frame/hooks.h"

#include "frame/resrc.h"

namespace zav {
namespace {

struct State {
    frame_hooks hooks;
};
State state;

}  // namespace

frame_hooks& ZAV_hooks() { return state.hooks; }

file_ptr ZAV_open_file(const std::string& file, const char* access) {
    if (state.hooks.open_file != nullptr) return state.hooks.open_file(file, access);
    return file_ptr(std::fopen(file.c_str(), access));
}

std::string ZAV_lookup_path(const std::string& file) {
    const char* path = RES_get("file_path");
    if (state.hooks.add_path != nullptr) return state.hooks.add_path(path, file);
    std::string full = path != nullptr ? path : "";
    if (!full.empty() && full.back() != '/') full += '/';
    return full + file;
}

}  // namespace zav
