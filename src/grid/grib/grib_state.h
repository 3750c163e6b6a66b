#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "files/date.h"
#include "frame/zav.h"
#include "grid/grib/grib_bits.h"
#include "map/region.h"

namespace zav {

struct GRD_report;

// Shared by the files of the GRIB reader and by nothing else.

/// Start of a record: of its message, or of the sections of a later field inside one.
struct GribStart {
    long pos = 0;
    bool inside = false;
};

/// Where the walk through a file stands.
struct GribPlace {
    std::FILE* stream = nullptr;    ///< the file that this is about, to notice another one
    int num = 0;                    ///< number of the record at which the file stands
    GribStart record;               ///< start of that record
    std::optional<GribStart> next;  ///< start of the one behind it, once that is known
    std::string index_line;         ///< description of the record in the index file
};

/// Ensemble description of the current message.
struct GribEnsemble {
    int ens = 0;
    int type = 0;
    int id = 0;
    int prod = 0;
    int smooth = 0;
    int prob_var = 0;
    int prob_type = 0;
    float prob_low = 0.0F;
    float prob_up = 0.0F;
};

/// Bit map of the message.
struct GribBitmap {
    bool present = false;
    std::vector<unsigned char> bytes;
    std::uint64_t offset = 0;  ///< next bit to read
    long pending = -1;         ///< position of a map that a pass over the headers left unread
    std::size_t pending_size = 0;
};

/// Data representation of an edition 2 field.
struct GribPacking {
    long points = 0;  ///< packed values
    int type = -1;    ///< template
    int num_bits = 0;
    int miss_type = 0;
    long num_group = 0;
    long ref_gwidth = 0;
    int num_bits_gwidth = 0;
    long ref_glen = 0;
    long inc_glen = 0;
    long last_glen = 0;
    int num_bits_glen = 0;
    int num_bits_gref = 0;
    int order = -1;
    int spat_bytes = -1;
    int max_val = 0;
    std::vector<float> map;  ///< levels of run-length packing, from level 1 on
};

/// Plausibility test of packed values.
struct GribBadTest {
    int bad = -9;  ///< -9 before the first field, 1 once a field is found garbled
    int max = -1;  ///< jumps that make it so; below 1: no test
    std::int64_t limit = 0;
    int count = 0;  ///< values of the row so far
    std::array<int, 20> valid{};
    std::int64_t prev = -1;
};

struct GribState {
    int version = -1;
    int source = -1;
    int table = 0;  ///< edition 1: parameter table, 0 unknown
    int discipline = -1;
    int sect = -1;
    long slen = 0;
    long sect_pos = 0;  ///< position behind the section's first five octets
    Date date;
    std::array<unsigned char, 600> head{};  ///< first bytes of the message, from its keyword on
    std::size_t head_len = 0;
    long message_pos = 0;  ///< position of the keyword
    long message_end = 0;  ///< where the next message is looked for
    long complained = -1;  ///< the last message of the file whose length was told to be wrong
    int pdb_start = 8;     ///< where the product block starts in `head`
    std::size_t pdb_len = 0;
    std::vector<unsigned char> section;  ///< edition 2 section, from octet 6 on
    std::string wmo_header;
    long grid_size = 0;
    int prev_style = 0;
    int grid_id = 0;
    float lat = 0.0F;
    int ydir = 1;
    int xalt = 0;
    int thin = 0;
    std::vector<int> rows;  ///< points in each row of a quasi-regular grid
    int pole = 0;
    GribBitmap bitmap;
    BitReader bits;
    std::vector<unsigned char> packed;  ///< data section that `bits` reads
    unsigned bpval = 0;
    GribBadTest test;
    GribEnsemble ens;
    Domain dv;
    float ref = 0.0F;
    float sfac = 1.0F;
    float dscale = 1.0F;
    GribPacking packing;
    GribPlace place;
};

GribState& grib_state();

/// The stream of a handle, null for a bad one.
std::FILE* grib_stream(int grd_fd);
/// Reads on in the message's first bytes, up to `size` of them from the keyword. False if the file ends.
bool grib_read_head(std::FILE* file, std::size_t size);
/// Product block of the current message, by octet numbers.
Octets grib_product();
/// Reads up to `size` bytes; `data` takes what the file holds and grows only as it does. True if all were there.
bool grib_read_bytes(std::FILE* file, std::size_t size, std::vector<unsigned char>& data);
/// Reads the rest of the edition 2 section in work into `section`, cut at a length that no decoder needs. False if it
/// is not all there.
bool grib_read_section_body(int grd_fd);
/// Points that the bit map in force marks among its first `points`.
std::size_t grib_marked_points(std::size_t points);
/// Starts the plausibility test of a row.
void grib_start_row(GribBadTest& test);
/// A double as an int, held to the range of an int; not a number becomes MISS.
int grib_to_int(double value);
/// 10 to the power -`scale`.
float grib_decimal(int scale);
/// Turns packed numbers into values.
struct GribScale {
    float dscale;
    float sfac;
    float ref;
    explicit GribScale(const GribState& state) : dscale(state.dscale), sfac(state.sfac), ref(state.ref) {}
    /// `dscale` * (n * `sfac` + `ref`) in single precision, FMISS if that is no number.
    float value(float n) const {
        const float result = dscale * (n * sfac + ref);
        return std::isfinite(result) ? result : FMISS;
    }
};
/// The same for a single number.
inline float grib_value(const GribState& state, float n) { return GribScale(state).value(n); }
/// Stretches rows of a quasi-regular grid, given in message order, into `out` of `nx` by rows, first row of the message
/// first. `values` ends where the message did; what is missing becomes FMISS. Rows that go `round` the earth end one
/// step of their own before their first point.
void grib_stretch_rows(const std::vector<int>& rows, const std::vector<float>& values, int nx, bool round, float* out);
/// True if the columns of a latitude-longitude grid divide the whole earth.
bool grib_goes_round(const Domain& domain);
/// Unpacks complex packing, with or without spatial differencing, into `values` (FMISS for missing ones). False for a
/// group description that can't be.
bool grib_unpack_complex(const GribState& state, std::size_t count, std::vector<float>& values);

}  // namespace zav
