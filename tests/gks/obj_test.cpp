// The redraw store: what it keeps, and that a replay says the same.

#include "gks/gks_obj.h"

#include "gks/kernel_scene.h"
#include "gks/meta/gks_meta.h"

namespace zav {
namespace {

class Store : public test::KernelTest {
  protected:
    /// The store as a metafile.
    std::string printed() {
        const test::EnvSetting name("METAOUT", "store.meta");
        const auto output = test::capture([] { EXPECT_EQ(gobj_print_meta(), 0); });
        said = output.out + output.err;
        return test::read_file("store.meta");
    }
    static bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
};

TEST_F(Store, RecordsOnlyWhenAsked) {
    ASSERT_EQ(open("a.ps"), 0);
    EXPECT_EQ(gget_redraw(), 0);
    EXPECT_EQ(gnew_obj(GOBJ_LINE, 1, 8, nullptr), nullptr);
    test::draw_scene();
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(holds(said, "gobj_print_meta: No redraw data to make metafile from\n"));
    EXPECT_EQ(gdel_seg_objs(1), -1);
    EXPECT_EQ(gobj_redraw_plot(), -1);
}

TEST_F(Store, SegmentsAreTakenOutWhole) {
    ASSERT_EQ(open("a.ps"), 0);
    gset_redraw(1);
    const Gpt points[2] = {{0, 0}, {1, 1}};
    const auto line_in_segment = [&](int segment) {
        gcreate_seg(segment);
        gpolyline(2, points);
        gmessage(1, "segment " + std::to_string(segment));
        EXPECT_EQ(gclose_seg(segment), 0);
    };
    for (int segment = 0; segment < 3; ++segment) line_in_segment(segment);
    gdel_seg(1);
    gdel_seg(9);
    const std::string meta = printed();
    EXPECT_TRUE(holds(meta, "ME segment 0\n"));
    EXPECT_FALSE(holds(meta, "ME segment 1\n"));
    EXPECT_TRUE(holds(meta, "ME segment 2\n"));
}

TEST_F(Store, FunctionsRunWithTheirDataWhichTheStoreOwns) {
    ASSERT_EQ(open("a.ps"), 0);
    gset_redraw(1);
    auto calls = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = calls;
    gset_redraw_func(
        [](void* data) {
            ++*static_cast<int*>(data);
            gclear_objs();
        },
        calls);
    gset_redraw_func([](void* data) { ++*static_cast<int*>(data); }, std::move(calls));
    gobj_redraw_plot();
    EXPECT_TRUE(watch.expired()) << "cleared from within a replay, freed at its end";
    gset_redraw(0);
    gset_redraw_func([](void*) {}, std::make_shared<int>(0));
    EXPECT_EQ(printed(), "");
}

}  // namespace
}  // namespace zav
