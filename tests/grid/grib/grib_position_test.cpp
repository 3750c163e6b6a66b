// Every point of a grid lies where ecCodes puts it: real files, and messages that grib_set makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

struct Listed {
    double lat, lon;
};

/// Points of a file's first field, row by row.
std::vector<Listed> listed_points(const std::string& path) {
    std::istringstream text(
        test::run_command("grib_get_data -w count=1 -m 0 -L '%.7f %.7f' '" + path + "' 2>/dev/null"));
    std::vector<Listed> points;
    std::string line;
    std::getline(text, line);
    for (Listed point; text >> point.lat >> point.lon && std::getline(text, line);) points.push_back(point);
    return points;
}

GRD_report first_field(const std::string& path, int what = GRD_READ_ALL, int type = GRD_TYPE_GRIB) {
    GRD_report grd;
    GRD_info info;
    int number = 0;
    const int fd = GRD_open(path, 0, &type);
    EXPECT_EQ(GRD_getinfo(fd, &info), 0) << path;
    EXPECT_EQ(GRD_read(fd, &grd, what, &number), 0) << path;
    GRD_close(fd);
    return grd;
}

constexpr double DEGREES = 1e-4;
constexpr double STEPS = 0.005;
constexpr double SPHEROID = 100.0;  ///< 0.5 of a step are allowed in native files, which know the sphere alone

/// How far the program's place for column and row is from the listed one, in parts of what is allowed: DEGREES on grids
/// of latitude and longitude and Mercator ones, STEPS on the others.
double distance(const Domain& domain, int column, int row, const Listed& point) {
    const float i = static_cast<float>(column);
    const float j = static_cast<float>(row);
    Point at;
    EarthPoint earth;
    if (domain.proj == PROJ_LATLON || domain.proj == PROJ_MERCATOR) {
        MAP_grid_tran(i, j, &at.x, &at.y);
        MAP_tran_pe(at, &earth);
        return std::max(std::fabs(earth.lat - point.lat), std::fabs(std::remainder(earth.lon - point.lon, 360.0))) /
               DEGREES;
    }
    MAP_tran_ep({static_cast<float>(point.lat), static_cast<float>(point.lon)}, &at);
    MAP_grid_untran(at.x, at.y, &at.x, &at.y);
    return std::max(std::fabs(at.x - i), std::fabs(at.y - j)) / STEPS;
}

/// The farthest that a point of the file lies from its place; of a grid with rows of several lengths the corners count.
double farthest(const std::string& path) {
    const std::vector<Listed> points = listed_points(path);
    const GRD_report grd = first_field(path, GRD_READ_HEADER);
    const int scanning = std::stoi(test::run_command("grib_get -w count=1 -p scanningMode '" + path + "' 2>/dev/null"));
    const Domain& domain = grd.domain;
    if (domain.proj == MISS || points.empty()) return 1e9;
    MAP_domain(&domain);
    const std::size_t width = static_cast<std::size_t>(domain.nx);
    const std::size_t count = width * static_cast<std::size_t>(domain.ny);
    double worst = 0.0;
    for (std::size_t n = 0; n < count; ++n) {
        const int i = static_cast<int>(n % width);
        const int j = static_cast<int>(n / width);
        const bool corner = n == 0 || n + 1 == count;
        if (points.size() != count && !corner) continue;
        const int row = scanning & 0x40 ? domain.ny - 1 - j : j;
        const double found = distance(domain, i, row, n == 0 ? points[0] : points[std::min(n + 1, points.size()) - 1]);
        worst = found > worst || std::isnan(found) ? found : worst;
    }
    MAP_domain(nullptr);
    return worst;
}

/// A message that grib_set makes of ecCodes' sample.
struct Message {
    int edition;
    std::string type;
    int nx, ny;
    std::string keys;
};

/// False if grib_set refuses.
bool make(const Message& m, const std::string& path) {
    const bool plane = m.type == "lambert" || m.type == "polar_stereographic";
    const std::string nx = std::to_string(m.nx);
    const std::string ny = std::to_string(m.ny);
    const std::string points = std::to_string(m.nx * m.ny);
    std::string keys = "gridType=" + m.type + (plane ? ",Nx=" + nx + ",Ny=" + ny : ",Ni=" + nx + ",Nj=" + ny);
    if (m.edition == 2) keys += ",numberOfDataPoints=" + points + ",numberOfValues=" + points;
    int status = 0;
    test::run_command("grib_set -s '" + keys + "," + m.keys + "' \"$(codes_info -s)/GRIB" + std::to_string(m.edition) +
                          ".tmpl\" '" + path + "'",
                      &status);
    return status == 0;
}

