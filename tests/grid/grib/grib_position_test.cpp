// Every point of a grid lies where ecCodes puts it: real files, and messages that grib_set makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
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

/// How far the program's place for column and row is from the listed one: in degrees on grids of latitude and
/// longitude and Mercator ones, else in steps.
double distance(const Domain& domain, int column, int row, const Listed& point) {
    const float i = static_cast<float>(column);
    const float j = static_cast<float>(row);
    float x = 0.0F;
    float y = 0.0F;
    float a = 0.0F;
    float b = 0.0F;
    if (domain.proj == PROJ_LATLON || domain.proj == PROJ_MERCATOR) {
        MAP_grid_tran(i, j, &x, &y);
        MAP_untran(x, y, &a, &b);
        return std::max(std::fabs(a - point.lat), std::fabs(std::remainder(b - point.lon, 360.0)));
    }
    MAP_tran(static_cast<float>(point.lat), static_cast<float>(point.lon), &x, &y);
    MAP_grid_untran(x, y, &a, &b);
    return std::max(std::fabs(a - i), std::fabs(b - j));
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
    const char* name;
    int edition;
    std::string type;
    int nx, ny;
    std::string keys;
    double tolerance;
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

constexpr double DEGREES = 1e-4;
constexpr double STEPS = 0.005;
constexpr double SPHEROID = 0.1;  ///< the program's earth is a sphere

struct RealFile {
    const char* name;
    double tolerance;
};

class GribRealPosition : public testing::TestWithParam<RealFile> {};

TEST_P(GribRealPosition, PointsLieWhereTheFileSays) {
    const std::string path = test::data_file(GetParam().name);
    if (path.empty() || !test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes, or no " << GetParam().name;
    EXPECT_LE(farthest(path), GetParam().tolerance);
}

INSTANTIATE_TEST_SUITE_P(
    Files, GribRealPosition,
    testing::Values(RealFile{"lambert_1199x799.grib1", STEPS}, RealFile{"cmc_wind300_polar.grib1", STEPS},
                    RealFile{"reduced_latlon.grib1", DEGREES}, RealFile{"scanning_mode_64.grib1", DEGREES},
                    RealFile{"bulletin_41bytes.grib1", DEGREES}, RealFile{"era5_levels_members.grib1", DEGREES},
                    RealFile{"missing_values.grib1", DEGREES}, RealFile{"cmc_tmp1_jpeg2000.grib2", DEGREES},
                    RealFile{"bulletin_40bytes.grib2", DEGREES}, RealFile{"eta_lambert_f24.grib2", STEPS},
                    RealFile{"ndfd_maxt_lambert.grib2", STEPS}, RealFile{"ngm_polar_f48.grib2", STEPS},
                    RealFile{"ndfd_temp_mercator.grib2", DEGREES}, RealFile{"gfs_2p5deg_f120.grib2", DEGREES}),
    [](const auto& row) {
        std::string name = row.param.name;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

const std::string ROUND = "latitudeOfFirstGridPoint=90000000,latitudeOfLastGridPoint=-90000000,";
const std::string ROUND1 = "latitudeOfFirstGridPoint=90000,latitudeOfLastGridPoint=-90000,";
const std::string START = "latitudeOfFirstGridPoint=40000000,longitudeOfFirstGridPoint=250000000,";
const std::string START1 = "latitudeOfFirstGridPoint=40000,longitudeOfFirstGridPoint=-110000,";
const std::string STEP = "DxInMetres=50000,DyInMetres=50000,jScansPositively=1,";
const std::string CONE = STEP + "LoVInDegrees=260,Latin1InDegrees=30,Latin2InDegrees=60";
const std::string CONE1 = STEP + "LoVInDegrees=-100,Latin1InDegrees=30,Latin2InDegrees=60";
const std::string DISC = STEP + "orientationOfTheGridInDegrees=260,LaDInDegrees=";
const std::string SOUTH =
    STEP + "latitudeOfFirstGridPoint=-40000000,longitudeOfFirstGridPoint=250000000,projectionCentreFlag=128,";
const std::string OUR_RADIUS =
    ",shapeOfTheEarth=1,scaleFactorOfRadiusOfSphericalEarth=0,scaledValueOfRadiusOfSphericalEarth=6371220";

class GribMadePosition : public testing::TestWithParam<Message> {};

TEST_P(GribMadePosition, PointsLieWhereTheMessageSays) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    ASSERT_TRUE(make(GetParam(), dir.file("made")));
    EXPECT_LE(farthest(dir.file("made")), GetParam().tolerance);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, GribMadePosition,
    testing::Values(
        Message{"lambert1_8x6", 1, "lambert", 8, 6, START1 + CONE1, STEPS},
        Message{"lambert2_8x6", 2, "lambert", 8, 6, START + CONE + OUR_RADIUS, STEPS},
        Message{"lambert2_9x7", 2, "lambert", 9, 7, START + CONE, STEPS},
        Message{"lambert2_minor_axis_given", 2, "lambert", 8, 6,
                START + CONE + OUR_RADIUS + ",scaleFactorOfEarthMinorAxis=1,scaledValueOfEarthMinorAxis=16777216",
                STEPS},
        Message{"polar1_8x6", 1, "polar_stereographic", 8, 6, START1 + STEP + "orientationOfTheGridInDegrees=-100",
                STEPS},
        Message{"polar2_lad_60", 2, "polar_stereographic", 8, 6, START + DISC + "60" + OUR_RADIUS, STEPS},
        Message{"polar2_lad_90", 2, "polar_stereographic", 8, 6, START + DISC + "90", STEPS},
        Message{"polar2_south_lad_minus_60", 2, "polar_stereographic", 9, 6, SOUTH + DISC + "-60", STEPS},
        Message{"mercator1", 1, "mercator", 8, 6,
                START1 + "DiInMetres=50000,DjInMetres=50000,Latin=20000,jScansPositively=1", DEGREES},
        Message{"mercator2", 2, "mercator", 9, 6,
                START + "DiInMetres=50000,DjInMetres=50000,LaDInDegrees=20,jScansPositively=1", DEGREES},
        Message{
            "mercator2_south", 2, "mercator", 9, 6,
            "latitudeOfFirstGridPoint=-40000000,DiInMetres=50000,DjInMetres=50000,LaDInDegrees=-20,jScansPositively=1",
            DEGREES},
        Message{"latlon1_increments_not_given", 1, "regular_ll", 36, 10,
                ROUND1 + "longitudeOfFirstGridPoint=0,longitudeOfLastGridPoint=350000,ijDirectionIncrementGiven=0",
                DEGREES},
        Message{"latlon1_increments_rounded", 1, "regular_ll", 181, 91,
                "latitudeOfFirstGridPoint=60000,latitudeOfLastGridPoint=42000,longitudeOfFirstGridPoint=-30000,"
                "longitudeOfLastGridPoint=30000,"
                "iDirectionIncrement=333,jDirectionIncrement=200",
                DEGREES},
        Message{"latlon2_first_meridian_repeated", 2, "regular_ll", 37, 19,
                ROUND + "longitudeOfFirstGridPoint=0,longitudeOfLastGridPoint=360000000,iDirectionIncrement=10000000,"
                        "jDirectionIncrement=10000000",
                DEGREES},
        Message{"latlon2_across_greenwich", 2, "regular_ll", 37, 19,
                ROUND + "longitudeOfFirstGridPoint=350000000,longitudeOfLastGridPoint=26000000,iDirectionIncrement="
                        "1000000,jDirectionIncrement=10000000",
                DEGREES},
        Message{"latlon2_across_date_line", 2, "regular_ll", 10, 19,
                ROUND + "longitudeOfFirstGridPoint=175000000,longitudeOfLastGridPoint=184000000,iDirectionIncrement="
                        "1000000,jDirectionIncrement=10000000",
                DEGREES},
        Message{"latlon2_south_to_north", 2, "regular_ll", 36, 19,
                "latitudeOfFirstGridPoint=-90000000,latitudeOfLastGridPoint=90000000,longitudeOfFirstGridPoint=0,"
                "longitudeOfLastGridPoint=350000000,"
                "iDirectionIncrement=10000000,jDirectionIncrement=10000000,jScansPositively=1",
                DEGREES}),
    [](const auto& row) { return std::string(row.param.name); });

/// A Lambert or polar stereographic grid by chance, with PROJ's words for it.
struct Chance {
    Message message;
    std::string proj;
    double lat1, lon1, dx;
    bool up;
};

Chance by_chance(std::mt19937& random) {
    auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    struct Earth {
        const char* proj;
        int edition;
        const char* keys;
        double tolerance;
    };
    const Earth earths[] = {{"+R=6367470", 1, "earthIsOblate=0", STEPS},
                            {"+a=6378160 +b=6356775", 1, "earthIsOblate=1", SPHEROID},
                            {"+R=6371229", 2, "shapeOfTheEarth=6", STEPS},
                            {"+R=6371220", 2, OUR_RADIUS.c_str() + 1, STEPS},
                            {"+ellps=GRS80", 2, "shapeOfTheEarth=4", SPHEROID}};
    const Earth& earth = earths[number(0, 4)];
    const int side = number(0, 1) ? 1 : -1;
    const bool disc = number(0, 1);
    const double plon = number(1, 359);
    const double true1 = earth.edition == 1 && disc ? 60 * side : number(20, 70) * side;
    const double true2 = number(0, 1) ? true1 : number(20, 70) * side;
    Chance c{{"chance", earth.edition, disc ? "polar_stereographic" : "lambert", number(2, 40), number(2, 40), "",
              earth.tolerance},
             "",
             side * number(25, 60) + 0.5,
             std::fmod(plon + number(300, 420), 360.0),
             number(5, 60) * 1000.0,
             number(0, 1) == 1};
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
        for (const Domain& where : {domain, kept}) {
            MAP_domain(&where);
            for (int k = 0; k < 9; ++k) {
                const int j = k / 3 * (domain.ny - 1) / 2;
                EXPECT_LE(distance(where, k % 3 * (domain.nx - 1) / 2, c.up ? domain.ny - 1 - j : j,
                                   points[static_cast<std::size_t>(k)]),
                          c.message.tolerance)
                    << what << " point " << k;
            }
        }
        MAP_domain(nullptr);
    }
}

/// Changes to a message, or another of ecCodes' samples.
struct Change {
    const char* name;
    const char* sample;
    std::string keys;
};

std::string changed(const test::TempDir& dir, const std::string& sample, const std::string& keys) {
    const std::string path = dir.file("changed");
    int status = 0;
    test::run_command("grib_set -s 'shortName=t,typeOfLevel=isobaricInhPa,level=500" + keys + "' \"$(codes_info -s)/" +
                          sample + ".tmpl\" '" + path + "'",
                      &status);
    EXPECT_EQ(status, 0) << keys;
    return path;
}

class GribOtherGrid : public testing::TestWithParam<Change> {};

TEST_P(GribOtherGrid, IsRefusedAndTheSearchGoesOn) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    const std::string path = changed(dir, GetParam().sample, GetParam().keys);
    GRD_report grd;
    MESS_set(0, MESS_WARN);
    const test::Output output = test::capture([&] { grd = first_field(path); });
    EXPECT_NE(output.err.find("grid of this field is not decoded"), std::string::npos) << output.err;
    EXPECT_EQ(grd.domain.proj, MISS);
    EXPECT_FALSE(GRD_has_values(&grd));
    auto plot = [&](const std::string& file) {
        int status = 0;
        test::run_command("cd " + dir.path().string() + " && env zavdefault=none zavfile=" + test::source_dir() +
                              "/share/zav " + test::program_path() + " -ba -de p,a.ps -ft 0 -le 500 -va temp " + file +
                              " </dev/null >/dev/null 2>&1",
                          &status);
        return status;
    };
    EXPECT_EQ(plot(path), STATUS_LAYER);
    const std::string edition(1, std::string(GetParam().sample).back());
    const std::string refused = test::read_file(path);
    dir.write("both", refused + test::read_file(changed(dir, "regular_ll_pl_grib" + edition, "")));
    EXPECT_EQ(plot(dir.file("both")), 0);
}

INSTANTIATE_TEST_SUITE_P(Messages, GribOtherGrid,
                         testing::Values(Change{"rotated1", "rotated_ll_pl_grib1", ""},
                                         Change{"rotated2", "rotated_ll_pl_grib2", ""},
                                         Change{"gaussian1", "regular_gg_pl_grib1", ""},
                                         Change{"gaussian2", "regular_gg_pl_grib2", ""},
                                         Change{"westward1", "regular_ll_pl_grib1", ",iScansNegatively=1"},
                                         Change{"westward2", "regular_ll_pl_grib2", ",iScansNegatively=1"},
                                         Change{"columns1", "regular_ll_pl_grib1", ",jPointsAreConsecutive=1"},
                                         Change{"columns2", "regular_ll_pl_grib2", ",jPointsAreConsecutive=1"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(GribPosition, IncrementsThatArentGivenFollowFromTheEnds) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "no ecCodes";
    const test::TempDir dir;
    for (const char* sample : {"regular_ll_pl_grib1", "regular_ll_pl_grib2"}) {
        const std::string unit = std::string(sample).back() == '1' ? "" : "000";
        const std::string ends = ",latitudeOfFirstGridPoint=90000" + unit + ",latitudeOfLastGridPoint=-90000" + unit +
                                 ",longitudeOfFirstGridPoint=0,longitudeOfLastGridPoint=345000" + unit;
        for (const char* keys : {",iDirectionIncrement=missing,jDirectionIncrement=missing",
                                 ",iDirectionIncrementGiven=0,jDirectionIncrementGiven=0"}) {
            const Domain domain = first_field(changed(dir, sample, ends + keys), GRD_READ_HEADER).domain;
            EXPECT_FLOAT_EQ(domain.dx, 345.0F / static_cast<float>(domain.nx - 1)) << sample << keys;
            EXPECT_FLOAT_EQ(domain.dy, 180.0F / static_cast<float>(domain.ny - 1)) << sample << keys;
            EXPECT_FLOAT_EQ(domain.clon, 172.5F) << sample << keys;
            EXPECT_FLOAT_EQ(domain.clat, 0.0F) << sample << keys;
        }
    }
}

}  // namespace
}  // namespace zav
