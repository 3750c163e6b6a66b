// A metafile with random damage: playback ends, stays within its data, and leaves sound PostScript.

#include <random>

#include "frame/mess.h"
#include "gks/kernel_scene.h"
#include "gks/meta/gks_meta.h"
#include "support/table.h"

namespace zav {
namespace {

constexpr int ROUNDS = 1500;
constexpr int RENDER_EVERY = 100;

class MetaMutation : public test::KernelTest {
  protected:
    std::string damaged(const std::string& text) {
        std::string copy = text;
        const auto pick = [this](std::size_t size) {
            return std::uniform_int_distribution<std::size_t>(0, size - 1)(random_);
        };
        for (std::size_t n = 1 + pick(8); n > 0 && !copy.empty(); --n) {
            const std::size_t place = pick(copy.size());
            switch (pick(4)) {
                case 0:
                    copy[place] = static_cast<char>(pick(256));
                    break;
                case 1:
                    copy.erase(place, 1 + pick(40));
                    break;
                case 2:
                    copy.insert(place, test::unescaped(pieces_[pick(pieces_.size())].at("piece")));
                    break;
                default:
                    copy.insert(place, copy.substr(pick(copy.size()), pick(60)));
                    break;
            }
        }
        return copy;
    }

    std::vector<test::Row> pieces_ = test::data_table("metafile_pieces.tsv");
    std::mt19937 random_{20240229};
};

TEST_F(MetaMutation, PlaybackSurvivesDamage) {
    ASSERT_EQ(open("a.meta", GWS_META), 0);
    test::draw_scene();
    close();
    const std::string text = test::read_file("a.meta");
    ASSERT_GT(text.size(), 1000U);
    MESS_set(0, MESS_NONE);
    for (int round = 0; round < ROUNDS; ++round) {
        test::write_file("damaged.meta", damaged(text));
        gopen_gks(nullptr, 10000);
        ASSERT_EQ(gopen_ws(1, round % 2 ? "out.ps,color" : "out.ps,gray", GWS_PS), 0);
        EXPECT_EQ(gread_metafile("damaged.meta"), 0);
        EXPECT_EQ(gclose_ws(1), 0);
        gclose_gks();
        if (round % RENDER_EVERY == 0) {
            EXPECT_EQ(test::ghostscript_errors("out.ps"), "") << round;
        }
    }
}

}  // namespace
}  // namespace zav
