#include "program/grd_plt.h"

#include "files/files.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
#include "support/support.h"

namespace zav {
namespace {

class ModelList : public test::TempDirTest {
  protected:
    ModelList() {
        FLAG_reset(MISS);
        RES_put("file_path", dir.path().string());
        dir.write("model.lup", "eta 1x1 grib_e\n#\nwide 2x2 a,b#7,c,d\n# a comment\nlast 3x1\n   x,y,z\nmany 99x0 " +
                                   std::string(480, ',') + "p\n");
    }
};

TEST_F(ModelList, DescribesPiecesRowByRow) {
    RES_put("model", "WIDE");
    GRD_in_file();
    const GRD_specs& specs = GRD_get_specs();
    ASSERT_EQ(specs.nspec, 4);
    EXPECT_EQ(specs.nx, 2);
    EXPECT_EQ(specs.spec[1].name, "b");
    EXPECT_EQ(specs.spec[1].type, 7);
    EXPECT_EQ(specs.spec[2].x, 0);
    EXPECT_EQ(specs.spec[2].y, 1);
    EXPECT_EQ(specs.spec[2].type, MISS);
    RES_put("model", "last");
    GRD_in_file();
    EXPECT_EQ(specs.nspec, 3);
    EXPECT_EQ(specs.spec[2].x, 2);
    RES_put("model", "many");
    GRD_in_file();
    EXPECT_EQ(specs.nspec, GRD_SPEC_MAX);
    RES_put("model", "none");
    GRD_in_file();
    EXPECT_EQ(specs.nspec, 0);
}

TEST_F(ModelList, InputWordsSetTheFileType) {
    struct Case {
        const char* words;
        int format;
    };
    for (const Case& c : {Case{"zavgrid", 3}, {"CDFdata", 12}, {"Grib", 23}, {"gribfile", MISS}, {"grib,zav", 3}}) {
        FLAG_reset(MISS);
        RES_put("in_file", c.words);
        GRD_in_file();
        EXPECT_EQ(FLAG_get(FLAG_GRID_FORMAT), c.format) << c.words;
    }
}

}  // namespace
}  // namespace zav
