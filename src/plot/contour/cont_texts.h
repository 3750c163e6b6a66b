#pragma once

/// Marks and labels of a contour plot: found, given a place on paper, and written. Private to plot/contour and its
/// tests.

#include <string>
#include <vector>

#include "plot/contour/cont_state.h"

namespace zav {

/// A grid, and the field that its lines are drawn from: refined, closed round the globe, and cut as the map is.
struct Cont_source {
    const GRD_report* grid;
    const GRD_report* field;
    int steps;                      ///< steps of the field in one of the grid
    const std::vector<int>& shown;  ///< column of the field for each refined column of the grid; empty: the same
    int first_row = 0;              ///< row of the field, from the bottom, that shows the grid's lowest; may be below 0

    /// Column of the field that shows one of the grid, -1 for none.
    int column(int i) const;
    /// Place of a point of the grid on the plot. False where it isn't shown.
    bool position(int i, int j, Gpt* pt) const;
};

/// Draws the field of a plot, with the marks and labels of `texts` placed before unless it is null; otherwise as
/// CONT_draw_contour. In cont_scan.cpp.
int cont_draw_about(GRD_report* grid, const Cont_source* texts);

/// A point of the grid that all values near it lie below, or all above.
struct Cont_extreme {
    int i = 0;  ///< column
    int j = 0;  ///< row from the bottom
    float value = 0.0F;
    bool maximum = false;
};

/// The points that differ to one side from all others within `radius` columns and rows, of which one may be missing;
/// from the top row down. The cost doesn't depend on the radius. In cont_extremes.cpp.
std::vector<Cont_extreme> cont_find_extremes(const GRD_report& grid, int radius);

/// Distance in grid steps from an extreme to the nearest value that is as extreme; without any, the grid's longer side.
float cont_extreme_distance(const GRD_report& grid, const Cont_extreme& extreme);

/// From the plot's coordinates to millimetres on the page.
struct Cont_paper {
    Gpt origin;
    Gpt unit;

    Gpt at(const Gpt& pt) const { return {origin.x + pt.x * unit.x, origin.y + pt.y * unit.y}; }
    Gpt back(const Gpt& mm) const { return {(mm.x - origin.x) / unit.x, (mm.y - origin.y) / unit.y}; }
};
Cont_paper cont_paper();

/// Distance on paper of neighbouring points of the grid about (`i`, `j`), in millimetres; 0 where none is placed.
float cont_paper_step(const Cont_source& source, const Cont_paper& paper, int i, int j);

/// Decimals that tell the levels apart, the same for all values of a plot.
int cont_decimals();
/// Stands for decimals too many to read: values get an exponent.
constexpr int CONT_EXPONENT = -1;
/// So many decimals, or an exponent in place of more than six for a field of small values.
int cont_readable_decimals(int decimals);
std::string cont_value_text(float value, int decimals);

// Heights of marks, as shares of `text_size`.
constexpr float CONT_LETTER_SHARE = 0.02F;
constexpr float CONT_TEXT_SHARE = 0.015F;

/// Chooses the marks that stand apart on paper, and takes their room. In cont_marks.cpp.
void cont_place_marks(const Cont_source& source, const Cont_paper& paper);
/// Writes them.
void cont_write_marks();
/// Writes the mark of an extreme.
void cont_write_mark(const Gpt& pt, bool maximum, const std::string& value);

/// A level that gets labels, and its number in the list of levels.
struct Cont_labelled {
    int k = 0;
    float level = 0.0F;
};

/// The levels that get labels.
struct Cont_label_levels {
    std::vector<Cont_labelled> listed;  ///< in value-list mode
    Cont_ladder ladder;                 ///< in interval mode

    /// Those within a range of values, up to one more than `most`.
    void within(const Cont_range& range, std::size_t most, std::vector<Cont_labelled>* found) const;
};
Cont_label_levels cont_label_levels();

/// A place on a line where its label may stand.
struct Cont_spot {
    Cont_labelled label;
    Gpt pt;
    bool steep = false;  ///< the line runs up and down the page
    float bend = 0.0F;   ///< 0 where it is straight, 1 where it ends or closes within the label
};

/// Labels by the grid's columns and rows: in cells of the lattice that a level crosses from side to opposite side.
void cont_lattice_spots(const Cont_source& source, std::vector<Cont_spot>* spots);

/// Draws the grid itself.
void cont_outline_cells(const GRD_report& grid);

/// Half the width and height of a label's box on paper.
Gpt cont_label_half(const Cont_labelled& label, bool sideways, const Cont_paper& paper);

/// Spots along the lines some millimetres apart, where `is_free` says that there is room; `step` is the distance of the
/// grid's points on paper. In cont_spots.cpp.
void cont_line_spots(const GRD_report& grid, const Cont_paper& paper, float step,
                     bool (*is_free)(const Cont_spot&, const Cont_paper&), std::vector<Cont_spot>* spots);

/// Text of a level.
std::string cont_label_text(const Cont_labelled& label, int decimals);

/// Chooses the places of labels, and takes their room. In cont_label_place.cpp.
void cont_place_labels(const Cont_source& source, const Cont_paper& paper);
/// Writes them.
void cont_write_labels();

// Gaps in lines behind their labels, cont_open.cpp.

/// Forgets all gaps; lines are sent as they are.
void cont_close_gaps();
/// Keeps lines out of a box on the page.
void cont_open_gap(const Glim& box, const Cont_paper& paper);

/// Finds room for the marks and labels of a plot, before its lines are drawn. In cont_texts.cpp.
void cont_place_texts(const Cont_source& source);
/// Writes them over the lines, and draws the grid itself where that is asked for.
void cont_write_texts(const Cont_source& source);

}  // namespace zav
