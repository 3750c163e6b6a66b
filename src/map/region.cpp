#include "map/region.h"

#include <cctype>

#include "frame/resrc.h"
#include "frame/string.h"
#include "map/region_state.h"

namespace zav {
namespace {

region_state state;

/// Names of projections in printed domains. Codes that aren't here print as nothing.
struct proj_name {
    int proj;
    const char* name;
};
constexpr proj_name PROJ_NAMES[] = {
    {1, "pstereo"}, {2, "latlon"}, {3, "merc"}, {4, "lamb"},  {5, "ortho"},  {6, "gnom"},   {7, "moll"},
    {8, "lambaz"},  {9, "sat"},    {20, "xy"},  {21, "xz"},   {22, "xlogp"}, {23, "polar"}, {24, "cat"},
    {40, "skewt"},  {41, "stuve"}, {42, "ema"}, {50, "zoom"}, {99, "pixel"},
};

const char* name_of(int proj) {
    for (const proj_name& row : PROJ_NAMES) {
        if (row.proj == proj) return row.name;
    }
    return "";
}

/// A reference coordinate that is left out agrees with one that is the other domain's centre.
bool reference_agrees(float ref1, float center1, float ref2, float center2) {
    return ref1 == ref2 || (ref1 == FMISS && ref2 == center1) || (ref2 == FMISS && ref1 == center2);
}

bool same_reference(const Domain& dom1, const Domain& dom2) {
    return reference_agrees(dom1.plat, dom1.clat, dom2.plat, dom2.clat) &&
           reference_agrees(dom1.plon, dom1.clon, dom2.plon, dom2.clon);
}

/// Heights of a domain in map units, with the priority of stations on a plot above each.
struct prior_step {
    float above;
    int prior;
};
constexpr prior_step PRIOR_STEPS[] = {{50.0F, 1}, {25.0F, 2}, {12.5F, 3}, {6.25F, 4}, {3.0F, 5}};
constexpr int PRIOR_SMALLEST = 6;

int digit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0 ? c - '0' : MISS; }

/// The priority as the resource "stat_prior" wants it: "+d", "-d" or "d".
int adjust_prior(int prior) {
    const char* text = RES_get("stat_prior");
    if (text == nullptr || text[0] == '\0') return prior;
    if (digit(text[0]) != MISS) return digit(text[0]);
    const int change = digit(text[1]);
    if (change == MISS) return prior;
    if (text[0] == '+') return prior + change;
    if (text[0] == '-') return prior - change;
    return prior;
}

}  // namespace

region_state& DOM_module() { return state; }

void DOM_init(Domain* domain) {
    if (domain != nullptr) *domain = Domain{};
}

int DOM_comp_proj(const Domain* dom1, const Domain* dom2) {
    if (dom1 == nullptr || dom2 == nullptr) return 0;
    return dom1->proj == dom2->proj && dom1->param == dom2->param && dom1->ellipse == dom2->ellipse &&
           dom1->ecc == dom2->ecc && same_reference(*dom1, *dom2);
}

int DOM_comp(const Domain* dom1, const Domain* dom2) {
    return DOM_comp_proj(dom1, dom2) && dom1->clat == dom2->clat && dom1->clon == dom2->clon && dom1->dx == dom2->dx &&
           dom1->dy == dom2->dy && dom1->nx == dom2->nx && dom1->ny == dom2->ny;
}

std::string DOM_text(const Domain* domain) {
    if (domain == nullptr) return "";
    std::string text = name_of(domain->proj);
    if (domain->ellipse != 0) text += ":e";
    for (const float value : {domain->plat, domain->plon, domain->param[0], domain->param[1], domain->param[2]}) {
        text += value == FMISS ? ":" : text_format(":%3.3f", value);
    }
    return text + text_format(",%3.3f,%3.3f,%d,%d,%4.4f,%4.4f", domain->clat, domain->clon, domain->nx, domain->ny,
                              domain->dx, domain->dy);
}

void DOM_print(M_type mess, const Domain* domain) {
    if (MESS_check(mess) != 0) MESS_print(mess, "%s\n", DOM_text(domain).c_str());
}

float DOM_aspect(const Domain* domain) {
    if (domain == nullptr || domain->nx <= 1 || domain->ny <= 1) return 1.0F;
    return static_cast<float>(domain->nx - 1) / static_cast<float>(domain->ny - 1);
}

void DOM_set_base_prior(float size) {
    int prior = PRIOR_SMALLEST;
    for (const prior_step& row : PRIOR_STEPS) {
        if (size > row.above) {
            prior = row.prior;
            break;
        }
    }
    state.priority = adjust_prior(prior);
}

void DOM_set_prior(int prior) { state.priority = prior; }
int DOM_get_prior() { return state.priority; }
void DOM_set_loc_prior(int prior) { state.loc_prior = prior; }
int DOM_get_loc_prior() { return state.loc_prior; }

}  // namespace zav
