#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "frame/def_read.h"
#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/resrc_list.h"
#include "frame/resrc_window.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr M_type TRACE = 0x80000000U;
constexpr const char* DEFAULT_PATH = ".:/home/zav/etc:/usr/local/zav/etc";
constexpr std::size_t OPTION_SIZE = 50;
constexpr int ALL_WORDS = 10;

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// A dash and a letter.
bool starts_option(const char* word) { return word[0] == '-' && is_letter(word[1]); }

bool is_option(const char* word) { return starts_option(word) || (word[0] == '-' && starts_option(word + 1)); }

/// One option of the command line.
struct Option {
    std::string name;
    const char* value = nullptr;  // absent without one
    bool from_next = false;       // the value is the next word
};

/// Reads the option `argv[i]`, its name without dashes.
Option read_option(int argc, const char* const* argv, int i) {
    const std::string_view word = argv[i] + std::strspn(argv[i], "-");
    const std::size_t equals = word.find('=');
    Option option;
    option.name = fit_text(word.substr(0, equals), OPTION_SIZE);
    if (equals != std::string_view::npos) {
        option.value = word.data() + equals + 1;
    } else if (i + 1 < argc && !starts_option(argv[i + 1])) {
        option.value = argv[i + 1];
        option.from_next = true;
    }
    return option;
}

bool is_prefix(const std::string& name, std::string_view whole) { return whole.substr(0, name.size()) == name; }

/// First pass over the command line, for the program's name and the default path alone.
void take_start_options(int argc, const char* const* argv) {
    for (int i = 1; i < argc; ++i) {
        if (!starts_option(argv[i])) continue;
        const Option option = read_option(argc, argv, i);
        if (option.from_next) ++i;
        if (option.value == nullptr) continue;
        if (is_prefix(option.name, "name")) {
            RES_put("name", option.value);
            DEF_name(option.value);
        } else if (option.name.compare(0, 7, "default") == 0 || option.name.compare(0, 2, "df") == 0) {
            RES_put("default", option.value);
        }
    }
}

/// Options that the first pass has dealt with.
bool is_start_option(const std::string& name) {
    std::string lower = name;
    low_string(lower);
    return is_prefix(lower, "name") || lower.compare(0, 7, "default") == 0 || lower.compare(0, 2, "df") == 0;
}

/// The decoding of one run.
class Decoder {
  public:
    Decoder(int argc, const char* const* argv, const std::vector<RES_defobj>& rows)
        : argc_(argc), argv_(argv), rows_(rows) {}

    void read_path(const std::string& path);
    void read_environment();
    void read_command_line();
    void convert() const;
    void check() const;

  private:
    void read_file(const std::string& entry);
    void take_pair(const std::string& resrc, const std::string& value);
    void take_positional(int pos, const char* word);
    void take_option(int& i);
    int find_option(const std::string& name) const;
    int find_position(int pos) const;
    void put(int row, const char* value) { RES_new(row, rows_[row].def, value, rows_[row].cvt); }

    template <class Test>
    int find_row(const Test& test) const {
        const auto found = std::find_if(rows_.begin(), rows_.end(), test);
        return found != rows_.end() ? static_cast<int>(found - rows_.begin()) : -1;
    }

    int argc_;
    const char* const* argv_;
    const std::vector<RES_defobj>& rows_;
    LoopWindow window_;
};

void Decoder::read_path(const std::string& path) {
    std::vector<std::string> entries = parse_string(path, ':');
    if (entries.empty()) entries.emplace_back();
    for (const std::string& entry : entries) {
        if (!entry.empty() && entry.front() == '+') {
            DEF_tag(entry.substr(1));
        } else if (!entry.empty() && entry.front() == '#') {
            window_.open(entry.substr(1), rows_);
        } else {
            read_file(entry);
        }
    }
}

void Decoder::read_file(const std::string& entry) {
    DEF_open(entry);
    const bool trusted = DEF_trusted();
    std::string resrc;
    std::string value;
    while (DEF_get(resrc, value) == 1) {
        if (trusted || value.find('|') == std::string::npos) {
            take_pair(resrc, value);
        } else {
            MESS_print(MESS_WARN, "RES_decode: A command in a file that others may write doesn't count: %s\n",
                       resrc.c_str());
        }
    }
    DEF_close();
}

void Decoder::take_pair(const std::string& resrc, const std::string& value) {
    bool known = false;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (rows_[row].def.empty() || !DEF_cmp(rows_[row].def, resrc)) continue;
        MESS_print(TRACE, "RESRC: %s=%s\n", rows_[row].def.c_str(), value.c_str());
        put(static_cast<int>(row), value.c_str());
        known = true;
    }
    if (!known && DEF_valid(resrc)) RES_put(DEF_parse_name(resrc), value);
}

void Decoder::read_environment() {
    std::string value;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (rows_[row].def.empty()) continue;
        if (DEF_env(rows_[row].def, rows_[row].env, value) == 1) put(static_cast<int>(row), value.c_str());
    }
}

