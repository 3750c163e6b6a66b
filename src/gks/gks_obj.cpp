// The redraw store and its replays.

#include "gks/gks_obj.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_evnt.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

constexpr int EVENTS_EVERY = 500;         // objects between two looks at events
constexpr int REDRAW_EVENTS_EVERY = 200;  // the same while replaying
constexpr int CURSOR_WAIT = 8;
constexpr int BELL_PERCENT = 50;
constexpr int PRINT_WIDTH = 757, PRINT_HEIGHT = 577;
constexpr int INIT_REDRAW = 1, INIT_PS = 2, INIT_META = 4;  // of ginit_plot

using Object = std::shared_ptr<drawobj>;

struct State {
    std::vector<Object> objects;
    int num_objects = 0;  ///< offered since the open
    int action = 1;       ///< cache on; 0 while replaying
    int redraw = 0;       ///< the store records
    int redrawn = 0;      ///< a replay finished
};
State state;

/// A record out of an object's bytes; the start value if they are too few.
template <typename Record>
Record record_of(const drawobj& obj) {
    Record record{};
    if (obj.data.size() >= sizeof record) std::memcpy(&record, obj.data.data(), sizeof record);
    return record;
}

std::vector<Gpt> points_of(const drawobj& obj) {
    std::vector<Gpt> points(obj.data.size() / sizeof(Gpt));
    if (!points.empty()) std::memcpy(points.data(), obj.data.data(), points.size() * sizeof(Gpt));
    return points;
}

void replay_points(const drawobj& obj, int (*draw)(Gint, const Gpt*)) {
    const std::vector<Gpt> points = points_of(obj);
    draw(static_cast<Gint>(points.size()), points.data());
}

void replay_limits(const drawobj& obj, int (*set)(Gint, const Glim*)) {
    const Glim limits = record_of<Glim>(obj);
    set(obj.values, &limits);
}

void replay_text(const drawobj& obj) {
    if (obj.data.size() < sizeof(Gpt)) return;
    const Gpt place = record_of<Gpt>(obj);
    gtext(&place, std::string(obj.data.begin() + sizeof(Gpt), obj.data.end()));
}

template <typename Record>
void replay_record(const drawobj& obj, int (*set)(const Record*)) {
    const Record record = record_of<Record>(obj);
    set(&record);
}

void replay_color(const drawobj& obj) {
    const Gcolr_rep rep = record_of<Gcolr_rep>(obj);
    gset_colr_rep(gget_ws_id(), obj.values, &rep);
}

/// Ends each object's replay when a function that it calls replays the store itself. The list is a copy of pointers, so
/// that such a function may change the store.
void replay_all(void (*after_each)(int count)) {
    const std::vector<Object> objects = state.objects;
    int count = 0;
    state.redrawn = 0;
    for (const Object& object : objects) {
        if (state.redrawn) return;
        state.action = 0;
        state.redraw = 0;
        gobj_redraw_funcs(object.get());
        after_each(++count);
    }
}

void no_events(int) {}

void events_now_and_then(int count) {
    if (count % REDRAW_EVENTS_EVERY == 0) gcheck_event();
}

/// What a replay to a file puts back at its end.
class Kept_display {
  public:
    Kept_display()
        : type_(gget_win_type()), redraw_(state.redraw), action_(state.action), cursor_(gset_cursor(CURSOR_WAIT)) {
        gget_win_size(&width_, &height_);
    }

    void restore() const {
        gset_win_type(type_);
        gset_win_size(width_, height_);
        state.redraw = redraw_;
        state.action = action_;
        gset_cursor(cursor_);
    }

  private:
    int type_, redraw_, action_, cursor_;
    int width_ = 0, height_ = 0;
};

void print_all(int init_code) {
    gset_win_size(PRINT_WIDTH, PRINT_HEIGHT);
    ginit_plot(init_code);
    replay_all(no_events);
}

