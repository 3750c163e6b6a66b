# The netCDF library brings dozens of others with it, so the program loads it when it meets the first netCDF file
# (src/grid/netcdf/cdf_api.cpp). Only its header is needed for building, and the name under which it is loaded.
pkg_check_modules(NETCDF REQUIRED netcdf)
find_library(ZAV_NETCDF_FILE netcdf HINTS ${NETCDF_LIBRARY_DIRS} ${NETCDF_LIBDIR} REQUIRED)
execute_process(COMMAND ${CMAKE_READELF} -d ${ZAV_NETCDF_FILE} OUTPUT_VARIABLE netcdf_sections)
if(netcdf_sections MATCHES "SONAME[^[]*\\[([^]]+)\\]")
    set(netcdf_name ${CMAKE_MATCH_1})
else()
    file(REAL_PATH ${ZAV_NETCDF_FILE} netcdf_name)
endif()
message(STATUS "netCDF is loaded as ${netcdf_name}")
set_source_files_properties(src/grid/netcdf/cdf_api.cpp PROPERTIES
    COMPILE_DEFINITIONS ZAV_NETCDF_NAME="${netcdf_name}")
