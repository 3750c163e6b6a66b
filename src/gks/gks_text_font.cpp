#include <algorithm>
#include <cctype>
#include <map>
#include <string_view>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks_text_state.h"

namespace zav {
namespace {

/// Font that is loaded without a font list, and the list that is read without a resource.
constexpr const char* DEFAULT_FONT = "modern.fnt";
constexpr const char* DEFAULT_LIST = "zav.fnl";

constexpr std::size_t LIST_SIZE = 40;
constexpr std::size_t NAMED_LIST_SIZE = 10;
constexpr std::size_t NAME_SIZE = 10;
constexpr std::size_t FILE_SIZE = 106;

/// A font file holds at most GFONT_BYTES numbers with their labels, and an index: far below this size.
constexpr std::size_t MAX_FILE = 1 << 19;

/// Number that ends the stroke data.
constexpr int DATA_END = 254;
constexpr std::uint8_t BLANK_WIDTH = 40;

struct Font_entry {
    std::string name;
    std::string file;
};

struct Loaded_font {
    long modtime = 0;
    std::shared_ptr<const Gstroke_font> font;
};

struct State {
    std::string list;         ///< font list that goes before the resource
    std::string system_font;  ///< name of one that stands for font 1 on pictures
    std::vector<Font_entry> fonts;
    std::map<std::string, Loaded_font> loaded;  ///< fonts read so far, by path
};
State state;

/// Numbers and words of a font file.
class Font_reader {
  public:
    explicit Font_reader(std::string_view text) : text_(text) {}

    /// The next number; false if something else or nothing follows. Numbers beyond the range of a font file's index
    /// come out as -1.
    bool number(int& value) {
        skip_blanks();
        std::size_t pos = pos_;
        const bool negative = pos < text_.size() && text_[pos] == '-';
        if (negative || (pos < text_.size() && text_[pos] == '+')) ++pos;
        const std::size_t first = pos;
        int sum = 0;
        for (; pos < text_.size() && std::isdigit(static_cast<unsigned char>(text_[pos])) != 0; ++pos) {
            sum = std::min(sum * 10 + (text_[pos] - '0'), OUT_OF_RANGE);
        }
        if (pos == first) return false;
        pos_ = pos;
        value = sum >= OUT_OF_RANGE ? -1 : negative ? -sum : sum;
        return true;
    }

    void skip_word() {
        skip_blanks();
        while (pos_ < text_.size() && !blank(text_[pos_])) ++pos_;
    }

