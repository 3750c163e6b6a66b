// Reading of what ecCodes decodes, and of variable strings.

#include "calc/catalogue_fields.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "calc/catalogue_air.h"
#include "support/support.h"
#include "support/table.h"

namespace zav::truth {
namespace {

constexpr double EPSILON = 0x1p-24;

struct Short_name {
    const char* name;
    const char* var;
    const char* units;
};
constexpr Short_name NAMES[] = {{"t", "temp", "K"},      {"2t", "temp", "K"},    {"gh", "hght", "gpm"},
                                {"r", "rhum", "%"},      {"u", "uwnd", "m/s"},   {"10u", "uwnd", "m/s"},
                                {"v", "vwnd", "m/s"},    {"10v", "vwnd", "m/s"}, {"prmsl", "pmsl", "Pa"},
                                {"absv", "avort", "/s"}, {"w", "vvel", "Pa/s"},  {"tcc", "tcdc", "%"},
                                {"mslet", "pmsl", "Pa"}, {"orog", "hght", "m"},  {"tmax", "tmax", "K"}};

struct Level_type {
    const char* name;
    int ltype;
    const char* behind;  ///< the number in a variable string
};
constexpr Level_type LEVELS[] = {
    {"isobaricInhPa", 100, ""}, {"heightAboveGround", 105, "m_ag"}, {"meanSea", 102, "sl"}, {"surface", 1, "sfc"}};

/// Keys of a message that `grib_get -p` prints, in this order.
constexpr const char* KEYS =
    "shortName,typeOfLevel,level,gridType,Ni,Nj,iDirectionIncrementInDegrees,jDirectionIncrementInDegrees,"
    "DxInMetres,DyInMetres,jScansPositively,LoVInDegrees,Latin1InDegrees";

Place place_of(const std::vector<std::string>& keys) {
    const auto number = [&](std::size_t i) { return std::strtod(keys[i].c_str(), nullptr); };
    Place place;
    place.latlon = keys[3] == "regular_ll";
    place.nx = static_cast<int>(number(4));
    place.ny = static_cast<int>(number(5));
    place.dx = place.latlon ? number(6) : number(8) / 1e5;
    place.dy = place.latlon ? number(7) : number(9) / 1e5;
    if (keys[3] == "lambert") {
        place.meridian = place.plon = number(11);
        place.true_lat = number(12);
        place.cone = std::sin(place.true_lat * std::acos(-1.0) / 180);
    }
    return place;
}

/// A Mercator map is true at the equator: its spacing there, from the longitudes.
void set_mercator_spacing(Place& place) { place.dx = place.dy = (place.lon[1] - place.lon[0]) * 1.11195; }

/// The rows from the north.
template <class T>
void turn_rows(std::vector<T>& values, int nx) {
    const auto row = static_cast<std::size_t>(nx);
    for (std::size_t low = 0, high = values.size() / row - 1; low < high; low++, high--) {
        for (std::size_t i = 0; i < row; i++) std::swap(values[low * row + i], values[high * row + i]);
    }
}

bool same_points(const Place& a, const Place& b) {
    return a.nx == b.nx && a.ny == b.ny && a.lat == b.lat && a.lon == b.lon;
}

/// Reads an expression from left to right.
class Reader {
  public:
    Reader(const std::string& text, const std::map<std::string, Field>& fields, const Holes& holes)
        : text_(text), fields_(fields), holes_(holes) {}

    std::vector<Argument> item(const std::string& level) {
        const std::size_t end = std::min(text_.find_first_of("(,)", at_), text_.size());
        std::vector<std::string> words = test::split(text_.substr(at_, end - at_), ':');
        at_ = end;
        std::string own = level;
        if (words.size() >= 3) {
            if (!words[1].empty()) own = words[1];
            words.erase(words.begin(), words.begin() + 2);
        }
        const std::string units = words.size() > 1 ? words[1] : "";
        if (at_ < text_.size() && text_[at_] == '(') return call(words[0], own, units);
        return {leaf(words[0], own, units)};
    }

