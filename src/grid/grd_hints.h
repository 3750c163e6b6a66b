#pragma once

#include <vector>

#include "grid/zavgrd.h"
#include "var/var_tool.h"

namespace zav {

// What a file has beside the field that was asked for, told in the words by which it can be asked for.

/// What tells one record of a file from another.
struct Record_codes {
    int number = 0;
    int time = MISS;
    int ltype = MISS;
    int level = MISS;
    int var = MISS;
    int type = 0;
    Date date;
};

/// True if a record's date has the fields that a date has; both may be unknown.
bool GRD_date_fits(const Date& wanted, const Date& own);
/// What a header tells of its record.
Record_codes GRD_codes_of(const GRD_report& header, int number);
/// Adds the records of an open file from number `first` on, by their headers.
void GRD_list_records(int grd_fd, int first, std::vector<Record_codes>* records);
/// Tells in one line which record comes nearest to a key that no record from `first` on gave values for, or which
/// variables there are. `date` has the fields of the date that was asked for.
void GRD_tell_nearest(const std::vector<Record_codes>& records, const VAR_data& params, int type, int first,
                      const Date& date = {});
/// Tells in one line which record of that date was taken from number `first` on if several runs or members of the same
/// field fit a key, and how to choose another.
void GRD_tell_choice(const std::vector<Record_codes>& records, const VAR_data& params, int type, int first,
                     const Date& date = {});

}  // namespace zav
