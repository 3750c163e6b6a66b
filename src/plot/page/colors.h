#pragma once

#include <string>

#include "gks/gks.h"

namespace zav {

/// Entries that the colour table holds.
constexpr int CLR_COUNT = 256;

/// One entry of the colour table; components from 0 to 1.
struct RGB {
    std::string name;  ///< at most 19 characters
    float red = 0.0F;
    float grn = 0.0F;
    float blu = 0.0F;
};

/// Pattern colours of print output: black, white and grey in three widths. They are indices without a table entry.
enum : int { CLR_PATTERN_FIRST = 500, CLR_PATTERN_LAST = 508 };
enum : int {
    CLR_NONE = -1,  ///< no colour: nothing is drawn
    CLR_END = -2,   ///< ends a list of attribute records
};

/// Gives the graphics kernel and its toolkit the use of this colour table. Called once at start.
void CLR_install();

/// Loads the colour table from `filename`, a comma-separated list of files; null or empty takes the resource
/// "color_table" or else "zav.clr". The result is always 0.
int CLR_read_table(const char* filename);
int CLR_clear_table();
/// Appends a colour and hands it to the graphics. Its index, or -1 when the table is full.
int CLR_add(const std::string& name, float red, float grn, float blu);
/// Index for a colour name, "#rrggbb", "#rrrgggbbb" or a number; -1 for none or unknown, -2 for "end".
int CLR_get_ind(const std::string& name);
/// Components of "#rrggbb" or "#rrrgggbbb"; false for another text.
bool CLR_parse(const std::string& text, RGB* color);
/// Name of an index, empty for none.
const std::string& CLR_get_name(int ind);
/// Components of an index; an index past the table gives its last entry. 0, or -1 for an empty table.
int CLR_get_rgb(int ind, float* red, float* grn, float* blu);
/// Entries in use.
int CLR_get_num();
/// Fill colours at the table's start, 0 when the table names none.
int CLR_get_num_fill();

/// Fill pattern, 0 to 19, for a pattern name or a number.
int ATTR_parse_fill_pat(const std::string& str);
/// Marker type, 1 to 9, for a marker name or a number.
int ATTR_parse_marker(const std::string& str);
/// Sets the fields of `attrib` that an attribute string such as "red:wi=2:st=dsh" names.
int ATTRIB_parse(const std::string& str, Gattribs* attrib);
/// Marks all fields as not given.
int ATTRIB_init(Gattribs* attrib);
/// Copies the fields given in `attr2` to `attr1`.
int ATTRIB_update(Gattribs* attr1, const Gattribs* attr2);
/// Parses `def` and then the resource `resrc` over it. 1 if the resource is set, else 0.
int ATTRIB_get(const std::string& resrc, const std::string& def, Gattribs* attrib);
/// Prints all fields at dialogue level.
int ATTRIB_print(const Gattribs* attrib);

}  // namespace zav
