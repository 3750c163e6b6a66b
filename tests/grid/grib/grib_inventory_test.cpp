// Every field of the real files, against a listing that an independent decoder made.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "files/time_code.h"
#include "frame/string.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using test::Row;

std::map<std::string, std::vector<Row>> inventory(const std::string& folder) {
    std::map<std::string, std::vector<Row>> files;
    for (const Row& row : test::read_table(folder + "/inventory.tsv")) files[row.at("file")].push_back(row);
    return files;
}

/// The grid in the message's own scanning order.
std::vector<float> message_order(const GRD_report& grd, const Row& row) {
    const int nx = grd.domain.nx;
    const int ny = grd.domain.ny;
    std::vector<float> values;
    for (int j = 0; j < ny; ++j) {
        const int from = row.at("jScansPositively") == "1" ? ny - 1 - j : j;
        for (int i = 0; i < nx; ++i) {
            const int x = row.at("alternating") == "1" && j % 2 == 1 ? nx - 1 - i : i;
            values.push_back(grd.grid[static_cast<std::size_t>(from) * static_cast<std::size_t>(nx) + x]);
        }
    }
    return values;
}

void expect_value(float value, const std::string& text, double tolerance, const std::string& where) {
    if (text == "miss") {
        EXPECT_EQ(value, FMISS) << where;
    } else {
        EXPECT_NEAR(value, std::stod(text), tolerance) << where;
    }
}

void expect_values(const GRD_report& grd, const Row& row, const std::string& where) {
    ASSERT_TRUE(GRD_has_values(&grd)) << where;
    const std::vector<float> values = message_order(grd, row);
    long missing = 0;
    double least = 1e30;
    double most = -1e30;
    double sum = 0.0;
    for (const float value : values) {
        if (value == FMISS) {
            ++missing;
            continue;
        }
        least = std::fmin(least, value);
        most = std::fmax(most, value);
        sum += value;
    }
    const double tolerance =
        3e-7 * std::fmax(std::fabs(std::stod(row.at("min"))), std::fabs(std::stod(row.at("max")))) + 1e-9;
    const double listed_least = std::stod(row.at("min"));
    const double listed_most = std::stod(row.at("max"));
    // Rows of a quasi-regular grid are stretched to one length: ends stay, values in between lie within the extremes.
    const bool stretched = row.at("gridType") == "reduced_ll";
    if (stretched) {
        EXPECT_GE(least, listed_least - tolerance) << where;
        EXPECT_LE(most, listed_most + tolerance) << where;
        EXPECT_EQ(missing, 0) << where;
    } else {
        EXPECT_NEAR(least, listed_least, tolerance) << where;
        EXPECT_NEAR(most, listed_most, tolerance) << where;
    }
    const std::vector<std::string> first = parse_string(row.at("first3"), ',');
    const std::vector<std::string> last = parse_string(row.at("last3"), ',');
    expect_value(values.front(), first[0], tolerance, where);
    expect_value(values.back(), last[2], tolerance, where);
    if (stretched) return;
    EXPECT_EQ(missing, std::stol(row.at("missing"))) << where;
    EXPECT_NEAR(sum / static_cast<double>(values.size() - static_cast<std::size_t>(missing)), std::stod(row.at("mean")),
                3 * tolerance)
        << where;
    for (std::size_t i = 0; i < 3; ++i) {
        expect_value(values[i], first[i], tolerance, where);
        expect_value(values[values.size() - 3 + i], last[i], tolerance, where);
    }
}

/// A level column such as "100" or "85000*10^-0"; not a number for a missing one.
double surface(const std::string& text) {
    const std::size_t star = text.find('*');
    if (star == std::string::npos) return std::stod(text);
    if (text.starts_with("2147483647")) return std::nan("");
    return std::stod(text) * std::pow(10.0, -std::stod(text.substr(star + 5)));
}

