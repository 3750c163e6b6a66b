// Search keys and the search in files of all formats.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "grid/expected_fields.h"
#include "grid/grd_hints.h"
#include "grid/grd_out.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "program/install.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using test::TempDirTest;

VAR_data key(int time, int ltype, int level, int var) {
    VAR_data params;
    GRD_set_params(&params, time, ltype, level, var);
    return params;
}

TEST(Search, KeysFitRecords) {
    GRD_report grid;
    GRD_init(&grid);
    grid.time = 3018024;
    grid.ltype = 100;
    grid.level = 500;
    grid.var = 7;
    grid.type = 211;
    for (const test::Case& c : test::cases("record_keys")) {
        const VAR_data params = key(c.number(0), c.number(1), c.number(2), c.number(3));
        EXPECT_EQ(GRD_test(&grid, &params, c.number(4)), c.number(5)) << c.line();
    }
    VAR_data several = key(MISS, MISS, MISS, 2);
    several.var[4] = 7;
    EXPECT_EQ(GRD_test(&grid, &several, MISS), 1);
    grid.time = 1;
    const VAR_data range = key(1001, MISS, MISS, 7);
    EXPECT_EQ(GRD_test(&grid, &range, MISS), 0);
}

TEST(Search, SelectorsAreDecoded) {
    for (const test::Row& row : test::data_table("selectors.tsv")) {
        VAR_data params;
        GRD_report grid;
        GRD_init(&grid);
        grid.type = MISS;
        const std::string text = row.at("selector") == "none" ? "" : row.at("selector");
        const int result = GRD_parse_params(text, &params, &grid.type);
        EXPECT_EQ(result, row.at("result") == "miss" ? MISS : std::stoi(row.at("result"))) << text;
        grid.time = params.time;
        grid.ltype = params.ltype;
        grid.level = params.level;
        grid.var = params.var[0];
        grid.units = params.units;
        test::expect_fields(grid, row.at("expected"));
    }
}

TEST(Table, RecordsAreLaidOutAndCopied) {
    EXPECT_EQ(GRD_get_grid(0)->type, 0);
    EXPECT_EQ(GRD_get_grid(GRD_MAX), nullptr);
    Domain domain;
    domain.nx = 3;
    domain.ny = 2;
    domain.dx = domain.dy = 1.0F;
    GRD_set_grid_factor(2);
    GRD_set_grid_factor(0);
    EXPECT_EQ(GRD_get_grid_factor(), 2);
    GRD_set_grid_domain(0, &domain);
    GRD_set_grid_factor(1);
    GRD_report* grid = GRD_get_grid(0);
    EXPECT_EQ(grid->domain.nx, 5);
    EXPECT_EQ(grid->domain.ny, 3);
    EXPECT_EQ(grid->domain.dx, 0.5F);
    ASSERT_EQ(GRD_alloc_grid(0), 1);
    grid->source = 7;
    grid->var = 11;
    GRD_report other;
    GRD_init(&other);
    other.var = 33;
    GRD_copy_info(&other, grid);
    EXPECT_EQ(other.grid, nullptr);
    EXPECT_EQ(other.source, 7);
    EXPECT_EQ(other.var, 33);
    GRD_move(&other, grid);
    EXPECT_EQ(grid->grid, nullptr);
    EXPECT_EQ(other.var, 11);
    EXPECT_TRUE(GRD_has_values(&other));
    GRD_free(&other);
    EXPECT_EQ(other.source, 0);
    EXPECT_EQ(other.domain.nx, MISS);
    EXPECT_EQ(other.var, 11);
}

class SearchFile : public TempDirTest {
  protected:
    SearchFile() {
        ZAV_install_hooks();
        FLAG_reset(MISS);
    }

    /// A native file with one 3 by 2 field for each level, the level being its value.
    std::string levels_file(const std::vector<int>& levels, int source = 7) {
        const std::string name = dir.file("l.grd");
        for (std::size_t at = 0; at < levels.size(); at++) {
            const int level = levels[at];
            GRD_report grid;
            GRD_init(&grid);
            grid.source = source;
            grid.datim = "1200Z 15 JAN 26";
            grid.info = "field";
            grid.ltype = 100;
            grid.level = level;
            grid.var = 7;
            grid.time = static_cast<int>(at);
            grid.domain.proj = PROJ_LATLON;
            grid.domain.clat = grid.domain.clon = grid.domain.plon = 10.0F;
            grid.domain.dx = grid.domain.dy = 1.0F;
            grid.domain.nx = 3;
            grid.domain.ny = 2;
            GRD_alloc(&grid);
            for (std::size_t i = 0; i < 6; i++) grid.grid[i] = static_cast<float>(level) + static_cast<float>(i);
            int type = 2;
            const int fd = GRD_open(name, test::read_file(name).empty() ? 1 : 2, &type);
            GRD_info info;
            GRD_putinfo(fd, &info);
            int number = 0;
            GRD_write(fd, &grid, 0, &number);
            GRD_close(fd);
        }
        return name;
    }

