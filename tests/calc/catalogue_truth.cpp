// The catalogue of grid functions, worked out point by point.

#include "calc/catalogue_truth.h"

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

#include "calc/catalogue_air.h"
#include "support/table.h"

namespace zav::truth {
namespace {

constexpr double EPSILON = 0x1p-24;
constexpr double DEG = 180 / std::numbers::pi;
constexpr int PRESSURE = 100;  // level type

using Numbers = std::vector<double>;
using Point = std::function<double(const Numbers&)>;

/// The arguments' values at a point, and their slacks.
struct At {
    Numbers values, slacks;
    At(const Call& call, std::size_t k) {
        for (const Argument& argument : call.arguments) {
            values.push_back(argument.field ? argument.field->values[k] : argument.number);
            slacks.push_back(argument.field ? argument.field->slack[k] : 0);
        }
    }
};

/// How far off a result may be when each argument may be off by its slack.
double slack_of(const Point& value, const At& at, double result) {
    double slack = 2 * EPSILON * std::abs(result);
    for (std::size_t i = 0; i < at.values.size(); i++) {
        if (at.slacks[i] == 0 || at.values[i] == MISSING) continue;
        double most = 0;
        for (const double side : {-1.0, 1.0}) {
            Numbers moved = at.values;
            moved[i] += side * at.slacks[i];
            const double change = std::abs(value(moved) - result);
            most = std::isnan(change) ? INFINITY : std::max(most, change);
        }
        slack += most;
    }
    return slack;
}

/// The result of `value` at each point; it says itself where it is missing.
Field points(const Call& call, const Point& value) {
    Field result = call.empty();
    for (std::size_t k = 0; k < result.values.size(); k++) {
        const At at(call, k);
        const double worked = value(at.values);
        result.values[k] = worked;
        result.slack[k] = worked == MISSING ? 0 : slack_of(value, at, worked);
    }
    return result;
}

/// The same, missing where one of the first `used` arguments is.
Field known_points(const Call& call, int used, const Point& value) {
    return points(call, [&](const Numbers& a) {
        for (int i = 0; i < used; i++) {
            if (a[static_cast<std::size_t>(i)] == MISSING) return MISSING;
        }
        return value(a);
    });
}

using Fields = std::vector<Field>;

Fields pick(const std::string& name, const Call& call) {
    return {points(call, [&](const Numbers& a) {
        double best = MISSING;
        for (const double v : a) {
            if (v != MISSING && (best == MISSING || (name == "max" ? v > best : v < best))) best = v;
        }
        return best;
    })};
}

Fields total(const std::string& name, const Call& call) {
    return {points(call, [&](const Numbers& a) {
        double sum = 0;
        std::size_t count = 0;
        for (const double v : a) {
            if (v == MISSING) continue;
            sum += v;
            count++;
        }
        if (name == "sum") return sum;
        return count == a.size() && sum != MISSING ? sum / static_cast<double>(count) : MISSING;
    })};
}

Fields unary(const std::string& name, const Call& call) {
    static const std::map<std::string, double (*)(double)> OF = {
        {"copy", [](double a) { return a; }},
        {"sqrt", [](double a) { return std::sqrt(a); }},
        {"exp", [](double a) { return std::exp(a); }},
        {"log", [](double a) { return std::log(a); }},
        {"log10", [](double a) { return std::log10(a); }},
        {"abs", [](double a) { return std::abs(a); }},
        {"sin", [](double a) { return std::sin(a / DEG); }},
        {"cos", [](double a) { return std::cos(a / DEG); }},
        {"tan", [](double a) { return std::tan(a / DEG); }},
        {"asin", [](double a) { return std::asin(a) * DEG; }},
        {"acos", [](double a) { return std::acos(a) * DEG; }},
        {"atan", [](double a) { return std::atan(a) * DEG; }},
    };
    const auto function = OF.at(name);
    return {known_points(call, 1, [&](const Numbers& a) { return function(a[0]); })};
}

Fields binary(const std::string& name, const Call& call) {
    static const std::map<std::string, double (*)(double, double)> OF = {
        {"add", [](double a, double b) { return a + b; }},
        {"sub", [](double a, double b) { return a - b; }},
        {"thick", [](double a, double b) { return a - b; }},
        {"mul", [](double a, double b) { return a * b; }},
        {"div", [](double a, double b) { return a / b; }},
        {"mod", [](double a, double b) { return std::fmod(a, b); }},
        {"pow", [](double a, double b) { return std::pow(a, b); }},
        {"atan2", [](double a, double b) { return std::atan2(a, b) * DEG; }},
    };
    const auto function = OF.at(name);
    return {known_points(call, 2, [&](const Numbers& a) { return function(a[0], a[1]); })};
}

Fields interp(const std::string&, const Call& call) {
    return {known_points(call, 3, [](const Numbers& a) { return (a[2] - a[0]) * a[1] + a[0]; })};
}

Fields smooth(const std::string&, const Call& call) { return {smoothed(call.field(1), call.arguments[1].number)}; }

Fields place(const std::string& name, const Call& call) { return {located(name, call.field(1))}; }

// Moist air

bool is_dew_point(const Field& field) { return field.var == "dewp"; }

/// Dew point of argument 2 at a point, by what it is.
double dew_point(const Call& call, const Numbers& a) {
    return is_dew_point(call.field(2)) ? a[1] : dew_temp(a[0], a[1]);
}

/// The call with its arguments in the units that a function works in; "K?" is for a dew point alone.
Call in_units(Call call, const std::vector<std::string>& units) {
    for (std::size_t i = 0; i < call.arguments.size() && i < units.size(); i++) {
        std::optional<Field>& field = call.arguments[i].field;
        if (!field || units[i].empty() || (units[i] == "K?" && !is_dew_point(*field))) continue;
        field = converted(*field, units[i].substr(0, units[i].find('?')));
    }
    return call;
}

/// Pressure by the rule of levels: argument `number` where the result isn't on a pressure level.
double pressure(const Call& call, const Numbers& a, int number) {
    if (call.ltype == PRESSURE) return call.level;
    return number <= call.count() ? a[static_cast<std::size_t>(number - 1)] : 1000.0;
}

Fields moist(const std::string& name, const Call& given) {
    using Formula = double (*)(double, double, double);
    static const std::map<std::string, Formula> OF = {
        {"wetblb", wet_bulb}, {"thetae", eq_pot_temp}, {"vtemp", virt_temp}, {"thetav", virt_pot_temp}};
    const bool dry = name == "wetblb";  // brings the temperature alone to its unit
    const Call call = in_units(given, dry ? std::vector<std::string>{"K"} : std::vector<std::string>{"K", "K?", "mb"});
    const int used = call.ltype == PRESSURE ? 2 : call.count();
    const Formula formula = OF.at(name);
    return {known_points(call, used,
                         [&](const Numbers& a) { return formula(a[0], dew_point(call, a), pressure(call, a, 3)); })};
}

Fields theta(const std::string&, const Call& given) {
    const Call call = in_units(given, {"K", "mb"});
    return {known_points(call, 1, [&](const Numbers& a) { return pot_temp(a[0], pressure(call, a, 2)); })};
}

Fields humid(const std::string& name, const Call& given) {
    const Call call = in_units(given, {"K", name == "rhum" ? "K" : ""});
    const auto formula = name == "rhum" ? rel_hum : dew_temp;
    return {known_points(call, 2, [&](const Numbers& a) { return formula(a[0], a[1]); })};
}

Fields show(const std::string&, const Call& given) {
    const Call call = in_units(given, {"K", "K?", "K"});
    return {known_points(call, 3, [&](const Numbers& a) { return showalter(a[0], dew_point(call, a), a[2]); })};
}

Fields heat(const std::string&, const Call& given) {
    const Call call = in_units(given, {"K", "K?"});
    const bool dew = is_dew_point(call.field(2));
    return {known_points(call, 2, [&](const Numbers& a) {
        const double td = dew_point(call, a);
        return heat_index(a[0], dew ? td : std::min(td, a[0]));  // air of 100 percent is saturated, not beyond
    })};
}

Fields wind_chill(const std::string& name, const Call& given) {
    const Call call = in_units(given, {"K", "m/s", "m/s"});
    const bool speed = call.field(2).var == "wspd" || call.field(2).var == "spd";
    const auto formula = name == "wchill" ? wind_chill_temp : wind_chill_temp2;
    return {known_points(call, speed ? 2 : 3, [&](const Numbers& a) {
        return formula(a[0], speed ? a[1] : handed(std::hypot(a[1], a[2])));
    })};
}

Fields vapor(const std::string&, const Call& given) {
    const Call call = in_units(given, {"K"});
    const int count = call.count();
    return {known_points(call, count,
                         [&](const Numbers& a) { return vapor_pr(count == 1 ? a[0] : dew_temp(a[0], a[1])); })};
}

Fields pressure_altitude(const std::string&, const Call& given) {
    const Call call = in_units(given, {"mb"});
    return {known_points(call, 1, [](const Numbers& a) { return pres_alt(a[0]); })};
}

Fields humidity(const std::string& name, const Call& given) {
    const bool dew = is_dew_point(given.field(1));
    const int last = dew ? 2 : 3;  // the pressure's number
    const Call call =
        in_units(given, dew ? std::vector<std::string>{"K", "mb"} : std::vector<std::string>{"K", "", "mb"});
    const int used = call.ltype == PRESSURE ? last - 1 : call.count();
    const auto formula = name == "shum" ? spec_hum : mix_ratio;
    return {known_points(call, used, [&](const Numbers& a) {
        return formula(dew ? a[0] : dew_temp(a[0], a[1]), pressure(call, a, last));
    })};
}

// Winds

Fields speed(const std::string&, const Call& given) {
    const Call call = in_units(given, {"m/s", "m/s"});
    return {known_points(call, 2, [](const Numbers& a) { return std::sqrt(a[0] * a[0] + a[1] * a[1]); })};
}

double full_turn(double direction) {
    if (direction < 0) direction += 360;
    return direction > 360 ? direction - 360 : direction;
}

/// Turns of true north against the grid's, clockwise, at each point.
double turn_at(const Place& place, std::size_t k) {
    return place.cone * std::remainder(place.lon[k] - place.meridian, 360);
}

Fields direction(const std::string& name, const Call& given) {
    const Call call = in_units(given, {"m/s", "m/s"});
    Field result = known_points(call, 2, [](const Numbers& a) {
        return a[0] == 0 && a[1] == 0 ? 0 : full_turn(std::atan2(-a[0], -a[1]) * DEG);
    });
    for (std::size_t k = 0; name == "ewdir" && k < result.values.size(); k++) {
        if (result.values[k] == MISSING) continue;
        result.values[k] = full_turn(result.values[k] + turn_at(*result.place, k));
        result.slack[k] += result.place->latlon ? 0 : 0.005;
    }
    return {result};
}

Fields component(const std::string& name, const Call& given) {
    Call call = in_units(given, {"", "m/s"});
    Field& from = *call.arguments[0].field;
    for (std::size_t k = 0; name.size() == 5 && k < from.values.size(); k++) {  // "uwndg", "vwndg"
        if (from.values[k] == MISSING) continue;
        from.values[k] -= turn_at(*from.place, k);
        from.slack[k] += from.place->latlon ? 0 : 0.005;
    }
    const bool east = name[0] == 'u';
    return {known_points(
        call, 2, [&](const Numbers& a) { return -a[1] * (east ? std::sin(a[0] / DEG) : std::cos(a[0] / DEG)); })};
}

Fields two_winds(const std::string& name, const Call& call) {
    const auto known = [&](const Point& value) { return known_points(call, 4, value); };
    if (name == "dot") return {known([](const Numbers& a) { return a[0] * a[2] + a[1] * a[3]; })};
    if (name == "cross") return {known([](const Numbers& a) { return a[0] * a[3] - a[1] * a[2]; })};
    return {known([](const Numbers& a) { return a[0] - a[2]; }), known([](const Numbers& a) { return a[1] - a[3]; })};
}

// Operators

Fields geostrophic(const std::string& name, const Call& given) {
    const Field z = converted(given.field(1), "m");
    if (name == "ugeos") return {scaled(coriolis(slope_y(z), "div"), -9.8)};
    return {scaled(coriolis(slope_x(z), "div"), 9.8)};
}

Fields q_vector(const std::string& name, const Call& given) {
    const Call call = in_units(given, {"m", "K"});
    const auto slope = name == "uq" ? slope_x : slope_y;
    Call work;
    work.arguments = {{slope(geostrophic("ugeos", call)[0])},
                      {slope(geostrophic("vgeos", call)[0])},
                      {slope_x(call.field(2))},
                      {slope_y(call.field(2))}};
    return {known_points(
        work, 4, [&](const Numbers& a) { return -287.05 / (100.0 * call.level) * (a[0] * a[2] + a[1] * a[3]); })};
}

Fields gradient(const std::string& name, const Call& call) {
    const Field& a = call.field(1);
    if (name == "dx") return {slope_x(a)};
    if (name == "dy") return {slope_y(a)};
    if (name == "lapl") return {laplacian(a)};
    return {slope_x(a), slope_y(a)};
}

Fields convergence(const std::string& name, const Call& call) {
    Field result = combined(call.field(1), call.field(2), -1, -1, false);
    if (call.count() == 3) {
        Call product;
        product.arguments = {{result}, {call.field(3)}};
        result = known_points(product, 2, [](const Numbers& a) { return a[0] * a[1]; });
    }
    return {name == "diverg" ? scaled(result, -1) : result};
}

Fields of_wind(const std::string& name, const Call& call) {
    const Field& u = call.field(1);
    const Field& v = call.field(2);
    if (name == "adv") return {advection(u, v, call.field(3))};
    if (name == "def1") return {combined(u, v, 1, -1, false)};
    if (name == "def2") return {combined(u, v, -1, -1, true)};
    const Field vorticity = combined(u, v, 1, -1, true);
    return {name == "avort" ? coriolis(vorticity, "add") : vorticity};
}

Fields no_field(const std::string&, const Call&) { return {}; }

/// Functions that are worked out alike.
struct Family {
    const char* names;
    Function function;
};
const Family FAMILIES[] = {
    {"wind vect stream strm", {no_field, ""}},
    {"smooth", {smooth, ""}},
    {"copy sqrt exp log log10 abs sin cos tan asin acos atan", {unary, ""}},
    {"max min", {pick, ""}},
    {"add sub thick mul mod pow div atan2", {binary, ""}},
    {"sum avg", {total, ""}},
    {"interp", {interp, ""}},
    {"lat lon", {place, "deg"}},
    {"projx projy", {place, ""}},
    {"dx dy grad lapl", {gradient, ""}},
    {"dewp", {humid, "K", {true}}},
    {"rhum", {humid, "%", {true}}},
    {"wetblb", {moist, "K", {true, 0.06}}},
    {"show", {show, "dC", {true, 0.1}}},
    {"wchill wchill2", {wind_chill, "K", {true}}},
    {"heat", {heat, "K", {true}}},
    {"theta", {theta, "K", {true}}},
    {"thetae", {moist, "K", {true, 0.1}}},
    {"vtemp thetav", {moist, "K", {true}}},
    {"vapor", {vapor, "mb", {true}}},
    {"pr_alt", {pressure_altitude, "m", {true}}},
    {"shum mixrat", {humidity, "gm/kg", {true}}},
    {"wspd spd mag", {speed, "m/s"}},
    {"wdir dir ewdir", {direction, "deg", {false, 0, true}}},
    {"uwnd vwnd uwndg vwndg", {component, "m/s"}},
    {"dot cross", {two_winds, "m/s", {true}}},
    {"vdiff", {two_winds, ""}},
    {"ugeos vgeos", {geostrophic, "m/s"}},
    {"uq vq", {q_vector, ""}},
    {"conv diverg vconv", {convergence, ""}},
    {"def1 def2 rvort avort adv", {of_wind, ""}},
};

}  // namespace

const std::map<std::string, Function>& functions() {
    static const std::map<std::string, Function> ALL = [] {
        std::map<std::string, Function> all;
        for (const Family& family : FAMILIES) {
            for (const std::string& name : test::split(family.names, ' ')) all[name] = family.function;
        }
        return all;
    }();
    return ALL;
}

const Place& Call::place() const {
    for (const Argument& argument : arguments) {
        if (argument.field) return *argument.field->place;
    }
    std::abort();
}

Field Call::empty() const {
    Field field;
    field.place = &place();
    field.ltype = ltype;
    field.level = level;
    field.values.assign(static_cast<std::size_t>(place().nx * place().ny), MISSING);
    field.slack.assign(field.values.size(), 0);
    return field;
}

Field converted(Field field, const std::string& units) {
    struct Pair {
        const char* from;
        const char* to;
        double factor, offset;
    };
    constexpr Pair PAIRS[] = {{"K", "C", 1, -273.15},
                              {"C", "K", 1, 273.15},
                              {"Pa", "mb", 0.01, 0},
                              {"mb", "Pa", 100, 0},
                              {"m/s", "kt", 1 / 0.5144444444444445, 0},
                              {"kt", "m/s", 0.5144444444444445, 0}};
    for (const Pair& pair : PAIRS) {
        if (field.units != pair.from || units != pair.to) continue;
        for (std::size_t k = 0; k < field.values.size(); k++) {
            if (field.values[k] == MISSING) continue;
            const double before = std::abs(field.values[k]);
            field.values[k] = field.values[k] * pair.factor + pair.offset;
            field.slack[k] =
                field.slack[k] * pair.factor + 4 * EPSILON * (before * pair.factor + std::abs(pair.offset));
        }
    }
    field.units = units;
    return field;
}

}  // namespace zav::truth
