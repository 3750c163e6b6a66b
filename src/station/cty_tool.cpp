// Not built yet: the location database. Every look-up ends as with no database: the place isn't found.

#include "station/cty_tool.h"

#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"

namespace zav {
namespace {

constexpr const char* DEFAULT_FILE = "sao.cty";

/// Says which database is missing. The word "none" turns the database off, without a message.
void report_missing(const std::string& city_file) {
    const char* given = RES_get("city_file");
    const bool named = given != nullptr && given[0] != '\0';
    const std::string file = named ? given : city_file.empty() ? DEFAULT_FILE : city_file;
    if (stricmp(file, "none") != 0) MESS_print(MESS_WARN, "CTY_open_file: Database file not found: %s\n", file.c_str());
}

}  // namespace

void CTY_data_init(CTY_data* data) { *data = CTY_data{}; }

int CTY_get(const std::string& city_file, const std::string& id, CTY_data* data) {
    CTY_data_init(data);
    MESS_print(MESS_PROGRESS, "Searching the city database file for: %s ...\n", id.c_str());
    report_missing(city_file);
    return 0;
}

int CTY_get_loc(const std::string& city_file, const std::string& id, float*, float*) {
    CTY_data data;
    return CTY_get(city_file, id, &data);
}

int CTY_get_prior() {
    int prior = 10;
    RES_getval("stat_prior", &prior, CV_int);
    return prior;
}

int CTY_store(const std::string& city_file, int, const Domain*, int) {
    report_missing(city_file);
    return 0;
}

int CTY_search(const std::string&, CTY_locate*) { return 0; }

int CTY_search_loc(float, float, CTY_locate*) { return 0; }

const char* CTY_get_data(const std::string&) { return nullptr; }

void CTY_clear_data(int) {}

void CTY_clear() {}

void CTY_set_id_type(int) {}

int CTY_data_cmp(const std::vector<std::string>& ids, const CTY_data*) { return ids.empty() ? 1 : -1; }

int CTY_ids_cmp(const std::vector<std::string>& ids, const std::string&) { return ids.empty() ? 1 : -1; }

int CTY_plot() { return -1; }

void CTY_plot_param() {}

}  // namespace zav
