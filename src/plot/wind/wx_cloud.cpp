// Station circles that show the cloud cover, as the international plotting model draws them.

#include <array>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <string>
#include <vector>

#include "gks/gks.h"
#include "plot/wind/wx_symb.h"

namespace zav {

namespace {

constexpr double DEGREE = std::numbers::pi / 180.0;

/// Degrees from point to point of the circle.
constexpr int CIRCLE_STEP = 30;

/// A circle in world coordinates. Angles are degrees counterclockwise from east.
struct Circle {
    float x;
    float y;
    float rad;

    Gpt at(double angle) const {
        return {static_cast<float>(x + rad * std::cos(angle * DEGREE)),
                static_cast<float>(y + rad * std::sin(angle * DEGREE))};
    }
    Gpt centre() const { return {x, y}; }
    /// Points from one angle to another, both included.
    std::vector<Gpt> arc(int from, int to) const {
        std::vector<Gpt> points;
        for (int angle = from; angle <= to; angle += CIRCLE_STEP) points.push_back(at(angle));
        return points;
    }
};

void draw_line(const Gpt& from, const Gpt& to) {
    const std::array<Gpt, 2> line{from, to};
    gpolyline(2, line.data());
}

void draw_points(const std::vector<Gpt>& points) { gpolyline(static_cast<Gint>(points.size()), points.data()); }

void fill(const std::vector<Gpt>& points) {
    gset_fill_int_style(GSOLID);
    gfill_area(static_cast<Gint>(points.size()), points.data());
}

void fill_quarter(const Circle& circle) {
    std::vector<Gpt> area = circle.arc(0, 90);
    area.push_back(circle.centre());
    area.push_back(circle.at(0));
    fill(area);
}

void fill_right_half(const Circle& circle) {
    std::vector<Gpt> area = circle.arc(-90, 90);
    area.push_back(circle.at(-90));
    fill(area);
}

void fill_three_quarters(const Circle& circle) {
    std::vector<Gpt> area = circle.arc(-180, 90);
    area.push_back(circle.centre());
    area.push_back(circle.at(180));
    fill(area);
}

/// All but an upright band in the middle.
void fill_sides(const Circle& circle) {
    for (const int turn : {0, 180}) {
        std::vector<Gpt> area = circle.arc(-60 + turn, 60 + turn);
        area.insert(area.begin(), circle.at(-75 + turn));
        area.push_back(circle.at(75 + turn));
        area.push_back(circle.at(-75 + turn));
        fill(area);
    }
}

void draw_letter_m(const Circle& circle) {
    std::vector<Gpt> letter;
    for (const Gpt& corner :
         {Gpt{-0.7F, -0.7F}, Gpt{-0.7F, 0.7F}, Gpt{0.0F, 0.0F}, Gpt{0.7F, 0.7F}, Gpt{0.7F, -0.7F}}) {
        letter.push_back({circle.x + circle.rad * corner.x, circle.y + circle.rad * corner.y});
    }
    draw_points(letter);
}

/// What a code draws besides the outline, null for nothing.
struct Cover {
    const char* codes;
    void (*draw)(const Circle& circle);
};

constexpr std::array<Cover, 9> COVERS = {{
    {"0Cbosx", nullptr},
    {"1F", [](const Circle& c) { draw_line(c.at(90), c.at(-90)); }},
    {"2S", fill_quarter},
    {"3",
     [](const Circle& c) {
         fill_quarter(c);
         draw_line(c.centre(), c.at(-90));
     }},
    {"4", fill_right_half},
    {"5",
     [](const Circle& c) {
         fill_right_half(c);
         draw_line(c.centre(), c.at(180));
     }},
    {"6B", fill_three_quarters},
    {"7", fill_sides},
    {"9X",
     [](const Circle& c) {
         draw_line(c.at(45), c.at(225));
         draw_line(c.at(135), c.at(315));
     }},
}};

/// Code of a sky that is covered all over, the one circle without an outline.
bool is_overcast(char cover) { return cover == '8' || cover == 'O'; }

}  // namespace

int WX_cloud(float x_center, float y_center, float rad, char cover) {
    const Circle circle{x_center, y_center, rad};
    if (is_overcast(cover)) {
        fill(circle.arc(0, 360));
        return 0;
    }
    draw_points(circle.arc(0, 360));
    for (const Cover& known : COVERS) {
        if (std::string(known.codes).find(cover) == std::string::npos) continue;
        if (known.draw != nullptr) known.draw(circle);
        return 0;
    }
    draw_letter_m(circle);
    return 0;
}

}  // namespace zav
