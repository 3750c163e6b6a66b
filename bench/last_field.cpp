// Walks through the headers of a grid file to its last field and reads that one.

#include <cstdio>

#include "grid_file.h"

int main(int argc, char** argv) {
    using namespace zav;
    if (argc != 2) return 2;
    const int fd = open_grid_file(argv[1]);
    if (fd < 0) return 1;
    GRD_report grid;
    int last = -1;
    for (int number = 0; GRD_read(fd, &grid, 1, &number) == 0; number++) last = number;
    if (last < 0 || GRD_read(fd, &grid, 0, &last) != 0) return 1;
    std::printf("%d %d %d %d\n", last, grid.var, grid.ltype, grid.level);
    GRD_close(fd);
    return 0;
}
