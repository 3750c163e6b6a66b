// Files that follow the CF conventions: each record's codes and values as worked out by hand from files of ncgen,
// places by PROJ, times by the calendar, and what isn't read told in words.

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

#include "frame/resrc.h"
#include "frame/string.h"
#include "grid/netcdf/cdf_cf_grid.h"
#include "grid/netcdf/cdf_cf_names.h"
#include "grid/netcdf/cdf_cf_time.h"
#include "grid/netcdf/cdf_files.h"
#include "map/maptran.h"
#include "support/table.h"

namespace zav {
namespace {

using test::OpenGrid;

class Cf : public test::TempDirTest {
  protected:
    Cf() {
        RES_new(0, "file_path", (test::source_dir() + "/share/zav").c_str(), CV_string);
        MESS_set(0, MESS_WARN);
    }

    std::string made(const std::string& name, const std::string& from = "", const std::string& to = "",
                     const std::string& kind = "nc4") {
        std::string text = test::cdl_text(name);
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << name << " " << from;
        return test::make_netcdf(dir, text.replace(at, from.size(), to), kind);
    }

    /// Headers of all records of a file.
    static std::vector<GRD_report> records(const std::string& path, int rep_type = GRD_READ_HEADER) {
        std::vector<GRD_report> all;
        const OpenGrid file(path);
        if (!file.open()) return all;
        GRD_report grd;
        GRD_init(&grd);
        while (file.read(static_cast<int>(all.size()), &grd, rep_type) == 0) {
            all.push_back(grd);
            grd.grid.reset();
        }
        return all;
    }
};

std::string cell(const test::Row& row, const char* column) {
    const auto found = row.find(column);
    return found == row.end() ? std::string() : found->second;
}

std::string date_digits(const Date& date) {
    return date.year == MISS
               ? std::string()
               : text_format("%04d%02d%02d%02d%02d", date.year, date.month, date.day, date.hour, date.min);
}

TEST_F(Cf, RecordsAreThoseWorkedOutByHand) {
    std::map<std::string, std::vector<test::Row>> files;
    for (const test::Row& row : test::data_table("netcdf/cf_records.tsv")) files[row.at("file")].push_back(row);
    for (const auto& [name, rows] : files) {
        const std::string path = made(name);
        const std::vector<GRD_report> headers = records(path);
        ASSERT_EQ(headers.size(), rows.size()) << name;
        const OpenGrid file(path);
        // Backward, so that none depends on the one before it.
        for (std::size_t n = rows.size(); n-- > 0;) {
            const test::Row& row = rows[n];
            SCOPED_TRACE(name + " " + row.at("number"));
            GRD_report grd;
            GRD_init(&grd);
            ASSERT_EQ(file.read(static_cast<int>(n), &grd), 0);
            EXPECT_FALSE(GRD_has_values(&headers[n]));
            for (const GRD_report* header : {&headers[n], const_cast<const GRD_report*>(&grd)}) {
                EXPECT_EQ(date_digits(header->date), row.at("date"));
                EXPECT_EQ(header->time, std::stoi(row.at("time")));
                EXPECT_EQ(header->ltype, std::stoi(row.at("ltype")));
                EXPECT_EQ(header->level, std::stoi(row.at("level")));
                if (!row.at("var").empty()) {
                    EXPECT_EQ(header->var, std::stoi(row.at("var")));
                }
                EXPECT_EQ(VAR_abbr(header->var), row.at("abbr"));
                EXPECT_EQ(header->units, row.at("units"));
            }
            ASSERT_TRUE(GRD_has_values(&grd));
            const auto value = [&](const char* column) {
                return row.at(column) == "MISS" ? FMISS : std::stof(row.at(column));
            };
            EXPECT_FLOAT_EQ(grd.grid[0], value("first"));
            EXPECT_FLOAT_EQ(grd.grid[GRD_points(&grd) - 1], value("last"));
        }
    }
}

TEST_F(Cf, GridsLieWhereTheirCoordinatesSay) {
    struct Wanted {
        const char* file;
        int record, nx, ny;
        double west, east, south, north;
    };
    for (const Wanted& w :
         {Wanted{"cf_analyses", 0, 4, 3, -10, -2.5, 45, 50}, Wanted{"cf_forecast", 12, 3, 2, -2, 2, 10, 12},
          Wanted{"cf_steps", 0, 2, 2, -0.5, 1, -1.5, 0}}) {
        const Domain domain = records(made(w.file))[static_cast<std::size_t>(w.record)].domain;
        EXPECT_EQ(domain.proj, PROJ_LATLON);
        EXPECT_EQ(domain.nx, w.nx);
        EXPECT_EQ(domain.ny, w.ny);
        EXPECT_NEAR(domain.clon - domain.dx * (w.nx - 1) / 2, w.west, 1e-5) << w.file;
        EXPECT_NEAR(domain.clon + domain.dx * (w.nx - 1) / 2, w.east, 1e-5) << w.file;
        EXPECT_NEAR(domain.clat - domain.dy * (w.ny - 1) / 2, w.south, 1e-5) << w.file;
        EXPECT_NEAR(domain.clat + domain.dy * (w.ny - 1) / 2, w.north, 1e-5) << w.file;
    }
}

TEST_F(Cf, MissingValuesAreMissing) {
    const GRD_report land = records(made("cf_analyses"), GRD_READ_ALL).back();
    EXPECT_EQ(land.grid[8], FMISS);  // not a number
    EXPECT_EQ(std::count(&land.grid[0], &land.grid[12], FMISS), 1);
    for (const auto& [attribute, missing] : std::map<std::string, int>{{"valid_range = 10s, 20s", 7},
                                                                       {"valid_min = 11s", 5},
                                                                       {"valid_max = 3s", 8},
                                                                       {"valid_range = 205., 210.", 7},
                                                                       {"missing_value = 1s, 2s, 23s", 3}}) {
        const std::string other = made("cf_analyses", "t:missing_value = -32766s", "t:" + attribute);
        const GRD_report grd = records(other, GRD_READ_ALL)[0];
        EXPECT_EQ(std::count(&grd.grid[0], &grd.grid[12], FMISS), missing) << attribute;
    }
}

/// The same fields come from files of all formats of netCDF, compressed ones too.
TEST_F(Cf, FormatsAreTheSame) {
    const std::vector<GRD_report> wanted = records(made("cf_forecast"), GRD_READ_ALL);
    for (const char* kind : {"classic", "64-bit offset", "64-bit data", "nc4 deflated"}) {
        const bool deflated = std::string(kind) == "nc4 deflated";
        const std::string path = deflated ? made("cf_forecast", "gh:units = \"gpm\";",
                                                 "gh:units = \"gpm\"; gh:_DeflateLevel = 5; gh:_Shuffle = \"true\";")
                                          : made("cf_forecast", "", "", kind);
        const std::vector<GRD_report> all = records(path, GRD_READ_ALL);
        ASSERT_EQ(all.size(), wanted.size()) << kind;
        for (std::size_t n = 0; n < all.size(); n++) {
            EXPECT_EQ(all[n].info, wanted[n].info);
            EXPECT_EQ(all[n].datim, wanted[n].datim);
            EXPECT_TRUE(std::equal(&all[n].grid[0], &all[n].grid[6], &wanted[n].grid[0])) << kind << n;
        }
    }
}

TEST_F(Cf, WhatIsntDecodedIsToldAndHasNoValues) {
    const auto expect_refused = [](const std::string& path, int number, const std::string& words) {
        GRD_report grd;
        GRD_init(&grd);
        const OpenGrid file(path);
        ASSERT_TRUE(file.open());
        EXPECT_TRUE(test::capture([&] { EXPECT_EQ(file.read(number, &grd, GRD_READ_HEADER), 0); }).err.empty());
        const test::Output said = test::capture([&] { EXPECT_EQ(file.read(number, &grd), 0); });
        EXPECT_NE(said.err.find("is not decoded, as "), std::string::npos) << said.err;
        EXPECT_NE(said.err.find(words), std::string::npos) << said.err;
        EXPECT_FALSE(GRD_has_values(&grd));
    };
    for (const test::Row& row : test::data_table("netcdf/cf_refused.tsv")) {
        SCOPED_TRACE(row.at("from") + " -> " + row.at("to"));
        expect_refused(made(row.at("file"), row.at("from"), row.at("to")), 0, row.at("words"));
    }
    const std::string curved = made("cf_curved");
    EXPECT_EQ(records(curved).size(), 2U);
    expect_refused(curved, 0, "its latitudes and longitudes are two-dimensional");
    expect_refused(curved, 1, "its points are listed one by one");
}

TEST_F(Cf, StepsAreEvenButForRounding) {
    std::vector<double> floats;
    for (int i = 0; i < 3600; i++) floats.push_back(static_cast<double>(0.1F * static_cast<float>(i)));
    EXPECT_TRUE(cf_steps(floats, true, true).even);
    EXPECT_TRUE(cf_steps({0.333, 0.667, 1.0, 1.333}, false, true).even);
    EXPECT_TRUE(cf_steps({357.5, 0, 2.5}, false, true).even);
    EXPECT_TRUE(cf_steps({179, 180, -179, -178}, false, true).even);
    EXPECT_FALSE(cf_steps({179, 180, -179, -178}, false, false).even);
    EXPECT_FALSE(cf_steps({0, 1, 2.02, 3}, false, false).even);
    EXPECT_FALSE(cf_steps({}, false, false).even);
    // Latitudes of a Gaussian grid of 94 rows (the roots of a Legendre polynomial), from the pole
    EXPECT_FALSE(cf_steps({88.542, 86.6531, 84.7532, 82.8508, 80.9473, 79.0435, 77.1394, 75.2351, 73.3307, 71.4262},
                          false, false)
                     .even);
}

TEST_F(Cf, TimesAreThoseOfTheCalendar) {
    for (const test::Row& row : test::data_table("netcdf/cf_times.tsv")) {
        const Cf_clock clock = cf_clock(cell(row, "units"), cell(row, "calendar"));
        std::int64_t seconds = 0;
        const bool read = cf_moment(clock, std::stod(row.at("value")), &seconds);
        EXPECT_EQ(read ? date_digits(cf_date(seconds)) : "", cell(row, "date")) << cell(row, "units");
    }
}

/// A short series behind the date of the units is a forecast from it; any other time is an analysis.
TEST_F(Cf, TheStartOfAForecastIsTold) {
    struct Wanted {
        const char* units;
        const char* times;
        const char* date;
        int time;
    };
    for (const Wanted& w :
         {Wanted{"hours since 2019-01-01", "6, 12, 18", "201901010000", 6},
          Wanted{"hours since 2019-01-01", "0, 6, 12", "201901010000", 0},
          Wanted{"hours since 2019-01-01", "0, 6, 384", "201901010000", 0},
          Wanted{"hours since 2019-01-01", "24, 48, 385", "201901020000", 0},
          Wanted{"hours since 2019-01-01", "-6, 0, 6", "201812311800", 0},
          Wanted{"days since 2019-01-01", "2, 3, 4", "201901010000", 48},
          Wanted{"seconds since 1970-01-01", "1546300800, 1546300860, 1546300920", "201901010000", 0}}) {
        const std::string text = test::cdl_text("cf_analyses");
        std::string changed = text;
        for (const auto& [from, to] :
             {std::pair<std::string, std::string>{"hours since 1900-01-01 00:00:00.0", w.units},
              {"1043136, 1043142, 1043160", w.times}}) {
            changed.replace(changed.find(from), from.size(), to);
        }
        const std::vector<GRD_report> all = records(test::make_netcdf(dir, changed, "nc4"));
        ASSERT_EQ(all.size(), 13U);
        EXPECT_EQ(date_digits(all[0].date), w.date) << w.units << " " << w.times;
        EXPECT_EQ(all[0].time, w.time) << w.units << " " << w.times;
    }
}

TEST_F(Cf, UnitsAreSpeltAsChartsDo) {
    for (const test::Row& row : test::data_table("netcdf/cf_units.tsv")) {
        EXPECT_EQ(cf_units(cell(row, "text")), cell(row, "units")) << cell(row, "text");
    }
}

/// Every line of the lookup file names a variable and a level that are known.
TEST_F(Cf, TheLookupFileNamesWhatThereIs) {
    std::istringstream lines(test::read_file(test::source_dir() + "/share/zav/cf.lup"));
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind, name, abbr, level;
        if (line.empty() || line[0] == '#') continue;
        words >> kind >> name >> abbr >> level;
        EXPECT_TRUE(kind == "std" || kind == "var") << line;
        EXPECT_GT(VAR_search_var_num(abbr), 0) << line;
        int ltype = MISS;
        int value = MISS;
        if (!level.empty() && level.front() == '(') level = level.substr(1, level.size() - 2);
        if (!level.empty() && level != "-") {
            EXPECT_EQ(VAR_dec_level(level, &ltype, &value), 2) << line;
        }
        count++;
    }
    EXPECT_GT(count, 300);
}

/// Runs a list of pairs through PROJ backward: longitudes and latitudes of places on a plane.
std::vector<std::pair<double, double>> proj_inverse(const std::string& words,
                                                    const std::vector<std::pair<double, double>>& places) {
    std::string input;
    for (const auto& [x, y] : places) input += text_format("%.6f %.6f\\n", x, y);
    std::istringstream text(test::run_command("printf -- '" + input + "' | proj -I -f %.9f " + words));
    std::vector<std::pair<double, double>> results;
    for (std::pair<double, double> at; text >> at.first >> at.second;) results.push_back(at);
    return results;
}

/// A grid mapping by chance, with PROJ's words for it.
Cf_mapping mapping_by_chance(std::mt19937& random, std::string* proj) {
    const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    Cf_mapping map;
    const double lon = number(-180, 360);
    const int side = number(0, 1) ? 1 : -1;
    map.numbers["false_easting"] = {number(-3, 3) * 1e5};
    map.numbers["false_northing"] = {number(-3, 3) * 1e5};
    const int kind = number(0, 5);
    if (kind < 2) {
        const double lat1 = side * number(20, 70);
        const double lat2 = kind == 0 ? lat1 : side * number(20, 70);
        const double origin = side * number(10, 60);
        map.name = "lambert_conformal_conic";
        map.numbers["standard_parallel"] = kind == 0 ? std::vector<double>{lat1} : std::vector<double>{lat1, lat2};
        map.numbers["longitude_of_central_meridian"] = {lon};
        map.numbers["latitude_of_projection_origin"] = {origin};
        *proj = text_format("+proj=lcc +lat_1=%g +lat_2=%g +lat_0=%g", lat1, lat2, origin);
    } else if (kind < 4) {
        map.name = kind == 2 ? "polar_stereographic" : "stereographic";
        map.numbers["latitude_of_projection_origin"] = {90.0 * side};
        map.numbers[kind == 2 ? "straight_vertical_longitude_from_pole" : "longitude_of_projection_origin"] = {lon};
        const double parallel = number(40, 80) * side;
        const double factor = number(90, 100) / 100.0;
        if (kind == 2) map.numbers["standard_parallel"] = {parallel};
        if (kind == 3) map.numbers["scale_factor_at_projection_origin"] = {factor};
        *proj = text_format("+proj=stere +lat_0=%d ", 90 * side) +
                (kind == 2 ? text_format("+lat_ts=%g", parallel) : text_format("+k_0=%g", factor));
    } else {
        map.name = "mercator";
        const double parallel = number(0, 50);
        const double factor = number(80, 100) / 100.0;
        map.numbers["longitude_of_projection_origin"] = {lon};
        if (kind == 4) map.numbers["standard_parallel"] = {parallel};
        if (kind == 5) map.numbers["scale_factor_at_projection_origin"] = {factor};
        *proj = "+proj=merc " + (kind == 4 ? text_format("+lat_ts=%g", parallel) : text_format("+k_0=%g", factor));
    }
    *proj += text_format(" +lon_0=%g +x_0=%g +y_0=%g ", lon, map.numbers["false_easting"][0],
                         map.numbers["false_northing"][0]);
    if (number(0, 1)) {
        map.numbers["earth_radius"] = {6371229.0};
        *proj += "+R=6371229";
    } else {
        map.numbers["semi_major_axis"] = {6378137.0};
        map.numbers["inverse_flattening"] = {298.257223563};
        *proj += "+ellps=WGS84";
    }
    return map;
}

TEST_F(Cf, MappingsByChanceLieWhereProjPutsThem) {
    if (!test::have_program("proj")) GTEST_SKIP() << "no PROJ";
    std::mt19937 random(3);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    for (int round = 0; round < 80; round++) {
        std::string proj;
        const Cf_mapping map = mapping_by_chance(random, &proj);
        const int nx = number(2, 200);
        const int ny = number(2, 200);
        const double dx = number(3, 15) * 1000.0;
        const bool conic = map.name == "lambert_conformal_conic";
        const double x0 = number(-15, 5) * 1e5;
        const double y0 = number(-15, conic ? 0 : 5) * 1e5;
        std::vector<double> xs, ys;
        for (int i = 0; i < nx; i++) xs.push_back(x0 + i * dx);
        for (int j = 0; j < ny; j++) ys.push_back(y0 + j * dx);
        const bool falls = number(0, 1) == 1;
        if (falls) std::reverse(ys.begin(), ys.end());
        Domain domain;
        EXPECT_EQ(cf_place_plane(map, cf_steps(xs, false, false), cf_steps(ys, false, false), &domain), "") << proj;
        std::vector<std::pair<double, double>> places;
        for (int k = 0; k < 9; k++) places.emplace_back(xs[k % 3 * (nx - 1) / 2], y0 + k / 3 * (ny - 1) / 2 * dx);
        const auto points = proj_inverse(proj, places);
        ASSERT_EQ(points.size(), 9U) << proj;
        MAP_domain(&domain);
        for (int k = 0; k < 9; k++) {
            Point at;
            MAP_tran_ep({static_cast<float>(points[k].second), static_cast<float>(points[k].first)}, &at);
            MAP_grid_untran(at.x, at.y, &at.x, &at.y);
            EXPECT_NEAR(at.x, k % 3 * (nx - 1) / 2, 0.005) << proj << " point " << k;
            EXPECT_NEAR(at.y, ny - 1 - k / 3 * (ny - 1) / 2, 0.005) << proj << " point " << k;
        }
        MAP_domain(nullptr);
    }
}

/// Files that are cut, or whose attributes, types and sizes are other than they should be, are read as far as they go.
TEST_F(Cf, DamagedFilesAreReadAsFarAsTheyGo) {
    MESS_set(0, 0);
    const std::string classic = test::read_file(made("cf_forecast", "", "", "classic"));
    std::mt19937 random(5);
    for (int round = 0; round < 400; round++) {
        std::string bytes = classic;
        if (round % 4 == 0) bytes.resize(random() % bytes.size());
        for (unsigned i = random() % 4; round % 4 != 0 && i-- > 0 && !bytes.empty();) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        for (const GRD_report& grd : records(dir.write("bad.nc", bytes), GRD_READ_ALL)) {
            EXPECT_TRUE(grd.grid == nullptr || GRD_points(&grd) <= bytes.size());
        }
    }
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"units = \"Pa\"", "units = 5"},
             {"lat = 10, 12", "lat = NaN, 12"},
             {"time:units = \"hours", "time:units = \"h0urs"},
             {"param = \"8.1.0\"", "param = 8"},
             {"param = \"8.1.0\"", "param = \"99999.1.0\""},
             {"missing_value = 1e20", "missing_value = \"none\""},
             {"time = 2;", "time = UNLIMITED;"},
             {"time:bounds = \"time_bnds\"", "time:bounds = \"tas\""},
             {"coordinates = \"height_2\"", "coordinates = \"tp gh nosuch\""},
             {"standard_name = \"realization\"", "standard_name = \"time\""}}) {
        const std::string cdl = test::cdl_text("cf_forecast");
        std::string changed = cdl;
        changed.replace(changed.find(from), from.size(), to);
        if (to.find("UNLIMITED") != std::string::npos) {  // no record was written
            changed =
                changed.substr(0, changed.find("  double tas")) + "data:\n  lon = -2, 0, 2;\n  lat = 10, 12;\n}\n";
        }
        const std::vector<GRD_report> all = records(test::make_netcdf(dir, changed), GRD_READ_ALL);
        EXPECT_EQ(all.empty(), to.find("UNLIMITED") != std::string::npos) << to;
    }
}

}  // namespace
}  // namespace zav
