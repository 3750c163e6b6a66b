#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "files/time_code.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "support/table.h"

namespace zav::test {

/// Holds a record against a text such as "var=7;units=m;dx=2.5;values=1,miss": only the fields that are named. Numbers
/// with a point are compared as floats. Of "info" and "datim" a part, with "_" for a blank, is enough. "kind", "begin"
/// and "end" are those of the time.
inline void expect_fields(const GRD_report& grd, const std::string& expected) {
    const Domain& at = grd.domain;
    const TIME_range range = TIME_split(grd.time);
    const Date& date = grd.date;
    const std::string day = text_format("%d-%d-%d %d:%d", date.year, date.month, date.day, date.hour, date.min);
    const std::map<std::string, std::string> texts{{"units", grd.units}, {"date", day}};
    const std::map<std::string, std::string> labels{{"info", grd.info}, {"datim", grd.datim}};
    const std::map<std::string, double> numbers{
        {"source", grd.source},  {"version", grd.version},
        {"model", grd.model},    {"type", grd.type},
        {"ltype", grd.ltype},    {"level", grd.level},
        {"time", grd.time},      {"var", grd.var},
        {"kind", range.kind},    {"begin", range.begin},
        {"end", range.end},      {"proj", at.proj},
        {"clat", at.clat},       {"clon", at.clon},
        {"plat", at.plat},       {"plon", at.plon},
        {"dx", at.dx},           {"dy", at.dy},
        {"nx", at.nx},           {"ny", at.ny},
        {"param0", at.param[0]}, {"param1", at.param[1]},
        {"param2", at.param[2]},
    };
    const auto expect_number = [](double number, const std::string& text, const std::string& name) {
        const double wanted = text == "miss" ? MISS : std::stod(text);
        EXPECT_NEAR(number, wanted, text.find('.') == std::string::npos ? 0.0 : 1e-6 * std::fabs(wanted)) << name;
    };
    for (const std::string& field : split(expected, ';')) {
        const std::string name = field.substr(0, field.find('='));
        const std::string value = field.substr(name.size() + 1);
        if (name == "values") {
            const std::vector<std::string> words = split(value, ',');
            ASSERT_TRUE(GRD_has_values(&grd)) << expected;
            ASSERT_EQ(GRD_points(&grd), words.size()) << expected;
            for (std::size_t i = 0; i < words.size(); ++i) expect_number(grd.grid[i], words[i], field);
        } else if (labels.contains(name)) {
            std::string label = labels.at(name);
            fill_string(label, ' ', '_');
            EXPECT_NE(label.find(value), std::string::npos) << label << " without " << value;
        } else if (texts.contains(name)) {
            EXPECT_EQ(texts.at(name), value);
        } else {
            ASSERT_TRUE(numbers.contains(name)) << name;
            expect_number(numbers.at(name), value, name);
        }
    }
}

}  // namespace zav::test
