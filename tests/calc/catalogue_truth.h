#pragma once

// Every function of the catalogue of grid functions worked out a second time, in double precision and a point at a
// time.

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zav::truth {

/// Where the points of a field lie, as ecCodes tells, its rows from the north.
struct Place {
    bool latlon = true;
    int nx = 0, ny = 0;
    double dx = 0, dy = 0;         ///< degrees, or 100 km
    std::vector<double> lat, lon;  ///< of each point
    double cone = 0;               ///< turn of the meridians in a degree of longitude
    double meridian = 0;           ///< the upright one
    double plon = 0;               ///< longitude at x = 0
    double true_lat = 0;           ///< of a Lambert grid that touches the earth there
    /// Columns of a turn, 0 for a grid that doesn't go round.
    int cycle() const;
};

/// A field, and how far off single precision may take each of its points.
struct Field {
    const Place* place = nullptr;
    std::string var, units;
    int ltype = 0, level = 0;
    std::vector<double> values, slack;

    double at(int i, int j) const { return values[static_cast<std::size_t>(j * place->nx + i)]; }
    double slack_at(int i, int j) const { return slack[static_cast<std::size_t>(j * place->nx + i)]; }
};

/// A grid or a number.
struct Argument {
    std::optional<Field> field;
    double number = 0;
};

/// One call: the arguments, and level type and level of the result.
struct Call {
    std::vector<Argument> arguments;
    int ltype = 0, level = 0;

    const Place& place() const;
    /// Argument `number`, counted from 1, as a grid.
    const Field& field(int number) const { return *arguments[static_cast<std::size_t>(number - 1)].field; }
    int count() const { return static_cast<int>(arguments.size()); }
    /// A field without values for the result.
    Field empty() const;
};

/// How a function's results are told from wrong ones.
struct Measure {
    bool by_range = false;  ///< 1e-5 of the range of results more
    double step = 0;        ///< what a step of an iteration changes that rounding begins or leaves out
    bool angle = false;     ///< in degrees, where 360 is 0
};

struct Function {
    std::vector<Field> (*work)(const std::string& name, const Call& call);
    std::string units;  ///< of the result, empty where they follow from the arguments
    Measure measure{};
};

/// The catalogue.
const std::map<std::string, Function>& functions();

/// Brings a field to other units, if the pair is one of those that the tests use.
Field converted(Field field, const std::string& units);

// Operators

Field slope_x(const Field& a);
Field slope_y(const Field& a);
Field laplacian(const Field& a);
/// sx du/dx + sy dv/dy, or with `crossed` sx dv/dx + sy du/dy; missing where a field is.
Field combined(const Field& u, const Field& v, double sx, double sy, bool crossed);
Field advection(const Field& u, const Field& v, const Field& z);
Field coriolis(Field a, const std::string& oper);
Field scaled(Field a, double factor);
/// "lat", "lon", "projx" or "projy" where `a` has values.
Field located(const std::string& what, const Field& a);
Field smoothed(const Field& a, double r);

}  // namespace zav::truth
