// The lines of a chart against an independent working-out: values by ecCodes, places by PROJ, crossings done here.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

constexpr double INTERVAL = 60.0;
const std::string CHART_A = "-me warn -ft h120 -le 500 -va hght -pl ln -in 60 -pd ps:90:-100,45,-100,61,45,1.2 ";

struct Place {
    double x, y, value;
};

/// The 500 mb height field on the chart's plane, in units of 100 km, 144 columns from 0 E and 73 rows from 90 N.
std::vector<Place> field_on_map(const std::string& source, const TempDir& dir) {
    std::istringstream rows(run_command("grib_get_data -w shortName=gh,typeOfLevel=isobaricInhPa,level=500 " + source));
    std::string line;
    std::getline(rows, line);
    std::vector<Place> places;
    std::ofstream degrees(dir.file("degrees"));
    double lat = 0.0;
    double lon = 0.0;
    double value = 0.0;
    while (std::getline(rows, line)) {
        if (std::sscanf(line.c_str(), "%lf%lf%lf", &lat, &lon, &value) != 3) continue;
        degrees << lon << " " << std::max(lat, -75.0) << "\n";
        places.push_back({0.0, 0.0, value});
    }
    degrees.close();
    std::istringstream plane(
        run_command("proj -f '%.6f' +proj=stere +lat_0=90 +lat_ts=60 +lon_0=-100 +R=6371220 " + dir.file("degrees")));
    for (Place& place : places) {
        plane >> place.x >> place.y;
        place.x /= 1e5;
        place.y /= 1e5;
    }
    return places;
}