void end_print(const Kept_display& kept) {
    kept.restore();
    gcheck_event();
    gbell(BELL_PERCENT);
    state.redrawn = 1;
}

}  // namespace

void ginit_objs() {
    state.num_objects = 0;
    gclear_objs();
    const char* redraw = std::getenv("zavredraw");
    if (redraw != nullptr && std::strcmp(redraw, "no") == 0) state.redraw = 0;
}

void gset_cache(int cache) { state.action = cache; }
int gget_cache() { return state.action; }

int gset_redraw(int redraw) {
    const int previous = state.redraw;
    state.redraw = redraw;
    return previous;
}

int gget_redraw() { return state.redraw; }

void gset_redraw_func(void (*func)(void* data), std::shared_ptr<void> data) {
    gnew_obj(GOBJ_FUNCTION, 1, 0, nullptr);
    if (!state.redraw || state.objects.empty()) return;
    drawobj& obj = *state.objects.back();
    if (obj.type != GOBJ_FUNCTION) return;
    obj.func = func;
    obj.func_data = std::move(data);
}

char* gnew_obj(int type, int values, std::size_t size, const void* data) {
    if (++state.num_objects % EVENTS_EVERY == 0) gcheck_event();
    if (!state.redraw) return nullptr;
    drawobj* obj = nullptr;
    try {
        state.objects.push_back(std::make_shared<drawobj>());
        obj = state.objects.back().get();
    } catch (const std::bad_alloc&) {
        gerr_printf("newobj", "malloc error\n");
        return nullptr;
    }
    obj->type = type;
    obj->values = values;
    if (size == 0) return nullptr;
    try {
        obj->data.resize(size);
    } catch (const std::exception&) {
        gerr_printf("newobj", "data malloc error\n");
        return nullptr;
    }
    if (data != nullptr) std::memcpy(obj->data.data(), data, size);
    return obj->data.data();
}

void gclear_objs() { state.objects.clear(); }

int gdel_seg_objs(int id) {
    if (!state.redraw) return -1;
    const auto is_mark = [id](int type) {
        return [id, type](const Object& obj) { return obj->type == type && obj->values == id; };
    };
    auto& objects = state.objects;
    const auto first = std::find_if(objects.begin(), objects.end(), is_mark(GOBJ_SEG_CREATE));
    if (first != objects.end()) {
        auto last = std::find_if(first, objects.end(), is_mark(GOBJ_SEG_CLOSE));
        if (last != objects.end()) ++last;
        objects.erase(first, last);
    }
    state.action = 1;
    return 0;
}