    int open_read(const std::string& name) {
        int type = 0;
        const int fd = GRD_open(name, 0, &type);
        GRD_info info;
        if (fd >= 0) GRD_getinfo(fd, &info);
        return fd;
    }
};

TEST_F(SearchFile, TheFirstThatFitsWins) {
    const int fd = open_read(levels_file({500, 700, 500, 850}));
    GRD_report grids[3];
    const VAR_data keys[3] = {key(MISS, 100, 850, 7), key(MISS, 100, 500, 7), key(MISS, MISS, MISS, 7)};
    EXPECT_EQ(GRD_search(fd, grids, keys, MISS, -3), 1);
    EXPECT_EQ(grids[0].level, 850);
    EXPECT_EQ(grids[1].time, 0);
    EXPECT_EQ(grids[2].time, 0);
    EXPECT_EQ(grids[0].grid[5], 855.0F);
    const VAR_data none[1] = {key(MISS, 100, 300, 7)};
    GRD_report missing;
    EXPECT_EQ(GRD_search(fd, &missing, none, MISS, -1), 0);
    EXPECT_EQ(missing.source, 0);
    GRD_close(fd);
    EXPECT_EQ(GRD_search(fd, grids, keys, MISS, -3), 1);  // all filled: the closed file isn't read
}

TEST_F(SearchFile, FieldsOfNoKnownCentreCountOnce) {
    const int fd = open_read(levels_file({500, 500, 700, 500, 850}, 0));
    GRD_report grids[3];
    const VAR_data keys[3] = {key(MISS, 100, 500, 7), key(MISS, 100, 850, 7), key(MISS, 100, 700, 7)};
    EXPECT_EQ(GRD_search(fd, grids, keys, MISS, -3), 1);
    EXPECT_EQ(grids[0].time, 0);
    ASSERT_TRUE(GRD_has_values(&grids[1]) && GRD_has_values(&grids[2]));
    EXPECT_EQ(grids[1].grid[0], 850.0F);
    EXPECT_EQ(GRD_search(fd, grids, keys, MISS, -3), 1);
    EXPECT_EQ(grids[0].time, 0);
    GRD_close(fd);
}

TEST_F(SearchFile, TheDomainIsThatOfTheFirstGridThatCanBePlaced) {
    std::string messages = test::read_file(test::source_dir() + "/samples/26011512_wave.grb2");
    std::size_t section = 16;
    while (messages[section + 4] != 3) section += static_cast<unsigned char>(messages[section + 3]);
    messages[section + 12] = 0x7F;  // a grid template of its own
    dir.write("mixed.grb2", messages);
    FILE_set_name("@mixed.grb2");
    GRD_get_specs().nspec = 0;
    Date date;
    Domain domain;
    Domain whole;
    ASSERT_EQ(GRD_get_file_date_domain(&date, &domain), 1);
    ASSERT_EQ(GRD_get_file_domain(test::source_dir() + "/samples/26011512_wave.grb2", &whole), 1);
    EXPECT_EQ(DOM_comp(&domain, &whole), 1);
    dir.write("none.grb2", messages.substr(0, messages.find("7777") + 4));
    EXPECT_EQ(GRD_get_file_domain("none.grb2", &domain), -1);
}

TEST_F(SearchFile, PiecesMakeOneGridAndTheLastThatFitsWins) {
    const std::string name = levels_file({500, 700, 500});
    GRD_specs& specs = GRD_get_specs();
    specs.nspec = 2;
    specs.nx = 2;
    specs.ny = 1;
    specs.spec[1].x = 1;
    ASSERT_EQ(VAR_setup(nullptr, "7"), 1);
    VAR_data params = key(MISS, 100, 500, 7);
    GRD_report grid;
    GRD_init(&grid);
    for (int piece = 0; piece < 2; piece++) {
        const int fd = open_read(name);
        VAR_set_type(0, VTYPE_LINE);
        EXPECT_EQ(GRD_search_piece(fd, piece, &grid, &params, 1), 1);
        GRD_close(fd);
    }
    ASSERT_EQ(grid.domain.nx, 5);
    ASSERT_EQ(grid.domain.ny, 2);
    const float row[5] = {500, 501, 500, 501, 502};
    for (std::size_t i = 0; i < 5; i++) EXPECT_EQ(grid.grid[i], row[i]) << i;
    specs = GRD_specs{};
}