  private:
    Argument leaf(const std::string& name, const std::string& level, const std::string& units) {
        if (name[0] == '#') return {std::nullopt, std::strtod(name.c_str() + 1, nullptr)};
        if (name.find_first_not_of("0123456789.-") == std::string::npos) return {std::nullopt, std::stod(name)};
        Field field = fields_.at(name + ":" + level);
        const int number = leaves_++;
        for (std::size_t k = 0; holes_ && k < field.values.size(); k++) {
            if (!holes_(number, k)) continue;
            field.values[k] = MISSING;
            field.slack[k] = 0;
        }
        return {units.empty() ? field : converted(field, units)};
    }

    std::vector<Argument> call(const std::string& full_name, const std::string& level, const std::string& units) {
        const std::size_t dash = full_name.find('-');
        const std::string name = full_name.substr(0, dash);
        Call call;
        do {
            at_++;
            for (Argument& argument : item(level)) call.arguments.push_back(std::move(argument));
        } while (text_.at(at_) == ',');
        at_++;
        for (const Level_type& type : LEVELS) {
            const std::string behind = level.substr(std::min(level.find_first_not_of("0123456789"), level.size()));
            if (behind == type.behind) call.ltype = type.ltype;
        }
        call.level = std::atoi(level.c_str());
        const Function& function = functions().at(name);
        std::vector<Argument> results;
        for (Field& field : function.work(name, call)) {
            field.ltype = call.ltype;
            field.level = call.level;
            field.var = dash == std::string::npos ? name : full_name.substr(dash + 1);
            field.units = !function.units.empty() ? function.units : call.arguments[0].field ? call.field(1).units : "";
            results.push_back({units.empty() ? field : converted(field, units)});
        }
        return results;
    }

    const std::string& text_;
    const std::map<std::string, Field>& fields_;
    const Holes& holes_;
    std::size_t at_ = 0;
    int leaves_ = 0;
};

}  // namespace

Fields_of::Fields_of(const std::string& file) {
    std::istringstream keys(test::run_command("grib_get -f -p " + std::string(KEYS) + " '" + file + "'"));
    std::istringstream points(
        test::run_command("grib_get_data -m -9999 -F %.17g -L '%.8f %.8f' '" + file + "' | sed 's/^Lat.*/-/'"));
    std::string line;
    std::getline(points, line);
    for (std::string message; std::getline(keys, message);) {
        const std::vector<std::string> words = test::split(message, ' ');
        Place place = place_of(words);
        Field field;
        while (std::getline(points, line) && line != "-") {
            char* end = nullptr;
            place.lat.push_back(std::strtod(line.c_str(), &end));
            place.lon.push_back(std::strtod(end, &end));
            field.values.push_back(std::strtod(end, nullptr));
        }
        if (field.values.size() != static_cast<std::size_t>(place.nx * place.ny)) throw std::runtime_error(message);
        if (words[3] == "mercator") set_mercator_spacing(place);
        if (words[10] == "1") {
            turn_rows(place.lat, place.nx);
            turn_rows(place.lon, place.nx);
            turn_rows(field.values, place.nx);
        }
        for (const double value : field.values) field.slack.push_back(value == MISSING ? 0 : std::abs(value) * EPSILON);
        if (places_.empty() || !same_points(places_.back(), place)) places_.push_back(place);
        field.place = &places_.back();
        for (const Short_name& name : NAMES) {
            if (words[0] != name.name) continue;
            field.units = name.units;
            field.var = name.var;
            // The surface's temperature at 2 m is at 2 m for a search.
            const bool above = words[0] == "2t" && words[1] == "surface";
            for (const Level_type& type : LEVELS) {
                if ((above ? "heightAboveGround" : words[1]) != type.name) continue;
                const std::string level = above ? "2" : words[2];
                field.ltype = type.ltype;
                field.level = std::atoi(level.c_str());
                const std::string number = type.ltype == 100 || type.ltype == 105 ? level : "";
                fields_.emplace(field.var + ":" + number + type.behind, field);  // the first, as a search does
            }
        }
    }
}

std::vector<Field> Fields_of::worked_out(const std::string& string, const Holes& holes) {
    std::vector<Field> results;
    for (Argument& argument : Reader(string, fields_, holes).item("")) results.push_back(std::move(*argument.field));
    return results;
}

void Fields_of::set_plon(double plon) {
    for (Place& place : places_) place.plon = plon;
}

}  // namespace zav::truth