PagePoint between(const Place& a, const Place& b, double level) {
    const double part = (level - a.value) / (b.value - a.value);
    return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

/// Segments of one level in a cell with corners lower left, lower right, upper right, upper left. Of a saddle the pair
/// of lines that is nearer to the corners they cut off, measured along the sides from the lower left and upper right
/// one.
void cross_cell(const std::array<Place, 4>& corner, double level, std::vector<PagePath>& lines) {
    std::vector<PagePoint> found;
    std::array<double, 4> part{};
    for (int side = 0; side < 4; side++) {
        const Place& a = corner[side];
        const Place& b = corner[(side + 1) % 4];
        if ((a.value < level) == (b.value < level)) continue;
        found.push_back(between(a, b, level));
        part[side] = (level - a.value) / (b.value - a.value);
    }
    if (found.size() == 2) lines.push_back({found[0], found[1]});
    if (found.size() != 4) return;
    // Sides bottom, right, top, left: distances from corner 0 on bottom and left, from corner 2 on right and top.
    const bool far = part[0] + (1.0 - part[3]) + (1.0 - part[1]) + part[2] >= 2.0;
    const int shift = far ? 1 : 0;
    lines.push_back({found[far ? 0 : 3], found[far ? 1 : 0]});
    lines.push_back({found[1 + shift], found[(2 + shift) % 4]});
}

/// Cuts a line at a rectangle. False if nothing is left.
bool clip(PagePath& line, double x0, double x1, double y0, double y1) {
    double from = 0.0;
    double to = 1.0;
    const PagePoint a = line[0];
    const double dx = line[1].x - a.x;
    const double dy = line[1].y - a.y;
    for (const auto& [step, room] : {std::pair{-dx, a.x - x0}, {dx, x1 - a.x}, {-dy, a.y - y0}, {dy, y1 - a.y}}) {
        if (step == 0.0 && room < 0.0) return false;
        if (step < 0.0) from = std::max(from, room / step);
        if (step > 0.0) to = std::min(to, room / step);
    }
    if (from >= to) return false;
    line = {{a.x + from * dx, a.y + from * dy}, {a.x + to * dx, a.y + to * dy}};
    return true;
}

std::vector<PagePath> expected_lines(const std::vector<Place>& field, int columns, int rows) {
    std::vector<PagePath> lines;
    for (int j = 0; j + 1 < rows; j++) {
        for (int i = 0; i + 1 < columns; i++) {
            const auto at = [&](int column, int row) { return field[row * columns + column]; };
            const std::array<Place, 4> corner = {at(i, j + 1), at(i + 1, j + 1), at(i + 1, j), at(i, j)};
            const auto [low, high] = std::minmax({corner[0].value, corner[1].value, corner[2].value, corner[3].value});
            for (double level = std::ceil(low / INTERVAL) * INTERVAL; level <= high; level += INTERVAL) {
                cross_cell(corner, level, lines);
            }
        }
    }
    return lines;
}

double distance(const PagePath& a, const PagePath& b) {
    const auto apart = [](PagePoint p, PagePoint q) { return std::max(std::abs(p.x - q.x), std::abs(p.y - q.y)); };
    return std::min(std::max(apart(a[0], b[0]), apart(a[1], b[1])), std::max(apart(a[0], b[1]), apart(a[1], b[0])));
}

/// Lines by the place of their middle, for looking them up.
using Index = std::multimap<long, PagePath>;
long cell_of(const PagePath& line, int dx, int dy) {
    const long x = std::lround((line[0].x + line[1].x) / 2.0) + dx;
    const long y = std::lround((line[0].y + line[1].y) / 2.0) + dy;
    return y * 10000 + x;
}

int count_without_match(const std::vector<PagePath>& lines, const Index& others, double within) {
    int lost = 0;
    for (const PagePath& line : lines) {
        bool found = false;
        for (int dy = -1; dy <= 1 && !found; dy++) {
            for (int dx = -1; dx <= 1 && !found; dx++) {
                const auto [first, last] = others.equal_range(cell_of(line, dx, dy));
                found =
                    std::any_of(first, last, [&](const auto& entry) { return distance(line, entry.second) <= within; });
            }
        }
        if (!found) lost++;
    }
    return lost;
}

Index index_of(const std::vector<PagePath>& lines) {
    Index index;
    for (const PagePath& line : lines) index.emplace(cell_of(line, 0, 0), line);
    return index;
}

/// The data rectangle: the border, a closed line of five points.
PagePath border_of(const Page& page) {
    for (const PagePath& line : page.lines) {
        if (line.size() == 5 && std::abs(line[0].x - line[4].x) < 0.02 && line[1].x - line[0].x > 200.0) return line;
    }
    return {};
}

TEST(Chart, LinesAreWhereTheFieldCrossesTheLevels) {
    const std::string source = data_file("gfs_2p5deg_f120_cut.grib2");
    if (!have_program("grib_get_data") || !have_program("proj")) GTEST_SKIP() << "ecCodes and PROJ aren't installed";
    const TempDir dir;
    // Once as users draw it, and once without labels and marks, whose strokes would stand among the lines.
    ASSERT_EQ(run_program(dir.path(), CHART_A + "-de p,full.ps " + source).status, 0);
    ASSERT_EQ(run_program(dir.path(), CHART_A + "-cocl off -dr data,bord -de p,bare.ps " + source).status, 0);
    const Page full = read_page(dir.file("full.ps"));
    Page bare = read_page(dir.file("bare.ps"));
    EXPECT_EQ(full.pages, 1);
    const PagePath border = border_of(bare);
    ASSERT_EQ(border.size(), 5U);
    const auto is_border = [&](const PagePath& line) { return line.size() == 5 && line[2].x == border[2].x; };
    std::erase_if(bare.lines, is_border);

    // The map is 61 by 45 steps of 1.2 units, and lies on the rectangle whole.
    const double scale = (border[2].x - border[0].x) / (60 * 1.2);
    EXPECT_NEAR((border[2].y - border[0].y) / (44 * 1.2), scale, scale * 1e-3);
    std::istringstream middle(
        run_command("echo -100 45 | proj -f '%.6f' +proj=stere +lat_0=90 +lat_ts=60 +lon_0=-100 +R=6371220"));
    PagePoint centre;
    middle >> centre.x >> centre.y;
    const double left = centre.x / 1e5 - 30 * 1.2;
    const double bottom = centre.y / 1e5 - 22 * 1.2;

    std::vector<PagePath> expected;
    for (PagePath line : expected_lines(field_on_map(source, dir), 144, 73)) {
        for (PagePoint& point : line) {
            point = {border[0].x + (point.x - left) * scale, border[0].y + (point.y - bottom) * scale};
        }
        if (!clip(line, border[0].x, border[2].x, border[0].y, border[2].y)) continue;
        if (std::hypot(line[1].x - line[0].x, line[1].y - line[0].y) > 0.1) expected.push_back(line);
    }
    std::vector<PagePath> drawn;
    for (PagePath line : segments_of(bare)) {
        if (!clip(line, border[0].x, border[2].x, border[0].y, border[2].y)) continue;
        if (std::hypot(line[1].x - line[0].x, line[1].y - line[0].y) > 0.1) drawn.push_back(line);
    }
    ASSERT_GT(expected.size(), 500U);
    EXPECT_EQ(count_without_match(expected, index_of(drawn), 0.05), 0) << "of " << expected.size() << " expected";
    EXPECT_EQ(count_without_match(drawn, index_of(expected), 0.05), 0) << "of " << drawn.size() << " drawn";
    // The whole chart has the same lines, but for gaps behind its texts.
    const Index shown = index_of(segments_of(full));
    for (const PagePath& line : segments_of(bare)) {
        if (count_without_match({line}, shown, 0.001) == 0) continue;
        EXPECT_TRUE(std::any_of(full.texts.begin(), full.texts.end(),
                                [&line](const PageText& text) {
                                    PagePath part = line;
                                    return clip(part, text.low.x - 2, text.high.x + 2, text.low.y - 2, text.high.y + 2);
                                }))
            << line[0].x << ' ' << line[0].y;
    }
}

/// Labels and marks of the grid's own columns, rows and extremes that stand free stay where they are.
TEST(Chart, TextsThatStandFreeStay) {
    const std::string source = data_file("gfs_2p5deg_f120_cut.grib2");
    const TempDir dir;
    ASSERT_EQ(run_program(dir.path(), CHART_A + "-de p,paper.ps " + source).status, 0);
    ASSERT_EQ(run_program(dir.path(), CHART_A + "-pp letter -de p,all.ps " + source).status, 0);
    const Page all = read_page(dir.file("all.ps"));
    const Page paper = read_page(dir.file("paper.ps"));
    const PagePath border = border_of(all);
    const auto is_letter = [&](std::size_t i) { return all.texts[i].str == "H" || all.texts[i].str == "L"; };
    int free = 0;
    for (std::size_t i = 0; i < all.texts.size(); i++) {
        const PageText& text = all.texts[i];
        const auto same = [&](const PageText& other) {
            return other.str == text.str &&
                   std::abs(other.low.x - text.low.x) + std::abs(other.low.y - text.low.y) < 0.1;
        };
        bool crowded = text.low.x < border[0].x + 9 || text.high.x > border[2].x - 9 || text.low.y < border[0].y + 9 ||
                       text.high.y > border[2].y - 9;
        for (std::size_t j = 0; j < all.texts.size() && !crowded; j++) {
            const bool of_one_mark = (j == i + 1 && is_letter(i)) || (i == j + 1 && is_letter(j));
            crowded = j != i && !of_one_mark && text.meets(all.texts[j], 5.0);
        }
        if (crowded) continue;
        ++free;
        EXPECT_TRUE(std::any_of(paper.texts.begin(), paper.texts.end(), same)) << text.str;
    }
    EXPECT_GT(free, 10);
}

TEST(Chart, CgmIsASequenceOfWholeElements) {
    const std::string source = data_file("gfs_2p5deg_f120_cut.grib2");
    const TempDir dir;
    const std::string bare = CHART_A + "-cocl off ";
    ASSERT_EQ(run_program(dir.path(), bare + "-de m,z500.cgm,cgm " + source).status, 0);
    const std::string cgm = read_file(dir.file("z500.cgm"));
    // Elements of class 4 (graphical primitives), identity 1 (polyline), counted by walking the headers of ISO 8632-3.
    std::size_t polylines = 0;
    std::size_t at = 0;
    while (at + 2 <= cgm.size()) {
        const unsigned head = static_cast<unsigned char>(cgm[at]) * 256U + static_cast<unsigned char>(cgm[at + 1]);
        std::size_t length = head & 31U;
        at += 2;
        if (length == 31 && at + 2 <= cgm.size()) {
            length = static_cast<unsigned char>(cgm[at]) * 256U + static_cast<unsigned char>(cgm[at + 1]);
            at += 2;
        }
        if (head >> 5U == (4U << 7U | 1U)) polylines++;
        at += length + length % 2;
    }
    EXPECT_EQ(at, cgm.size()) << "the elements fill the file";
    EXPECT_GT(polylines, 200U);
}

TEST(Chart, RuleAndAnswersGiveTheSamePage) {
    const std::string source = data_file("gfs_2p5deg_f120_cut.grib2");
    const TempDir dir;
    ASSERT_EQ(run_program(dir.path(), CHART_A + "-de p,options.ps " + source).status, 0);
    const std::string page = page_without_date(dir.file("options.ps"));
    ASSERT_GT(page.size(), 20000U);

    std::filesystem::create_symlink(source, dir.path() / "11011012_gfs.grb");
    const EnvSetting clock("zavcurtime", "201101110000");
    const Outcome rule = run_program(dir.path(), CHART_A + "-mo gfs -gp . -cu la -de p,rule.ps");
    EXPECT_EQ(rule.status, 0) << rule.err;
    EXPECT_EQ(page_without_date(dir.file("rule.ps")), page);

    // File, the menu's number for 120 hours, level, variable, device, type, interval, and the way back out.
    const Outcome menu = run_program(dir.path(), "-me print,warn", source + "\n0\n");
    const std::size_t at = menu.out.find(": 120 hour");
    ASSERT_NE(at, std::string::npos) << menu.out;
    const std::string number = menu.out.substr(at - 2, 2);
    const Outcome answers = run_program(dir.path(), "-me print,warn -pd ps:90:-100,45,-100,61,45,1.2",
                                        source + "\n" + number + "\n500\nhght\np\n60\nln\n0\n0\n0\n");
    EXPECT_EQ(answers.status, 0) << answers.out << answers.err;
    EXPECT_EQ(page_without_date(dir.file("zav.ps")), page);
}

}  // namespace
}  // namespace zav::test
