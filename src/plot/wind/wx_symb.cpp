// Weather symbols from a file of strokes.

#include "plot/wind/wx_symb.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"

namespace zav {

namespace {

constexpr const char* DEFAULT_FILE = "wx.smb";

/// Symbols that a file may hold, and room for a name.
constexpr std::size_t MOST_SYMBOLS = 100;
constexpr std::size_t NAME_SIZE = 15;
/// Room for the name of the file.
constexpr std::size_t FILE_SIZE = 160;
/// Pairs of one stroke.
constexpr std::size_t MOST_PAIRS = 20;
/// Longest description of a symbol that is read.
constexpr std::size_t MOST_TEXT = 65536;

constexpr char SYMBOL_END = '$';

struct Symbol {
    std::string name;
    long loc;  ///< place in the file just behind the name
};

struct State {
    std::string filename;
    file_ptr ifile;
    bool init = false;  ///< the index is built
    std::vector<Symbol> index;
};
State state;

bool is_space(int c) { return std::isspace(c) != 0; }

/// Next word, of which a name's length is kept. Empty at the file's end.
std::string read_name(std::FILE* file) {
    std::string word;
    int c = std::fgetc(file);
    while (c != EOF && is_space(c)) c = std::fgetc(file);
    while (c != EOF && !is_space(c)) {
        if (word.size() + 1 < NAME_SIZE) word += static_cast<char>(c);
        c = std::fgetc(file);
    }
    if (c != EOF) std::ungetc(c, file);
    return word;
}

void skip_symbol(std::FILE* file) {
    int c = std::fgetc(file);
    while (c != EOF && c != SYMBOL_END) c = std::fgetc(file);
    while (c == SYMBOL_END || c == '\r' || c == '\n') c = std::fgetc(file);
    if (c != EOF) std::ungetc(c, file);
}

void build_index() {
    std::FILE* file = state.ifile.get();
    state.index.clear();
    std::rewind(file);
    while (state.index.size() < MOST_SYMBOLS) {
        const std::string name = read_name(file);
        if (name.empty()) break;
        state.index.push_back({name, std::ftell(file)});
        skip_symbol(file);
    }
    state.init = true;
}

/// The first symbol whose name begins `str`.
const Symbol* find_symbol(const std::string& str) {
    for (const Symbol& symbol : state.index) {
        if (strnicmp(str, symbol.name, static_cast<int>(symbol.name.size())) == 0) return &symbol;
    }
    return nullptr;
}

/// Description of the symbol, up to its end mark.
std::string read_strokes(const Symbol& symbol) {
    std::string text;
    std::FILE* file = state.ifile.get();
    if (std::fseek(file, symbol.loc, SEEK_SET) != 0) return text;
    for (int c = std::fgetc(file); c != EOF && c != SYMBOL_END && text.size() < MOST_TEXT; c = std::fgetc(file)) {
        text += static_cast<char>(c);
    }
    return text;
}

/// Reads the strokes of a symbol out of its description.
class Reader {
  public:
    explicit Reader(const std::string& description) : at(description.c_str()) {}

    /// The next pair, "x,y".
    bool read_pair(Gpt* pair) {
        const char* start = at;
        if (read_number(&pair->x) && *at == ',') {
            ++at;
            if (read_number(&pair->y)) return true;
        }
        at = start;
        return false;
    }

    /// First character of the next word, 0 at the end.
    char read_word() {
        skip_space();
        const char first = *at;
        while (*at != '\0' && !is_space(static_cast<unsigned char>(*at))) ++at;
        return first;
    }

  private:
    void skip_space() {
        while (is_space(static_cast<unsigned char>(*at))) ++at;
    }

    /// A decimal number; words such as "inf" are none.
    bool read_number(float* value) {
        skip_space();
        const auto first = static_cast<unsigned char>(*at);
        if (std::isdigit(first) == 0 && first != '-' && first != '+' && first != '.') return false;
        char* end = nullptr;
        *value = std::strtof(at, &end);
        if (end == at || !std::isfinite(*value)) return false;
        at = end;
        return true;
    }

    const char* at;
};

/// Moves the point from where the text alignment has it to the lower left corner of a box of size `sz`.
Gpt box_corner(float x, float y, float sz) {
    int hor = 0;
    int vert = 0;
    GPH_get_text_align(&hor, &vert);
    if (hor == GRIGHT_HOR) x -= sz;
    if (hor == GCENTER_HOR) x -= 0.5F * sz;
    if (vert == GHALF_VERT) y -= 0.5F * sz;
    if (vert == GTOP_VERT || vert == GCAP_VERT) y -= sz;
    return {x, y};
}

/// Draws the next stroke. False when there is none.
bool draw_stroke(Reader& reader, const Gpt& corner, float sz) {
    std::array<Gpt, MOST_PAIRS> points;
    Gint count = 0;
    Gpt pair;
    while (static_cast<std::size_t>(count) < MOST_PAIRS && reader.read_pair(&pair)) {
        points[count++] = {sz * pair.x + corner.x, sz * pair.y + corner.y};
    }
    if (count == 0) return false;
    if (reader.read_word() == 'F') {
        gfill_area(count, points.data());
    } else {
        gpolyline(count, points.data());
    }
    return true;
}

}  // namespace

int WX_symb_file(const char* file) {
    const std::string name = file != nullptr ? file : DEFAULT_FILE;
    if (state.ifile && stricmp(name, state.filename) == 0) return -1;
    const std::string path = FILE_add_path(RES_get("file_path"), name);
    state.ifile = FILE_open_data(path);
    if (!state.ifile) {
        MESS_print(0x40U, "WX_symb_file: Unable to open file: %s\n", path.c_str());
        return -1;
    }
    state.filename = fit_text(name, FILE_SIZE);
    state.init = false;
    return 0;
}

int WX_symb(float x, float y, const std::string& str, float sz) {
    if (!state.ifile && WX_symb_file(nullptr) != 0) return 0;
    if (str.empty() || str[0] == ' ') return 0;
    if (!state.init) build_index();
    const Symbol* symbol = find_symbol(str);
    if (symbol == nullptr) return 0;
    const Gpt corner = box_corner(x, y, sz);
    const std::string strokes = read_strokes(*symbol);
    Reader reader(strokes);
    while (draw_stroke(reader, corner, sz)) {
    }
    return 1;
}

}  // namespace zav
