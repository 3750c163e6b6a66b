// The domain line of the native formats.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/string.h"
#include "grid/grd_scan.h"
#include "grid/grd_state.h"
#include "map/maptran.h"
#include "map/region.h"

namespace zav {
namespace {

constexpr std::size_t WORD_LENGTH = 255;

/// Centre, spacing and size, as far as they stand there.
void read_numbers(std::FILE* file, Domain* domain) {
    for (float* value : {&domain->clat, &domain->clon, &domain->dx, &domain->dy}) {
        if (!scan_float(file, value)) return;
    }
    if (scan_int(file, &domain->nx)) scan_int(file, &domain->ny);
}

/// The oldest form: no keyword, one spacing.
void read_oldest(std::FILE* file, const std::string& word, Domain* domain) {
    domain->proj = PROJ_POLAR;
    if (std::sscanf(word.c_str(), "%f", &domain->clat) != 1) return;
    if (!scan_float(file, &domain->clon) || !scan_float(file, &domain->dx)) return;
    domain->dy = domain->dx;
    if (scan_int(file, &domain->nx)) scan_int(file, &domain->ny);
}

void read_lambert_parameters(const std::string& word, Domain* domain) {
    if (word.size() < 4 || word[2] != ':') return;
    const int found = std::sscanf(word.c_str() + 3, "%f:%f:%f:%f:%f", &domain->plat, &domain->plon, &domain->param[0],
                                  &domain->param[1], &domain->param[2]);
    if (found != 1) return;
    domain->plon = domain->plat;
    domain->plat = FMISS;
}

bool keyword(const std::string& word, const char* key) { return word.compare(0, std::strlen(key), key) == 0; }

/// Numbers that aren't finite and sizes that no grid has count as unset.
void discard_impossible(Domain* domain) {
    for (float* value :
         {&domain->clat, &domain->plat, &domain->plon, &domain->param[0], &domain->param[1], &domain->param[2]}) {
        if (!std::isfinite(*value)) *value = FMISS;
    }
    if (domain->nx < 1 || domain->ny < 1) {
        domain->nx = MISS;
        domain->ny = MISS;
    }
}

/// A step between `points` points, with more than six decimals only where these would move the far end.
std::string step_text(double step, int points) {
    constexpr double SHIFT = 0.001;  // in steps
    std::string text = text_format("%f", step);
    const double lost = std::fabs(std::strtod(text.c_str(), nullptr) - step);
    return lost * points > SHIFT * step ? text_format("%.9f", step) : text;
}

/// What the steps of a polar map become where they hold at 60 degrees, as readers of this format take them.
double at_60_degrees(const Domain& domain) {
    constexpr double RADIANS = 0.017453292519943334;
    if (domain.proj != PROJ_POLAR || domain.param[0] == FMISS) return 1.0;
    const double true_lat = std::fabs(static_cast<double>(domain.param[0]));
    return true_lat == 60.0 ? 1.0 : (1.0 + std::sin(60.0 * RADIANS)) / (1.0 + std::sin(true_lat * RADIANS));
}

/// The format knows the sphere alone: the grid on it whose centre, and the middles of whose sides, lie where those of
/// the grid do.
Domain on_sphere(const Domain& grid) {
    if (grid.ecc == 0.0F) return grid;
    Domain sphere = grid;
    sphere.ecc = 0.0F;
    const Domain current = *MAP_get_domain(nullptr);
    Point centre;
    MAP_domain(&grid);
    MAP_tran_center(&centre.x, &centre.y);
    MAP_domain(&current);
    const auto fitted = [&](float step, float across, float up) {
        Point low;
        Point high;
        MAP_domain_tran(&grid, &sphere, centre.x - across, centre.y - up, &low.x, &low.y);
        MAP_domain_tran(&grid, &sphere, centre.x + across, centre.y + up, &high.x, &high.y);
        const double length = std::hypot(static_cast<double>(high.x) - low.x, static_cast<double>(high.y) - low.y);
        return across + up > 0.0F ? static_cast<float>(step * length / (2.0 * (across + up))) : step;
    };
    sphere.dx = fitted(grid.dx, static_cast<float>(grid.nx - 1) * grid.dx / 2.0F, 0.0F);
    sphere.dy = fitted(grid.dy, 0.0F, static_cast<float>(grid.ny - 1) * grid.dy / 2.0F);
    return sphere;
}

}  // namespace

void native_read_domain(std::FILE* file, int version, GRD_report* grd) {
    std::string word;
    if (!scan_word(file, word, WORD_LENGTH)) return;
    if (word[0] == ':') {
        grd->units = fit_text(word.substr(1), GRD_UNITS_SIZE);
        if (!scan_word(file, word, WORD_LENGTH)) return;
    }
    Domain* domain = &grd->domain;
    const bool latlon = keyword(word, "LL");
    if (latlon || keyword(word, "PS")) {
        domain->proj = latlon ? PROJ_LATLON : PROJ_POLAR;
        if (word.size() > 3 && word[2] == ':') std::sscanf(word.c_str() + 3, "%f", &domain->plon);
        read_numbers(file, domain);
    } else if (keyword(word, "LC")) {
        domain->proj = PROJ_LAMBERT;
        read_lambert_parameters(word, domain);
        read_numbers(file, domain);
    } else if (keyword(word, "ME")) {
        domain->proj = PROJ_MERCATOR;
        read_numbers(file, domain);
    } else {
        read_oldest(file, word, domain);
    }
    if (version == 1 && domain->clon != FMISS) domain->clon = -domain->clon;
    const bool has_pole = domain->proj == PROJ_LATLON || keyword(word, "PS");
    if (has_pole && domain->plon == FMISS) domain->plon = domain->clon;
    discard_impossible(domain);
}

Domain native_domain(const Domain& grid) {
    Domain domain = on_sphere(grid);
    const double factor = at_60_degrees(domain);
    if (factor == 1.0) return domain;
    domain.dx = static_cast<float>(factor * static_cast<double>(domain.dx));
    domain.dy = static_cast<float>(factor * static_cast<double>(domain.dy));
    domain.param[0] = FMISS;
    return domain;
}

std::string native_domain_line(const Domain& grid) {
    const Domain domain = on_sphere(grid);
    std::string line;
    const auto real = [](float value) { return static_cast<double>(value); };
    switch (domain.proj) {
        case PROJ_LATLON:
            line = "LL ";
            break;
        case PROJ_MERCATOR:
            line = "ME ";
            break;
        case PROJ_POLAR:
            line = "PS ";
            if (domain.plon != FMISS && domain.plon != domain.clon) line = text_format("PS:%f ", real(domain.plon));
            break;
        case PROJ_LAMBERT:
            line = "LC ";
            if (domain.param[0] != FMISS) {
                line = text_format("LC:%f:%f:%f:%f:%f ", real(domain.plat), real(domain.plon), real(domain.param[0]),
                                   real(domain.param[1]), real(domain.param[2]));
            } else if (domain.plon != FMISS) {
                line = text_format("LC:%f ", real(domain.plon));
            }
            break;
        default:
            break;
    }
    const double factor = at_60_degrees(domain);
    return line + text_format("%f %f %s %s %d %d\n", real(domain.clat), real(domain.clon),
                              step_text(factor * real(domain.dx), domain.nx).c_str(),
                              step_text(factor * real(domain.dy), domain.ny).c_str(), domain.nx, domain.ny);
}

}  // namespace zav
