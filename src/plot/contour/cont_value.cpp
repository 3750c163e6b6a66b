/// Grid values as numbers.

#include "frame/string.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/background/map.h"
#include "plot/contour/cont_state.h"

namespace zav {
namespace {

constexpr float TEXT_SHARE = 0.015F;

Gtext_hor side_of_point() {
    if (cont.x_off < 0.0F) return GRIGHT_HOR;
    return cont.x_off > 0.0F ? GLEFT_HOR : GCENTER_HOR;
}

/// Attributes of a value: those of its band once there are bands, else the label's.
Gattribs value_attributes(float value) {
    if (cont.intrvl == FMISS && !cont_has_values()) return cont.ln_lab_attr;
    Gattribs attrib;
    CONT_get_fill_attrib(value, &attrib);
    if (attrib.width == FMISS) attrib.width = 0.0F;
    return attrib;
}

void draw_value(const Gpt& pt, float value) {
    const Gattribs attrib = value_attributes(value);
    GPH_text_attr(&attrib, cont.scale * cont.vert_size * TEXT_SHARE);
    if (attrib.color == CLR_NONE) return;
    cont.text(&pt, cont.num_form.empty() ? set_num("1.1.0", value) : format_value(cont.num_form, value));
}

bool is_due(int place, int skip) { return skip < 2 || place % skip == 0; }

}  // namespace

void cont_draw_values(const GRD_report& grid) {
    if (cont.ln_lab_attr.color == CLR_NONE) return;
    const Gtext_align align{side_of_point(), GHALF_VERT};
    const float vert = MAP_get_vert();
    gset_text_align(&align);
    gset_text_width(0.0F);
    for (int j = grid.domain.ny - 1; j >= 0; --j) {
        for (int i = 0; i < grid.domain.nx; ++i) {
            Gpt pt;
            const float value = cont_value_at(grid, i, j);
            if (!is_due(i, cont.x_skip) || !is_due(j, cont.y_skip)) continue;
            if (cont_is_missing(value) || !cont_position(grid, i, j, &pt)) continue;
            draw_value({pt.x + cont.x_off * vert, pt.y + cont.y_off * vert}, value);
        }
    }
}

}  // namespace zav
