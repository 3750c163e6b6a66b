#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "files/date.h"
#include "map/region.h"

namespace zav {

struct GRD_report;
struct GRD_info;

// Reading GRIB files, editions 0, 1 and 2 (WMO Manual on Codes, FM 92). One file is in work at a time; `grd_fd` is a
// handle of GRD_open for a file of type 21.

/// Header styles, the field `itype` of a GRD_file: what stands before each message.
enum : int {
    GRIB_STYLE_UNKNOWN = 0,
    GRIB_STYLE_OWN = 1,      ///< a line of "** " and the bulletin header
    GRIB_STYLE_LDM = 2,      ///< a WMO bulletin as an LDM feed writes it
    GRIB_STYLE_OLD_OWN = 3,  ///< a line "GRIB: " and the length, then a bulletin
    GRIB_STYLE_RAW = 4,      ///< nothing but what the search passes over
};

/// Most points of a grid. Packings in which a few bytes can stand for a whole field are held to it.
constexpr long GRIB_MAX_POINTS = 1L << 25;

// Records

/// Date of the first message, into `info` and the GRD_file; the file stands at its start afterwards. 0, or -1 if there
/// is no message.
int GRIB_getinfo(int grd_fd, GRD_info* info);

/// Reads record `*grdnum`; each field of a message with several is a record. `rep_type` 0 reads all, 1 the header only,
/// 2 the header with its labels. `cur_pos` and `new_pos` are the positions that GRD_get_pos tells: the start of the
/// record read and of the next one. `*grdnum` takes the number of the record read. A message without a field is told
/// and is no record. 0; 1 if an index line leads to such a message; -1 at the end of the file.
int GRIB_read(int grd_fd, GRD_report* grd, int rep_type, int* grdnum, long* cur_pos, long* new_pos);

/// Forgets a message read in part, for the next file or another position.
void GRIB_reset();

// Messages in a stream

/// Positions the file behind the next message's keyword. Positive when found, 0 when no style fits, -1 at the end of
/// the file.
int GRIB_header(int grd_fd);
/// The styles one by one: 1 if it fits, 0 if not, -1 at the end of the file for the first two.
int GRIB_header_old_zav(int grd_fd);
int GRIB_header_zav(int grd_fd);
int GRIB_header_ldm(int grd_fd, long old_pos);
int GRIB_header_raw(int grd_fd, long old_pos);
/// Scans for the next keyword. 1, or -1 at the end of the file.
int GRIB_search(int grd_fd);
/// Position where the next message is looked for; with `where` not 0 the file is moved there. A length that isn't borne
/// out by the end mark is told, and the next keyword counts. -1 if there is none.
long GRIB_next(int grd_fd, int where);
/// Edition of the current message.
int GRIB_get_version();
/// Number and length of the edition 2 section last read.
int GRIB_get_sect();
long GRIB_get_slen();
/// Reads the first five octets of an edition 2 section. 1; 0 at the end mark or the end of the file.
int GRIB_read_section(int grd_fd);
/// Passes over the rest of the section.
void GRIB_skip_section(int grd_fd);
/// Date and edition of the message at whose keyword the file stands. 0, or -1 if it is cut short.
int GRIB_get_info(int grd_fd, GRD_info* info);
/// 18 characters of the current message's bulletin header.
void GRIB_get_WMO_header(int grd_fd, std::string& header);
/// Fourth letter of the current message's keyword.
char GRIB_get_type(int grd_fd);
/// Reads the whole message at `pos`. Its bytes, or -1 above 2,000,000 or at the end of the file.
long GRIB_get_raw(int grd_fd, long pos, std::vector<unsigned char>& data);

// Number formats

/// IBM floating point of edition 1, 4 bytes.
float GRIB_flt_conv(const unsigned char* pc);
/// Binary scale factor as a factor, 2 bytes.
float GRIB_scl_conv(const unsigned char* pc);
/// IEEE 754 single precision, big-endian, 4 bytes.
float GRIB_ieee_float_conv(const unsigned char* pc);
/// Next value of the data section in work, -1 when it has run out.
std::int64_t GRIB_bit_read(int grd_fd);
/// Next bit of the bit map: 1 for a value. 1 without a bit map, 0 behind the end of one.
int GRIB_BMB_read();
/// Jumps within 20 packed values of a row that mark a field as garbled; below 1 nothing is tested.
void GRIB_set_max_bad(int val);

// Edition 1 and older

/// Fills the domain of a grid that a message may name by number alone; others leave it as it is. Result 1.
int GRIB_set_domain(int type, Domain* domain);
/// Product block. 1, or -1 if the file ends.
int GRIB_PDB(int grd_fd, GRD_report* grd, int rep_type);
/// Decodes a product block; `data[i]` is octet i, `data[0]` isn't used, and the block's length (octets 1 to 3) must fit
/// `size` bytes. Result 1.
int GRIB_decode_PDB(const unsigned char* data, long size, GRD_report* grd);
/// Makes the variable code of ensemble fields and the text of `info`.
void GRIB_set_var(GRD_report* grd);
/// Sets `units` and translates `var` from older and other centres' tables.
void GRIB_units(GRD_report* grd);
/// Grid description block. 1; 0 for a grid too large; -1 if the file ends.
int GRIB_GDB(int grd_fd, GRD_report* grd);
/// Bit map block. 1; 0 without memory; -1 if the file ends.
int GRIB_BMB(int grd_fd, GRD_report* grd);
/// Data block, into `grid`. 1; 0 without memory; -1 if the file ends.
int GRIB_BDB(int grd_fd, GRD_report* grd);

// Edition 2

/// A line of the parameter lookup file "grib2_var.lup".
struct GribParam {
    int ind = -9999;    ///< variable code
    int ver = 0;        ///< not used
    int src = -9999;    ///< originating centre, 0 for any
    int disc = -9999;   ///< discipline
    int cat = -9999;    ///< category
    int param = -9999;  ///< parameter number
    std::string name;   ///< short name of the variable
    std::string units;  ///< units of the data as stored
    std::string lname;  ///< long name
};

/// Identification (section 1). 1, or 0 if nothing could be read.
int GRIB_IDS(int grd_fd, GRD_report* grd);
/// Grid definition (section 3). 1; 0 if nothing could be read or the grid is too large.
int GRIB_GDS(int grd_fd, GRD_report* grd);
/// Product definition (section 4). 1, or 0 if nothing could be read.
int GRIB_PDS(int grd_fd, GRD_report* grd);
/// Data representation (section 5). 1, or 0 if nothing could be read.
int GRIB_DRS(int grd_fd, GRD_report* grd);
/// Bit map (section 6). 1 if one is in force, else 0.
int GRIB_BMS(int grd_fd);
/// Data (section 7), into `grid`. 1; 0 without memory or for data that can't be decoded.
int GRIB_DS(int grd_fd, GRD_report* grd);
/// Makes a parameter unset.
void GribParam_init(GribParam* param);
/// The parameter's line of the lookup file; `ind` is disc * 1000000 + cat * 1000 + param for one that it doesn't know.
GribParam GRIB_get_ver2_param(int src, int disc, int cat, int param);

}  // namespace zav
