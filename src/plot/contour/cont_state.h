#pragma once

/// State that the units of the contour layer share. Private to plot/cont*.cpp and their tests.

#include <array>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "gks/gks.h"
#include "gks/gks_text.h"
#include "map/maptran.h"
#include "plot/contour/cont.h"
#include "plot/page/palette.h"

namespace zav {

struct GRD_placed;

/// Longest text of a level label.
constexpr int CONT_LABEL_LENGTH = 9;
/// Variables whose choices are remembered from plot to plot.
constexpr int CONT_VARIABLES = 60;

/// Values of `dz` that stand for no crossing.
constexpr float DZ_CORNER = -1.0F;  ///< the level passes through the corner that belongs to another side
constexpr float DZ_NONE = -2.0F;    ///< the level doesn't cross the side
constexpr float DZ_FLAT = -3.0F;    ///< both ends of the side are equal

/// Marks in `cross`.
constexpr int NO_CROSSING = -1;    ///< evaluated, doesn't cross
constexpr int NOT_EVALUATED = -2;  ///< no level below has been evaluated in this cell

/// Longest polygon of a cell without its closing point.
constexpr int CONT_VERTICES = 8;

/// Start of the part of `pt` that holds the level below.
constexpr int LOWER = 10;

/// Interval of the last level of a list, which reaches past all values.
constexpr float CONT_LAST_INTERVAL = 1000000.0F;

/// A saddle's lines run about corners 1 and 2 from this measure on.
constexpr float SADDLE_MIDDLE = 2.0F;

/// What the first plot of a time sequence settled for a variable.
struct Cont_memory {
    bool settled = false;
    int cont_type = MISS;
    int dash = 0;
    float intrvl = FMISS;
    float base = FMISS;
    float color_low = FMISS;  ///< ends of the levels, over which its colours are spread
    float color_high = FMISS;
};

/// Colours that are spread over the bands.
struct Cont_palette {
    bool in_use = false;
    bool usual = false;     ///< the field and the type of the plot choose `colors`
    std::size_t least = 0;  ///< so many bands keep the set as it is
    Palette colors;
};

/// Settings, levels and bands, as the set-up leaves them for the engine.
struct Cont_settings {
    int cont_type = MISS;                             ///< 12 line, 15 fill, 16 both, 17 values
    float intrvl = FMISS;                             ///< 0 and below ask for an automatic one
    std::array<float, CONT_LEVELS + 1> cont_value{};  ///< explicit levels; FMISS in entry 0: interval mode
    std::array<std::string, CONT_LEVELS> cont_label;  ///< text of each level in the bar
    int num_cont = MISS;                              ///< levels to walk
    float conlo = FMISS;                              ///< lowest level
    float conhi = FMISS;                              ///< end of the level range
    float base = FMISS;                               ///< contour base given by the user
    float cbase = FMISS;                              ///< base in force
    float grid_min = FMISS;
    float grid_max = FMISS;
    float min_cut = FMISS;  ///< values outside the cuts are not contoured
    float max_cut = FMISS;
    int dash = 0;                                        ///< 0 solid, 1 dashed, -1 low values dashed
    std::array<Gattribs, CONT_BANDS + 1> fill_attrib{};  ///< one a band; colour -2 ends, -1: the band is off
    int color_num = MISS;                                ///< entries in fill_attrib
    int color_fill_set = 0;                              ///< 1 once fill_attrib is built
    Cont_palette palette;                                ///< what fill_attrib is built from once the levels are known
    float color_low = FMISS;                             ///< range of the palette, where an earlier page settled it
    float color_high = FMISS;
    int fill_pat = MISS;  ///< fill pattern for all bands
    Gattribs ln_cont_attr;
    std::string format;        ///< plot format, at most 99 characters
    std::string num_form;      ///< numeric format of value plots, at most 9 characters
    float scale = 1.0F;        ///< text scale of labels
    int label_skip = 2;        ///< every which line is labelled
    int ext_radius = 2;        ///< search radius of extremes
    int x_label_space = MISS;  ///< label spacing in grid points
    int y_label_space = MISS;
    int x_skip = 1;  ///< step of value plots
    int y_skip = 1;
    int usual_x_skip = 1;  ///< step where no plot format gives one
    int usual_y_skip = 1;
    bool skip_given = false;  ///< the user gave a step: values aren't thinned by their size on paper
    bool usual_skip_given = false;
    int smooth = 1;        ///< steps into which one of the grid is cut before it is contoured
    int usual_smooth = 1;  ///< the same where no plot format gives any
    float x_off = 0.0F;    ///< offset of value plots, in heights of the map
    float y_off = 0.0F;
    int rot_label = 0;       ///< 1: labels run along the line
    int mapcon = MISS;       ///< order of map and contours, CONT_*_MAP; MISS: as the layers need it
    int max_line_fact = -2;  ///< limit on lines in a cell
    int draw_grid = 0;
    int over = 0;  ///< overlay index
    std::array<Cont_memory, CONT_VARIABLES> memory{};
    CONT_event callback = nullptr;
    GRD_report* grd_ptr = nullptr;  ///< grid being set up, owned by the grid table
};

/// The colour bar.
struct Cont_bar {
    Glim bar_lim{};         ///< rectangle in page coordinates
    float bar_inc = 0.0F;   ///< width of a box, 0 before a bar is drawn
    float bar_min = FMISS;  ///< value range of the bar
    float bar_max = FMISS;
};

/// A vertex of a polygon: a corner of the cell, or the crossing of the upper or the lower level with a side.
struct Cont_place {
    enum Kind : unsigned char { CORNER, UPPER, LOWER } kind;
    unsigned char number;
};

/// Cells that are drawn as the last one: with all values above the one limit, and at or below the other.
struct Cont_run {
    float above = 0.0F;
    float most = 0.0F;
};

class Cont_join;

/// What the engine works with. Corners of a cell: 0 lower left, 1 lower right, 2 upper left, 3 upper right.
/// Sides: 0 bottom (0 to 1), 1 left (0 to 2), 2 top (2 to 3), 3 right (1 to 3).
struct Cont_engine {
    std::array<float, 4> x{};  ///< plot positions of the corners
    std::array<float, 4> y{};
    std::array<float, 4> z{};    ///< values at the corners
    std::array<float, 4> dz{};   ///< fraction at which the level crosses each side, or a DZ_ value
    int numsides = 0;            ///< sides that count as crossed: 0, 2, 4
    std::array<int, 8> cross{};  ///< crossed sides of this level (0 to 3) and of the one below (4 to 7)
    float total = 0.0F;          ///< saddle measure of this level
    float ptotal = 0.0F;         ///< and of the evaluation before
    std::array<Gpt, 14> pt{};    ///< 0 up: polygon at work; 10 to 13: crossings of the level below on sides 0 to 3
    std::array<Gpt, 4> at{};     ///< crossings of this level on sides 0 to 3
    int con_off = 0;             ///< band at work
    std::vector<float> grdx;     ///< plot positions of the grid points; empty: the plot is in grid coordinates
    std::vector<float> grdy;
    Domain placed_grid;          ///< grid that the positions belong to; unset: those of CONT_grid
    Domain placed_map;           ///< and the map
    bool placed_points = false;  ///< each place once, wherever the map shows it, instead of ends of cells
    bool placed = false;  ///< the positions are made for the field at work, whose cells don't reach over the map's edge
    Cont_run run;         ///< where `above` is below `most`
    Cont_join* join = nullptr;  ///< takes the pieces of cells, or null: each is drawn at once
    float x_min = FMISS;        ///< horizontal range of a plot in grid coordinates
    float x_max = 0.0F;
    float offset = 0.0F;     ///< wrap distance of the map
    float vert_size = 0.0F;  ///< height of the plot in plot space
    float text_size = 0.0F;
    Gattribs ln_lab_attr;    ///< labels on line plots
    Gattribs fill_lab_attr;  ///< labels on filled plots
};

/// Where lines, areas and texts go: the kernel, or what stands in for it when a plot is to be looked at as data.
struct Cont_output {
    int (*polyline)(Gint num_pt, const Gpt* pts) = gpolyline;
    int (*fill_area)(Gint num_pt, const Gpt* pts) = gfill_area;
    int (*fill_rings)(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) = gfill_rings;
    int (*text)(const Gpt* pt, const std::string& str) = gtext;
};

struct Cont_state : Cont_settings, Cont_bar, Cont_engine, Cont_output {
    Cont_state() { cont_value[0] = FMISS; }
};

/// The one contour layer; one grid is contoured at a time.
extern Cont_state cont;

/// True when the levels are a list of values instead of steps of an interval.
bool cont_has_values();

/// Brings an index into 0 to `color_num` - 1. 0 when there are no bands.
int cont_wrap_band(double band);

/// Band of the interval that starts at `level`.
int cont_band_of(float level);

/// Step of the level loop: `level`, and in value-list mode the interval, become those of pass `k`.
void cont_step_level(int k, float* level);

/// Levels of interval mode: the multiples of an interval from an origin, every `stride`-th of them. A level is worked
/// out from its number, so that a cell is drawn from its own levels alone, however many lie below it.
struct Cont_ladder {
    double origin = 0.0;
    double step = 0.0;
    double stride = 1.0;
    double first = 0.0;  ///< number of the lowest level
    double last = -1.0;  ///< and of the highest

