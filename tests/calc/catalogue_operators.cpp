// Derivatives, places and the Coriolis parameter, point by point.

#include <cmath>
#include <functional>
#include <numbers>

#include "calc/catalogue_air.h"
#include "calc/catalogue_truth.h"

namespace zav::truth {
namespace {

constexpr double EPSILON = 0x1p-24;
constexpr double DEGREE = 1.11195;  // of latitude, in 100 km
constexpr double RAD = std::numbers::pi / 180;
constexpr double EARTH = 63.713;
constexpr double TWICE_ROTATION = 14.584;
constexpr double LATITUDE_SLACK = 2e-7;  // radians, of 90 degrees in single precision
constexpr double EARTH_SLACK = 2e-5;     // between the radii of a file's earth and that of the maps
constexpr double PLACE_SLACK = 2e-3;     // degrees between ecCodes' earth and that of the maps

/// A number and how far off it may be.
struct Value {
    double value = MISSING, slack = 0;
    bool missing() const { return value == MISSING; }
};

/// The points along a row or a column that a derivative at one of them sees; null where there is none.
struct Line {
    const Field& field;
    bool along_x;
    int i, j;

    /// Value `steps` to the right, or down.
    Value at(int steps) const {
        const Place& place = *field.place;
        int x = i + (along_x ? steps : 0);
        const int y = j + (along_x ? 0 : steps);
        if (along_x && place.cycle() > 0) x = (x + 2 * place.cycle()) % place.cycle();
        if (x < 0 || x >= place.nx || y < 0 || y >= place.ny) return {};
        return {field.at(x, y), field.slack_at(x, y)};
    }
};

double row_latitude(const Place& place, int j) { return place.lat[static_cast<std::size_t>(j * place.nx)]; }

bool is_pole(const Place& place, int j) { return place.latlon && std::abs(row_latitude(place, j)) == 90.0; }

double spacing(const Place& place, bool along_x, int j) {
    if (!place.latlon) return along_x ? place.dx : place.dy;
    return along_x ? std::cos(row_latitude(place, j) * RAD) * place.dx * DEGREE : place.dy * DEGREE;
}

/// How far off the spacing may be, as a part of it.
double spacing_slack(const Line& line) {
    const Place& place = *line.field.place;
    if (!place.latlon) return EARTH_SLACK;
    if (!line.along_x) return 6 * EPSILON;
    return 6 * EPSILON + LATITUDE_SLACK * std::abs(std::tan(row_latitude(place, line.j) * RAD));
}

/// First derivative at a point that has a value; toward the north along a column.
Value slope(const Line& line) {
    const Place& place = *line.field.place;
    if (line.along_x && is_pole(place, line.j)) return {};
    const double d = spacing(place, line.along_x, line.j);
    double divisor = 2 * d;
    Value low = line.at(line.along_x ? -1 : 1);
    Value high = line.at(line.along_x ? 1 : -1);
    if (low.missing()) {
        low = line.at(0);
        divisor = d;
    }
    if (high.missing()) {
        high = line.at(0);
        divisor = d;
    }
    const double value = (high.value - low.value) / divisor;
    const double rounding = EPSILON * (std::abs(high.value) + std::abs(low.value)) / divisor;
    return {value, (low.slack + high.slack) / divisor + rounding + spacing_slack(line) * std::abs(value)};
}

/// Second derivative.
Value bend(const Line& line) {
    const Place& place = *line.field.place;
    if (line.along_x && is_pole(place, line.j)) return {};
    const double d = spacing(place, line.along_x, line.j);
    const Value z = line.at(0);
    const auto second = [&](const Value& outer, const Value& middle, const Value& other) -> Value {
        if (outer.missing() || middle.missing() || other.missing()) return {};
        const double value = (outer.value + other.value - 2 * middle.value) / (d * d);
        const double sum = std::abs(outer.value) + std::abs(other.value) + 2 * std::abs(middle.value);
        const double slack = (outer.slack + other.slack + 2 * middle.slack + 2 * EPSILON * sum) / (d * d);
        return {value, slack + 2 * spacing_slack(line) * std::abs(value)};
    };
    if (line.at(1).missing()) return second(z, line.at(-1), line.at(-2));
    if (line.at(-1).missing()) return second(z, line.at(1), line.at(2));
    return second(line.at(-1), z, line.at(1));
}

Field each_point(const Field& shape, const std::function<Value(int, int)>& value) {
    Field result = shape;
    for (int j = 0; j < shape.place->ny; j++) {
        for (int i = 0; i < shape.place->nx; i++) {
            const auto k = static_cast<std::size_t>(j * shape.place->nx + i);
            const Value worked = shape.values[k] == MISSING ? Value{} : value(i, j);
            result.values[k] = worked.value;
            result.slack[k] = worked.missing() ? 0 : worked.slack;
        }
    }
    return result;
}

Value sum(const Value& a, const Value& b) {
    if (a.missing() || b.missing()) return {};
    const double value = a.value + b.value;
    return {value, a.slack + b.slack + EPSILON * (std::abs(a.value) + std::abs(b.value))};
}

Value product(const Value& a, const Value& b) {
    if (a.missing() || b.missing()) return {};
    const double value = a.value * b.value;
    return {value, a.slack * std::abs(b.value) + b.slack * std::abs(a.value) + 2 * EPSILON * std::abs(value)};
}

}  // namespace

int Place::cycle() const {
    if (!latlon) return 0;
    if (std::abs(nx * dx - 360) < 1e-3) return nx;
    return std::abs((nx - 1) * dx - 360) < 1e-3 ? nx - 1 : 0;
}

Field slope_x(const Field& a) {
    return each_point(a, [&](int i, int j) { return slope({a, true, i, j}); });
}

Field slope_y(const Field& a) {
    return each_point(a, [&](int i, int j) { return slope({a, false, i, j}); });
}

Field laplacian(const Field& a) {
    return each_point(a, [&](int i, int j) { return sum(bend({a, true, i, j}), bend({a, false, i, j})); });
}

Field combined(const Field& u, const Field& v, double sx, double sy, bool crossed) {
    return each_point(u, [&](int i, int j) -> Value {
        if (v.at(i, j) == MISSING) return {};
        return sum(product({sx}, slope({crossed ? v : u, true, i, j})),
                   product({sy}, slope({crossed ? u : v, false, i, j})));
    });
}

Field advection(const Field& u, const Field& v, const Field& z) {
    return each_point(z, [&](int i, int j) -> Value {
        if (u.at(i, j) == MISSING || v.at(i, j) == MISSING) return {};
        return sum(product({-u.at(i, j), u.slack_at(i, j)}, slope({z, true, i, j})),
                   product({-v.at(i, j), v.slack_at(i, j)}, slope({z, false, i, j})));
    });
}

Field coriolis(Field a, const std::string& oper) {
    const Place& place = *a.place;
    return each_point(a, [&](int i, int j) -> Value {
        const double lat = place.lat[static_cast<std::size_t>(j * place.nx + i)];
        const double f = TWICE_ROTATION * std::sin(lat * RAD);
        const double off = f == 0         ? 0
                           : place.latlon ? 4 * EPSILON * std::abs(f) + TWICE_ROTATION * LATITUDE_SLACK
                                          : TWICE_ROTATION * PLACE_SLACK * RAD;
        const Value z{a.at(i, j), a.slack_at(i, j)};
        if (oper == "add") return sum(z, {f, off});
        const double value = z.value / f;
        const double edge = std::abs(f) - off;
        return {value, edge > 0 ? z.slack / edge + std::abs(value) * (off / edge + 2 * EPSILON) : INFINITY};
    });
}

Field scaled(Field a, double factor) {
    return each_point(a, [&](int i, int j) { return product({a.at(i, j), a.slack_at(i, j)}, {factor}); });
}

Field located(const std::string& what, const Field& a) {
    const Place& place = *a.place;
    const double slack = place.latlon ? 2e-5 : PLACE_SLACK;
    const double n = place.latlon ? 0 : std::sin(place.true_lat * RAD);
    return each_point(a, [&](int i, int j) -> Value {
        const auto k = static_cast<std::size_t>(j * place.nx + i);
        const double lat = place.lat[k];
        double lon = place.lon[k];
        if (what == "lat") return {lat, slack};
        if (lon > 180) lon -= 360;
        if (lon < -180) lon += 360;
        if (what == "lon") return {lon, slack / std::max(std::cos(lat * RAD), 1e-6)};
        if (place.latlon) {
            const double first = place.lon[static_cast<std::size_t>(j * place.nx)] - place.plon;
            return {what == "projx" ? std::remainder(first, 360) + i * place.dx : lat, slack};
        }
        const double radius = EARTH * std::cos(place.true_lat * RAD) / n *
                              std::pow(std::tan((90 - lat) / 2 * RAD) / std::tan((90 - place.true_lat) / 2 * RAD), n);
        const double turn = n * std::remainder(lon - place.meridian, 360) * RAD;
        return {what == "projx" ? radius * std::sin(turn) : -radius * std::cos(turn), slack};
    });
}

Field smoothed(const Field& a, double r) {
    const Place& place = *a.place;
    return each_point(a, [&](int i, int j) -> Value {
        double total = 0, weights = 0, size = 0;
        for (int q = -4; q <= 4; q++) {
            for (int p = -4; p <= 4; p++) {
                const int x = place.cycle() > 0 ? (i + p + place.cycle()) % place.cycle() : i + p;
                if (x < 0 || x >= place.nx || j + q < 0 || j + q >= place.ny) continue;
                if (a.at(x, j + q) == MISSING) continue;  // has no number to take part with
                const double weight = std::exp((p * p + q * q) / r);
                total += weight * a.at(x, j + q);
                size += weight * (std::abs(a.at(x, j + q)) * 16 * EPSILON + a.slack_at(x, j + q));
                weights += weight;
            }
        }
        return {total / weights, size / weights};
    });
}

}  // namespace zav::truth