void Decoder::read_command_line() {
    int pos = 0;
    for (int i = 1; i < argc_; ++i) {
        if (std::strcmp(argv_[i], "--") == 0) continue;
        if (is_option(argv_[i])) {
            take_option(i);
        } else {
            take_positional(++pos, argv_[i]);
        }
    }
    if (window_.linked()) window_.quit();
}

int Decoder::find_position(int pos) const {
    const int row =
        find_row([pos](const RES_defobj& def) { return !def.def.empty() && def.position == pos && pos < ALL_WORDS; });
    if (row >= 0) return row;
    return find_row([](const RES_defobj& def) { return !def.def.empty() && def.position == ALL_WORDS; });
}

void Decoder::take_positional(int pos, const char* word) {
    const int row = find_position(pos);
    if (row < 0) return;
    if (rows_[row].position == ALL_WORDS && pos >= 2) {
        RES_append(row, rows_[row].def, word, rows_[row].cvt);
    } else {
        put(row, word);
    }
}

/// The row that an option addresses: by its key, by the resource's name, by the start of that name; -1 if none does.
int Decoder::find_option(const std::string& name) const {
    int row = find_row(
        [&](const RES_defobj& def) { return !def.def.empty() && !def.cmd.empty() && stricmp(def.cmd, name) == 0; });
    if (row < 0) {
        row = find_row([&](const RES_defobj& def) { return !def.def.empty() && stricmp(def.def, name) == 0; });
    }
    if (row < 0) {
        row = find_row([&](const RES_defobj& def) {
            return !def.def.empty() && !def.cmd.empty() && strnicmp(def.def, name, static_cast<int>(name.size())) == 0;
        });
    }
    return row;
}

/// Takes the option `argv[i]`, and moves `i` to its value if that is the next word.
void Decoder::take_option(int& i) {
    Option option = read_option(argc_, argv_, i);
    if (is_start_option(option.name)) {
        if (option.from_next) ++i;
        return;
    }
    const int row = find_option(option.name);
    const DEF_convert cvt = row >= 0 ? rows_[row].cvt : CV_string;
    if (option.from_next && (cvt == CV_bool || cvt == CV_batch || cvt == CV_help)) {
        option.value = nullptr;
        option.from_next = false;
    }
    if (option.from_next) ++i;
    if (row < 0) {
        RES_new(MISS, option.name, option.value, CV_string);
        return;
    }
    put(row, option.value);
    if (window_.linked()) window_.set(rows_[row].def, option.value != nullptr ? option.value : "");
}

void Decoder::convert() const {
    // By number: a conversion may add resources.
    for (std::size_t i = 0; i < RES_objects().size(); ++i) {
        const res_obj& object = RES_objects()[i];
        if (object.index < 0 || static_cast<std::size_t>(object.index) >= rows_.size()) continue;
        RES_conv_data(object.data ? object.data->c_str() : nullptr, rows_[object.index].out, rows_[object.index].cvt);
    }
}

/// Tells values that mean nothing. Behind the conversions, so that any level of messages is in force.
void Decoder::check() const {
    for (const res_obj& object : RES_objects()) {
        if (object.index < 0 || static_cast<std::size_t>(object.index) >= rows_.size()) continue;
        const RES_defobj& row = rows_[object.index];
        if (!object.data || object.data->empty() || RES_is_readable(*object.data, row.cvt)) continue;
        MESS_print(MESS_WARN, "The value of %s (-%s) can't be read: %s\n", row.def.c_str(), row.cmd.c_str(),
                   object.data->c_str());
        ZAV_note(STATUS_WORD);
    }
}

}  // namespace

int RES_init(int argc, const char* const* argv, const res_type* res_key, const res_type* res_pos) {
    FLAG_reset(MISS);
    std::vector<RES_defobj> table;
    for (const res_type* list : {res_key, res_pos}) {
        for (; list != nullptr && *list != RES_null; ++list) RES_enter(table.emplace_back(), *list);
    }
    RES_decode(argc > 0 && argv[0] != nullptr ? argv[0] : "", "Zav", argc, argv, table);
    const char* zone = std::getenv("zavtz");
    if (zone != nullptr && ZAV_hooks().set_time_zone != nullptr) ZAV_hooks().set_time_zone(zone);
    return 1;
}

int RES_decode(const std::string& progname, const std::string& /*class_name*/, int argc, const char* const* argv,
               const std::vector<RES_defobj>& def_table) {
    RES_setCL(argc, argv);
    DEF_prog(progname);
    if (const char* path = std::getenv("zavdefault")) RES_put("default", path);
    take_start_options(argc, argv);

    Decoder decoder(argc, argv, def_table);
    const char* path = RES_get("default");
    DEF_clr_tag();
    decoder.read_path(path != nullptr ? path : DEFAULT_PATH);
    decoder.read_environment();
    decoder.read_command_line();
    decoder.convert();
    decoder.check();
    return 0;
}

}  // namespace zav
