// The redraw store and its replays.

#include "gks/gks_obj.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_evnt.h"
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
    if (!gps_open_file(gps_file_name({}))) {
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
    if (!gmeta_open_file(name != nullptr && *name != '\0' ? name : "zav.meta")) {
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