void gobj_redraw_funcs(const drawobj* object) {
    const drawobj& obj = *object;
    switch (obj.type) {
        case GOBJ_MESSAGE:
            gmessage(obj.values, std::string(obj.data.begin(), obj.data.end()));
            break;
        case GOBJ_WS_VP:
            replay_limits(obj, gset_ws_vp);
            break;
        case GOBJ_WS_WIN:
            replay_limits(obj, gset_ws_win);
            break;
        case GOBJ_TRAN:
            gsel_norm_tran(obj.values);
            break;
        case GOBJ_VP:
            replay_limits(obj, gset_vp);
            break;
        case GOBJ_WIN:
            replay_limits(obj, gset_win);
            break;
        case GOBJ_COLR_REP:
            replay_color(obj);
            break;
        case GOBJ_CLEAR_REGION:
            replay_record(obj, gclear_region);
            break;
        case GOBJ_LINE:
            replay_points(obj, gpolyline);
            break;
        case GOBJ_LINE_TYPE:
            gset_linetype(obj.values);
            break;
        case GOBJ_LINE_WIDTH:
            gset_linewidth(record_of<float>(obj));
            break;
        case GOBJ_LINE_COLR:
            gset_line_colr_ind(obj.values);
            break;
        case GOBJ_LINE_BOLD:
            gset_line_print_bold(obj.values);
            break;
        case GOBJ_MARKER:
            replay_points(obj, gpolymarker);
            break;
        case GOBJ_MARKER_TYPE:
            gset_marker_type(obj.values);
            break;
        case GOBJ_MARKER_SIZE:
            gset_marker_size(record_of<float>(obj));
            break;
        case GOBJ_MARKER_COLR:
            gset_marker_colr_ind(obj.values);
            break;
        case GOBJ_MARKER_WIDTH:
            gset_marker_width(record_of<float>(obj));
            break;
        case GOBJ_TEXT:
            replay_text(obj);
            break;
        case GOBJ_TEXT_SPACE:
            gset_space(record_of<float>(obj));
            break;
        case GOBJ_TEXT_CHAR_SPACE:
            gset_char_space(record_of<float>(obj));
            break;
        case GOBJ_TEXT_EXPAN:
            gset_expan(record_of<float>(obj));
            break;
        case GOBJ_TEXT_COLR:
            gset_text_colr_ind(obj.values);
            break;
        case GOBJ_TEXT_HEIGHT:
            gset_char_ht(record_of<float>(obj));
            break;
        case GOBJ_TEXT_UP:
            replay_record(obj, gset_char_up_vec);
            break;
        case GOBJ_TEXT_FONT:
            replay_record(obj, gset_fontprec);
            break;
        case GOBJ_TEXT_ALIGN:
            replay_record(obj, gset_text_align);
            break;
        case GOBJ_TEXT_WIDTH:
            gset_text_width(record_of<float>(obj));
            break;
        case GOBJ_FILL:
            replay_points(obj, gfill_area);
            break;
        case GOBJ_FILL_STYLE:
            gset_fill_int_style(obj.values);
            break;
        case GOBJ_FILL_PATTERN:
            gset_fill_style_ind(obj.values);
            break;
        case GOBJ_FILL_COLR:
            gset_fill_colr_ind(obj.values);
            break;
        case GOBJ_FILL_SOLID:
            gset_fill_print_solid(obj.values);
            break;
        case GOBJ_FUNCTION:
            if (obj.func != nullptr) obj.func(obj.func_data.get());
            break;
        default:
            break;  // segment marks
    }
}

int gobj_redraw_plot() {
    if (!state.redraw) return -1;
    gresize_window(0, 0);
    const int cursor = gset_cursor(CURSOR_WAIT);
    ginit_plot(INIT_REDRAW);
    replay_all(events_now_and_then);
    state.action = 1;
    state.redraw = 1;
    gset_cursor(cursor);
    gcheck_event();
    state.redrawn = 1;
    return 0;
}

int gobj_print_plot() {
    const Kept_display kept;
    gset_win_type(GWS_PS);
    const char* name = std::getenv("zavps_print");
    if (name == nullptr) name = std::getenv("PSPRINT");
    if (!gps_open_file(name != nullptr ? name : "zav.ps")) {
        gerr_printf("gprint_plot", "unable to open postscript file\n");
        kept.restore();
        return -1;
    }
    gps_init();
    gps_init_file();
    if (state.objects.empty()) {
        MESS_print(MESS_WARN, "gobj_print_plot: No redraw data to make Postscript file from\n");
    }
    print_all(INIT_PS);
    const int result = gps_close_file();
    end_print(kept);
    return result;
}

int gobj_print_meta() {
    const Kept_display kept;
    gset_win_type(GWS_META);
    const char* name = std::getenv("METAOUT");
    if (!gmeta_open_file(name != nullptr ? name : "zav.meta")) {
        gerr_printf("gprint_meta", "unable to open metafile\n");
        kept.restore();
        return -1;
    }
    if (state.objects.empty()) {
        MESS_print(MESS_WARN, "gobj_print_meta: No redraw data to make metafile from\n");
    }
    print_all(INIT_META);
    const int result = gmeta_close_file();
    end_print(kept);
    return result;
}

}  // namespace zav