TEST(GribPosition, PointsOfRealFilesLieWhereEcCodesPutsThem) {
    if (!test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes";
    for (const std::string& folder : test::data_folders()) {
        std::set<std::string> files;
        for (const test::Row& row : test::read_table(folder + "/inventory.tsv")) files.insert(row.at("file"));
        // ecCodes doesn't decode the packing of runs.
        files.erase("jma_nowcast_runlength.grib2");
        for (const std::string& file : files) EXPECT_LE(farthest(folder + "/" + file), 1.0) << file;
    }
}

TEST(GribPosition, PointsOfMadeMessagesLieWhereEcCodesPutsThem) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    for (const test::Row& row : test::data_table("grib_grids.tsv")) {
        const Message message{std::stoi(row.at("edition")), row.at("type"), std::stoi(row.at("nx")),
                              std::stoi(row.at("ny")), row.at("keys")};
        ASSERT_TRUE(make(message, dir.file("made"))) << row.at("name");
        EXPECT_LE(farthest(dir.file("made")), 1.0) << row.at("name");
    }
}

/// A Lambert or polar stereographic grid by chance, with PROJ's words for it.
struct Chance {
    Message message;
    std::string proj;
    double lat1, lon1, dx;
    bool up;
    double kept_allowed;
};

Chance by_chance(std::mt19937& random) {
    auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    struct Earth {
        const char* proj;
        int edition;
        const char* keys;
        double allowed;
    };
    const Earth earths[] = {{"+R=6367470", 1, "earthIsOblate=0", 1.0},
                            {"+a=6378160 +b=6356775", 1, "earthIsOblate=1", SPHEROID},
                            {"+R=6371229", 2, "shapeOfTheEarth=6", 1.0},
                            {"+R=6371220", 2,
                             "shapeOfTheEarth=1,scaleFactorOfRadiusOfSphericalEarth=0,"
                             "scaledValueOfRadiusOfSphericalEarth=6371220",
                             1.0},
                            {"+ellps=GRS80", 2, "shapeOfTheEarth=4", SPHEROID}};
    const Earth& earth = earths[number(0, 4)];
    const int side = number(0, 1) ? 1 : -1;
    const bool disc = number(0, 1);
    const double plon = number(1, 359);
    const double true1 = earth.edition == 1 && disc ? 60 * side : number(20, 70) * side;
    const double true2 = number(0, 1) ? true1 : number(20, 70) * side;
    const int nx = number(2, 300);
    const int ny = number(2, 300);
    Chance c{{earth.edition, disc ? "polar_stereographic" : "lambert", nx, ny, ""},
             "",
             side * number(25, 60) + 0.5,
             std::fmod(plon + number(300, 420), 360.0),
             number(4, std::min(60, 3000 / std::max(nx, ny))) * 1000.0,
             number(0, 1) == 1,
             earth.allowed};
    c.proj = text_format("+proj=%s +lat_0=%d +lon_0=%g %s ", disc ? "stere" : "lcc", disc ? 90 * side : side, plon,
                         earth.proj);
    c.proj += disc ? text_format("+lat_ts=%g", true1) : text_format("+lat_1=%g +lat_2=%g", true1, true2);
    c.message.keys = text_format(
        "%s,latitudeOfFirstGridPointInDegrees=%g,longitudeOfFirstGridPointInDegrees=%g,"
        "DxInMetres=%g,DyInMetres=%g,jScansPositively=%d,projectionCentreFlag=%d,",
        earth.keys, c.lat1, c.lon1, c.dx, c.dx, c.up ? 1 : 0, side < 0 ? 128 : 0);
    if (disc) {
        // Of a southern map either sign means the same.
        const double told = number(0, 1) ? true1 : std::fabs(true1);
        c.message.keys += text_format("orientationOfTheGridInDegrees=%g", plon);
        if (earth.edition == 2) c.message.keys += text_format(",LaDInDegrees=%g", told);
    } else {
        c.message.keys += text_format("LoVInDegrees=%g,Latin1InDegrees=%g,Latin2InDegrees=%g", plon, true1, true2);
    }
    return c;
}

/// Runs a list of pairs through PROJ.
std::vector<Listed> through_proj(const std::string& words, const std::vector<Listed>& pairs, const char* options) {
    std::string input;
    for (const Listed& pair : pairs) input += text_format("%.9f %.9f\\n", pair.lon, pair.lat);
    std::istringstream text(test::run_command("printf -- '" + input + "' | proj " + options + " -f %.9f " + words));
    std::vector<Listed> results;
    for (Listed result; text >> result.lon >> result.lat;) results.push_back(result);
    return results;
}

/// The record as it comes back from a native file.
GRD_report as_native(GRD_report grd, const std::string& path) {
    int type = GRD_TYPE_TEXT;
    int number = 0;
    GRD_info info;
    const int fd = GRD_open(path, 1, &type);
    GRD_putinfo(fd, &info);
    GRD_write(fd, &grd, GRD_READ_ALL, &number);
    GRD_close(fd);
    return first_field(path, GRD_READ_ALL, GRD_TYPE_ANY);
}

