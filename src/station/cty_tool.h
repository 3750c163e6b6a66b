#pragma once

#include <string>
#include <vector>

#include "frame/zav.h"

namespace zav {

struct Domain;

/// One place of the location database.
struct CTY_data {
    std::string name;    ///< up to 20 characters, "_" for blanks
    std::string state;   ///< two letters, "B_" for a buoy
    std::string region;  ///< country, two letters
    std::string id;      ///< identifier; one that starts with "-" is none
    int prior = 0;       ///< priority, smaller is more important
    char mos = ' ';      ///< "*" if the place has model output statistics
    char ua = ' ';       ///< "*" if it has upper air reports
    float lat = FMISS;   ///< degrees
    float lon = FMISS;
    float el = FMISS;  ///< elevation
    int wmo = MISS;    ///< WMO number, 99999 for none
    int num = 0;       ///< a count of the file's own
};

/// The short record of a stored place.
struct CTY_locate {
    std::string id;
    int wmo = MISS;
    float x = FMISS;
    float y = FMISS;
    float el = FMISS;
    int pr = 0;
};

/// Empty texts, position and number missing.
void CTY_data_init(CTY_data* data);
/// Finds a place by identifier, name or WMO number in any case. 1 if found, else 0. `city_file` empty: the default one.
int CTY_get(const std::string& city_file, const std::string& id, CTY_data* data);
/// The position alone, degrees; unchanged if the place isn't found.
int CTY_get_loc(const std::string& city_file, const std::string& id, float* lat, float* lon);
/// Priority up to which places are taken: the resource "stat_prior", 10 without it.
int CTY_get_prior();
/// Reads the places of a domain up to a priority into memory, as records of a `type` from 1 to 3. A descriptor, 0 on
/// failure.
int CTY_store(const std::string& city_file, int type, const Domain* domain, int prior);
/// A stored place by identifier or WMO number. 1 if found, else 0.
int CTY_search(const std::string& id, CTY_locate* data);
/// The stored place nearest to a position, within 5 degrees. 1 if found, else 0.
int CTY_search_loc(float lat, float lon, CTY_locate* data);
/// The text stored for a place by the plot of its report, null without one.
const char* CTY_get_data(const std::string& id);
/// Frees the texts stored for places, or with `flag` empties them.
void CTY_clear_data(int flag);
/// Frees the places in memory.
void CTY_clear();
/// Identifier of stored places: 0 id, 1 WMO number, 2 id or one made from the WMO number.
void CTY_set_id_type(int val);
/// Filters of the resource "identifier" on a place or an identifier: index of the word that holds, -1 if none does,
/// 1 without words.
int CTY_data_cmp(const std::vector<std::string>& ids, const CTY_data* data);
int CTY_ids_cmp(const std::vector<std::string>& ids, const std::string& id);
/// Draws the places on the map. 0, or -1 where there are none.
int CTY_plot();
/// Takes the settings of that plot from the resource "plot_param".
void CTY_plot_param();

}  // namespace zav