  private:
    static constexpr int OUT_OF_RANGE = 1000000;
    static bool blank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
    void skip_blanks() {
        while (pos_ < text_.size() && blank(text_[pos_])) ++pos_;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
};

/// Stroke data up to its end. A file that begins with the number of a character labels each of its characters with a
/// word; one that begins with GFONT_END has no labels.
bool read_strokes(Font_reader& reader, std::vector<std::uint8_t>& db) {
    int value = 0;
    if (!reader.number(value)) return false;
    const bool labelled = value != GFONT_END;
    if (labelled) {
        reader.skip_word();
    } else {
        db.push_back(GFONT_END);
    }
    while (reader.number(value)) {
        if (db.size() >= GFONT_BYTES) return false;
        if (value == DATA_END) {
            db.push_back(GFONT_END);
            return true;
        }
        db.push_back(static_cast<std::uint8_t>(value));
        if (labelled && value == GFONT_END) reader.skip_word();
    }
    return false;
}

/// Width of a character: its largest x.
std::uint8_t stroke_width(const Gstroke_font& font, int start) {
    if (start < 0) return 0;
    int width = 0;
    for (std::size_t i = static_cast<std::size_t>(start); i + 1 < font.db.size() && font.db[i] != GFONT_END; i += 2) {
        width = std::max(width, font.db[i] & (GFONT_MOVE - 1));
    }
    return static_cast<std::uint8_t>(width);
}

std::string font_path(const std::string& name) { return FILE_add_path(RES_get("file_path"), name); }

std::string read_text(std::FILE* file) {
    std::string text(MAX_FILE, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file));
    return text;
}

/// A stroke font by its file name, from memory as long as the file hasn't changed.
std::shared_ptr<const Gstroke_font> find_font(const std::string& name) {
    const std::string path = font_path(name);
    const long modtime = FILE_modtime(path);
    Loaded_font& loaded = state.loaded[path];
    if (loaded.font && loaded.modtime == modtime) return loaded.font;
    const file_ptr file = FILE_open_data(path);
    loaded.font = file ? gread_stroke_font(file.get()) : nullptr;
    loaded.modtime = modtime;
    return loaded.font;
}

void add_font(const std::string& name, const std::string& file) {
    state.fonts.push_back({fit_text(name, NAME_SIZE), fit_text(file, FILE_SIZE)});
}

/// Reads a font list file, one font a line: a name and a file. False if there is no such file.
bool read_list_file(const std::string& name, std::size_t limit, bool one_word) {
    const file_ptr file = FILE_open_data(font_path(name));
    if (!file) return false;
    std::string line;
    while (state.fonts.size() < limit && fgetline(file.get(), line) >= 0) {
        wsstrip_string(line);
        fill_string(line, '\t', ' ');
        trim_string(line);
        const std::size_t start = line.find_first_not_of(' ');
        const std::size_t end = line.find(' ', start);
        if (start == std::string::npos || end == std::string::npos) continue;
        std::string font_file = line.substr(line.find_first_not_of(' ', end));
        if (one_word) font_file = font_file.substr(0, font_file.find(' '));
        add_font(line.substr(start, end - start), font_file);
    }
    return true;
}

void read_list(const std::string& list) {
    if (strnicmp(list, "fi:", 3) == 0) {
        const std::string name = list.substr(3);
        if (!read_list_file(name, NAMED_LIST_SIZE, true)) {
            MESS_print(MESS_WARN, "gsetup_fonts: unable to load font list file: %s\n", name.c_str());
        }
        return;
    }
    for (const std::string& file : parse_string(list, ',')) {
        if (state.fonts.size() < LIST_SIZE) add_font("", file);
    }
}

}  // namespace

std::shared_ptr<const Gstroke_font> gread_stroke_font(std::FILE* file) {
    const std::string text = read_text(file);
    Font_reader reader(text);
    auto font = std::make_shared<Gstroke_font>();
    if (!read_strokes(reader, font->db)) return nullptr;
    font->index.fill(-1);
    for (int& start : font->index) {
        int value = 0;
        if (!reader.number(value)) break;
        start = value >= 0 && static_cast<std::size_t>(value) < font->db.size() ? value : -1;
    }
    for (int c = 0; c < GFONT_CHARS; ++c) font->size[c] = stroke_width(*font, font->index[c]);
    font->size[' '] = BLANK_WIDTH;
    return font;
}

int read_font(const std::string& name) {
    if (!gchk_graphics()) return -1;
    Gtext_state& text = gtext_state();
    text.font = nullptr;
    if (name.starts_with('#')) {
        if (!gxfont_load(name.substr(1))) {
            MESS_print(MESS_WARN, "read_font: unable to load font: %s\n", name.c_str() + 1);
            return -1;
        }
        text.font_type = Gfont_type::xfont;
        return 0;
    }
    text.font_type = Gfont_type::stroke;
    text.font = find_font(name);
    if (text.font) return 0;
    MESS_print(MESS_WARN, "read_font: unable to load font file: %s\n", name.c_str());
    return -1;
}

int gsetup_fonts() {
    state.fonts.clear();
    if (!state.system_font.empty() && !gtype_is_CAIRO(gget_win_type())) {
        MESS_print(MESS_WARN, "gsetup_fonts: Only pictures have fonts of the system: %s\n", state.system_font.c_str());
    }
    const char* resource = RES_get("font_list");
    const std::string list = !state.list.empty() ? state.list : resource != nullptr ? resource : "";
    if (list.empty()) {
        read_list_file(DEFAULT_LIST, LIST_SIZE, false);
    } else {
        read_list(list);
    }
    const int ind = gtext_state().font_ind;
    const bool listed = ind >= 1 && static_cast<std::size_t>(ind) <= state.fonts.size();
    return read_font(listed ? state.fonts[ind - 1].file : DEFAULT_FONT);
}

void gset_system_font(const std::string& name) { state.system_font = name; }
const std::string& gget_system_font() { return state.system_font; }

int gset_font_list(const std::string& list) {
    state.list = list;
    return 0;
}

int gget_font_index(const std::string& str) {
    if (!str.empty() && std::isdigit(static_cast<unsigned char>(str[0])) != 0) return text_to_int(str);
    for (std::size_t i = 0; i < state.fonts.size() && !str.empty(); ++i) {
        if (stricmp(str, state.fonts[i].name) == 0) return static_cast<int>(i) + 1;
    }
    return 1;
}

bool gfont_known(int ind) {
    return state.fonts.empty() || (ind >= 1 && static_cast<std::size_t>(ind) <= state.fonts.size());
}

int gload_font(int ind) {
    if (state.fonts.empty() || !gfont_known(ind)) return 0;
    return read_font(state.fonts[ind - 1].file);
}

}  // namespace zav
