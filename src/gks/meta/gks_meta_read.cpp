// Playback of a text metafile through the kernel, onto whatever workstation is open.

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"
#include "gks/meta/gks_meta.h"

namespace zav {
namespace {

constexpr std::size_t BLOCK = std::size_t{1} << 16;  // bytes read at a time
constexpr std::size_t LONGEST_NUMBER = 400;          // bytes, more than "%f" makes of any float
constexpr std::size_t WORD_LENGTH = 9;
constexpr std::size_t TEXT_LENGTH = 100;
constexpr long POINT_BYTES = 3;  // the least that "x,y" takes

/// Walks over a metafile. The calls that take something give nothing where the file doesn't hold it.
class Reader {
  public:
    Reader(file_ptr file, long size) : file_(std::move(file)), size_(size) {}

    bool at_end() {
        skip_space();
        return !has(1);
    }

    long bytes_left() const { return size_ - taken_ - static_cast<long>(place_); }

    /// The next word; of a longer one the first characters.
    std::string word() {
        std::string word;
        for (; has(1) && !is_space(text_[place_]); ++place_) {
            if (word.size() < WORD_LENGTH) word += text_[place_];
        }
        in_new_line_ = false;
        return word;
    }

    void skip_line() {
        while (has(1)) {
            const std::size_t end = text_.find('\n', place_);
            place_ = end == std::string::npos ? text_.size() : end + 1;
            if (end != std::string::npos) return;
        }
    }

    /// Goes on behind an item that lacks arguments: at the next line, which the search for them may have reached.
    void skip_item() {
        if (!in_new_line_) skip_line();
    }

    std::optional<int> integer() {
        skip_space();
        has(LONGEST_NUMBER);
        const char* start = text_.c_str() + place_;
        char* end = nullptr;
        const long value = std::strtol(start, &end, 10);
        if (end == start) return std::nullopt;
        place_ += static_cast<std::size_t>(end - start);
        in_new_line_ = false;
        return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
    }

    std::optional<float> number() {
        skip_space();
        has(LONGEST_NUMBER);
        const char* start = text_.c_str() + place_;
        char* end = nullptr;
        const float value = std::strtof(start, &end);
        if (end == start) return std::nullopt;
        place_ += static_cast<std::size_t>(end - start);
        in_new_line_ = false;
        return value;
    }

    std::optional<Gpt> point() {
        const std::optional<float> x = number();
        if (!x || !has(1) || text_[place_] != ',') return std::nullopt;
        ++place_;
        const std::optional<float> y = number();
        if (!y) return std::nullopt;
        return Gpt{*x, *y};
    }

    /// Four numbers in the file's order: both low limits first.
    std::optional<Glim> limits() {
        const std::optional<Gpt> low = pair();
        const std::optional<Gpt> high = low ? pair() : std::nullopt;
        if (!high) return std::nullopt;
        return Glim{low->x, high->x, low->y, high->y};
    }

    /// The rest of the line behind blanks, cut where it is too long for a text.
    std::string rest_of_line() {
        while (has(1) && (text_[place_] == ' ' || text_[place_] == '\t')) ++place_;
        has(TEXT_LENGTH + 2);
        const std::size_t end = std::min(text_.find('\n', place_), text_.size());
        std::string text = text_.substr(place_, std::min(end - place_, TEXT_LENGTH));
        while (!text.empty() && text.back() == '\r') text.pop_back();
        skip_line();
        return text;
    }

  private:
    static bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    /// True if `count` more bytes are there; reads them in if need be.
    bool has(std::size_t count) {
        if (place_ + count <= text_.size()) return true;
        text_.erase(0, place_);
        taken_ += static_cast<long>(place_);
        place_ = 0;
        while (text_.size() < count) {
            const std::size_t old = text_.size();
            text_.resize(old + BLOCK);
            text_.resize(old + std::fread(text_.data() + old, 1, BLOCK, file_.get()));
            if (text_.size() == old) return false;
        }
        return true;
    }

    void skip_space() {
        for (; has(1) && is_space(text_[place_]); ++place_) in_new_line_ = in_new_line_ || text_[place_] == '\n';
    }

    std::optional<Gpt> pair() {
        const std::optional<float> a = number();
        const std::optional<float> b = a ? number() : std::nullopt;
        if (!b) return std::nullopt;
        return Gpt{*a, *b};
    }