TEST(GribPosition, GridsByChanceLieWhereProjPutsThem) {
    if (!test::have_program("grib_set") || !test::have_program("proj")) GTEST_SKIP() << "no ecCodes, or no PROJ";
    const test::TempDir dir;
    std::mt19937 random(1);
    for (int n = 0; n < 40; ++n) {
        const Chance c = by_chance(random);
        const std::string what = c.message.type + " " + c.proj + " " + c.message.keys;
        ASSERT_TRUE(make(c.message, dir.file("made"))) << what;
        const std::vector<Listed> first = through_proj(c.proj, {{c.lat1, c.lon1}}, "");
        ASSERT_EQ(first.size(), 1U) << what;
        const Domain domain = first_field(dir.file("made"), GRD_READ_HEADER).domain;
        ASSERT_EQ(domain.nx, c.message.nx) << what;
        std::vector<Listed> places;
        for (int k = 0; k < 9; ++k) {
            const int i = k % 3 * (domain.nx - 1) / 2;
            const int j = k / 3 * (domain.ny - 1) / 2;
            places.push_back({first[0].lat + (c.up ? j : -j) * c.dx, first[0].lon + i * c.dx});
        }
        const std::vector<Listed> points = through_proj(c.proj, places, "-I");
        ASSERT_EQ(points.size(), places.size()) << what;
        const Domain kept = as_native(first_field(dir.file("made")), dir.file("native")).domain;
        for (const Domain* where : {&domain, &kept}) {
            MAP_domain(where);
            for (int k = 0; k < 9; ++k) {
                const int j = k / 3 * (domain.ny - 1) / 2;
                EXPECT_LE(distance(*where, k % 3 * (domain.nx - 1) / 2, c.up ? domain.ny - 1 - j : j,
                                   points[static_cast<std::size_t>(k)]),
                          where == &kept ? c.kept_allowed : 1.0)
                    << what << " point " << k;
            }
        }
        MAP_domain(nullptr);
    }
}

/// A field of 500 hPa temperature: one of ecCodes' samples with changes.
std::string changed(const test::TempDir& dir, const std::string& sample, int edition, const std::string& keys) {
    const std::string path = dir.file("changed");
    int status = 0;
    test::run_command("grib_set -s 'shortName=t,typeOfLevel=isobaricInhPa,level=500" + keys + "' \"$(codes_info -s)/" +
                          sample + "_pl_grib" + std::to_string(edition) + ".tmpl\" '" + path + "'",
                      &status);
    EXPECT_EQ(status, 0) << keys;
    return path;
}

int status_of_plot(const test::TempDir& dir, const std::string& file) {
    int status = 0;
    test::run_command("cd " + dir.path().string() + " && env zavdefault=none zavfile=" + test::source_dir() +
                          "/share/zav " + test::program_path() + " -ba -de p,a.ps -ft 0 -le 500 -va temp " + file +
                          " </dev/null >/dev/null 2>&1",
                      &status);
    return status;
}

TEST(GribPosition, OtherGridsAreRefusedAndTheSearchGoesOn) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    MESS_set(0, MESS_WARN);
    // Rotated, Gaussian, westward, columns first
    for (const auto& [sample, keys] : {std::pair{"rotated_ll", ""},
                                       {"regular_gg", ""},
                                       {"regular_ll", ",iScansNegatively=1"},
                                       {"regular_ll", ",jPointsAreConsecutive=1"}}) {
        for (const int edition : {1, 2}) {
            SCOPED_TRACE(std::string(sample) + keys + " of edition " + std::to_string(edition));
            const std::string path = changed(dir, sample, edition, keys);
            GRD_report grd;
            const test::Output output = test::capture([&] { grd = first_field(path); });
            EXPECT_NE(output.err.find("grid of this field is not decoded"), std::string::npos) << output.err;
            EXPECT_EQ(grd.domain.proj, MISS);
            EXPECT_FALSE(GRD_has_values(&grd));
            EXPECT_EQ(status_of_plot(dir, path), STATUS_LAYER);
            dir.write("both", test::read_file(path) + test::read_file(changed(dir, "regular_ll", edition, "")));
            EXPECT_EQ(status_of_plot(dir, "both"), 0);
        }
    }
}

TEST(GribPosition, CountsBeyondAnIntAreRefused) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    const std::string path = changed(dir, "regular_ll", 2, ",Ni=2147483648");
    EXPECT_EQ(first_field(path, GRD_READ_HEADER).domain.proj, MISS);
}

TEST(GribPosition, IncrementsThatArentGivenFollowFromTheEnds) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    for (const int edition : {1, 2}) {
        Message message{edition, "regular_ll", 36, 19,
                        "latitudeOfFirstGridPointInDegrees=90,latitudeOfLastGridPointInDegrees=-90,"
                        "longitudeOfFirstGridPointInDegrees=0,longitudeOfLastGridPointInDegrees=350,"
                        "iDirectionIncrementInDegrees=10,jDirectionIncrementInDegrees=10"};
        ASSERT_TRUE(make(message, dir.file("given")));
        message.keys += ",iDirectionIncrement=missing,jDirectionIncrement=missing";
        ASSERT_TRUE(make(message, dir.file("missing")));
        const Domain given = first_field(dir.file("given"), GRD_READ_HEADER).domain;
        const Domain missing = first_field(dir.file("missing"), GRD_READ_HEADER).domain;
        EXPECT_FLOAT_EQ(given.dx, 10.0F);
        EXPECT_TRUE(DOM_comp(&given, &missing)) << edition;
    }
}

}  // namespace
}  // namespace zav
