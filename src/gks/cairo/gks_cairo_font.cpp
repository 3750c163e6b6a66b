// Fonts of the system: one of them found by its name, and its measures.

#include <fontconfig/fontconfig.h>

#include <memory>
#include <vector>

#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "gks/cairo/gks_cairo_state.h"

namespace zav {
namespace {

constexpr double MEASURED_SIZE = 1000;

struct font_deleter {
    void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
    void operator()(cairo_scaled_font_t* font) const { cairo_scaled_font_destroy(font); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
template <class T>
using owned = std::unique_ptr<T, font_deleter>;

struct State {
    std::string name;  ///< as it was asked for
    Gcairo_font font;
    owned<cairo_font_face_t> face;
    owned<cairo_scaled_font_t> measure;
};
State state;

const FcChar8* as_fc(const std::string& text) { return reinterpret_cast<const FcChar8*>(text.c_str()); }

/// Warns unless the system has a font of that family.
void check_family(const std::string& family) {
    const owned<FcPattern> wanted(FcPatternCreate());
    if (!wanted || !FcPatternAddString(wanted.get(), FC_FAMILY, as_fc(family))) return;
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    const owned<FcPattern> found(FcFontMatch(nullptr, wanted.get(), &result));
    if (!found) return;
    std::string other;
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(found.get(), FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        const std::string known = reinterpret_cast<const char*>(name);
        if (stricmp(known, family) == 0) return;
        if (i == 0) other = known;
    }
    for (const char* general : {"sans", "sans-serif", "serif", "monospace"}) {
        if (stricmp(family.c_str(), general) == 0) return;
    }
    MESS_print(MESS_WARN, "gset_system_font: No font of the system: %s: %s stands for it\n", family.c_str(),
               other.c_str());
    ZAV_note(STATUS_WORD);
}

void load(const std::string& name) {
    const std::vector<std::string> words = parse_string(name, ':');
    const std::string family = gcairo_utf8(words.empty() ? "" : words[0]);
    cairo_font_slant_t slant = CAIRO_FONT_SLANT_NORMAL;
    cairo_font_weight_t weight = CAIRO_FONT_WEIGHT_NORMAL;
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (stricmp(words[i].c_str(), "bold") == 0) weight = CAIRO_FONT_WEIGHT_BOLD;
        if (stricmp(words[i].c_str(), "italic") == 0) slant = CAIRO_FONT_SLANT_ITALIC;
    }
    check_family(family);
    state.name = name;
    state.face.reset(cairo_toy_font_face_create(family.c_str(), slant, weight));
    cairo_matrix_t size;
    cairo_matrix_t unit;
    cairo_matrix_init_scale(&size, MEASURED_SIZE, MEASURED_SIZE);
    cairo_matrix_init_identity(&unit);
    const owned<cairo_font_options_t> options(gcairo_font_options());
    state.measure.reset(cairo_scaled_font_create(state.face.get(), &size, &unit, options.get()));
    state.font.family = family;
    state.font.bold = weight == CAIRO_FONT_WEIGHT_BOLD;
    state.font.italic = slant == CAIRO_FONT_SLANT_ITALIC;
    cairo_text_extents_t capital{};
    cairo_scaled_font_text_extents(state.measure.get(), "H", &capital);
    state.font.cap_height = capital.height > 0 ? capital.height / MEASURED_SIZE : 1;
}

}  // namespace

cairo_font_options_t* gcairo_font_options() {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    return options;
}

const Gcairo_font& gcairo_font(const std::string& name) {
    if (!state.face || state.name != name) load(name);
    state.font.face = state.face.get();
    return state.font;
}

double gcairo_text_width(const std::string& utf8) {
    cairo_text_extents_t extents{};
    if (state.measure) cairo_scaled_font_text_extents(state.measure.get(), utf8.c_str(), &extents);
    return extents.x_advance / MEASURED_SIZE;
}

}  // namespace zav
