// Every function on grids of all shapes, in memory: globes, regions, a row, a column, a point; with holes and without a
// value; on a pressure level and elsewhere; with each form of its arguments.

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>

#include "calc/catalogue_air.h"
#include "calc/catalogue_run.h"
#include "calc/grd_calc.h"
#include "calc/grd_functions.h"
#include "frame/mess.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav::truth {
namespace {

struct Shape {
    const char* name;
    int proj, nx, ny;
    float clat, dx, dy;
};
constexpr Shape SHAPES[] = {{"globe", PROJ_LATLON, 24, 13, 0, 15, 15},
                            {"globe with its first column again", PROJ_LATLON, 25, 13, 0, 15, 15},
                            {"region", PROJ_LATLON, 7, 6, 45, 2.5F, 2},
                            {"row", PROJ_LATLON, 7, 1, 45, 2.5F, 2.5F},
                            {"column", PROJ_LATLON, 1, 6, 45, 2.5F, 2.5F},
                            {"point", PROJ_LATLON, 1, 1, 45, 2.5F, 2.5F},
                            {"two by two", PROJ_LATLON, 2, 2, -45, 1, 1},
                            {"three by three", PROJ_LATLON, 3, 3, -45, 1, 1},
                            {"no projection", MISS, 5, 4, 0, 1, 2}};

/// What an argument of a name in the catalogue holds.
struct Kind {
    const char* names;
    const char* var;
    const char* units;
    float low, high;
};
constexpr Kind KINDS[] = {{"a b", "temp", "K", 250, 300},         {"f", "tcdc", "%", 0, 1},
                          {"t t850 t500", "temp", "K", 230, 305}, {"rh humidity", "rhum", "%", 0, 100},
                          {"td", "dewp", "K", 220, 295},          {"p", "pres", "mb", 180, 1040},
                          {"u ua ub", "uwnd", "m/s", -40, 40},    {"v va vb", "vwnd", "m/s", -40, 40},
                          {"direction", "wdir", "deg", 0, 360},   {"speed", "wspd", "m/s", 0, 40},
                          {"z", "hght", "m", 5000, 6000}};

const Kind& kind_of(const std::string& name) {
    for (const Kind& kind : KINDS) {
        for (const std::string& word : test::split(kind.names, ' ')) {
            if (word == name) return kind;
        }
    }
    ADD_FAILURE() << "an argument of an unknown kind: " << name;
    return KINDS[0];
}

/// The forms of a function's arguments: each alternative, with and without what may be left out, with a dew point in
/// the place of a humidity.
std::vector<std::vector<std::string>> forms(const Math_function& function) {
    std::vector<std::vector<std::string>> all;
    std::string text = function.arguments;
    for (std::size_t at; (at = text.find(" or ")) != std::string::npos;) text.replace(at, 4, "|");
    for (const std::string& form : test::split(text, '|')) {
        const std::vector<std::string> parts = test::split(form, ';');
        std::vector<std::string> words = test::split(parts[0], ',');
        if (words.back() == "...") words.back() = "a";
        all.push_back(words);
        if (parts.size() > 1) {
            words.push_back(parts[1]);
            all.push_back(words);
        }
    }
    for (std::size_t i = 0, count = all.size(); i < count; i++) {
        std::vector<std::string> words = all[i];
        if (words.size() < 2 || words[1] != "humidity") continue;
        words[1] = "td";
        all.push_back(words);
    }
    return all;
}

Place place_of(const Shape& shape) {
    Place place;
    place.latlon = shape.proj == PROJ_LATLON;
    place.nx = shape.nx;
    place.ny = shape.ny;
    place.dx = static_cast<double>(shape.dx);
    place.dy = static_cast<double>(shape.dy);
    for (int j = 0; j < shape.ny; j++) {
        for (int i = 0; i < shape.nx; i++) {
            place.lat.push_back(static_cast<double>(shape.clat) + place.dy * ((shape.ny - 1) / 2.0 - j));
            place.lon.push_back(place.dx * (i - (shape.nx - 1) / 2.0));
        }
    }
    return place;
}

/// A call of a function, for the program and for the truth.
class Double_call {
  public:
    Double_call(const Place& place, const Shape& shape, int ltype, int level, unsigned holes, std::mt19937& random)
        : place_(place), shape_(shape), holes_(random_holes(holes)), random_(random) {
        call.ltype = ltype;
        call.level = level;
        values.fill(FMISS);
    }

