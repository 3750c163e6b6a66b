#include "frame/mess.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iterator>
#include <vector>

#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr int DEFAULT_LINES = 22;
constexpr std::size_t NAME_SIZE = 160;

/// Destinations of a message, the values of `mess_out`.
enum : int { OUT_STAMPED = -1, OUT_FILE = 0, OUT_SCREEN = 1, OUT_EACH = 2 };
/// Values of `page`.
enum : int { PAGE_NONE = 0, PAGE_HOLDS = 1, PAGE_AUTOMATIC = 2 };

struct State {
    M_type mess_level = 0xFFFFF;  // up to and with the second output class
    int mess_set = 0;
    int mess_out = OUT_SCREEN;
    int page = PAGE_HOLDS;
    int lines = 0;
    int max_lines = DEFAULT_LINES;
    file_ptr ofile;
    file_ptr pfile;
    std::string filename;
    bool stderr_only = false;  // standard output takes a page
    bool writing = false;      // a message of the file opener itself mustn't open the message file again
};
State state;

struct MessClass {
    const char* name;
    M_type mask;
};
constexpr MessClass CLASSES[] = {
    {"none", MESS_NONE}, {"print", MESS_PRINT}, {"error", MESS_ERROR}, {"warn", MESS_WARN}, {"mess", MESS_PROGRESS},
    {"out1", MESS_OUT1}, {"out2", MESS_OUT2},   {"out3", MESS_OUT3},   {"out4", MESS_OUT4}, {"debug", MESS_DEBUG},
};

/// The mask with all bits below its highest one.
M_type with_lower(M_type level) { return level == 0 ? 0 : ~M_type{0} >> std::countl_zero(level); }

bool starts_with(const std::string& word, const char* prefix) {
    return strnicmp(word, prefix, static_cast<int>(std::strlen(prefix))) == 0;
}

std::string time_stamp() {
    if (ZAV_hooks().current_time != nullptr) return ZAV_hooks().current_time();
    const std::time_t now = std::time(nullptr);
    std::tm date{};
    gmtime_r(&now, &date);
    std::array<char, 40> text;
    const std::size_t length = std::strftime(text.data(), text.size(), "%y %b %d  %H:%M:%SZ", &date);
    return {text.data(), length};
}

void write_text(std::FILE* file, const std::string& text) { std::fwrite(text.data(), 1, text.size(), file); }

std::FILE* screen(bool is_error) { return is_error || state.stderr_only ? stderr : stdout; }

/// Writes to the message file in the way of `mess_out`.
void write_message_file(const std::string& text) {
    if (state.writing) return;
    state.writing = true;
    if (state.mess_out == OUT_EACH) state.pfile = ZAV_open_file(state.filename, "a");
    if (state.pfile) {
        if (state.mess_out == OUT_STAMPED) write_text(state.pfile.get(), time_stamp() + " -- ");
        write_text(state.pfile.get(), text);
    }
    if (state.mess_out == OUT_EACH) state.pfile.reset();
    state.writing = false;
}

std::string make_text(const char* format, std::va_list args) {
    std::va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, args);
    text.pop_back();
    return text;
}

void open_message_file(const std::string& name, const char* access, int out) {
    state.pfile = ZAV_open_file(name, access);
    state.mess_out = out;
}

std::string from_character(const std::string& word, std::size_t place) {
    return word.size() > place ? word.substr(place) : std::string();
}

/// Takes a word that names a message file. False if it is none.
bool set_file_word(const std::string& word) {
    if (starts_with(word, "@fi")) {
        open_message_file(from_character(word, 4), "a", OUT_STAMPED);
    } else if (starts_with(word, "+fi")) {
        open_message_file(from_character(word, 4), "a", OUT_SCREEN);
    } else if (starts_with(word, "-fi")) {
        open_message_file(from_character(word, 4), "w", OUT_SCREEN);
    } else if (starts_with(word, "dfi")) {
        state.filename = fit_text(from_character(word, 4), NAME_SIZE);
        state.mess_out = OUT_EACH;
    } else if (starts_with(word, "fi")) {
        open_message_file(from_character(word, 3), "a", OUT_FILE);
    } else {
        return false;
    }
    return true;
}

/// Takes a word of the paging. False if it is none.
bool set_page_word(const std::string& word) {
    if (starts_with(word, "nopage")) {
        state.page = PAGE_NONE;
    } else if (starts_with(word, "page")) {
        state.page = PAGE_AUTOMATIC;
    } else if (starts_with(word, "line")) {
        const int lines = text_to_int(from_character(word, 5));
        state.max_lines = lines < 1 ? DEFAULT_LINES : lines;
    } else {
        return false;
    }
    return true;
}

