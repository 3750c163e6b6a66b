#pragma once

#include <array>
#include <string>
#include <vector>

#include "frame/mess.h"
#include "frame/zav.h"

namespace zav {

/// Parameters that a projection may take.
constexpr int DOM_PARAMS = 5;

/// A part of the earth, or of a diagram, and how it is laid on a plane. Unset fields hold MISS or FMISS.
struct Domain {
    int proj = MISS;     ///< projection code, of the list in map/maptran.h
    float plat = FMISS;  ///< reference latitude: pole or tangent point; FMISS takes `clat`
    float plon = FMISS;  ///< reference longitude; FMISS takes `clon`
    /// Parameters: Lambert true latitudes and map factor; polar stereographic true latitude; satellite distance from
    /// the earth's centre, and 1 for scan angles.
    std::array<float, DOM_PARAMS> param{FMISS, FMISS, FMISS, FMISS, FMISS};
    float clat = FMISS;  ///< latitude of the centre; low corner of a diagram
    float clon = FMISS;  ///< longitude of the centre
    float dx = FMISS;    ///< spacing in x, in map units of 100 km or in degrees
    float dy = FMISS;    ///< spacing in y
    int nx = MISS;       ///< points in x
    int ny = MISS;       ///< points in y
    int ellipse = 0;     ///< 1: on the ellipsoid (satellite view)
    float ecc = 0.0F;    ///< excentricity of a grid's earth; 0: a sphere (conformal maps)
};

/// Elements of a domain text, as DOM_set_params takes them.
enum : int {
    DOM_PROJ = 1,     ///< projection word with its options behind colons
    DOM_PLON = 3,     ///< reference longitude
    DOM_ID = 4,       ///< "id:" and a place
    DOM_CLAT = 5,     ///< latitude of the centre
    DOM_CLON = 6,     ///< longitude of the centre
    DOM_NX = 7,       ///< points in x
    DOM_NY = 8,       ///< points in y
    DOM_DX = 9,       ///< spacing in x
    DOM_DY = 10,      ///< spacing in y
    DOM_REGION = 11,  ///< name of a region
};

/// Makes a domain unset.
void DOM_init(Domain* domain);

/// 1 if two domains are the same, else 0. A reference point left out equals one that states the centre.
int DOM_comp(const Domain* dom1, const Domain* dom2);
/// 1 if two domains lie on the same plane, whatever part of it they cover, else 0.
int DOM_comp_proj(const Domain* dom1, const Domain* dom2);

/// Reads a domain text: words separated by commas, or the name of a region. Result: 1 for an explicit domain, 2 for a
/// named region, -1 for an invalid text, MISS for an empty one or "miss".
int DOM_decode(const std::string& str, Domain* domain);
/// The same; an absent text is an empty one.
int DOM_decode(const char* str, Domain* domain);
/// Tries one pattern of elements on the words of a domain text. 0 if it fits, -1 if the number of words differs, else
/// the element whose word can't be read.
int DOM_set_params(const std::vector<std::string>& paramv, Domain* domain, const std::vector<int>& elements);
/// Code of a projection word, told by its beginning in any case. -1 for none, MISS for "miss".
int DOM_proj_str(const std::string& proj);
/// A built-in region. 1 if the name is known, else 0.
int DOM_get_def_region(const std::string& region, Domain* domain);

/// Reads a region file into the region menu. 1 when read, else 0.
int DOM_read_menu(const std::string& file);
/// Finds a region in a file; an empty or absent name takes the first line. 1 and its domain text, or 0.
int DOM_search_file(const std::string& file, const char* str, std::string& domstr);
/// Prints the abbreviations and names of a region file.
void DOM_print_file(const std::string& file);

/// The domain of the resources "plot_domain" (`flag` 1, 3, 4) and "region". `flag` 4 takes the first region of the menu
/// when neither is set. The result is that of DOM_decode, 0 if nothing is set.
int DOM_get_region(Domain* domain, int flag);
/// The domain for grids: of the resource "grid_domain", "region" or "plot_domain". 0 if none is set.
int DOM_get_grid_domain(Domain* domain);
/// Asks for a region. `flag` 1 tries "plot_domain" before "region". 0: nothing more to choose, -1: no valid answer.
int DOM_prompt_region(Domain* domain, int flag);
/// 1 lets DOM_prompt_region ask, 0 says that it is answered for good.
void DOM_set_prompt_region(int val);
/// Name of an entry of the region menu; empty if there is none.
std::string DOM_get_region_name(int region);

/// Priority of stations that a plot of this height (map units) shows, as the resource "stat_prior" adjusts it.
void DOM_set_base_prior(float size);
void DOM_set_prior(int prior);
int DOM_get_prior();
void DOM_set_loc_prior(int prior);
int DOM_get_loc_prior();

/// The text of a domain, which DOM_decode reads back, without a line end.
std::string DOM_text(const Domain* domain);
/// Prints DOM_text as one line.
void DOM_print(M_type mess, const Domain* domain);
/// Width over height in steps, 1 where either isn't known.
float DOM_aspect(const Domain* domain);

}  // namespace zav
