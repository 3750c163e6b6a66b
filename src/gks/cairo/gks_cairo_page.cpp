// The pages of the picture workstation: surfaces, files and their names, titles.

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <memory>
#include <string_view>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/cairo/gks_cairo_pen.h"
#include "gks/cairo/gks_cairo_state.h"
#include "gks/gks_tran.h"

namespace zav {
namespace {

struct surface_deleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct memory_deleter {
    void operator()(void* memory) const { std::free(memory); }
};
struct context_deleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

struct State {
    Gpicture picture;
    Gpicture_layout layout;
    Gout_file out;
    bool open = false;
    int page = 0;                                  ///< number of the page at work, from 1
    std::string title;                             ///< of the first page
    bool complete = true;                          ///< all pages so far were written whole
    std::string svg;                               ///< text of a page
    std::unique_ptr<void, memory_deleter> pixels;  ///< of a PNG
    std::unique_ptr<cairo_surface_t, surface_deleter> surface;
    std::unique_ptr<cairo_t, context_deleter> context;
};
State state;

bool is_png() { return state.picture.format == Gpicture_format::png; }
bool is_pdf() { return state.picture.format == Gpicture_format::pdf; }

bool in_one_stream() {
    return is_pdf() || gout_mode(state.picture.file) == Gout_mode::pipe || FILE_is_stdio(state.picture.file) != 0;
}

/// The place of "%d", with digits for a number of fixed width between, in a name. False if it has none.
bool find_number(const std::string& name, std::size_t* start, std::size_t* end, int* width) {
    for (std::size_t at = name.find('%'); at != std::string::npos; at = name.find('%', at + 1)) {
        std::size_t behind = at + 1;
        while (behind < name.size() && std::isdigit(static_cast<unsigned char>(name[behind])) != 0) ++behind;
        if (behind >= name.size() || name[behind] != 'd' || behind > at + 3) continue;
        *start = at;
        *end = behind + 1;
        *width = std::atoi(name.c_str() + at + 1);
        return true;
    }
    return false;
}

/// Name of the file of a page: the number stands where the name has "%d" or "%03d", else before the ending.
std::string page_file(const std::string& name, int page) {
    if (in_one_stream()) return name;
    std::size_t start = 0;
    std::size_t end = 0;
    int width = 0;
    if (find_number(name, &start, &end, &width)) {
        return name.substr(0, start) + text_format("%0*d", std::max(width, 1), page) + name.substr(end);
    }
    if (!gget_pages()) return name;
    const std::size_t slash = name.rfind('/');
    std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) dot = name.size();
    return name.substr(0, dot) + text_format("-%d", page) + name.substr(dot);
}

bool open_output(const std::string& name) {
    const bool pipe = gout_mode(name) == Gout_mode::pipe;
    if (FILE_is_stdio(name)) MESS_use_stderr();
    MESS_print(MESS_PROGRESS, pipe ? "Spooling to: %s\n" : "Creating: %s\n", name.c_str() + (pipe ? 1 : 0));
    if (state.out.open(name)) return true;
    gerr_printf("gopen_ws", "unable to open picture file\n");
    return false;
}

cairo_status_t take_bytes(void* out, const unsigned char* data, unsigned size) {
    static_cast<Gout_file*>(out)->write(data, size);  // which remembers what fails
    return CAIRO_STATUS_SUCCESS;
}

/// The text of an SVG waits for what is to stand in front of its end.
cairo_status_t take_text(void* text, const unsigned char* data, unsigned size) {
    try {
        static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(data), size);
    } catch (const std::exception&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
    return CAIRO_STATUS_SUCCESS;
}

/// The title is to be the first element of an SVG, and the texts are to lie over the rest.
void write_svg() {
    if (state.svg.empty()) return;
    const std::string_view text = state.svg;
    const std::size_t start = std::min(text.find('>', text.find("<svg")), text.size() - 1) + 1;
    const std::size_t end = std::max(std::min(text.rfind("</svg>"), text.size()), start);
    try {
        const std::string title = "\n<title>" + gcairo_svg_escaped(state.title) + "</title>";
        const std::string paths = gcairo_svg_short(text.substr(start, end - start));
        const std::string texts = gcairo_svg_texts();
        for (const std::string_view part : {text.substr(0, start), std::string_view(title), std::string_view(paths),
                                            std::string_view(texts), text.substr(end)}) {
            state.out.write(part);
        }
    } catch (const std::exception&) {
        state.complete = false;
    }
    state.svg.clear();
}

/// An image in memory of its own, asked for in large pages: to touch it for the first time costs as much as to draw on
/// it else. Null where the memory isn't to be had.
cairo_surface_t* make_image(int width, int height, cairo_format_t format) {
    constexpr std::size_t large_page = std::size_t{1} << 21;
    const int stride = cairo_format_stride_for_width(format, width);
    const std::size_t size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
    state.pixels.reset(std::aligned_alloc(large_page, (size + large_page - 1) / large_page * large_page));
    if (!state.pixels) return nullptr;
    madvise(state.pixels.get(), size, MADV_HUGEPAGE);
    std::memset(state.pixels.get(), format == CAIRO_FORMAT_RGB24 ? 0xFF : 0, size);  // white, or nothing
    return cairo_image_surface_create_for_data(static_cast<unsigned char*>(state.pixels.get()), format, width, height,
                                               stride);
}

cairo_surface_t* make_surface() {
    const Gpicture& picture = state.picture;
    switch (picture.format) {
        case Gpicture_format::pdf:
            return cairo_pdf_surface_create_for_stream(take_bytes, &state.out, picture.width, picture.height);
        case Gpicture_format::svg:
            return cairo_svg_surface_create_for_stream(take_text, &state.svg, picture.width, picture.height);
        default:
            return make_image(gtruncate(picture.width) * state.layout.fineness,
                              gtruncate(picture.height) * state.layout.fineness,
                              picture.transparent ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24);
    }
}

/// Puts output units on the surface: points from the lower left corner of the drawing area.
void set_units() {
    const Gpicture_layout& layout = state.layout;
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, layout.scale, 0, 0, -layout.scale, layout.margin * layout.scale,
                      (layout.page_height - layout.margin) * layout.scale);
    cairo_set_matrix(state.context.get(), &matrix);
}

