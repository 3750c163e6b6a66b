// Speed of the inner parts: decoding, projections, contour tracing.

#include <benchmark/benchmark.h>

#include <string>

#include "calc/grd_trans.h"
#include "frame/install.h"
#include "frame/mess.h"
#include "grid/grd_read.h"
#include "map/maptran.h"

namespace {

using namespace zav;

std::string folder;

void decode_file(benchmark::State& state, const char* name) {
    const std::string path = folder + "/" + name;
    for (auto _ : state) {
        int type = 0;
        const int fd = GRD_open(path, 0, &type);
        GRD_info info;
        if (fd < 0 || GRD_getinfo(fd, &info) != 0) {
            state.SkipWithError("the file can't be opened");
            break;
        }
        GRD_report grid;
        int fields = 0;
        for (int number = 0; GRD_read(fd, &grid, 0, &number) == 0; number++) fields++;
        GRD_close(fd);
        state.counters["fields"] = fields;
    }
}

void project(benchmark::State& state, int proj) {
    Domain domain;
    domain.proj = proj;
    domain.plat = proj == PROJ_POLAR ? 90.0F : 40.0F;
    domain.plon = -100.0F;
    domain.clat = 45.0F;
    domain.clon = -100.0F;
    domain.dx = domain.dy = proj == PROJ_LATLON ? 2.5F : 1.2F;
    domain.nx = 61;
    domain.ny = 45;
    MAP_domain(&domain);
    for (auto _ : state) {
        float sum = 0.0F;
        for (float lat = 20.0F; lat < 70.0F; lat += 0.5F) {
            for (float lon = -140.0F; lon < -60.0F; lon += 0.5F) {
                float x = 0.0F;
                float y = 0.0F;
                MAP_tran(lat, lon, &x, &y);
                sum += x + y;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 100 * 160);
}

BENCHMARK_CAPTURE(decode_file, complex_packing, "gfs_2p5deg_f120.grib2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode_file, jpeg2000, "cmc_tmp1_jpeg2000.grib2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode_file, simple_packing, "lambert_1199x799.grib1")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(project, polar_stereographic, static_cast<int>(zav::PROJ_POLAR));
BENCHMARK_CAPTURE(project, lambert, static_cast<int>(zav::PROJ_LAMBERT));
BENCHMARK_CAPTURE(project, latitude_longitude, static_cast<int>(zav::PROJ_LATLON));

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc < 2) return 2;
    folder = argv[1];
    zav::ZAV_install_hooks();
    zav::MESS_set(0, zav::MESS_WARN);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
