// Decodes every field of a grid file and prints least and greatest value of each.

#include <cstdio>

#include "calc/grd_trans.h"
#include "frame/install.h"
#include "frame/mess.h"
#include "grid/grd_read.h"

int main(int argc, char** argv) {
    using namespace zav;
    if (argc != 2) return 2;
    ZAV_install_hooks();
    MESS_set(0, MESS_WARN);
    int type = 0;
    const int fd = GRD_open(argv[1], 0, &type);
    GRD_info info;
    if (fd < 0 || GRD_getinfo(fd, &info) != 0) return 1;
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
