// Streamlines at an even distance: each new one begins beside one that is there, and ends where it would come too near.

#include "plot/wind/vect_even.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace zav {

namespace {

/// Share of the distance to which lines may approach each other.
constexpr float NEAREST = 0.55F;
/// Lines shorter than this many distances aren't drawn.
constexpr float SHORTEST = 1.2F;
/// Most points of a line in each direction: a spiral ends on its own, this is for safety.
constexpr int MOST_POINTS = 20000;

float squared(const Gpt& a, const Gpt& b) { return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y); }

/// The points of all lines, in cells of the lines' distance.
class Crowd {
  public:
    struct Member {
        Gpt at;
        int line;
        int number;  ///< along its line, the seed being 0
    };

    Crowd(float width, float height, float cell) : size(cell) {
        columns = static_cast<int>(width / size) + 1;
        rows = static_cast<int>(height / size) + 1;
        cells.resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    }

    void add(const Member& member) { cell_of(member.at).push_back(member); }
    /// Takes the last member added near `at` out again.
    void take_back(const Gpt& at) { cell_of(at).pop_back(); }

    /// True if a point of another line lies nearer than `distance`, at most the size of a cell, or one of the same line
    /// that is at least `apart` points away.
    bool is_near(const Member& member, float distance, int apart) const {
        const int i = column(member.at.x);
        const int j = row(member.at.y);
        for (int y = std::max(j - 1, 0); y <= std::min(j + 1, rows - 1); ++y) {
            for (int x = std::max(i - 1, 0); x <= std::min(i + 1, columns - 1); ++x) {
                for (const Member& other : cells[index(x, y)]) {
                    if (squared(other.at, member.at) >= distance * distance) continue;
                    if (other.line != member.line || std::abs(other.number - member.number) >= apart) return true;
                }
            }
        }
        return false;
    }

  private:
    int column(float x) const { return std::clamp(static_cast<int>(x / size), 0, columns - 1); }
    int row(float y) const { return std::clamp(static_cast<int>(y / size), 0, rows - 1); }
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x);
    }
    std::vector<Member>& cell_of(const Gpt& at) { return cells[index(column(at.x), row(at.y))]; }

    float size;
    int columns;
    int rows;
    std::vector<std::vector<Member>> cells;
};

class Lines {
  public:
    Lines(const Page_wind& field, float apart)
        : wind(field), distance(apart), crowd(field.width(), field.height(), apart) {}

    std::vector<Streamline> draw() {
        for (float y = distance / 2.0F; y < wind.height(); y += distance) {
            for (float x = distance / 2.0F; x < wind.width(); x += distance) {
                grow({x, y});
                grow_beside();
            }
        }
        return std::move(lines);
    }

  private:
    /// Lines from both sides of the lines that wait.
    void grow_beside() {
        while (!waiting.empty()) {
            const std::size_t line = waiting.front();
            waiting.pop_front();
            for (std::size_t k = 0; k < lines[line].points.size(); ++k) {
                const Gpt at = lines[line].points[k];
                const Page_vector along = wind.at(at);
                if (along.spd < 0.0F) continue;
                grow({at.x - distance * along.v, at.y + distance * along.u});
                grow({at.x + distance * along.v, at.y - distance * along.u});
            }
        }
    }

    void grow(const Gpt& seed) {
        const int number = static_cast<int>(lines.size());
        const Page_vector start = wind.at(seed);
        // A line beside another begins at the distance itself, so that rounding has to let it.
        if (start.spd < 0.0F || crowd.is_near({seed, number, 0}, 0.98F * distance, 0)) return;
        crowd.add({seed, number, 0});
        Streamline back = follow(seed, -1.0F);
        Streamline line = follow(seed, 1.0F);
        const std::size_t count = back.points.size() + line.points.size() + 1;
        if (static_cast<float>(count) * STREAM_STEP_MM < SHORTEST * distance) {
            for (const Streamline* part : {&line, &back}) {
                for (auto at = part->points.rbegin(); at != part->points.rend(); ++at) crowd.take_back(*at);
            }
            crowd.take_back(seed);
            return;
        }
        std::reverse(back.points.begin(), back.points.end());
        std::reverse(back.speeds.begin(), back.speeds.end());
        back.points.push_back(seed);
        back.speeds.push_back(start.spd);
        back.points.insert(back.points.end(), line.points.begin(), line.points.end());
        back.speeds.insert(back.speeds.end(), line.speeds.begin(), line.speeds.end());
        waiting.push_back(lines.size());
        lines.push_back(std::move(back));
    }

    /// The points behind the seed, with the wind (`sign` 1) or against it.
    Streamline follow(Gpt at, float sign) {
        Streamline line;
        const int number = static_cast<int>(lines.size());
        const int apart = static_cast<int>(2.0F * distance / STREAM_STEP_MM);
        for (int k = 1; k < MOST_POINTS; ++k) {
            const Page_vector here = wind.at(at);
            if (here.spd < 0.0F) break;
            const float half = sign * STREAM_STEP_MM / 2.0F;
            const Page_vector middle = wind.at({at.x + half * here.u, at.y + half * here.v});
            if (middle.spd < 0.0F || here.u * middle.u + here.v * middle.v < 0.0F) break;
            at = {at.x + 2.0F * half * middle.u, at.y + 2.0F * half * middle.v};
            const Page_vector there = wind.at(at);
            const Crowd::Member member{at, number, sign > 0.0F ? k : -k};
            if (there.spd < 0.0F || crowd.is_near(member, NEAREST * distance, apart)) break;
            crowd.add(member);
            line.points.push_back(at);
            line.speeds.push_back(there.spd);
        }
        return line;
    }

    const Page_wind& wind;
    float distance;
    Crowd crowd;
    std::vector<Streamline> lines;
    std::deque<std::size_t> waiting;
};

}  // namespace

std::vector<Streamline> VECT_even_lines(const Page_wind& wind, float distance) {
    return Lines(wind, std::max(distance, 2.0F * STREAM_STEP_MM)).draw();
}

}  // namespace zav
