// Palettes spread over the bands of an interval, so that their order shows and no colour comes back.

#include <algorithm>
#include <cmath>

#include "files/unittool.h"
#include "gks/gks_colr.h"
#include "plot/contour/cont_state.h"

namespace zav {

namespace {

/// Bands that an automatic interval divides a field into, about.
constexpr int USUAL_BANDS = 15;
/// Colours that one plot takes of the colour table, which other layers need too.
constexpr int MOST_COLORS = 100;

/// The values that the colours are spread over.
struct Span {
    float low;
    float high;
    bool diverges = false;
    float middle = FMISS;
};

void use_palette(Palette colors, bool usual, std::size_t least) {
    cont.palette = {true, usual, least, std::move(colors)};
    cont.cont_value[0] = FMISS;
    cont.fill_attrib[0].color = CLR_END;
    cont.color_num = USUAL_BANDS;
    cont.num_cont = USUAL_BANDS;
    cont.color_fill_set = 1;
}

/// The range that the colours are spread over: that of the bar, of an earlier page, or the levels.
Span color_span() {
    Span span{cont.conlo, cont.conlo + static_cast<float>(cont.num_cont) * cont.intrvl};
    if (cont.color_low != FMISS && cont.color_high > cont.color_low) span = {cont.color_low, cont.color_high};
    if (cont.bar_max != FMISS && cont.bar_max > cont.bar_min) span = {cont.bar_min, cont.bar_max};
    return span;
}

/// Colours of the field for areas, those of lines for what else is drawn: contour lines, winds, values.
void choose_usual(Span* span) {
    if (!cont_is_filled()) {
        cont.palette.colors = PAL_find(PAL_of_lines(gget_inverse() != 0));
        return;
    }
    const Field_palette field = PAL_of_field(cont.grd_ptr != nullptr ? cont.grd_ptr->var : MISS);
    cont.palette.colors = PAL_find(field.palette);
    span->diverges = field.diverges;
    const bool converts = cont.grd_ptr != nullptr && !field.units.empty() && !cont.grd_ptr->units.empty();
    span->middle = converts ? UNIT_cvt(field.middle, field.units, cont.grd_ptr->units) : field.middle;
}

/// Place of a value between two others, from 0 to 1; in the middle where they are one.
float place_between(float value, float low, float high) { return high > low ? (value - low) / (high - low) : 0.5F; }

/// Fraction of the way through the palette for a value between the middles of the lowest and the highest band. One that
/// diverges has its own middle at the field's, and equal steps to both sides; a field on one side of it takes the half
/// for that side.
float place_in_palette(const Span& bands, float value) {
    const float part = place_between(value, bands.low, bands.high);
    if (!bands.diverges) return part;
    if (bands.middle <= bands.low) return 0.5F + 0.5F * part;
    if (bands.middle >= bands.high) return 0.5F * part;
    const float reach = std::max(bands.middle - bands.low, bands.high - bands.middle);
    return 0.5F + 0.5F * (value - bands.middle) / reach;
}

/// Colour of the band whose middle is given.
int color_of_band(const Span& bands, float value) {
    float place = place_in_palette(bands, value);
    const float steps = MOST_COLORS - 1.0F;
    if (cont.color_num > MOST_COLORS) place = std::round(place * steps) / steps;
    return PAL_color(cont.palette.colors, place);
}

}  // namespace

bool cont_spread_usual() {
    if (PAL_of_field(MISS).palette.empty()) return false;
    use_palette({}, true, 0);
    return true;
}

bool cont_spread_named(const std::string& name) {
    Palette colors = PAL_find(name);
    if (colors.empty()) return false;
    use_palette(std::move(colors), false, 0);
    return true;
}

void cont_spread_table(int count) {
    Palette colors(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) CLR_get_rgb(i, &colors[i].red, &colors[i].grn, &colors[i].blu);
    cont.palette = {true, false, colors.size(), colors};
}

void cont_spread_palette() {
    if (!cont.palette.in_use || cont_has_values() || !(cont.intrvl > 0.0F) || cont.num_cont < 1) return;
    Span span = color_span();
    if (cont.palette.usual) choose_usual(&span);
    // The bar may show bands that the field hasn't.
    const double step = cont.intrvl;
    const double first = std::min(std::floor((span.low - cont.conlo) / step), 0.0);
    const double end = std::max(std::floor((span.high - cont.conlo) / step) + 1.0, 0.0 + cont.num_cont);
    if (end - first <= static_cast<double>(cont.palette.least)) return;
    cont.color_num = static_cast<int>(std::clamp<double>(end - first, USUAL_BANDS, CONT_BANDS));
    const float half = cont.intrvl / 2.0F;
    span.low += half;
    span.high = std::max(span.high - half, span.low);
    for (int k = 0; k < cont.color_num; ++k) {
        const auto level = static_cast<float>(cont.conlo + (first + k) * step);
        Gattribs& band = cont.fill_attrib[cont_band_of(level)];
        CONT_fill_attrib_init(&band);
        band.color = color_of_band(span, level + half);
    }
    cont.fill_attrib[cont.color_num].color = CLR_END;
}

}  // namespace zav
