// What the octets of product, grid and identification mean, by a table that the code tables were worked out into.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

#include "frame/resrc.h"
#include "grid/expected_fields.h"
#include "grid/grib/grib_messages.h"

namespace zav::grib_test {
namespace {

using Sections = std::map<int, Bytes>;

/// Sets what a text such as "4.18=2 4.19:4=60" tells: section, octet, width, value. A section grows to hold it.
void change(Sections& sections, const std::string& text, int length_octets) {
    for (const std::string& word : test::split(text, ' ')) {
        int number = 0;
        int octet = 0;
        int width = 1;
        long long value = 0;
        if (std::sscanf(word.c_str(), "%d.%d=%lli", &number, &octet, &value) < 3) {
            ASSERT_EQ(std::sscanf(word.c_str(), "%d.%d:%d=%lli", &number, &octet, &width, &value), 4) << word;
        }
        Bytes& section = sections.at(number);
        section.resize(std::max(section.size(), static_cast<std::size_t>(octet + width - 1)));
        set(section, 1, static_cast<std::int64_t>(section.size()), length_octets);
        set(section, octet, value, width);
    }
}

Bytes changed_message(int edition, const std::string& octets) {
    Sections sections{{1, identification()}, {3, latlon(3, 2, 0)}, {4, product(0, 75)},
                      {5, simple(6, 0)},     {6, bitmap(255)},     {7, data({})}};
    if (edition < 2)
        sections = {{1, product1(true, edition == 0 ? 24 : 28)}, {2, latlon1(2, 2, 0)}, {4, values1({}, 0)}};
    if (edition == 0) sections[1][3] = 0;  // where the other editions have their number
    change(sections, octets, edition == 2 ? 4 : 3);
    if (edition < 2 && sections[1][7] == 0) sections.erase(2);
    std::vector<Bytes> parts;
    for (const auto& [number, section] : sections) parts.push_back(section);
    return message(edition, parts);
}

TEST_F(Grib, HeadersFollowTheCodeTables) {
    dir.write("grib2_var.lup", "# no parameter has a name\n");
    RES_new(0, "file_path", dir.path().c_str(), CV_string);
    const std::vector<test::Row> rows = test::data_table("grib_headers.tsv");
    EXPECT_GT(rows.size(), 900U);
    for (const test::Row& row : rows) {
        SCOPED_TRACE("edition " + row.at("edition") + ", " + row.at("what") + ": " + row.at("octets"));
        auto records = read(changed_message(std::stoi(row.at("edition")), row.at("octets")));
        ASSERT_GE(records.size(), 1U);
        test::expect_fields(records[0], row.at("expected"));
        EXPECT_EQ(DATE_num_sec(&about.date) / 3600, DATE_num_sec(&records[0].date) / 3600);
    }
}

}  // namespace
}  // namespace zav::grib_test
