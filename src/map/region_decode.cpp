#include <cmath>
#include <cstdlib>
#include <iterator>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "map/maptran.h"
#include "map/region_state.h"
#include "station/cty_tool.h"

namespace zav {
namespace {

constexpr char KEY_REGION = 'r';  // file name key of the region
constexpr int NESTING_MAX = 5;    // regions of files that name other regions
constexpr int LAST_ON_EARTH = 9;  // projection codes up to here show the earth
constexpr const char* STATION_FILE = "sao.cty";

/// Projection words, each told by its beginning; `whole` ones by the whole word. The first that fits counts, so that
/// the longer words that share a beginning stand in front.
struct proj_word {
    const char* word;
    int proj;
    bool whole;
};
constexpr proj_word PROJ_WORDS[] = {
    {"ll", 2, false},     {"lat", 2, false},    {"polar", 1, false},  {"ps", 1, false},     {"sat", 9, false},
    {"lambaz", 8, false}, {"lamb", 4, false},   {"lc", 4, false},     {"la", 8, false},     {"gn", 6, false},
    {"or", 5, false},     {"mo", 7, false},     {"me", 3, false},     {"pix", 99, false},   {"xy", 20, false},
    {"xlogy", 22, false}, {"xlogp", 22, false}, {"cat", 24, false},   {"skewt", 40, false}, {"ema", 42, false},
    {"teph", 43, false},  {"rteph", 44, false}, {"therm", 40, false}, {"stuve", 41, false}, {"hodo", 23, false},
    {"vert", 22, false},  {"xp", 25, true},     {"zoom", 50, false},  {"size", 51, false},  {"miss", MISS, true},
};

/// What a pattern leaves out; the values add up.
enum : int {
    FILL_PROJ = 1,     ///< polar stereographic
    FILL_SIZE = 2,     ///< the default number of points
    FILL_DY = 4,       ///< the spacing in y is that in x
    FILL_STEP = 8,     ///< the default spacing
    FILL_BY_PROJ = 16  ///< as the projection word wants
};

/// One form of a domain text.
struct pattern {
    int number;
    std::vector<int> elements;
    int defaults;
    const char* trace;
};

const std::vector<pattern>& patterns() {
    static const std::vector<pattern> table = {
        {1,
         {DOM_PROJ, DOM_PLON, DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY, DOM_DX, DOM_DY},
         0,
         "proj,plon,clat,clon,nx,ny,dx,dy"},
        {2, {DOM_PROJ, DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY, DOM_DX, DOM_DY}, 0, "proj,clat,clon,nx,ny,dx,dy"},
        {3, {DOM_PROJ, DOM_PLON, DOM_CLAT, DOM_CLON, DOM_DX, DOM_DY}, FILL_SIZE, "proj,plon,clat,clon,dx,dy"},
        {4, {DOM_PROJ, DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY, DOM_DX}, FILL_DY, "proj,clat,clon,nx,ny,dx"},
        {5, {DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY, DOM_DX, DOM_DY}, FILL_PROJ, "clat,clon,nx,ny,dx,dy"},
        {6, {DOM_PROJ, DOM_CLAT, DOM_CLON, DOM_DX, DOM_DY}, FILL_SIZE, "proj,clat,clon,dx,dy"},
        {7, {DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY, DOM_DX}, FILL_PROJ + FILL_DY, "clat,clon,nx,ny,dx"},
        {8, {DOM_PROJ, DOM_CLAT, DOM_CLON, DOM_DX}, FILL_SIZE + FILL_DY, "proj,clat,clon,dx"},
        {9, {DOM_CLAT, DOM_CLON, DOM_NX, DOM_NY}, FILL_PROJ + FILL_STEP, "clat,clon,nx,ny"},
        {10, {DOM_CLAT, DOM_CLON, DOM_DX}, FILL_PROJ + FILL_SIZE + FILL_DY, "clat,clon,dx"},
        {11, {DOM_PROJ, DOM_CLAT, DOM_CLON}, FILL_BY_PROJ, "proj,clat,clon"},
        {12, {DOM_CLAT, DOM_CLON}, FILL_PROJ + FILL_SIZE + FILL_STEP, "clat,clon"},
        {13, {DOM_ID}, FILL_PROJ + FILL_SIZE + FILL_STEP, "id:###"},
        {14, {DOM_REGION}, 0, "reg:REG"},
    };
    return table;
}
constexpr int PATTERN_OWN_PLON = 3;
constexpr int PATTERN_REGION = 14;

int whole_part(float value) {
    if (!std::isfinite(value)) return 0;
    constexpr float LIMIT = 2000000000.0F;
    return static_cast<int>(value > LIMIT ? LIMIT : (value < -LIMIT ? -LIMIT : value));
}

void set_size(Domain& domain) {
    domain.nx = DEF_NX;
    domain.ny = DEF_NY;
}

void set_step(Domain& domain, float step) { domain.dx = domain.dy = step; }

/// Defaults of the form "proj,clat,clon", in which a size takes the two numbers as its own.
void fill_by_proj(Domain& domain) {
    if (domain.proj == PROJ_SIZE) {
        domain.nx = whole_part(domain.clat);
        domain.ny = whole_part(domain.clon);
        domain.clat = domain.clon = FMISS;
        return;
    }
    set_size(domain);
    set_step(domain, domain.proj == PROJ_ZOOM ? 1.0F : DEF_STEP);
}

void fill_defaults(Domain& domain, int defaults) {
    if ((defaults & FILL_PROJ) != 0) domain.proj = PROJ_POLAR;
    if ((defaults & FILL_SIZE) != 0) set_size(domain);
    if ((defaults & FILL_DY) != 0) domain.dy = domain.dx;
    if ((defaults & FILL_STEP) != 0) set_step(domain, DEF_STEP);
    if ((defaults & FILL_BY_PROJ) != 0) fill_by_proj(domain);
}

bool begins(const std::string& text, const char* start) {
    const std::string word = start;
    return strnicmp(text, word, static_cast<int>(word.size())) == 0;
}

bool read_float(const std::string& word, float& value) {
    char* end = nullptr;
    const float number = std::strtof(word.c_str(), &end);
    if (end == word.c_str() || !std::isfinite(number)) return false;
    value = number;
    return true;
}

bool read_int(const std::string& word, int& value) {
    char* end = nullptr;
    (void)std::strtol(word.c_str(), &end, 10);
    if (end == word.c_str()) return false;
    value = text_to_int(word);
    return true;
}

/// Parts between colons, with the empty ones at the end.
std::vector<std::string> split_colons(const std::string& word) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end = word.find(':'); end != std::string::npos; end = word.find(':', start)) {
        parts.push_back(word.substr(start, end - start));
        start = end + 1;
    }
    parts.push_back(word.substr(start));
    return parts;
}

