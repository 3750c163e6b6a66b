#pragma once

/// Plots drawn into a metafile and read back as data: positions are those that the layers gave to the kernel.

#include <cstdio>
#include <sstream>
#include <vector>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/page/colors.h"
#include "plot/sequence/plt_plot.h"
#include "support/support.h"

namespace zav::test {

struct Drawn_path {
    std::vector<Gpt> pts;
    int color = -1;
    bool filled = false;
};

struct Drawn_text {
    Gpt at;
    std::string str;
};

struct Drawn {
    std::vector<Drawn_path> paths;
    std::vector<Drawn_text> texts;
};

inline Drawn read_metafile(const std::string& file) {
    Drawn drawn;
    int color = -1;
    std::istringstream words(read_file(file));
    for (std::string word; words >> word;) {
        if (word == "PL_CLR") words >> color;
        if (word == "PL" || word == "FA") {
            std::size_t count = 0;
            char comma = 0;
            words >> count;
            Drawn_path path{std::vector<Gpt>(count), color, word == "FA"};
            for (Gpt& pt : path.pts) words >> pt.x >> comma >> pt.y;
            drawn.paths.push_back(path);
        } else if (word == "TE") {
            Drawn_text text;
            char comma = 0;
            words >> text.at.x >> comma >> text.at.y;
            std::getline(words >> std::ws, text.str);
            drawn.texts.push_back(text);
        }
    }
    return drawn;
}

/// A test whose plot goes to a metafile.
class MetaPlot : public TempDirTest {
  protected:
    void SetUp() override {
        CLR_install();
        RES_put("file_path", source_dir() + "/share/zav/");
        FLAG_reset(MISS);
        FLAG_resetplot(1);
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
