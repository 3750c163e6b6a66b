// Time and level keys, and the labels made from their codes.
#include <gtest/gtest.h>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "support/support.h"
#include "var/var_tool.h"

namespace zav {
namespace {

class VarKeys : public test::TempDirTest {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        RES_put("file_path", dir.path().string());
        RES_put("plot_param", "labnorm");
        dir.write("variable.lup", "# comment line here\n11,12 temp Temperature  \r\n61 prcp Precipitation\n7 hght\n");
        VAR_param_decode();
        VAR_read_varfile();
    }
};

TEST_F(VarKeys, TimeKeysGiveTheirCodes) {
    struct {
        const char* key;
        int result;
        int time;
    } const cases[] = {
        {"h12", 2, 12},
        {"36", 2, 36},
        {"d3", 2, 72},
        {"e3", 2, 84},
        {"3day", 2, 72},
        {"3.5day", 2, 84},
        {"2D", 2, 48},
        {"h24-12acc", 2, 4012024},
        {"24-12avg", 2, 3012024},
        {"anal-6avg", 2, 3006000},
        {"ANAL", 2, 0},
        {"init", 2, 0},
        {"in", 2, 0},
        {"miss", 2, MISS},
        {"time", 1, 24},
        {"time-6", 1, 18},
        {"time-6acc", 1, 4018024},
        {"", 1, 24},
        {"h24-12zzz", 2, 2012024},
        {"h24-12", 2, 24},
        {"48-24MAX", 2, 6024048},
        {"10min", 2, 300000002},
        {"1:30", 2, 100000003},
        {"120min", 2, 2},
        {"90min-30minacc", 2, 104002003},
        {"1:30-0:30min", 2, 107002003},
        {"time-0:30", 1, 100000047},
        {"d40", 2, 840},
        {"900hours", 2, 900},
        {"1200", 2, 850},
        {"foo", 0, -1},
        {"+24", 0, -1},
        {"10foo", 0, -1},
        {"h12x", 0, -1},
        {"1:75", 0, -1},
        {"h12-", 0, -1},
        {"h6-12acc", 0, -1},
        {"temp", 0, -1},
        {"dewp", 0, -1},
        {"hght", 0, -1},
        {"-6acc", 0, -1},
        {"h48-12uavg", 2, 23036048},
    };
    FLAG_setl(FLAG_TIME, 24);
    for (const auto& c : cases) {
        int time = -1;
        EXPECT_EQ(VAR_dec_time(c.key, &time), c.result) << c.key;
        EXPECT_EQ(time, c.time) << c.key;
    }
    FLAG_setl(FLAG_TIME, MISS);
    int time = -1;
    EXPECT_EQ(VAR_dec_time("", &time), 2);
    EXPECT_EQ(time, 0);
}

TEST_F(VarKeys, LevelKeysGiveTheirCodes) {
    struct {
        const char* key;
        int ltype;
        int level;
    } const cases[] = {
        {"850", 100, 850},
        {"850mb", 100, 850},
        {"500hPa", 100, 500},
        {"1000-500hPa", 101, 50100},
        {"p850", 100, 850},
        {"1000-500", 101, 50100},
        {"500-1000mb", 101, 50100},
        {"p500-1000", 101, 50100},
        {"sfc-500mb", 101, 50190},
        {"sfc[2]-500mb", 101, 50200},
        {"sfc-500", 101, 50190},
        {"trop-500mb", 101, 50195},
        {"maxt-500mb", 101, 50191},
        {"2000m", 103, 2000},
        {"1000ft", 103, 304},
        {"10m_ag", 105, 10},
        {"300K", 113, 300},
        {"0.995sig", 107, 9950},
        {"s0.995", 107, 9950},
        {"0.47sig", 107, 4700},
        {"30mb_ag", 115, 30},
        {"sfc[2]", 1, 2},
        {"trop", 7, 0},
        {"SFC", 1, 0},
        {"sl", 102, 0},
        {"none", 0, 0},
        {"-", 9, 0},
        {"miss", MISS, MISS},
        {"trop+1000m", 104, 10995},
        {"trop-1000m", 104, 10996},
        {"0-3000m_ag", 106, 30000},
        {"a0-3000", 106, 30000},
        {"h1000-2000", 104, 20010},
        {"k300-310", 114, 310300},
        {"30-0mb_ag", 116, 30},
        {"5lev", 109, 5},
        {"2pv", 117, 2},
        {"0.5eta", 119, 5000},
        {"hcld_bot", 232, 0},
        {"0-10000ft_ag", 106, 30000},
    };
    for (const auto& c : cases) {
        int ltype = -1;
        int level = -1;
        EXPECT_EQ(VAR_dec_level(c.key, &ltype, &level), 2) << c.key;
        EXPECT_EQ(ltype, c.ltype) << c.key;
        EXPECT_EQ(level, c.level) << c.key;
    }
    int ltype = 5;
    int level = 6;
    for (const char* key : {"gibberish", "500foo", "p850x", "850-", "850-x", "1000mb-500m", "1-5lev", "sfcx", "+"}) {
        EXPECT_EQ(VAR_dec_level(key, &ltype, &level), 0) << key;
        EXPECT_EQ(ltype, 5) << key;
        EXPECT_EQ(level, 6) << key;
    }
    FLAG_setl(FLAG_LTYPE, 100);
    FLAG_set(FLAG_LEVEL, 700);
    for (const char* key : {"", "level"}) {
        EXPECT_EQ(VAR_dec_level(key, &ltype, &level), 1);
        EXPECT_EQ(level, 700);
    }
}

TEST_F(VarKeys, LevelsComeApartAndTogether) {
    struct {
        int ltype, level;
        float l1, l2;
    } const cases[] = {{101, 50100, 500, 1000}, {106, 30000, 0, 3000},  {104, 10995, 1000, 99500},
                       {114, 310300, 300, 310}, {100, 850, 850, FMISS}, {113, 300, 300, FMISS}};
    for (const auto& c : cases) {
        float l1 = 0;
        float l2 = 0;
        VAR_get_level(c.ltype, c.level, &l1, &l2);
        EXPECT_EQ(l1, c.l1);
        EXPECT_EQ(l2, c.l2);
    }
    int ltype = 0;
    int level = 0;
    VAR_enc_level(100, 1000, 500, &ltype, &level);
    EXPECT_EQ(ltype, 101);
    EXPECT_EQ(level, 50100);
    VAR_enc_level(105, 10, FMISS, &ltype, &level);
    EXPECT_EQ(ltype, 105);
    EXPECT_EQ(level, 10);
    VAR_enc_level(106, 0, 3000, &ltype, &level);
    EXPECT_EQ(level, 30000);
}

TEST_F(VarKeys, LabelsTellTimeAndLevel) {
    struct {
        int time, ltype, level;
        const char* text;
    } const cases[] = {
        {0, 100, 500, "500 mb"},
        {4012024, 1, 0, "12 hour acc Surface"},
        {0, 101, 50190, "sfc-500 mb"},
        {0, 101, 50200, "sfc-500 mb"},
        {0, 101, 50201, "sfc[10]-500 mb"},
        {0, 101, 50085, "850-500 mb"},
        {0, 101, 510, "1000-500 mb"},
        {0, 101, 7, ""},
        {0, 101, 50195, "trop-500 mb"},
        {0, 104, 20995, "trop+2000 m"},
        {0, 104, 20010, "1000-2000 m"},
        {0, 106, 30000, "0-3000 m AG"},
        {0, 107, 9950, "0.99 sigma"},
        {0, 112, 10040, "40-10 cm BG"},
        {0, 114, 310300, "300-310 K"},
        {0, 1, 2, "Surface[2]"},
        {0, 1, 2003, "Surface[3]"},
        {0, 245, 0, "Wet bulb zero lvl"},
        {3801802, 0, 0, "1 day avg "},
        {2901903, 0, 0, "2 month rng "},
        {13006012, 8, 0, "12 hour iavg Top"},
        {MISS, MISS, MISS, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(VAR_make_datalevel(c.time, c.ltype, c.level), c.text);
    const test::Output shown = test::capture([] { EXPECT_EQ(VAR_make_datalevel(0, 77, 0), ""); });
    EXPECT_EQ(shown.err, "VAR_make_datatype: no ltype: 77\n");
}

TEST_F(VarKeys, LabelStyleChoosesParts) {
    VAR_data data;
    data.time = 4012024;
    data.ltype = 1;
    data.level = 0;
    data.var[0] = 19300011;
    data.units = "F";
    data.format = "in=4";
    struct {
        const char* words;
        const char* text;
    } const cases[] = {
        {"labmin", "temp (F)"},
        {"uvew,LABSimp", "12 hour acc Surface temp (F)"},
        {"labmin,labnorm", "12 hour acc Surface Temperature (F)"},
        {"labcomp", "12 hour acc Surface Temperature (F) - in=4"},
    };
    for (const auto& c : cases) {
        RES_put("plot_param", c.words);
        VAR_param_decode();
        EXPECT_EQ(VAR_make_vardata_form_datatype(&data), c.text);
    }
    EXPECT_EQ(VAR_make_devtype(0, 100, 500, "Speed", "m/s"), "500 mb Speed (m/s)");
    EXPECT_EQ(VAR_make_datatype(0, 100, 500, 999, ""), "500 mb v999");
}

TEST_F(VarKeys, TableGivesNumbersAndNames) {
    VAR_data data;
    EXPECT_EQ(VAR_dec_var("TEMP", &data), 11);
    EXPECT_EQ(data.var, (std::array<int, VAR_IND>{11, 12, MISS, MISS, MISS}));
    EXPECT_EQ(VAR_search_var_num("prcp"), 61);
    EXPECT_EQ(VAR_search_var_num("comment"), 0);
    EXPECT_EQ(VAR_search_var_num(""), 0);
    EXPECT_EQ(VAR_str(7, ""), "hght");
    EXPECT_EQ(VAR_abbr(19000061), "prcp");
    EXPECT_EQ(VAR_abbr(1061), "v1061") << "a number of another table";
    EXPECT_EQ(VAR_abbr(1910611005), "prcp") << "a probability";
}

TEST_F(VarKeys, ModelAndSourceNamesComeFromTheirFiles) {
    const test::Output shown = test::capture([] {
        EXPECT_EQ(VAR_model(7002), "");
        EXPECT_EQ(VAR_source(98), "");
    });
    EXPECT_EQ(shown.err, "VAR_model: Unable to open file: " + dir.file("mod_name.lup") +
                             "\nVAR_source: Unable to open file: " + dir.file("source.lup") + "\n");
    dir.write("mod_name.lup", "# models\nnonsense\n8:2 Other\n2 NGM\n7:2 Late\n7:96 GFS run \n");
    dir.write("source.lup", "x\n98 Centre of medium range\n");
    EXPECT_EQ(VAR_model(7002), "NGM");
    EXPECT_EQ(VAR_model(8002), "Other");
    EXPECT_EQ(VAR_model(2), "NGM");
    EXPECT_EQ(VAR_model(7096), "GFS run");
    EXPECT_EQ(VAR_model(96), "");
    EXPECT_EQ(VAR_source(98), "Centre of medium range");
}

TEST(VarShipped, TableServesReadersFunctionsAndExamples) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    ASSERT_EQ(VAR_read_varfile(), 1);
    struct {
        const char* abbr;
        int num;
    } const cases[] = {{"hght", 7},   {"temp", 11},  {"dewp", 17}, {"rhum", 52},   {"uwnd", 33},
                       {"vwnd", 34},  {"prcp", 61},  {"pmsl", 2},  {"wspd", 32},   {"spd", 32},
                       {"wdir", 31},  {"dir", 31},   {"mag", 32},  {"wind", 332},  {"strm", 333},
                       {"cape", 157}, {"refl", 491}, {"tmpc", 11}, {"mixrat", 53}, {"shum", 51}};
    for (const auto& c : cases) EXPECT_EQ(VAR_search_var_num(c.abbr), c.num) << c.abbr;
    for (int num = 1; num <= 254; num++) EXPECT_NE(VAR_abbr(num), "v" + std::to_string(num));
    for (const char* function :
         {"theta", "thetae", "wetblb", "show",  "wchill", "wchill2", "heat",   "vtemp",  "thetav",
          "vapor", "ugeos",  "vgeos",  "uq",    "vq",     "lapl",    "conv",   "diverg", "def1",
          "def2",  "vconv",  "rvort",  "avort", "adv",    "thick",   "pr_alt", "sub",    "div"}) {
        EXPECT_GT(VAR_search_var_num(function), 0) << function;
    }
}

}  // namespace
}  // namespace zav