/// Stores a part that may be left out. False if it isn't a number.
bool read_part(const std::string& part, float& value) { return part.empty() || read_float(part, value); }

/// "proj:plon" or "proj:e:plat:plon:p0:p1:p2:p3".
bool read_proj(const std::string& word, Domain& domain) {
    domain.proj = DOM_proj_str(word);
    if (domain.proj == -1) {
        domain.proj = PROJ_POLAR;
        return false;
    }
    const std::vector<std::string> parts = split_colons(word);
    if (parts.size() == 2 && parts[1] != "e") return read_part(parts[1], domain.plon);
    std::size_t next = 1;
    if (next < parts.size() && parts[next] == "e") {
        domain.ellipse = 1;
        next++;
    }
    constexpr std::size_t PARAMS_READ = 4;
    float* const targets[] = {&domain.plat,     &domain.plon,     &domain.param[0],
                              &domain.param[1], &domain.param[2], &domain.param[3]};
    static_assert(std::size(targets) == 2 + PARAMS_READ);
    for (float* target : targets) {
        if (next < parts.size() && !read_part(parts[next++], *target)) return false;
    }
    return true;
}

/// "id:place" or "id:file:place".
bool read_id(const std::string& word, Domain& domain) {
    if (!begins(word, "id:")) return false;
    std::string place = word.substr(3);
    std::string file = STATION_FILE;
    const std::size_t colon = place.find(':');
    if (colon != std::string::npos) {
        file = place.substr(0, colon);
        place.erase(0, colon + 1);
    }
    // The text may come out of a data file, whose words must not start a command.
    if (place.empty() || file.empty() || file[0] == '|') return false;
    return CTY_get_loc(file, place, &domain.clat, &domain.clon) == 1;
}

/// Decodes the text of a region file's line, which may name a region in turn.
bool decode_region_text(const std::string& text, Domain& domain) {
    region_state& state = DOM_module();
    if (state.depth >= NESTING_MAX) return false;
    state.depth++;
    const int result = DOM_decode(text, &domain);
    state.depth--;
    return result > 0;
}

bool region_of_file(const std::string& file, const char* name, Domain& domain) {
    std::string text;
    return DOM_search_file(file, name, text) != 0 && decode_region_text(text, domain);
}

/// A region by name, "file:name", "file:" or "fi:file". A name that nothing knows gives a domain of projection -1.
bool read_region(const std::string& word, Domain& domain) {
    if (begins(word, "id:")) return false;
    bool found = false;
    const std::size_t colon = word.find(':');
    if (begins(word, "fi:")) {
        found = region_of_file(word.substr(3), nullptr, domain);
    } else if (colon != std::string::npos && colon + 1 == word.size()) {
        DOM_read_menu(word.substr(0, colon));
    } else if (colon != std::string::npos) {
        found = region_of_file(word.substr(0, colon), word.c_str() + colon + 1, domain);
    } else {
        found = region_of_file(REGION_FILE, word.c_str(), domain) || DOM_get_def_region(word, &domain) != 0;
    }
    if (!found) {
        DOM_init(&domain);
        domain.proj = -1;
    }
    return true;
}