    void add(const std::string& name) {
        if (name[0] == '#') {
            values[frame(static_cast<std::size_t>(call.count()))] = -8.0F;
            call.arguments.push_back({std::nullopt, -8.0});
            return;
        }
        const Kind& kind = kind_of(name);
        GRD_report& grid = records[static_cast<std::size_t>(call.count())];
        make(grid);
        grid.units = kind.units;
        grid.var = VAR_search_var_num(kind.var);
        const auto points = static_cast<std::size_t>(place_.nx * place_.ny);
        Field field{&place_,
                    kind.var,
                    kind.units,
                    call.ltype,
                    call.level,
                    std::vector(points, MISSING),
                    std::vector(points, 0.0)};
        EXPECT_EQ(GRD_alloc(&grid), 1);
        std::uniform_real_distribution<float> any(kind.low, kind.high);
        for (std::size_t k = 0; k < field.values.size(); k++) {
            const float value = holes_(call.count(), k) ? FMISS : any(random_);
            grid.grid[static_cast<std::ptrdiff_t>(k)] = value;
            field.values[k] = static_cast<double>(value);
        }
        close_columns(grid, field);
        grids[frame(static_cast<std::size_t>(call.count()))] = &grid;
        call.arguments.push_back({field});
    }

    int run(const Math_function& function) {
        for (int i = 0; i < function.results; i++) {
            GRD_init(&results[static_cast<std::size_t>(i)]);
            results[static_cast<std::size_t>(i)].ltype = call.ltype;
            results[static_cast<std::size_t>(i)].level = call.level;
            grids[static_cast<std::size_t>(i)] = &results[static_cast<std::size_t>(i)];
        }
        return GRD_math(std::string(function.name), grids.data(), values.data());
    }

    /// Places of the frame before the arguments.
    int results_before = 1;
    Call call;
    std::array<GRD_report, 2> results;

  private:
    std::size_t frame(std::size_t number) const { return number + static_cast<std::size_t>(results_before); }

    void make(GRD_report& grid) const {
        GRD_init(&grid);
        grid.source = 7;
        grid.ltype = call.ltype;
        grid.level = call.level;
        Domain& domain = grid.domain;
        domain.proj = shape_.proj;
        domain.clat = shape_.clat;
        domain.clon = 0;
        domain.plat = domain.plon = 0;
        domain.dx = shape_.dx;
        domain.dy = shape_.dy;
        domain.nx = shape_.nx;
        domain.ny = shape_.ny;
    }
    /// A column that comes again holds the same values.
    void close_columns(GRD_report& grid, Field& field) const {
        if (place_.cycle() != place_.nx - 1) return;
        for (int j = 0; j < place_.ny; j++) {
            const int first = j * place_.nx;
            grid.grid[first + place_.nx - 1] = grid.grid[first];
            field.values[static_cast<std::size_t>(first + place_.nx - 1)] =
                field.values[static_cast<std::size_t>(first)];
        }
    }

    const Place& place_;
    const Shape& shape_;
    Holes holes_;
    std::mt19937& random_;
    std::array<GRD_report, GRD_MATH_MAX> records;
    std::array<GRD_report*, GRD_MATH_MAX> grids{};
    std::array<float, GRD_MATH_MAX> values{};
};

/// Functions that look for places on the map, of which a grid without projection has none.
bool needs_places(const std::string& name) {
    return std::string(" lat lon projx projy ewdir uwndg vwndg ugeos vgeos uq vq avort ").find(" " + name + " ") !=
           std::string::npos;
}

/// With a temperature these two need the pressure, unless the level tells it.
const std::vector<std::string> LACKING = {"t", "rh"};

class Catalogue_shapes : public Catalogue {
  protected:
    Catalogue_shapes() { MESS_set(0, MESS_NONE); }
    ~Catalogue_shapes() override { MESS_set(0, before); }

  private:
    M_type before = MESS_get();
};

TEST_F(Catalogue_shapes, GiveWhatIsWorkedOut) {
    std::mt19937 random(5);
    int calls = 0;
    for (const Shape& shape : SHAPES) {
        const Place place = place_of(shape);
        for (const Math_function& function : GRD_functions()) {
            const std::string name(function.name);
            if (GRD_is_plot_func(name) != 0) continue;
            for (const std::vector<std::string>& form : forms(function)) {
                for (const unsigned holes : {1000000U, 7U, 1U}) {  // none, some, nothing but
                    for (const int ltype : {100, 103}) {
                        Double_call both(place, shape, ltype, ltype == 100 ? 850 : 2, holes, random);
                        both.results_before = function.results;
                        for (const std::string& word : form) both.add(word);
                        const std::string what = std::string(shape.name) + " " + name + " " + function.arguments +
                                                 " (" + std::to_string(form.size()) + ") " + std::to_string(ltype) +
                                                 " " + std::to_string(holes);
                        const bool lacks_pressure =
                            ltype != 100 && form == LACKING && (name == "shum" || name == "mixrat");
                        ASSERT_EQ(both.run(function), lacks_pressure ? 0 : 1) << what;
                        calls++;
                        if (lacks_pressure || (!place.latlon && needs_places(name))) continue;
                        const Function& truth = functions().at(name);
                        const std::vector<Field> want = truth.work(name, both.call);
                        for (std::size_t r = 0; r < want.size(); r++) {
                            const Difference d = difference(both.results[r], want[r], truth.measure);
                            EXPECT_EQ(d.off, 0) << what << " result " << r << "\n  " << d.first;
                            EXPECT_LE(d.stepped, 3) << what;
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(calls, 74 * 6 * 9);
}

}  // namespace
}  // namespace zav::truth
