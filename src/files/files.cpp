#include "files/files.h"

#include <string>
#include <vector>

#include "files/files_state.h"
#include "files/lookup_lines.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"

namespace zav {
namespace {

constexpr std::size_t EXT_INFO_SIZE = 40;
constexpr std::size_t KEY_SIZE = 30;

struct SavedConvention {
    int late_off = 3600;
    std::string conv;
    std::string hconv;
    std::string ext;
    int min_size = 0;
    std::string filename;
    int filename_type = 0;
    std::string odd_name;
    Date odd_date;
};

struct State {
    NamingState naming;
    SavedConvention saved;
    LookupLines conventions;
    bool named = false;  // a convention was chosen before
};
State state;

std::string& key_slot(char key) { return state.naming.keys[static_cast<unsigned char>(key)]; }

/// Cuts ":c=value" keys off the name of a kind and stores them.
void take_keys(std::string& type) {
    std::size_t colon = type.find(':');
    std::size_t cut = std::string::npos;
    while (colon != std::string::npos) {
        const std::size_t next = type.find(':', colon + 1);
        const std::size_t end = next == std::string::npos ? type.size() : next;
        if (end > colon + 3 && type[colon + 2] == '=') {
            const char key = type[colon + 1];
            const std::string value = type.substr(colon + 3, end - colon - 3);
            FILE_set_key(key, value);
            MESS_print(0x80000000U, "KEY: %c = %s\n", key, value.c_str());
            if (cut == std::string::npos) cut = colon;
        }
        colon = next;
    }
    if (cut != std::string::npos) type.resize(cut);
}

/// One line of the name convention file.
struct Convention {
    std::string kind;
    std::string conv;
    std::string hconv;
    int min_size = 0;
};

Convention read_convention(const std::string& line) {
    Convention entry;
    std::vector<std::string> words = split_blanks(line);
    words.resize(4);
    entry.kind = words[0];
    entry.conv = words[1];
    if (!words[2].empty() && words[2][0] != '-') entry.hconv = words[2];
    entry.min_size = text_to_int(words[3]);
    return entry;
}

void take_convention(const Convention& entry) {
    state.naming.conv = fit_text(entry.conv, FILE_NAME_SIZE);
    state.naming.hconv = fit_text(entry.hconv, FILE_NAME_SIZE);
    state.naming.min_size = entry.min_size;
}

/// A template without a line of its own has no header file and takes a file of any size.
void take_bare_template(const std::string& text) { take_convention({"", text, "", 0}); }

/// True if a line's kind is the wanted one or a prefix of it.
bool kind_fits(const std::string& kind, const std::string& type) {
    return !kind.empty() && strnicmp(kind, type, static_cast<int>(kind.size())) == 0;
}

void report_match(const std::string& kind, const std::string& type) {
    if (kind.size() == type.size()) {
        MESS_print(0x10000000, "File name match for: %s\n", type.c_str());
        return;
    }
    const std::size_t bar = type.rfind('_');
    if (bar != std::string::npos) state.naming.ext = fit_text(type.substr(bar + 1), EXT_SIZE);
    MESS_print(0x10000000, "File name partial match for: %s-%s ext: %s\n", kind.c_str(), type.c_str(),
               state.naming.ext.c_str());
}

}  // namespace

NamingState& naming() { return state.naming; }

int FILE_set_name(const std::string& type) {
    NamingState& names = state.naming;
    if (!state.named) names.keys.fill({});
    state.named = true;
    names.filename.clear();
    names.odd_name.clear();
    if (stricmp(type, "none") == 0) {
        take_convention({});
        return 0;
    }
    if (!type.empty() && type[0] == '@') {
        take_bare_template(type.substr(1));
        return 1;
    }

    std::string kind = type;
    take_keys(kind);
    const char* given = RES_get("name_conv");
    const bool named = given != nullptr && given[0] != '\0';
    const std::string path = FILE_add_path(RES_get("file_path"), named ? given : "name_conv");
    if (!state.conventions.load(path)) {
        MESS_print(MESS_WARN, "FILE_set_name: No file name convention file: %s\n", path.c_str());
        take_bare_template(kind);
        return 0;
    }
    names.ext.clear();
    for (const std::string& line : state.conventions.lines()) {
        const Convention entry = read_convention(line);
        take_convention(entry);
        if (!kind_fits(entry.kind, kind)) continue;
        report_match(entry.kind, kind);
        return 1;
    }
    take_bare_template(kind);
    MESS_print(0x10000000, "No file name conversion for: %s\n", kind.c_str());
    return 0;
}

void FILE_set_key(char key, const std::string& str) {
    std::string& slot = key_slot(key);
    slot = fit_text(str, KEY_SIZE);
    fill_string(slot, ' ', '_');
}

void FILE_get_key(char key, std::string& str) { str = key_slot(key); }

const std::string& FILE_get_key(char key) { return key_slot(key); }

void FILE_set_name_conv(const std::string& str) {
    std::vector<std::string> words = split_blanks(str);
    words.resize(3);
    state.naming.late_off = text_to_int(words[0]);
    state.naming.conv = fit_text(words[1], FILE_NAME_SIZE);
    state.naming.hconv = fit_text(words[2], FILE_NAME_SIZE);
}

void FILE_get_name_conv(std::string& str) {
    const NamingState& names = state.naming;
    str = text_format("%d %s %s", names.late_off, names.conv.c_str(), names.hconv.c_str());
}

void FILE_save_name_conv() {
    const NamingState& names = state.naming;
    state.saved = {names.late_off, names.conv,          names.hconv,    names.ext,     names.min_size,
                   names.filename, names.filename_type, names.odd_name, names.odd_date};
}

void FILE_restore_name_conv() {
    NamingState& names = state.naming;
    const SavedConvention& saved = state.saved;
    names.late_off = saved.late_off;
    names.conv = saved.conv;
    names.hconv = saved.hconv;
    names.ext = saved.ext;
    names.min_size = saved.min_size;
    names.filename = saved.filename;
    names.filename_type = saved.filename_type;
    names.odd_name = saved.odd_name;
    names.odd_date = saved.odd_date;
}

void FILE_set_late_off(int val) { state.naming.late_off = val; }

int FILE_get_late_off() { return state.naming.late_off; }

void FILE_set_min_size(int val) { state.naming.rmin_size = val; }

int FILE_get_min_size() { return state.naming.rmin_size != 0 ? state.naming.rmin_size : state.naming.min_size; }

void FILE_set_ext_info(const std::string& str) { state.naming.ext_info = fit_text(str, EXT_INFO_SIZE); }

const std::string& FILE_get_ext_info() { return state.naming.ext_info; }

void FILE_set_filename(const std::string& str) {
    state.naming.filename = fit_text(str, FILE_NAME_SIZE);
    state.naming.filename_type = 1;
    state.naming.odd_name.clear();
}

int FILE_is_given() {
    const NamingState& names = state.naming;
    if (names.filename_type != 1) return 0;
    return names.odd_name.empty() && FILE_is_stream(names.filename) == 0 ? 1 : 2;
}

const std::string& FILE_get_filename() { return state.naming.filename; }

const std::string& FILE_get_filename(std::string& str) { return str = state.naming.filename; }

}  // namespace zav