bool read_element(const std::string& word, int element, Domain& domain) {
    switch (element) {
        case DOM_PROJ:
            return read_proj(word, domain);
        case DOM_PLON:
            return read_float(word, domain.plon);
        case DOM_ID:
            return read_id(word, domain);
        case DOM_CLAT:
            return read_float(word, domain.clat);
        case DOM_CLON:
            return read_float(word, domain.clon);
        case DOM_NX:
            return read_int(word, domain.nx);
        case DOM_NY:
            return read_int(word, domain.ny);
        case DOM_DX:
            return read_float(word, domain.dx);
        case DOM_DY:
            return read_float(word, domain.dy);
        case DOM_REGION:
            return read_region(word, domain);
        default:
            return false;
    }
}

/// The elements with "id:" in the place of a latitude and longitude where the text has it.
std::vector<int> fit_elements(const std::vector<std::string>& words, const std::vector<int>& elements) {
    std::vector<int> fitted = elements;
    for (std::size_t i = 0; i < fitted.size() && i < words.size(); i++) {
        if (fitted[i] != DOM_CLAT || !begins(words[i], "id:")) continue;
        fitted[i] = DOM_ID;
        if (i + 1 < fitted.size() && fitted[i + 1] == DOM_CLON) {
            fitted.erase(fitted.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        }
    }
    return fitted;
}

/// A whole number that can be a count of points.
bool is_count(const std::string& word) {
    return word.find_first_not_of("0123456789") == std::string::npos && text_to_int(word) >= 2;
}

/// True if six words that can be read as "proj,plon,clat,clon,dx,dy" are meant as "proj,clat,clon,nx,ny,dx": the
/// latitude would lie beyond a pole, or two counts of points stand where the spacings would have to differ by more than
/// four times.
bool reads_as_size(const std::vector<std::string>& words, const Domain& domain) {
    constexpr float unlike = 4.0F;
    const bool on_earth = domain.proj >= 1 && domain.proj <= LAST_ON_EARTH;
    if (!on_earth || domain.clat == FMISS) return false;
    if (std::fabs(domain.clat) > 90.0F) return true;
    return is_count(words[3]) && is_count(words[4]) && std::fabs(domain.dx) > unlike * std::fabs(domain.dy);
}

/// Tries one pattern. The result of the decoding, 0 if it doesn't fit.
int try_pattern(const pattern& form, const std::vector<std::string>& words, Domain& domain) {
    if (DOM_set_params(words, &domain, form.elements) != 0) return 0;
    if (form.number == PATTERN_OWN_PLON && words.size() == 6 && reads_as_size(words, domain)) return 0;
    fill_defaults(domain, form.defaults);
    MESS_print(MESS_DEBUG, "%2d %s\n", form.number, form.trace);
    return form.number == PATTERN_REGION ? 2 : 1;
}

int try_patterns(const std::vector<std::string>& words, Domain& domain) {
    if (stricmp(words[0], "size") == 0 && DOM_set_params(words, &domain, {DOM_PROJ, DOM_NX, DOM_NY}) == 0) {
        MESS_print(MESS_DEBUG, "%2d proj,nx,ny\n", 0);
        return 1;
    }
    for (const pattern& form : patterns()) {
        const int result = try_pattern(form, words, domain);
        if (result != 0) return result;
    }
    MESS_print(MESS_WARN, "DOM_decode: Invalid plot domain\n");
    return -1;
}

}  // namespace

int DOM_proj_str(const std::string& proj) {
    for (const proj_word& row : PROJ_WORDS) {
        if (row.whole ? stricmp(proj.c_str(), row.word) == 0 : begins(proj, row.word)) return row.proj;
    }
    return -1;
}

int DOM_set_params(const std::vector<std::string>& paramv, Domain* domain, const std::vector<int>& elements) {
    const std::vector<int> fitted = fit_elements(paramv, elements);
    if (domain == nullptr || fitted.empty() || fitted.size() != paramv.size()) return -1;
    DOM_init(domain);
    if (stricmp(paramv[0], "miss") == 0 || stricmp(paramv[0], "none") == 0) return 0;
    for (std::size_t i = 0; i < fitted.size(); i++) {
        if (!read_element(paramv[i], fitted[i], *domain)) return fitted[i];
    }
    return 0;
}

int DOM_decode(const std::string& str, Domain* domain) {
    if (domain == nullptr) return MISS;
    DOM_init(domain);
    if (str.empty() || stricmp(str, "miss") == 0) return MISS;
    const std::vector<std::string> words = parse_string(str, ',');
    MESS_print(MESS_DEBUG, "******** PARSING DOMAIN: %d %s\n", static_cast<int>(words.size()), str.c_str());
    if (words.empty()) {
        MESS_print(MESS_WARN, "DOM_decode: Invalid plot domain\n");
        return -1;
    }
    const int result = try_patterns(words, *domain);
    if (result == -1) return -1;
    FLAG_set(FLAG_DOMAIN, result);
    FILE_set_key(KEY_REGION, str);
    DOM_set_base_prior(domain->dy * static_cast<float>(domain->ny - 1.0));
    return result;
}

int DOM_decode(const char* str, Domain* domain) { return DOM_decode(std::string(str == nullptr ? "" : str), domain); }

}  // namespace zav