    float level(double number) const { return static_cast<float>(origin + number * step); }
    /// Number of a level that lies below `value`, but not below `first`; all levels under it lie below `value` too.
    double below(float value) const;
    /// Number of the level after `number`, beyond `last` when the interval is lost in the rounding of the levels.
    double next(double number) const;
};

/// The levels of the plot in interval mode, `num_cont` of them from `conlo` up.
Cont_ladder cont_ladder();

/// `conlo`, `conhi` and `num_cont` of interval mode for a range of values: whole multiples of the interval from the
/// base, the lowest at or below `min`, the end above `max`. In cont_setup_levels.cpp.
void cont_set_levels(float max, float min);

/// True for values that are not drawn: missing ones, and those that are no finite number.
bool cont_is_missing(float value);

/// True when `level` lies outside a set `min_cut` or `max_cut`.
bool cont_is_cut(float level);

/// True for a level that whole areas may have, such as nought where it doesn't rain: no line goes round these.
bool cont_may_be_flat(float level);

/// Sets colour, linetype and width for the line at `nlevel` from entry `entry` of the bands.
void cont_set_line_attributes(int entry, float nlevel);

/// Crossings of `level` with the sides of the cell at work.
int compute_dz(float level);

/// Segments of the level just evaluated, and the polygons of the band below it.
int compute_lines(float level);

/// Makes the level count as not crossing the cell, for filled bands: on two opposite corners of a cell whose other
/// corners lie above it, it has nothing below it.
void cont_forget_crossing();

/// Point at fraction `d` of the way from the first point to the second, on cyclic maps by the shorter way.
int int_xy(Gpt* pt, float x1, float y1, float x2, float y2, float d);

/// Corners at the ends of each side.
struct Cont_side {
    int first;
    int second;
};
constexpr std::array<Cont_side, 4> CONT_SIDES{{{0, 1}, {0, 2}, {2, 3}, {1, 3}}};

/// Point on side `side` of the cell at work at fraction `d`.
Gpt cont_side_point(int side, float d);

/// A corner of the cell at work.
Gpt cont_corner(int corner);

/// Plot position of the grid point in column `i`, row `j` from the bottom. False off the map.
bool cont_position(const GRD_report& grid, int i, int j, Gpt* pt);

/// The grid as the map shows it, closed and cut, until cont_draw_field draws it; null for one that needs neither.
const GRD_placed* cont_placed_field(const GRD_report& grid);

/// Largest and smallest value that the map shows; those of the whole grid where it shows none.
void cont_shown_range(const GRD_report& grid, float* max, float* min);

/// Value of that grid point.
float cont_value_at(const GRD_report& grid, int i, int j);

/// Projection about whose edge cells may reach, MISS if none does.
int cont_wrapped_map();

/// Reads how often a field is refined. 0, or -1 with a message and `steps` as it was.
int cont_read_smooth(const std::string& text, int* steps);

/// Draws a grid closed about the globe and refined as the settings ask. Result as CONT_draw. In cont_field.cpp.
int cont_draw_field(GRD_report* grid);

/// Loads the corners of the cell whose lower left point is (`i`, `j`).
void cont_load_cell(const GRD_report& grid, int i, int j);

/// True when all four corners have a value and a place on the map.
bool cont_cell_complete();

/// Smallest and largest value of the cell at work.
struct Cont_range {
    float low;
    float high;
};
Cont_range cont_cell_range();

/// True for types with filled bands.
bool cont_is_filled();

/// Position of a vertex of the cell at work.
Gpt cont_point(Cont_place place);

// About the edge of cyclic maps, cont_send.cpp.

/// How the cell at work lies on the map: in one place, about its edge, or cut by it and not drawn.
enum class Cont_wrap { NONE, SPLIT, CUT };
Cont_wrap cont_cell_wrap();

/// Longest step in x from corner to corner of a cell, and largest x, that aren't about the map's edge; 0 and 0 on maps
/// without one.
struct Cont_edge_limits {
    float step;
    float x;
};
Cont_edge_limits cont_edge_limits();

/// x of a point of such a cell at the right (`turn` 1) or left (-1) edge.
float cont_turned(const Gpt& pt, int turn);

// Annotation, cont_label.cpp.

/// Sends a line to `cont.polyline`, in pieces where labels stand on it.
int cont_open_line(Gint num_pt, const Gpt* pts);

/// Attributes of labels on line plots and on filled plots, from the resources and the plot format.
void cont_label_attributes();

/// Applies the label attributes of the type in force; `text_size` becomes `size`, times the attributes' height when
/// given. False when there is nothing to write.
bool cont_start_labels(float size);

// Filled bands, cont_fill.cpp.

/// Fill colour and pattern of band `con_off`.
void cont_set_fill_attributes();

// cont_setup_palette.cpp

/// The bands take the palette of the field, or of coloured lines. False without a palette file.
bool cont_spread_usual();
/// The bands take a palette by its name. False if there is none.
bool cont_spread_named(const std::string& name);
/// More bands than the first `count` colours of the table take colours between these.
void cont_spread_table(int count);
/// Builds the set of bands from the palette in use; to be called whenever the levels change.
void cont_spread_palette();

/// Polygons of the band whose top `level` has just been evaluated.
void cont_fill_band(float level);

/// True when the band from `level` to `nlevel` is the uppermost of the cell; the cell's share of it is then filled.
bool cont_fill_top(float level, float nlevel, const Cont_range& range);

/// Writes the grid's values as numbers, cont_value.cpp.
void cont_draw_values(const GRD_report& grid);

}  // namespace zav
