// Decodes every field of a grid file and prints least and greatest value of each.

#include <cstdio>

#include "calc/grd_trans.h"
#include "grid_file.h"

int main(int argc, char** argv) {
    using namespace zav;
    if (argc != 2) return 2;
    const int fd = open_grid_file(argv[1]);
    if (fd < 0) return 1;
    GRD_report grid;
    int count = 0;
    for (int number = 0; GRD_read(fd, &grid, 0, &number) == 0; number++) {
        float max = FMISS;
        float min = FMISS;
        GRD_maxmin(&grid, &max, &min);
        std::printf("%g %g\n", static_cast<double>(min), static_cast<double>(max));
        count++;
    }
    GRD_close(fd);
    return count > 0 ? 0 : 1;
}