TEST_F(SearchFile, ANamedFileGoesOverTheFilesOfTheModel) {
    GRD_specs& specs = GRD_get_specs();
    specs.spec[0].name = "@%G/%y%m%d%h_a";
    specs.spec[1].name = "@%G/%y%m%d%h_b";
    for (const auto& [typed, pieces, second] : {std::tuple{"26011512", 2, "./26011512_b"},
                                                {"/data/x/26011512_a", 2, "/data/x/26011512_b"},
                                                {"/data/x/other.grb", 0, ""},
                                                {"@26011512_a", 0, ""},
                                                {"|zcat x", 0, ""},
                                                {"cu#2026011512", 2, "./26011512_b"},
                                                {"latest.grb", 0, ""}}) {
        specs.nspec = 2;
        FILE_set_name(specs.spec[0].name);
        FILE_set_filename("");
        std::string name;
        FILE_set_file(typed, name);
        GRD_take_named_file();
        EXPECT_EQ(specs.nspec, pieces) << typed;
        Date date;
        FILE_get_date(&date);
        if (pieces < 2) continue;
        EXPECT_EQ(GRD_piece_file(1, &date), second) << typed;
    }
}

/// The options in a line of hints.
std::string option_of(const std::string& line, const std::string& option) {
    const std::size_t at = line.find(" " + option + " ");
    if (at == std::string::npos) return "";
    const std::size_t start = at + option.size() + 2;
    return line.substr(start, line.find_first_of(" \n", start) - start);
}

TEST_F(SearchFile, TheWordsOfAHintFindTheRecordInEveryRealFile) {
    const test::EnvSetting lookups("zavfile", (test::source_dir() + "/share/zav").c_str());
    const char* const argv[] = {"test"};
    const res_type none[] = {RES_file_path, RES_null};
    RES_init(1, argv, none, none + 1);
    std::size_t count = 0;
    std::set<int> unnamed;
    for (const auto& entry : std::filesystem::directory_iterator(test::data_folders().back())) {
        if (entry.path().extension() == ".md" || entry.path().extension() == ".tsv") continue;
        const int fd = open_read(entry.path());
        std::vector<Record_codes> records;
        GRD_list_records(fd, 0, &records);
        for (const Record_codes& record : records) {
            const VAR_data away = key(777, 999, MISS, record.var);
            const std::string line = test::capture([&] { GRD_tell_nearest({record}, away, MISS, 0); }).err;
            VAR_data found = key(MISS, MISS, MISS, 0);
            VAR_dec_time(option_of(line, "-ft"), &found.time);
            const std::string level = option_of(line, "-le");
            VAR_dec_level(level, &found.ltype, &found.level);
            VAR_dec_var(option_of(line, "-va"), &found);
            GRD_report header;
            GRD_init(&header);
            header.time = record.time;
            header.ltype = record.ltype;
            header.level = record.level;
            header.var = record.var;
            EXPECT_EQ(GRD_test(&header, &found, MISS), 1) << entry.path() << record.number << line;
            count++;
            if (level == "miss") unnamed.insert(record.ltype);
        }
        GRD_close(fd);
    }
    const Record_codes minutes{0, 104002003, 100, 500, 11, 0, {}};
    const test::Output hint = test::capture([&] { GRD_tell_nearest({minutes}, key(777, 100, 500, 11), MISS, 0); });
    EXPECT_NE(hint.err.find("-ft 90min-30minacc -le 500mb"), std::string::npos) << hint.err;
    for (const auto& [member, word] : {std::pair{19323011, "ens[-3]temp"},
                                       {19342011, "ens[+2]temp"},
                                       {19300011, "ens[0]temp"},
                                       {19001011, "ensdev[]temp"}}) {
        const Record_codes record{0, 6, 100, 500, member, 0, {}};
        const test::Output said =
            test::capture([&] { GRD_tell_nearest({record}, key(12, 100, 500, member), MISS, 0); });
        EXPECT_EQ(option_of(said.err, "-va"), word);
    }
    for (const int layer : {50085, 70100}) {
        const Record_codes record{0, 6, 101, layer, 11, 0, {}};
        const test::Output said = test::capture([&] { GRD_tell_nearest({record}, key(12, 100, 500, 11), MISS, 0); });
        int ltype = 0;
        int level = 0;
        EXPECT_EQ(VAR_dec_level(option_of(said.err, "-le"), &ltype, &level), 2) << said.err;
        EXPECT_EQ(ltype * 100000 + level, 101 * 100000 + layer) << said.err;
    }
    EXPECT_GE(count, 44U);
    EXPECT_LE(unnamed.size(), 8U) << "levels without a word of their own";
}

