#pragma once

// Private to grid/netcdf: where the values of a classic netCDF file stand, read from its header. The library doesn't
// tell, takes sizes on trust, and gives zeros for what a file that was cut short doesn't hold.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace zav {

/// Where a variable stands.
struct Classic_var {
    std::vector<std::uint64_t> sizes;  ///< of its dimensions; 1 in place of the record dimension
    std::uint64_t element = 0;         ///< octets of a value
    std::uint64_t begin = 0;           ///< of its first value, in octets from the start of the file
    std::uint64_t record_step = 0;     ///< octets from record to record; 0 for a variable without records
};

/// A classic file.
struct Classic_layout {
    std::uint64_t file_size = 0;
    std::vector<Classic_var> vars;  ///< in the order of their ids
};

/// Reads the header of a file in the formats CDF-1, CDF-2 or CDF-5 from its start on. False for a header that doesn't
/// follow the format or is cut short.
bool classic_read_layout(std::FILE* file, Classic_layout* layout);

/// True if the file holds the block whose last value stands at `last`, an index in each dimension.
bool classic_holds(const Classic_layout& layout, int var, const std::vector<std::size_t>& last);

}  // namespace zav
