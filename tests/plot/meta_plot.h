#pragma once

/// Plots drawn into a metafile and read back as data: positions are those that the layers gave to the kernel.

#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <vector>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/page/colors.h"
#include "plot/page/plt_labl.h"
#include "plot/page/plt_state.h"
#include "plot/sequence/plt_plot.h"
#include "support/support.h"

namespace zav::test {

/// A line, an area or a text with the attributes in force, by their words: "PL_CLR", "FA_INT", "TE_ALGN" ...
struct Drawn_mark {
    std::vector<Gpt> pts;
    std::string str;
    bool filled = false;
    std::map<std::string, std::string> attributes;

    /// The kernel tells changes alone: `usual` stands for an attribute never set.
    float number(const std::string& word, float usual = FMISS) const {
        const auto found = attributes.find(word);
        return found == attributes.end() ? usual : std::strtof(found->second.c_str(), nullptr);
    }
};

struct Drawn {
    std::vector<Drawn_mark> paths;
    std::vector<Drawn_mark> texts;
};

inline Drawn read_metafile(const std::string& file) {
    Drawn drawn;
    Drawn_mark mark;
    std::istringstream words(read_file(file));
    for (std::string word; words >> word;) {
        const bool text = word == "TE";
        if (text || word == "PL" || word == "FA") {
            std::size_t count = 1;
            char comma = 0;
            if (!text) words >> count;
            mark.pts.resize(count);
            for (Gpt& pt : mark.pts) words >> pt.x >> comma >> pt.y;
            mark.filled = word == "FA";
            if (text) std::getline(words >> std::ws, mark.str);
            (text ? drawn.texts : drawn.paths).push_back(mark);
        } else if (word.size() > 3 && word[2] == '_') {
            std::getline(words >> std::ws, mark.attributes[word]);
        }
    }
    return drawn;
}

/// Plot control as a run finds it, whatever earlier tests asked of it.
inline void fresh_plot_control() {
    PLT_state_get() = {};
    PLT_set_overlay(0);
    PLT_set_num_overlay(0);
    PLT_set_overlay_base(0);
    PLT_set_label_type(0);
    PLT_init_labels();
    GPH_set_view_size(1.0F, 1.0F, 0.0F, 0.0F);
    RES_put("plot_param", "");
}

/// A test whose plot goes to a metafile.
class MetaPlot : public TempDirTest {
  protected:
    void SetUp() override {
        CLR_install();
        RES_put("file_path", source_dir() + "/share/zav/");
        FLAG_reset(MISS);
        FLAG_resetplot(1);
        fresh_plot_control();
        RES_put("device", "meta," + dir.file("out"));
    }
    /// What `draw` draws on a map of `text`, a domain as options give it.
    Drawn plot(const std::string& text, const std::function<void()>& draw) {
        const Output said = capture([&] {
            Domain domain;
            DOM_decode(text, &domain);
            EXPECT_EQ(PLT_open(DOM_aspect(&domain)), 0);
            MAP_setup(&domain);
            draw();
            PLT_close();
        });
        if (HasFailure()) std::fputs(said.out.c_str(), stdout);
        return read_metafile(dir.file("out"));
    }
};

}  // namespace zav::test
