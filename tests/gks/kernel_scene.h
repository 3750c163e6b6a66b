#pragma once

// What the kernel's tests share: opening a workstation, a page that uses every primitive, and what Ghostscript makes of
// a file.

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frame/resrc.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"
#include "gks/ps/gks_ps.h"
#include "support/support.h"

namespace zav::test {

/// A font of one character, "A": a line from the baseline to the cap height and one along the baseline.
inline std::string small_font() {
    std::string text = "255 128 35 0 140 255 254\n";
    for (int i = 0; i < 256; ++i) text += i == 'A' ? "1\n" : "-1\n";
    return text;
}

/// Fixture that opens workstations in a folder of its own.
class KernelTest : public TempDirTest {
  protected:
    void SetUp() override {
        RES_put("file_path", dir.path().string() + "/");
        dir.write("modern.fnt", small_font());
        plain_paper();
    }
    void TearDown() override {
        if (gchk_graphics()) close();
    }

    /// Undoes what an earlier connection asked of the print file.
    static void plain_paper() {
        gps_set_colorPS(0);
        gps_set_orient(0);
        gps_set_EPS(0);
        gps_set_scale(1);
        gps_set_base_width(1);
    }

    /// Result of the opening; what was said is in `said`.
    int open(const std::string& connection, int type = GWS_PS) {
        int result = -2;
        const Output output = capture([&] {
            gopen_gks(nullptr, 10000);
            result = gopen_ws(1, connection, type);
        });
        said = output.out + output.err;
        return result;
    }

    int close() {
        int result = -2;
        const Output output = capture([&] {
            result = gclose_ws(1);
            gclose_gks();
        });
        said = output.out + output.err;
        return result;
    }

    std::string said;
};

inline void set_color(int index, float red, float green, float blue) {
    const Gcolr_rep rep = {red, green, blue};
    gset_colr_rep(1, index, &rep);
}

/// Draws with every primitive and nearly every attribute, through two transformations.
inline void draw_scene() {
    set_color(1, 0, 0, 0);
    set_color(2, 1, 0, 0);
    set_color(3, 0, 0.5F, 1);
    const Glim world = {-50, 150, -20, 80};
    const Glim view = {0.1F, 0.9F, 0.25F, 0.65F};
    gset_win(2, &world);
    gset_vp(2, &view);
    gsel_norm_tran(2);
    gset_fill_colr_ind(3);
    const std::vector<Gpt> area = {{-25, -10}, {50, 65.5F}, {120.25F, 30}, {70, -15}, {0, -12}};
    gfill_area(static_cast<int>(area.size()), area.data());
    const std::array<Gint, 2> rings = {3, 3};
    const std::array<Gpt, 6> frame = {{{0, 0}, {60, 0}, {0, 60}, {5, 5}, {5, 25}, {25, 5}}};
    gfill_rings(2, rings.data(), frame.data());
    gset_line_colr_ind(2);
    gset_linewidth(3);
    gset_linetype(4);
    std::vector<Gpt> curve;
    for (int i = 0; i < 25; ++i) curve.push_back({-60 + 9.5F * static_cast<float>(i), static_cast<float>(i * i % 70)});
    gpolyline(static_cast<int>(curve.size()), curve.data());
    const std::vector<Gpt> outside = {{200, 100}, {300, 100}};
    gpolyline(2, outside.data());
    for (int type = 1; type <= 9; ++type) {
        const Gpt place = {-40.0F + 20.0F * static_cast<float>(type), 70};
        gset_marker_type(type);
        gset_marker_size(2);
        gset_marker_colr_ind(type % 3 + 1);
        gpolymarker(1, &place);
    }
    gsel_norm_tran(0);
    gset_text_colr_ind(3);
    gset_char_ht(0.05F);
    const Gpt up = {0.6F, 0.8F};
    gset_char_up_vec(&up);
    const Gtext_align align = {GCENTER_HOR, GHALF_VERT};
    gset_text_align(&align);
    const Gpt place = {0.5F, 0.8F};
    gtext(&place, "AAA");
}

/// What Ghostscript says about a file on a device without output; empty for a sound page.
inline std::string ghostscript_errors(const std::string& file) {
    int status = 0;
    const std::string text =
        run_command("gs -q -dSAFER -sDEVICE=nullpage -dNOPAUSE -dBATCH '" + file + "' 2>&1", &status);
    return status == 0 ? text : "failed: " + text;
}

/// The marks' bounding box on the page in points, through Ghostscript.
inline Glim marked_area(const std::string& file) {
    const std::string text = run_command("gs -q -dSAFER -sDEVICE=bbox -dNOPAUSE -dBATCH '" + file + "' 2>&1");
    Glim box;
    const std::size_t place = text.find("%%HiResBoundingBox:");
    if (place == std::string::npos) return box;
    std::sscanf(text.c_str() + place, "%%%%HiResBoundingBox: %f %f %f %f", &box.x_min, &box.y_min, &box.x_max,
                &box.y_max);
    return box;
}

/// A page of one pixel a point.
struct Page {
    int width = 0, height = 0;
    std::string rgb;

    /// Colour at a point of the page, counted from its lower left, as "RRGGBB".
    std::string at(int x, int y) const {
        const std::size_t place = 3 * (static_cast<std::size_t>(height - 1 - y) * static_cast<std::size_t>(width) +
                                       static_cast<std::size_t>(x));
        if (place + 3 > rgb.size()) return "outside";
        char text[7];
        std::snprintf(text, sizeof text, "%02X%02X%02X", static_cast<unsigned char>(rgb[place]),
                      static_cast<unsigned char>(rgb[place + 1]), static_cast<unsigned char>(rgb[place + 2]));
        return text;
    }
};

inline Page rendered(const std::string& file) {
    run_command("gs -q -dSAFER -sDEVICE=ppmraw -r72 -g612x792 -dNOPAUSE -dBATCH -sOutputFile='" + file + ".ppm' '" +
                file + "' 2>&1");
    const std::string image = read_file(file + ".ppm");
    Page page;
    const std::size_t numbers = image.find("\n612 ");
    const std::size_t pixels = image.find("255\n");
    if (numbers == std::string::npos || pixels == std::string::npos) return page;
    std::sscanf(image.c_str() + numbers, "%d %d", &page.width, &page.height);
    page.rgb = image.substr(pixels + 4);
    return page;
}

/// Lines of a print file behind its head.
inline std::vector<std::string> body_lines(const std::string& file) {
    std::istringstream text(read_file(file));
    std::vector<std::string> lines;
    bool in_body = false;
    for (std::string line; std::getline(text, line);) {
        if (in_body) lines.push_back(line);
        in_body = in_body || line.starts_with("%%ZAV Plot:");
    }
    return lines;
}

}  // namespace zav::test
