#pragma once

/// The redraw store: a list of everything said to the kernel, kept while redraw is on, from which a plot can be
/// replayed at a new size, on paper or into a metafile.

#include <cstddef>
#include <memory>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Types of redraw objects.
enum : int {
    GOBJ_MESSAGE = 5,
    GOBJ_WS_VP = 10,
    GOBJ_WS_WIN = 11,
    GOBJ_TRAN = 15,
    GOBJ_VP = 16,
    GOBJ_WIN = 17,
    GOBJ_COLR_REP = 20,
    GOBJ_CLEAR_REGION = 25,
    GOBJ_LINE = 30,
    GOBJ_LINE_TYPE = 33,
    GOBJ_LINE_WIDTH = 34,
    GOBJ_LINE_COLR = 35,
    GOBJ_LINE_BOLD = 36,
    GOBJ_MARKER = 40,
    GOBJ_MARKER_TYPE = 43,
    GOBJ_MARKER_SIZE = 44,
    GOBJ_MARKER_COLR = 45,
    GOBJ_MARKER_WIDTH = 46,
    GOBJ_TEXT = 50,
    GOBJ_TEXT_SPACE = 53,
    GOBJ_TEXT_CHAR_SPACE = 54,
    GOBJ_TEXT_EXPAN = 55,
    GOBJ_TEXT_COLR = 56,
    GOBJ_TEXT_HEIGHT = 57,
    GOBJ_TEXT_UP = 58,
    GOBJ_TEXT_FONT = 59,
    GOBJ_TEXT_ALIGN = 60,
    GOBJ_TEXT_WIDTH = 61,
    GOBJ_FILL = 70,
    GOBJ_FILL_RINGS = 71,
    GOBJ_FILL_STYLE = 73,
    GOBJ_FILL_PATTERN = 74,
    GOBJ_FILL_COLR = 75,
    GOBJ_FILL_SOLID = 76,
    GOBJ_SEG_CREATE = 81,
    GOBJ_SEG_CLOSE = 82,
    GOBJ_FUNCTION = 999,
};

/// One entry. `data` holds the bytes of the record that its type takes; a text item is a Gpt and then the text.
struct drawobj {
    int type = 0;
    int values = 0;  ///< a count or a single value
    std::vector<char> data;
    void (*func)(void* data) = nullptr;  ///< of a GOBJ_FUNCTION entry
    std::shared_ptr<void> func_data;
};

void ginit_objs();

/// Cache on: events are handled.
void gset_cache(int cache);
int gget_cache();

/// Redraw on: the store records. The previous value.
int gset_redraw(int redraw);
int gget_redraw();

/// Records a function with its data, which the store then owns.
void gset_redraw_func(void (*func)(void* data), std::shared_ptr<void> data);

/// Offers an object. Gives its block of `size` bytes, filled from `data` unless null, or null with redraw off. The
/// block is valid until the next call.
char* gnew_obj(int type, int values, std::size_t size, const void* data);

void gclear_objs();

/// Takes the objects of a segment out of the store. 0, or -1 with redraw off.
int gdel_seg_objs(int id);

/// Calls the operation that an object stands for.
void gobj_redraw_funcs(const drawobj* obj);

/// Replays the store on the display; to PostScript; to a metafile. 0, or -1.
int gobj_redraw_plot();
int gobj_print_plot();
int gobj_print_meta();

}  // namespace zav
