// Time and level keys, and the labels made from their codes.
#include <gtest/gtest.h>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "support/support.h"
#include "support/table.h"
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
    FLAG_setl(FLAG_TIME, 24);
    for (const test::Case& c : test::cases("var/time_keys")) {
        int time = -1;
        EXPECT_EQ(VAR_dec_time(c.text(0), &time), c.number(1)) << c.line();
        EXPECT_EQ(time, c.number(2)) << c.line();
    }
    FLAG_setl(FLAG_TIME, MISS);
    int time = -1;
    EXPECT_EQ(VAR_dec_time("", &time), 2);
    EXPECT_EQ(time, 0);
}

TEST_F(VarKeys, LevelKeysGiveTheirCodes) {
    for (const test::Case& c : test::cases("var/level_keys")) {
        int ltype = -1;
        int level = -1;
        EXPECT_EQ(VAR_dec_level(c.text(0), &ltype, &level), 2) << c.line();
        EXPECT_EQ(ltype, c.number(1)) << c.line();
        EXPECT_EQ(level, c.number(2)) << c.line();
    }
    int ltype = 5;
    int level = 6;
    for (const char* key : {"gibberish", "500foo", "p850x", "850-", "850-x", "1000mb-500m", "1-5lev", "sfcx", "+",
                            "p500-x", "p500-10x"}) {
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
    for (const test::Case& c : test::cases("var/layers")) {
        float l1 = 0;
        float l2 = 0;
        VAR_get_level(c.number(0), c.number(1), &l1, &l2);
        EXPECT_EQ(l1, c.number(2)) << c.line();
        EXPECT_EQ(l2, c.number(3)) << c.line();
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
    for (const test::Case& c : test::cases("var/labels")) {
        EXPECT_EQ(VAR_make_datalevel(c.number(0), c.number(1), c.number(2)), c.text(3)) << c.line();
    }
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
    for (const test::Case& c : test::cases("var/styles")) {
        RES_put("plot_param", c.text(0));
        VAR_param_decode();
        EXPECT_EQ(VAR_make_vardata_form_datatype(&data), c.text(1));
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
    for (const test::Case& c : test::cases("var/shipped")) {
        EXPECT_EQ(VAR_search_var_num(c.text(0)), c.number(1)) << c.line();
    }
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