    file_ptr file_;
    long size_ = 0;     ///< bytes of the file
    long taken_ = 0;    ///< bytes in front of the text at hand
    std::string text_;  ///< the text at hand
    std::size_t place_ = 0;
    bool in_new_line_ = false;  ///< a line ended behind what was taken last
};

// Items. Each reads its arguments and makes its call; false if the arguments aren't there.

template <int (*set)(Gint)>
bool play_integer(Reader& in) {
    const std::optional<int> value = in.integer();
    if (value) set(*value);
    return value.has_value();
}

template <int (*set)(Gfloat)>
bool play_number(Reader& in) {
    const std::optional<float> value = in.number();
    if (value) set(*value);
    return value.has_value();
}

template <int (*set)(Gint, const Glim*)>
bool play_limits(Reader& in) {
    const std::optional<int> number = in.integer();
    const std::optional<Glim> limits = number ? in.limits() : std::nullopt;
    if (limits) set(*number, &*limits);
    return limits.has_value();
}

int ignore_limits(Gint, const Glim*) { return 0; }

/// The points of an item, `count` of them; none with a warning if the file can't hold so many, or doesn't.
std::optional<std::vector<Gpt>> points_of(Reader& in, long count) {
    if (count > in.bytes_left() / POINT_BYTES) {
        MESS_print(MESS_WARN, "gread_metafile: Point list is longer than the file: %ld\n", count);
        ZAV_note(STATUS_LAYER);
        return std::nullopt;
    }
    const auto wanted = static_cast<std::size_t>(count);
    std::vector<Gpt> points;
    while (points.size() < wanted) {
        const std::optional<Gpt> point = in.point();
        if (!point) return std::nullopt;
        points.push_back(*point);
    }
    return points;
}

template <int (*draw)(Gint, const Gpt*)>
bool play_points(Reader& in) {
    const std::optional<int> count = in.integer();
    if (!count || *count < 0) return false;
    const std::optional<std::vector<Gpt>> points = points_of(in, *count);
    if (points) draw(*count, points->data());
    return points.has_value();
}

bool play_rings(Reader& in) {
    const std::optional<int> rings = in.integer();
    if (!rings || *rings < 0) return false;
    std::vector<Gint> counts;
    long total = 0;
    for (int ring = 0; ring < *rings; ++ring) {
        const std::optional<int> count = in.integer();
        if (!count || *count < 0) return false;
        counts.push_back(*count);
        total += *count;
    }
    if (total > INT_MAX) return false;
    const std::optional<std::vector<Gpt>> points = points_of(in, total);
    if (points) gfill_rings(*rings, counts.data(), points->data());
    return points.has_value();
}

bool play_text(Reader& in) {
    const std::optional<Gpt> place = in.point();
    if (!place) return false;
    gtext(&*place, in.rest_of_line());
    return true;
}

bool play_color(Reader& in) {
    const std::optional<int> workstation = in.integer();
    const std::optional<int> index = workstation ? in.integer() : std::nullopt;
    if (!index) return false;
    Gcolr_rep rep;
    for (Gfloat* part : {&rep.red, &rep.green, &rep.blue}) {
        const std::optional<float> value = in.number();
        if (!value) return false;
        *part = *value;
    }
    gset_colr_rep(1, *index, &rep);
    return true;
}

bool play_up_vector(Reader& in) {
    const std::optional<Gpt> up = in.point();
    if (up) gset_char_up_vec(&*up);
    return up.has_value();
}

bool play_alignment(Reader& in) {
    const std::optional<int> hor = in.integer();
    const std::optional<int> vert = hor ? in.integer() : std::nullopt;
    if (!vert) return false;
    Gtext_align align;
    align.hor = *hor;
    align.vert = *vert;
    gset_text_align(&align);
    return true;
}

bool play_font(Reader& in) {
    const std::optional<int> font = in.integer();
    const std::optional<int> prec = font ? in.integer() : std::nullopt;
    if (!prec) return false;
    Gfontprec fontprec;
    fontprec.font = *font;
    fontprec.prec = *prec;
    gset_fontprec(&fontprec);
    return true;
}

bool play_picture(Reader&) {
    gnew_page();
    return true;
}

struct Item {
    const char* word;
    bool (*play)(Reader& in);
};

constexpr Item ITEMS[] = {
    {"WS_WIN", play_limits<ignore_limits>},
    {"WIN", play_limits<gset_win>},
    {"VP", play_limits<gset_vp>},
    {"TR", play_integer<gsel_norm_tran>},
    {"PICTURE", play_picture},
    {"PL", play_points<gpolyline>},
    {"PM", play_points<gpolymarker>},
    {"FA", play_points<gfill_area>},
    {"FR", play_rings},
    {"TE", play_text},
    {"CLR", play_color},
    {"PL_CLR", play_integer<gset_line_colr_ind>},
    {"PL_LW", play_number<gset_linewidth>},
    {"PL_TYPE", play_integer<gset_linetype>},
    {"PM_CLR", play_integer<gset_marker_colr_ind>},
    {"PM_SIZE", play_number<gset_marker_size>},
    {"PM_WDTH", play_number<gset_marker_width>},
    {"PM_TYPE", play_integer<gset_marker_type>},
    {"FA_CLR", play_integer<gset_fill_colr_ind>},
    {"FA_INT", play_integer<gset_fill_int_style>},
    {"FA_ST", play_integer<gset_fill_style_ind>},
    {"TE_CLR", play_integer<gset_text_colr_ind>},
    {"TE_HGHT", play_number<gset_char_ht>},
    {"TE_EXP", play_number<gset_expan>},
    {"TE_WDTH", play_number<gset_text_width>},
    {"TE_SPC", play_number<gset_space>},
    {"TE_CSPC", play_number<gset_char_space>},
    {"TE_UP", play_up_vector},
    {"TE_ALGN", play_alignment},
    {"TE_FNT", play_font},
};

const Item* find_item(const std::string& word) {
    for (const Item& item : ITEMS) {
        if (word == item.word) return &item;
    }
    return nullptr;
}

/// Plays the next item. An item that doesn't fit into the memory is left out.
void play_next(Reader& in) {
    const Item* item = find_item(in.word());
    try {
        if (item == nullptr || !item->play(in)) in.skip_item();
    } catch (const std::bad_alloc&) {
        MESS_print(MESS_WARN, "gread_metafile: Not enough memory for an item: %s\n", item->word);
        ZAV_note(STATUS_LAYER);
        in.skip_item();
    }
}

}  // namespace

int gread_metafile(const std::string& filename) {
    file_ptr file = FILE_open_data(filename);
    if (!file) {
        MESS_print(MESS_WARN, "gread_metafile: Unable to open image file: %s\n", filename.c_str());
        ZAV_note(STATUS_LAYER);
        return 0;
    }
    try {
        Reader in(std::move(file), FILE_size(filename));
        in.skip_line();
        while (!in.at_end()) play_next(in);
    } catch (const std::bad_alloc&) {
        MESS_print(MESS_WARN, "gread_metafile: Not enough memory: %s\n", filename.c_str());
        ZAV_note(STATUS_LAYER);
    }
    return 0;
}

}  // namespace zav