/// The mask of a class name; a letter a to d at its end takes one bit of each four.
M_type class_mask(const std::string& name) {
    const auto found = std::find_if(std::begin(CLASSES), std::end(CLASSES),
                                    [&](const MessClass& item) { return starts_with(name, item.name); });
    if (found == std::end(CLASSES)) return MESS_NONE;
    switch (name.back()) {
        case 'a':
        case 'A':
            return found->mask & 0x11111111U;
        case 'b':
        case 'B':
            return found->mask & 0x22222222U;
        case 'c':
        case 'C':
            return found->mask & 0x44444444U;
        case 'd':
        case 'D':
            return found->mask & 0x88888888U;
        default:
            return found->mask;
    }
}

void set_level_word(const std::string& word) {
    const char sign = word.empty() ? ' ' : word.front();
    const bool is_signed = sign == '+' || sign == '-';
    const M_type mask = class_mask(is_signed ? word.substr(1) : word);
    if (sign == '+') {
        state.mess_level |= mask;
    } else if (sign == '-') {
        state.mess_level &= ~mask;
    } else {
        state.mess_level = with_lower(mask);
    }
}

/// Shows a text that takes so many lines of a page. 1 if it reached the screen, else 0.
int show(M_type type, const std::string& text, std::ptrdiff_t lines) {
    if (state.ofile) write_text(state.ofile.get(), text);
    write_message_file(text);
    if (state.mess_out == OUT_FILE) return 0;
    write_text(screen((type & (MESS_ERROR | MESS_WARN)) != 0), text);
    if (state.page == PAGE_AUTOMATIC) {
        state.lines += static_cast<int>(lines);
        if (state.lines > state.max_lines) MESS_hold(type, "Press return to continue\n");
    }
    return 1;
}

}  // namespace

int MESS_print(M_type type, const char* mess, ...) {
    if ((type & state.mess_level) == 0) return 0;
    std::va_list args;
    va_start(args, mess);
    const std::string text = make_text(mess, args);
    va_end(args);

    // The page is counted by the format, so that a text with newlines of its own counts as one line.
    return show(type, text, std::count(mess, mess + std::strlen(mess), '\n'));
}

int MESS_text(M_type type, const std::string& text) {
    if ((type & state.mess_level) == 0) return 0;
    return show(type, text, std::count(text.begin(), text.end(), '\n'));
}

void MESS_print_prog(const std::string& string) {
    MESS_print(MESS_PROGRESS, "      %s (Ver %s)\n\n", string.c_str(), ZAV_version());
}

int MESS_check(M_type level) { return (level & state.mess_level) != 0; }

M_type MESS_get() { return state.mess_level; }

int MESS_check_set() { return state.mess_set; }

void MESS_set(int oper, M_type level) {
    if (oper < 5) ++state.mess_set;
    if (oper > 15 && state.mess_set != 0) return;
    switch (oper) {
        case 0:
        case 10:
        case 20:
            state.mess_level = with_lower(level);
            break;
        case 1:
        case 11:
        case 21:
            state.mess_level |= level;
            break;
        case -1:
        case 9:
        case 19:
            state.mess_level &= ~level;
            break;
        default:
            break;
    }
}

void MESS_set_str(const std::string& str) {
    ++state.mess_set;
    for (const std::string& word : parse_string(str, ',')) {
        if (!set_file_word(word) && !set_page_word(word)) set_level_word(word);
    }
}

int MESS_file(const std::string& filename, const char* access) {
    state.ofile.reset();
    state.ofile = ZAV_open_file(filename, access);
    return state.ofile ? 0 : -1;
}

void MESS_file_close() { state.ofile.reset(); }

void MESS_set_out(int val) { state.mess_out = val; }

void MESS_use_stderr() { state.stderr_only = true; }

void MESS_set_page(int val) { state.page = val; }

int MESS_get_max_lines() { return state.max_lines; }

void MESS_hold(M_type type, const std::string& mess) {
    if (!MESS_check(type) || state.mess_out == OUT_FILE || FLAG_batch() || state.page == PAGE_NONE) return;
    const bool to_error = (type & MESS_ERROR) != 0 && (type & MESS_WARN) != 0;
    write_text(screen(to_error), mess);
    std::fflush(stdout);
    std::getchar();
    state.lines = 0;
}

}  // namespace zav