/// Begin, end and moment of validity. The run-length packed file's first six steps are minutes, the others' are hours.
void expect_time(const GRD_report& grd, const Row& row, const std::string& where) {
    const std::string step = row.at("step");
    const std::size_t dash = step.find('-');
    const bool minutes = row.at("file").starts_with("jma") && step != "1";
    const TIME_range range = TIME_split(grd.time);
    const long end = std::stol(dash == std::string::npos ? step : step.substr(dash + 1)) * (minutes ? 1 : TIME_HOUR);
    EXPECT_EQ(range.end, end) << where;
    EXPECT_EQ(range.kind >= 2, dash != std::string::npos) << where;
    if (dash != std::string::npos) {
        EXPECT_EQ(range.begin, std::stol(step) * TIME_HOUR) << where;
    }
    Date valid = grd.date;
    const long secs = DATE_num_sec(&valid) + 60 * end;
    DATE_get_gmdate(&secs, &valid);
    const std::string hour = valid.min > 0 ? text_format("%02d%02dZ", valid.hour, valid.min)
                                           : text_format(end > 0 ? "%dZ" : "%02d00Z", valid.hour);
    const std::string day = text_format("%2d %3s %2.2d", valid.day, DATE_month(valid.month), valid.year % 100);
    EXPECT_NE(grd.datim.find(" " + hour), std::string::npos) << where << ": " << grd.datim;
    EXPECT_TRUE(grd.datim.ends_with(day)) << where << ": " << grd.datim;
}

void expect_header(const GRD_report& grd, const Row& row, const std::string& where) {
    const Date& date = grd.date;
    EXPECT_EQ(date.year * 10000 + date.month * 100 + date.day, std::stoi(row.at("date"))) << where;
    EXPECT_EQ(date.hour * 100 + date.min, std::stoi(row.at("time"))) << where;
    EXPECT_EQ(grd.version, std::stoi(row.at("edition"))) << where;
    EXPECT_EQ(grd.domain.ny, std::stoi(row.at("Ny"))) << where;
    if (row.at("gridType") != "reduced_ll") {
        EXPECT_EQ(grd.domain.nx, std::stoi(row.at("Nx"))) << where;
    }
    expect_time(grd, row, where);
    // Of surfaces the listing doesn't tell which; the others' values are in the units of the level type.
    struct Level {
        const char* listed;
        int ltype;
        double factor;
    };
    const double level = surface(row.at("level1"));
    for (const Level& c : {Level{"pl", 100, 1.0},
                           {"pl/255", 100, 0.01},
                           {"102/255", 103, 1.0},
                           {"104/255", 107, 1e4},
                           {"sfc/255", grd.ltype, 1.0}}) {
        if (row.at("level_type") != c.listed) continue;
        EXPECT_EQ(grd.ltype, c.ltype) << where;
        EXPECT_EQ(grd.level, std::isnan(level) ? 0 : static_cast<int>(level * c.factor + 1e-6)) << where;
    }
}

void compare_file(const std::string& folder, const std::string& name, const std::vector<Row>& rows, int* compared) {
    int type = GRD_TYPE_GRIB;  // asked for: a bulletin that begins with a digit looks like native text
    const int fd = GRD_open(folder + "/" + name, 0, &type);
    ASSERT_GE(fd, 0) << name;
    GRD_info info;
    ASSERT_EQ(GRD_getinfo(fd, &info), 0) << name;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string where = name + " field " + std::to_string(i);
        GRD_report head;
        GRD_report grd;
        int number = static_cast<int>(i);
        ASSERT_EQ(GRD_read(fd, &head, GRD_READ_HEADER, &number), 0) << where;
        EXPECT_FALSE(head.grid) << where;
        ASSERT_EQ(GRD_read(fd, &grd, GRD_READ_ALL, &number), 0) << where;
        EXPECT_EQ(number, static_cast<int>(i));
        EXPECT_EQ(head.var, grd.var) << where;
        EXPECT_TRUE(DOM_comp(&head.domain, &grd.domain)) << where;
        // Its listing has no values.
        expect_header(grd, rows[i], where);
        if (name == "jma_nowcast_runlength.grib2") continue;
        expect_values(grd, rows[i], where);
        ++*compared;
    }
    GRD_report beyond;
    int number = static_cast<int>(rows.size());
    EXPECT_EQ(GRD_read(fd, &beyond, GRD_READ_HEADER, &number), -1) << name;
    GRD_close(fd);
}

/// Compares every field of a folder's files with its list; how many there were.
int compare_all(const std::string& folder) {
    int compared = 0;
    for (const auto& [name, rows] : inventory(folder)) {
        SCOPED_TRACE(name);
        compare_file(folder, name, rows, &compared);
    }
    return compared;
}

TEST(GribInventory, EveryShippedFieldAgrees) { EXPECT_EQ(compare_all(test::data_folders().front()), 44); }

TEST(GribInventory, EveryFieldOfTheLargeFilesAgrees) {
    if (test::data_folders().size() < 2) GTEST_SKIP() << test::NO_DATA_FILE;
    EXPECT_EQ(compare_all(test::data_folders().back()), 706);
}

}  // namespace
}  // namespace zav
