// The toolkit above the kernel: placing the plot area, and what attribute records do, read from a text metafile.

#include "gks/zavgks.h"

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "gks/gks_ws.h"
#include "support/support.h"

namespace zav {
namespace {

struct Aspect_case {
    Gaspect asp;
    Gcenter center;
    Glim want;
};

TEST(GphAspect, FitsAndPlaces) {
    const Glim in{0.1F, 0.9F, 0.2F, 0.6F};  // 0.8 by 0.4
    const Aspect_case cases[] = {
        {{1, 1}, {2, 2}, {0.3F, 0.7F, 0.2F, 0.6F}}, {{4, 1}, {2, 2}, {0.1F, 0.9F, 0.3F, 0.5F}},
        {{1, 1}, {3, 2}, {0.5F, 0.9F, 0.2F, 0.6F}}, {{1, 1}, {1, 2}, {0.0F, 0.4F, 0.2F, 0.6F}},
        {{4, 1}, {2, 3}, {0.1F, 0.9F, 0.4F, 0.6F}},
    };
    for (const Aspect_case& c : cases) {
        Glim out;
        gset_aspect(&in, &out, c.asp, c.center);
        EXPECT_NEAR(out.x_min, c.want.x_min, 1e-6);
        EXPECT_NEAR(out.x_max, c.want.x_max, 1e-6);
        EXPECT_NEAR(out.y_min, c.want.y_min, 1e-6);
        EXPECT_NEAR(out.y_max, c.want.y_max, 1e-6);
    }
}

class Toolkit : public test::TempDirTest {
  protected:
    void SetUp() override { RES_put("file_path", test::source_dir() + "/share/zav/"); }
    void open(Gws_type type) {
        gws_ = type;
        test::capture([this] { GPH_begin(&id_, dir.file("out"), &gws_); });
    }
    std::string written() {
        test::capture([this] { GPH_end(id_); });
        return test::read_file(dir.file("out"));
    }
    /// What the metafile holds behind a mark.
    std::string behind_mark() {
        const std::string all = written();
        const std::size_t at = all.find("ME mark\n");
        return at == std::string::npos ? "no mark" : all.substr(at + 8);
    }
    Gint id_ = 0;
    Gws_type gws_ = GWS_PS;
};

TEST_F(Toolkit, PanelTakesItsShareOfThePage) {
    open(GWS_PS);  // 756 by 576: y extends to 575/755
    GPH_set_view_size(0.5F, 0.5F, 0.5F, 0.0F);
    Glim view{0.1F, 0.1F, 0.1F, 0.1F};
    GPH_reset(&id_, &gws_, 0.0F, &view);
    const float high = 575.0F / 755.0F;
    EXPECT_NEAR(view.x_min, 0.55, 1e-5);
    EXPECT_NEAR(view.x_max, 0.95, 1e-5);
    EXPECT_NEAR(view.y_min, 0.05 * high, 1e-5);
    EXPECT_NEAR(view.y_max, 0.45 * high, 1e-5);
    Glim window;
    GPH_get_win(3, &window);
    EXPECT_EQ(window.x_max, view.x_max);
    view = {0.0F, 0.0F, 0.0F, 0.0F};
    GPH_panel(&id_, &gws_, 1.0F, &view);  // square: bands left and right
    EXPECT_NEAR(view.y_max - view.y_min, 0.5 * high, 1e-5);
    EXPECT_NEAR(view.x_min + view.x_max, 1.5, 1e-5);
    GPH_set_view_size(1.0F, 1.0F, 0.0F, 0.0F);
    written();
}

TEST_F(Toolkit, RecordWithoutFieldsSetsOnlyTextSpaceAndHeight) {
    open(GWS_META);
    gset_space(0.5F);
    const Gattribs none;
    gmessage(1, "mark");
    GPH_line_attr(&none);
    GPH_fill_attr(&none);
    GPH_mark_attr(&none, 0.0F);
    EXPECT_EQ(GPH_text_attr(&none, 0.07F), 0);
    EXPECT_EQ(behind_mark(), "TE_HGHT 0.070000\nTE_SPC 0.250000\n");
}

TEST_F(Toolkit, RecordFieldsReachTheKernel) {
    open(GWS_META);
    Gattribs attrib;
    attrib.color = -1;
    attrib.width = 3.0F;
    attrib.height = 2.0F;
    attrib.style = 4;
    attrib.fill_pat = 7;
    gmessage(1, "mark");
    GPH_line_attr(&attrib);
    GPH_fill_attr(&attrib);
    GPH_mark_attr(&attrib, 4.0F);
    GPH_text_attr(&attrib, 0.02F);
    GPH_line_attr(nullptr);
    EXPECT_EQ(GPH_text_attr(nullptr, 1.0F), -1);
    attrib.fill_pat = 1;
    GPH_fill_attr(&attrib);
    attrib.fill_pat = 0;
    GPH_fill_attr(&attrib);
    EXPECT_EQ(behind_mark(),
              "PL_TYPE 4\nPL_LW 3.000000\nFA_INT 2\nFA_ST 7\nPM_TYPE 4\nPM_SIZE 8.000000\nPM_WDTH 3.000000\n"
              "TE_HGHT 0.040000\nTE_WDTH 3.000000\nPL_TYPE 1\nPL_LW 0.000000\nTE_WDTH 0.000000\nFA_ST 1\nFA_INT 1\n");
}

TEST_F(Toolkit, ShapesAreClosed) {
    open(GWS_META);
    gmessage(1, "mark");
    GPH_rect(0.1F, 0.2F, 0.3F, 0.4F);
    GPH_circle(0.5F, 0.5F, 0.25F);
    GPH_printf(0.1F, 0.1F, "%0120d", 7);
    const std::string text = behind_mark();
    EXPECT_EQ(text.find("PL 5 0.100000,0.200000 0.300000,0.200000 0.300000,0.400000 0.100000,0.400000 \n"
                        "   0.100000,0.200000 \n"),
              0U);
    const std::size_t at = text.find("PL 37 0.750000,0.500000 ");
    ASSERT_NE(at, std::string::npos);
    EXPECT_NE(text.find("0.750000,0.500000", at + 20), std::string::npos);
    EXPECT_NE(text.find("TE 0.100000,0.100000 " + std::string(99, '0') + "\n"), std::string::npos);
}

TEST(ToolkitSettings, DevicesAndTitles) {
    std::string conn;
    EXPECT_EQ(gdevice_setup("ps,out.ps,color", conn), GWS_PS);
    EXPECT_EQ(conn, "out.ps,color");
    EXPECT_EQ(gdevice_setup("Metafile", conn), GWS_META);
    EXPECT_EQ(conn, "");
    int type = GWS_ASK;
    test::capture([&] { GPH_device_prompt(&type); }, "P\n");
    EXPECT_EQ(type, GWS_PS);
    RES_put("name", "+wave");
    GPH_set_win_title();
    EXPECT_EQ(gget_win_title(), "wave");
    EXPECT_EQ(gget_prog_name(), "+wave");
    RES_put("title", "a plot");
    GPH_set_win_title();
    EXPECT_EQ(gget_win_title(), "a plot");
}

}  // namespace
}  // namespace zav
