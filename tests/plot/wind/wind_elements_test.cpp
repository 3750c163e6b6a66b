// Barbs, arrows, tracks, weather symbols and station circles, each page against the strokes of its rules.

#include <array>
#include <random>

#include "gks/gks_text.h"
#include "plot/wind/vecttool.h"
#include "plot/wind/wind_page.h"
#include "plot/wind/windbarb.h"
#include "plot/wind/wx_symb.h"

namespace zav {
namespace {

std::function<float(double, double)> random_numbers(unsigned seed) {
    return [random = std::mt19937(seed)](double from, double to) mutable {
        return static_cast<float>(std::uniform_real_distribution<double>(from, to)(random));
    };
}

TEST_F(Wind, BarbsFollowTheirRules) {
    const auto any = random_numbers(3);
    Page page;
    const auto all = drawn([&] {
        for (int i = 0; i <= 400; ++i) {
            const float x = any(0, 1), y = any(0, 1), from = any(-360, 720), size = any(0.02, 2), offset = any(-0.5, 1);
            // Each side of every step of the feathers, and calm air.
            const std::array beside{-0.1F, -0.015F, -0.005F, 2.0F};
            const float spd = std::max(0.0F, static_cast<float>(i / 4 * 5 - 2) + beside[i % 4]);
            EXPECT_EQ(WIND_barb(x, y, from, spd, size, offset, i % 3 == 0), spd == 0 ? -1 : 0);
            page.barb(x, y, from, spd, size, offset, i % 3 == 0);
        }
    });
    expect_same(all, page.strokes);
}

TEST_F(Wind, ArrowsAndTracksAreThoseOfThePage) {
    const auto any = random_numbers(4);
    const auto all = drawn([&] {
        for (int i = 0; i < 60; ++i) {
            const float x = any(0, 1), y = any(0, 1), from = any(-360, 720), size = any(0.02, 2), head = any(-0.5, 1.5);
            EXPECT_EQ(WIND_vect(x, y, from, any(0.1, 3), size, head), 0);
            EXPECT_EQ(WIND_track(x, y, from, size, head, i % 7 - 1, i), 0);
        }
        const std::pair<float, float> calms[] = {{FMISS, 10}, {90, FMISS}, {NAN, 10}, {90, NAN}, {90, 0}};
        for (const auto& [from, spd] : calms) {
            EXPECT_EQ(WIND_barb(0, 0, from, spd, 1, 0), -1);
            EXPECT_EQ(WIND_vect(0, 0, from, spd, 1, 1), -1);
            EXPECT_EQ(WIND_track(0, 0, from, spd, 1, 4, 0), -1);
        }
        EXPECT_EQ(WIND_barb(0, 0, 90, -20, 1, 0), -1);
    });
    expect_page(all, "arrows");
}

TEST(WindConversion, FollowsItsFormulas) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> any(-30, 30);
    for (int i = 0; i < 1000; ++i) {
        const float part = i % 4 == 0 ? 5e-4F : 1;  // about calm air too
        const float u = any(random) * part, v = any(random) * part, speed = std::hypot(u, v);
        float dir = 0, spd = 0, x = 0, y = 0;
        const double to = speed < 0.01F ? 0 : std::atan2(u, v) * 180 / M_PI;
        EXPECT_EQ(vect2polar(u, v, &dir, &spd), 0);
        EXPECT_NEAR(std::hypot(dir - to, spd - speed), 0, 1e-4);
        EXPECT_EQ(polar2vect(dir, spd, &x, &y), 0);
        EXPECT_NEAR(speed < 0.01F ? 0 : std::hypot(x - u, y - v), 0, 1e-4);
        EXPECT_EQ(vect2wind(u, v, &dir, &spd), 0);
        EXPECT_NEAR(std::hypot(dir - (speed < 0.01F ? 0 : to + 180), spd - speed), 0, 1e-4);
        EXPECT_EQ(wind2vect(dir, spd, &x, &y), 0);
        EXPECT_NEAR(speed < 0.01F ? 0 : std::hypot(x - u, y - v), 0, 1e-4);
    }
    float a = 0, b = 0;
    VECT w;
    EXPECT_EQ(cross_product({1, 2, 3}, {5, 7, 11}, &w), 0);
    EXPECT_TRUE(w.x == 1 && w.y == 4 && w.z == -3);
    EXPECT_EQ(dot_product({1, 2, 3}, {5, 7, 11}), 52.0F);
    const VECT gone{FMISS, 1, 1};
    for (const auto& [p, q] : {std::pair(w, gone), {gone, w}}) {
        EXPECT_EQ(dot_product(p, q), FMISS);
        EXPECT_EQ(cross_product(p, q, &w), -1);
        EXPECT_TRUE(w.x == FMISS && w.y == FMISS && w.z == FMISS);
        for (auto* convert : {polar2vect, vect2polar, wind2vect, vect2wind}) {
            EXPECT_EQ(convert(p.x, q.x, &a, &b), -1);
            EXPECT_TRUE(a == FMISS && b == FMISS);
        }
    }
}

std::string many_symbols(int count) {
    std::string text;
    for (int k = 0; k < count; ++k) text += "N" + std::to_string(1000 + k) + " 0,0 1,1 L\n$\n";
    return text;
}

TEST_F(Wind, SymbolsAreFoundByTheirFirstListedPrefix) {
    dir.write("prefix.smb", "T 0,0 1,-.2 L 0,0 1,0 1,1 F\n$\nTS 0,0 1,1 L\n$\n");
    GPH_text_align(GLEFT_HOR, GBOTTOM_VERT);
    const auto all = drawn([] {
        EXPECT_EQ(WX_symb_file("prefix.smb"), 0);
        EXPECT_EQ(WX_symb(0.2F, 0.2F, "tsra", 0.5F), 1);
        EXPECT_EQ(WX_symb(0, 0, "X", 1), 0);
        EXPECT_EQ(WX_symb(0, 0, " T", 1), 0);
        for (int k = 0; k < 9; ++k) {
            GPH_text_align(1 + k % 3, std::array<int, 3>{GBASE_VERT, GHALF_VERT, GTOP_VERT}[k / 3]);
            WX_symb(0.5F, 0.5F, "T", 0.2F);
        }
    });
    ASSERT_EQ(all.size(), 20U);
    for (int k = 0; k < 9; ++k) {  // left, centre, right; base, half, top
        const Gpt& start = all[2 + 2 * k].pts[0];
        EXPECT_NEAR(std::hypot(start.x - 0.5 + 0.1 * (k % 3), start.y - 0.5 + 0.1 * (k / 3)), 0, 1e-5) << k;
    }
    EXPECT_NEAR(std::hypot(all[0].pts[1].x - 0.7, all[0].pts[1].y - 0.1), 0, 1e-5);
    EXPECT_TRUE(all[1].filled);
}

TEST_F(Wind, HostileSymbolFilesAreRead) {
    const std::string name(300, 'A');
    std::string pairs;
    for (int k = 0; k < 21; ++k) pairs += "0." + std::to_string(10 + k) + ",0.5 ";
    dir.write("many.smb", many_symbols(101));
    dir.write("open.smb", "Z 0,0 1,1 L 0.5,inf nan,nan");
    dir.write("long.smb", name + " 0,0 1,1 L\n$\nP " + pairs + "F\n$\n");
    dir.write("void.smb", "");
    const auto all = drawn([&] {
        EXPECT_EQ(WX_symb_file("many.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "N1099", 1), 1);
        EXPECT_EQ(WX_symb(0, 0, "N1100", 1), 0);
        EXPECT_EQ(WX_symb_file("MANY.smb"), -1);
        EXPECT_EQ(WX_symb_file("open.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "Z", 1), 1);
        EXPECT_EQ(WX_symb_file("long.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, name, 1), 1);
        EXPECT_EQ(WX_symb(0, 0, "P", 1), 1);
        EXPECT_EQ(WX_symb_file("void.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "P", 1), 0);
    });
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[3].pts.size(), 20U);
    EXPECT_FALSE(all[3].filled);
}

TEST_F(Wind, TheShippedSymbolsAreComplete) {
    RES_put("file_path", test::source_dir() + "/share/zav/");
    EXPECT_EQ(WX_symb_file("ww.smb"), 0);
    for (int ww = 0; ww < 100; ++ww) {
        const std::string code = std::string(ww < 10 ? "0" : "") + std::to_string(ww);
        EXPECT_EQ(WX_symb(0.5F, 0.5F, code, 0.1F), 1) << code;
    }
    EXPECT_EQ(WX_symb_file(nullptr), 0);
    for (const char* code : {"TSRA", "-SN", "FZRA", "BR", "61", "95"}) EXPECT_EQ(WX_symb(0, 0, code, 1), 1) << code;
}

TEST_F(Wind, CirclesAreThoseOfThePage) {
    const auto all = drawn([] {
        for (const char code : std::string("012345678CFSBOXMbosx9z?")) EXPECT_EQ(WX_cloud(0.5F, 0.3F, 0.2F, code), 0);
    });
    expect_page(all, "circles");
}

}  // namespace
}  // namespace zav
