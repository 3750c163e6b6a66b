// Seeded mutations of variable strings, time and level keys and domain texts: whatever is typed, the decoders end with
// a result and stay within their tables. Meant to run under the address and undefined behaviour sanitizers.
#include <gtest/gtest.h>

#include <random>

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "map/region.h"
#include "support/support.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr int ROUNDS = 12000;

const std::string ALPHABET = ",:()<>{}[]\\-+#%*.0123456789eEhpkst\"| \t\n\x01\xff";

/// A seed with characters changed, added, cut and repeated, and parts of other seeds.
std::string mutated(const std::vector<test::Row>& seeds, std::mt19937& random) {
    const auto pick = [&random](std::size_t size) { return static_cast<std::size_t>(random()) % size; };
    std::string text = seeds[pick(seeds.size())].at("text");
    for (std::size_t i = pick(6); i > 0; i--) {
        const std::size_t pos = pick(text.size() + 1);
        const std::string other = seeds[pick(seeds.size())].at("text");
        switch (pick(5)) {
            case 0:
                text.insert(pos, 1 + pick(3), ALPHABET[pick(ALPHABET.size())]);
                break;
            case 1:
                text.erase(pos, pick(4));
                break;
            case 2:
                text.insert(pos, other.substr(pick(other.size())));
                break;
            case 3:
                text.insert(pos, text.substr(pick(text.size() + 1), 200));
                break;
            default:
                text.insert(pos, pick(40) == 0 ? 3000 : 2, ALPHABET[pick(ALPHABET.size())]);
                break;
        }
    }
    return text;
}

void check_list() {
    ASSERT_GE(VAR_get_num(), 0);
    ASSERT_LE(VAR_get_num(), VAR_MAX);
    for (int i = 0; i < VAR_get_num(); i++) {
        const VAR_data& data = *VAR_get_var(i);
        ASSERT_LE(data.name.size(), 19U);
        ASSERT_LE(data.units.size(), 14U);
        ASSERT_LE(data.format.size(), 100U);
        ASSERT_GE(data.flag, 0);
        VAR_is_type_GRID(i);
        VAR_make_var_form_datatype(i);
    }
}

TEST(VarMutation, DecodersEndWithAResult) {
    const test::TempDir dir;
    FLAG_reset(MISS);
    FLAG_set_batch(1);
    MESS_set(0, MESS_NONE);
    RES_put("file_path", dir.path().string());
    RES_put("plot_param", "labcomp");
    dir.write("variable.lup", "11,12 temp Temperature\n7 hght Height\n99999999999,x bad\n61 prcp\n\n17\n");
    const std::string menu =
        dir.write("m.var", "mac M 1 mac,mac2,temp\nmac2 M 1 add(mac3,b)\nmac3 M 1 {mac2}\nx y\n\\\nl L 1 \\");
    dir.write("m.reg", "loop Loop 1 m.reg:loop\nfirst First 1 fi:m.reg\nw\n");
    dir.write("zav.reg", "a A 1 a\n");
    VAR_hooks().is_vect_func = [](const std::string& name) { return static_cast<int>(name == "grad"); };

    const std::vector<test::Row> seeds = test::data_table("variable_texts.tsv");
    ASSERT_FALSE(seeds.empty());
    std::mt19937 random(20260101);
    for (int round = 0; round < ROUNDS; round++) {
        const std::string text = mutated(seeds, random);
        SCOPED_TRACE(text);
        VAR_setup(round % 50 == 0 ? menu.c_str() : nullptr, text.rfind("fi:", 0) == 0 ? text.substr(3) : text);
        check_list();
        int time = 0;
        int ltype = 0;
        int level = 0;
        const int result = VAR_dec_time(text, &time);
        ASSERT_TRUE(result >= 0 && result <= 2);
        VAR_dec_level(text, &ltype, &level);
        float l1 = 0;
        float l2 = 0;
        VAR_get_level(ltype, level, &l1, &l2);
        VAR_enc_level(ltype, l1, l2, &ltype, &level);
        VAR_make_datalevel(time, ltype, level);
        Domain domain;
        // The region "var" asks for its centre on standard input.
        if (text.find("var") == std::string::npos) {
            const int decoded = DOM_decode(text, &domain);
            ASSERT_TRUE(decoded == MISS || decoded == -1 || decoded == 1 || decoded == 2);
            DOM_text(&domain);
        }
        if (HasFatalFailure()) return;
    }
}

}  // namespace
}  // namespace zav