/// The paper of a PDF and the image of a PNG are white by themselves.
void paint_ground() {
    if (state.picture.format != Gpicture_format::svg || state.picture.transparent) return;
    cairo_set_source_rgb(state.context.get(), 1, 1, 1);
    cairo_paint(state.context.get());
}

bool begin_surface() {
    state.surface.reset(make_surface());
    state.context.reset(cairo_create(state.surface.get()));  // of no surface: a context in error
    const bool good = cairo_status(state.context.get()) == CAIRO_STATUS_SUCCESS;
    if (good && (!is_png() || gcairo_pen_begin(state.surface.get(), state.layout.fineness))) return true;
    gerr_printf("gopen_ws", "no memory for a picture of this size\n");
    state.context.reset();
    state.surface.reset();
    return false;
}

/// The first page of a surface has its ground and units still to come, any other page those of the page before.
bool begin_page() {
    ++state.page;
    if (!in_one_stream() || state.page == 1) {
        if (!open_output(page_file(state.picture.file, state.page))) return false;
    }
    if ((!is_pdf() || state.page == 1) && !begin_surface()) return false;
    paint_ground();
    set_units();
    gcairo_reset_pen();
    return true;
}

/// The present time, or that of the environment for output that is the same each time.
std::string creation_date() {
    std::time_t now = std::time(nullptr);
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) now = std::strtol(epoch, nullptr, 10);
    std::tm utc{};
    std::array<char, 40> text{};
    if (gmtime_r(&now, &utc) == nullptr) return {};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text.data();
}

void write_metadata() {
    cairo_surface_t* pdf = state.surface.get();
    cairo_pdf_surface_set_metadata(pdf, CAIRO_PDF_METADATA_TITLE, state.title.c_str());
    cairo_pdf_surface_set_metadata(pdf, CAIRO_PDF_METADATA_CREATOR, "Zavoria");
    cairo_pdf_surface_set_metadata(pdf, CAIRO_PDF_METADATA_CREATE_DATE, creation_date().c_str());
}

void end_page() {
    if (!state.context) return;
    if (state.page == 1 || !is_pdf()) state.title = gcairo_utf8(gget_page_title());
    if (cairo_status(state.context.get()) != CAIRO_STATUS_SUCCESS) state.complete = false;
    if (is_pdf()) cairo_show_page(state.context.get());
    if (is_png()) {
        cairo_surface_flush(state.surface.get());
        const bool written = gcairo_write_png(state.surface.get(), state.layout.fineness, state.picture.transparent,
                                              state.title, state.out);
        state.complete = state.complete && written;
    }
}

void end_surface() {
    if (!state.surface) return;
    if (is_pdf()) write_metadata();
    state.context.reset();
    gcairo_pen_end();
    cairo_surface_finish(state.surface.get());
    if (cairo_surface_status(state.surface.get()) != CAIRO_STATUS_SUCCESS) state.complete = false;
    state.surface.reset();
    state.pixels.reset();
    if (state.picture.format == Gpicture_format::svg) write_svg();
}

/// Closes the output. False, after a warning, if it isn't whole.
bool close_output() {
    const bool arrived = state.out.close("gcairo_close");
    if (state.complete) return arrived;
    MESS_print(MESS_WARN, "gcairo_close: No memory for the picture: %s\n", state.picture.file.c_str());
    ZAV_note(STATUS_OUTPUT);
    return false;
}

}  // namespace

cairo_t* gcairo_page() { return state.context.get(); }
const Gpicture& gcairo_picture() { return state.picture; }
const Gpicture_layout& gcairo_page_layout() { return state.layout; }

bool gcairo_begin(const Gpicture& picture, const Gpicture_layout& layout) {
    state.picture = picture;
    state.layout = layout;
    state.page = 0;
    state.complete = true;
    state.open = begin_page();
    if (!state.open) state.out.abandon();
    return state.open;
}

void gcairo_new_page() {
    if (!state.open || !gget_pages()) return;
    end_page();
    if (!is_pdf()) end_surface();
    if (!in_one_stream()) close_output();
    if (!begin_page()) {
        state.complete = false;
        ZAV_note(STATUS_OUTPUT);
    }
}

void gcairo_keep() { state.out.keep(); }

void gcairo_break_off() {
    if (state.out.kept()) {
        gcairo_close();
        return;
    }
    state.out.abandon();
    gcairo_pen_end();
    state.context.reset();
    state.surface.reset();
    state.pixels.reset();
    state.svg.clear();
    gcairo_svg_texts();
    state.open = false;
}

int gcairo_close() {
    if (!state.open) return -1;
    state.open = false;
    end_page();
    end_surface();
    if (!close_output()) return -1;
    MESS_print(MESS_PROGRESS, "Created picture\n");
    return 0;
}

}  // namespace zav
