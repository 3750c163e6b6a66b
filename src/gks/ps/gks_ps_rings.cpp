// PostScript areas of several rings: paths of many points, written as short as they can be.

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <vector>

#include "gks/gks.h"
#include "gks/ps/gks_ps.h"

namespace zav {
namespace {

/// A place on the page in hundredths of a point, the resolution of all that is written.
struct Place {
    std::int64_t x;
    std::int64_t y;
};

Place place_of(const Gpt& pt) {
    const auto hundredths = [](float value) { return std::llround(static_cast<double>(value) * 100.0); };
    return {hundredths(xW_ps(pt.x)), hundredths(yW_ps(pt.y))};
}

Place step(const Place& from, const Place& to) { return {to.x - from.x, to.y - from.y}; }

bool goes_on(const Place& step1, const Place& step2) {
    return step1.x * step2.y == step1.y * step2.x && step1.x * step2.x + step1.y * step2.y > 0;
}

/// The corners of a ring as they stand in the file, without points on a straight line between their neighbours.
std::vector<Place> corners_of(Gint num_pt, const Gpt* pts) {
    std::vector<Place> corners;
    for (int i = 0; i < num_pt; ++i) {
        const Place place = place_of(pts[i]);
        if (!corners.empty() && place.x == corners.back().x && place.y == corners.back().y) continue;
        const std::size_t count = corners.size();
        if (count > 1 && goes_on(step(corners[count - 2], corners[count - 1]), step(corners[count - 1], place))) {
            corners.back() = place;
        } else {
            corners.push_back(place);
        }
    }
    const bool closed =
        corners.size() > 1 && corners.front().x == corners.back().x && corners.front().y == corners.back().y;
    if (closed) corners.pop_back();
    return corners;
}

/// Lines of the file, filled up with numbers.
class Lines {
  public:
    void put(const Place& place, char action) {
        constexpr std::size_t longest = 48;  // two numbers, their blanks and the action
        if (length_ + longest > text_.size()) flush();
        put_number(place.x);
        put_number(place.y);
        text_[length_++] = action;
        text_[length_++] = ' ';
    }
    void close() {
        text_[length_++] = 'h';
        flush();
    }

  private:
    void put_number(std::int64_t number) {
        char* const start = text_.data() + length_;
        length_ += static_cast<std::size_t>(std::to_chars(start, text_.data() + text_.size(), number).ptr - start);
        text_[length_++] = ' ';
    }
    void flush() {
        gps_printf("%.*s\n", static_cast<int>(length_), text_.data());
        length_ = 0;
    }

    std::array<char, 120> text_;
    std::size_t length_ = 0;
};

}  // namespace

void gps_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    gps_printf("gsave .01 dup scale np /m{moveto}def /l{rlineto}def /h{closepath}def\n");
    Lines lines;
    for (int ring = 0; ring < num_rings; array_pt += num_pt[ring], ++ring) {
        const std::vector<Place> corners = corners_of(num_pt[ring], array_pt);
        if (corners.size() < 3) continue;
        lines.put(corners[0], 'm');
        for (std::size_t i = 1; i < corners.size(); ++i) lines.put(step(corners[i - 1], corners[i]), 'l');
        lines.close();
    }
    gps_printf("fill grestore\n");
}

}  // namespace zav
