#include "frame/table.h"

#include "support/support.h"

namespace zav {
namespace {

struct Station {
    int number;
    float height;
};

TEST(Table, FindsRecordsByEachKeyThroughChains) {
    TAB_table<Station> tab;
    EXPECT_EQ(TAB_create(tab, 3, 2), 0);
    EXPECT_EQ(TAB_search(tab, 1, "S1"), nullptr);
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(TAB_enter(tab, Station{i, i * 2.0F}, {"S" + std::to_string(i % 25), "N" + std::to_string(i)}), 0);
    }
    ASSERT_NE(TAB_search(tab, 1, "S7"), nullptr);
    EXPECT_EQ(TAB_search(tab, 1, "S7")->number, 7);
    EXPECT_EQ(TAB_search(tab, 2, "N32"), &tab.records[32]);
    EXPECT_EQ(TAB_search(tab, 3, "N32"), nullptr);
    EXPECT_EQ(TAB_search(tab, 2, "S7"), nullptr);
    std::vector<Station*> found;
    EXPECT_EQ(TAB_searches(tab, 1, "S7", found, 5), 2);
    EXPECT_EQ(found[1]->number, 32);
    EXPECT_EQ(TAB_searches(tab, 1, "S7", found, 1), 1);

    int next = 0;
    for (Station* station = TAB_first(tab); station != nullptr; station = TAB_next(tab)) {
        EXPECT_EQ(station->number, next++);
    }
    EXPECT_EQ(next, 50);
    TAB_clear(tab);
    EXPECT_EQ(TAB_first(tab), nullptr);
    EXPECT_EQ(TAB_enter(tab, Station{1, 1}, {"A"}), -1);
}

TEST(Table, HashStaysInsideForAnyBytes) {
    // (257 * 'A' + 'B') modulo 35177 modulo 100, by hand.
    EXPECT_EQ(TAB_hash(100, "AB"), 16771 % 100);
    for (int c = 1; c < 256; ++c) {
        const int hash = TAB_hash(7, std::string(300, static_cast<char>(c)));
        EXPECT_TRUE(hash >= 0 && hash < 7);
    }
    TAB_table<Station> tab;
    EXPECT_EQ(TAB_create(tab, 0, 1), -1);
    EXPECT_EQ(TAB_create(tab, 10, 5), -1);
}

}  // namespace
}  // namespace zav