TEST_F(SearchFile, NamedFilesTakeSelectors) {
    const std::string name = levels_file({500, 700, 850});
    GRD_info info;
    const auto level_of = [&](const std::string& selector, int result) {
        GRD_report grid;
        int type = 0;
        EXPECT_EQ(GRD_read_file(name + selector, &grid, &info, &type), result) << selector;
        return grid.source == 0 ? MISS : grid.level;
    };
    EXPECT_EQ(level_of("", 1), 500);
    EXPECT_EQ(level_of("#2", 1), 850);
    EXPECT_EQ(level_of("+h1:700mb:hh", 1), 700);
    for (int i = 0; i < 20; i++) test::capture([&] { EXPECT_EQ(level_of("#9", 0), MISS); });  // handles are let go
    test::capture([&] {
        GRD_report grid;
        int type = 0;
        EXPECT_EQ(GRD_read_file(dir.file("none.grd"), &grid, &info, &type), -1);
    });
    EXPECT_EQ(level_of("", 1), 500);
}

TEST_F(SearchFile, ExistingFilesAreLeftAlone) {
    const std::string name = levels_file({500});
    const std::string before = test::read_file(name);
    GRD_report grid;
    GRD_info info;
    int type = 0;
    ASSERT_EQ(GRD_read_file(name, &grid, &info, &type), 1);
    FLAG_set_batch(1);
    const test::Output out = test::capture([&] { EXPECT_EQ(GRD_save_file(name, &grid, &info, 2), 0); });
    EXPECT_NE((out.out + out.err).find("GRD_save_file: Unable to overwrite grid file: "), std::string::npos);
    EXPECT_EQ(test::read_file(name), before);
    FLAG_set_batch(0);
    test::capture([&] { EXPECT_EQ(GRD_save_file(name, &grid, &info, 3), 1); }, "Y\n");
    EXPECT_NE(test::read_file(name), before);
    GRD_report back;
    ASSERT_EQ(GRD_read_file(name, &back, &info, &type), 1);
    EXPECT_TRUE(std::equal(&back.grid[0], &back.grid[6], &grid.grid[0]));
    test::capture([&] { EXPECT_EQ(GRD_save_file(dir.file("new.cdf"), &grid, &info, GRD_TYPE_GRIB), 0); });
}

TEST_F(SearchFile, TheVariableListIsFilledAndWritten) {
    const std::string source = test::data_file("gfs_2p5deg_f120_cut.grib2");
    RES_new(0, "file_path", (test::source_dir() + "/share/zav").c_str(), CV_string);
    for (const char* word : {"zav:@out_%v.grd", "zavb:@out_%v.grd", "cdf:@out_%v.grd"}) {
        for (const char* name : {"out_temp.grd", "out_hght.grd"}) std::filesystem::remove(name);
        RES_new(0, "out_file", word, CV_string);
        VAR_set_def_type(VTYPE_CONT);
        ASSERT_EQ(VAR_setup(nullptr, "h120:500mb:+temp:C:ln:in=4,h120:500mb:nofun(+hght)"), 1);
        test::capture([&] { ASSERT_EQ(GRD_search_file(source), 1); });
        const GRD_report* grid = GRD_get_grid(0);
        ASSERT_TRUE(GRD_has_values(grid));
        EXPECT_EQ(grid->units, "C");
        EXPECT_EQ(grid->level, 500);
        EXPECT_NEAR(grid->grid[0], 228.8 - 273.15, 0.01);  // at the pole, as ecCodes decodes it
        EXPECT_EQ(GRD_get_grid(1)->grid, nullptr);
        GRD_report back;
        GRD_info info;
        int type = 0;
        ASSERT_EQ(GRD_read_file("out_temp.grd", &back, &info, &type), 1);
        ASSERT_EQ(GRD_points(&back), GRD_points(grid));
        EXPECT_TRUE(std::equal(&back.grid[0], &back.grid[GRD_points(grid)], &grid->grid[0]));
        EXPECT_EQ(back.var, grid->var);
        EXPECT_EQ(back.info, grid->info);
    }
}

TEST_F(SearchFile, OutputFollowsTheWords) {
    for (const test::Case& c : test::cases("out_files")) {
        RES_new(0, "out_file", c.text(0).c_str(), CV_string);
        FLAG_set(FLAG_GRID_FORMAT, MISS);
        EXPECT_EQ(GRD_out_file(c.number(1)), c.number(2)) << c.line();
        EXPECT_EQ(FLAG_get(FLAG_GRID_FORMAT), c.number(2) == 0 ? MISS : c.number(2)) << c.line();
    }
}

TEST(Index, DescriptionsAreDecoded) {
    GRD_report grid;
    for (const test::Case& c : test::cases("index_lines")) {
        EXPECT_EQ(GRD_decode_index(c.text(0), &grid), c.number(1)) << c.line();
        test::expect_fields(grid, c.text(2));
    }
}

}  // namespace
}  // namespace zav
