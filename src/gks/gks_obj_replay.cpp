// What each object of the redraw store says to the kernel again.

#include <cstring>
#include <string>

#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"

namespace zav {
namespace {

/// A record out of an object's bytes; the start value if they are too few.
template <typename Record>
Record record_of(const drawobj& obj) {
    Record record{};
    if (obj.data.size() >= sizeof record) std::memcpy(&record, obj.data.data(), sizeof record);
    return record;
}

template <int (*set)(Gint)>
void replay_value(const drawobj& obj) {
    set(obj.values);
}

template <int (*set)(Gfloat)>
void replay_number(const drawobj& obj) {
    set(record_of<float>(obj));
}

template <typename Record, int (*set)(const Record*)>
void replay_record(const drawobj& obj) {
    const Record record = record_of<Record>(obj);
    set(&record);
}

template <int (*set)(Gint, const Glim*)>
void replay_limits(const drawobj& obj) {
    const Glim limits = record_of<Glim>(obj);
    set(obj.values, &limits);
}

template <int (*draw)(Gint, const Gpt*)>
void replay_points(const drawobj& obj) {
    std::vector<Gpt> points(obj.data.size() / sizeof(Gpt));
    if (!points.empty()) std::memcpy(points.data(), obj.data.data(), points.size() * sizeof(Gpt));
    draw(static_cast<Gint>(points.size()), points.data());
}

void replay_rings(const drawobj& obj) {
    const auto rings = static_cast<std::size_t>(obj.values);
    if (obj.data.size() < rings * sizeof(Gint)) return;
    std::vector<Gint> counts(rings);
    std::vector<Gpt> points((obj.data.size() - rings * sizeof(Gint)) / sizeof(Gpt));
    if (counts.empty() || points.empty()) return;
    std::memcpy(counts.data(), obj.data.data(), rings * sizeof(Gint));
    std::memcpy(points.data(), obj.data.data() + rings * sizeof(Gint), points.size() * sizeof(Gpt));
    gfill_rings(obj.values, counts.data(), points.data());
}

void replay_message(const drawobj& obj) { gmessage(obj.values, std::string(obj.data.begin(), obj.data.end())); }

void replay_text(const drawobj& obj) {
    if (obj.data.size() < sizeof(Gpt)) return;
    const Gpt place = record_of<Gpt>(obj);
    gtext(&place, std::string(obj.data.begin() + sizeof(Gpt), obj.data.end()));
}

void replay_color(const drawobj& obj) {
    const Gcolr_rep rep = record_of<Gcolr_rep>(obj);
    gset_colr_rep(gget_ws_id(), obj.values, &rep);
}

void replay_function(const drawobj& obj) {
    if (obj.func != nullptr) obj.func(obj.func_data.get());
}

struct Operation {
    int type;
    void (*replay)(const drawobj& obj);
};

constexpr Operation OPERATIONS[] = {
    {GOBJ_MESSAGE, replay_message},
    {GOBJ_WS_VP, replay_limits<gset_ws_vp>},
    {GOBJ_WS_WIN, replay_limits<gset_ws_win>},
    {GOBJ_TRAN, replay_value<gsel_norm_tran>},
    {GOBJ_VP, replay_limits<gset_vp>},
    {GOBJ_WIN, replay_limits<gset_win>},
    {GOBJ_COLR_REP, replay_color},
    {GOBJ_CLEAR_REGION, replay_record<Glim, gclear_region>},
    {GOBJ_LINE, replay_points<gpolyline>},
    {GOBJ_LINE_TYPE, replay_value<gset_linetype>},
    {GOBJ_LINE_WIDTH, replay_number<gset_linewidth>},
    {GOBJ_LINE_COLR, replay_value<gset_line_colr_ind>},
    {GOBJ_LINE_BOLD, replay_value<gset_line_print_bold>},
    {GOBJ_MARKER, replay_points<gpolymarker>},
    {GOBJ_MARKER_TYPE, replay_value<gset_marker_type>},
    {GOBJ_MARKER_SIZE, replay_number<gset_marker_size>},
    {GOBJ_MARKER_COLR, replay_value<gset_marker_colr_ind>},
    {GOBJ_MARKER_WIDTH, replay_number<gset_marker_width>},
    {GOBJ_TEXT, replay_text},
    {GOBJ_TEXT_SPACE, replay_number<gset_space>},
    {GOBJ_TEXT_CHAR_SPACE, replay_number<gset_char_space>},
    {GOBJ_TEXT_EXPAN, replay_number<gset_expan>},
    {GOBJ_TEXT_COLR, replay_value<gset_text_colr_ind>},
    {GOBJ_TEXT_HEIGHT, replay_number<gset_char_ht>},
    {GOBJ_TEXT_UP, replay_record<Gpt, gset_char_up_vec>},
    {GOBJ_TEXT_FONT, replay_record<Gfontprec, gset_fontprec>},
    {GOBJ_TEXT_ALIGN, replay_record<Gtext_align, gset_text_align>},
    {GOBJ_TEXT_WIDTH, replay_number<gset_text_width>},
    {GOBJ_FILL, replay_points<gfill_area>},
    {GOBJ_FILL_RINGS, replay_rings},
    {GOBJ_FILL_STYLE, replay_value<gset_fill_int_style>},
    {GOBJ_FILL_PATTERN, replay_value<gset_fill_style_ind>},
    {GOBJ_FILL_COLR, replay_value<gset_fill_colr_ind>},
    {GOBJ_FILL_SOLID, replay_value<gset_fill_print_solid>},
    {GOBJ_FUNCTION, replay_function},
};

}  // namespace

// Segment marks say nothing.
void gobj_redraw_funcs(const drawobj* object) {
    for (const Operation& operation : OPERATIONS) {
        if (operation.type == object->type) return operation.replay(*object);
    }
}

}  // namespace zav
