// Speed of the inner parts: decoding, projections, contour tracing.

#include <benchmark/benchmark.h>

#include <string>

#include "calc/grd_trans.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "gks/gks_ws.h"
#include "gks/zavgks.h"
#include "grid/grd_read.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont_state.h"
#include "program/install.h"

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

/// Opens a page that goes nowhere, for what is drawn on it.
void open_page(float aspect) {
    RES_put("device", "p,/dev/null,color");
    Gint workstation = 0;
    Gws_type type = 0;
    Glim margins{0.0F, 0.0F, 0.04F, 0.04F};
    GPH_setup(&workstation, &type, aspect, &margins);
    gkeep_output();
}

/// Lines and areas come out of the contour layer, joined, and go nowhere.
void draw_nothing() {
    cont.polyline = [](Gint, const Gpt*) { return 0; };
    cont.fill_rings = [](Gint, const Gint*, const Gpt*) { return 0; };
}

/// Reads a field of 1500 by 751 points and opens a page with its map. False if there is none.
bool open_field(benchmark::State& state, GRD_report* grid) {
    int type = 0;
    const int fd = GRD_open(folder + "/cmc_tmp1_jpeg2000.grib2", 0, &type);
    GRD_info info;
    int number = 0;
    if (fd < 0 || GRD_getinfo(fd, &info) != 0 || GRD_read(fd, grid, 0, &number) != 0) {
        state.SkipWithError("the file can't be read");
        return false;
    }
    GRD_close(fd);
    open_page(DOM_aspect(&grid->domain));
    MAP_setup(&grid->domain);
    return true;
}

/// That field at 20 levels. Items are cells.
void contour(benchmark::State& state, int kind) {
    GRD_report grid;
    if (!open_field(state, &grid)) return;
    float max = FMISS;
    float min = FMISS;
    GRD_maxmin(&grid, &max, &min);
    draw_nothing();
    for (auto _ : state) {
        CONT_init();
        CONT_set_type(kind);
        CONT_set_fill_colors(nullptr, 0);
        CONT_set_range(max, min);
        CONT_set_intrvl((max - min) / 20.0F);
        CONT_set_cont_ext(&grid);
        CONT_draw_contour(&grid);
    }
    GPH_end(1);
    state.SetItemsProcessed(state.iterations() * 1499 * 750);
}

/// Maxima and minima of that field within a radius of grid points. Items are points.
void extremes(benchmark::State& state, int radius) {
    GRD_report grid;
    if (!open_field(state, &grid)) return;
    CONT_init();
    CONT_set_type(CONT_VALUE);
    CONT_set_skip(grid.domain.nx, grid.domain.ny);
    CONT_set_label_type(0, radius);
    CONT_draw_contour(&grid);  // places the grid
    for (auto _ : state) CONT_draw_maxmin(&grid);
    GPH_end(1);
    state.SetItemsProcessed(state.iterations() * 1500 * 751);
}

/// The world's coasts and borders on a latitude-longitude map.
void draw_world(benchmark::State& state) {
    Domain domain;
    DOM_decode("ll,0,0,361,181,1", &domain);
    open_page(DOM_aspect(&domain));
    MAP_setup(&domain);
    for (auto _ : state) MAP_draw(MAP_PASS_PLAIN);
    GPH_end(1);
}

BENCHMARK(draw_world)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(contour, lines, static_cast<int>(CONT_LINE))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(contour, fill, static_cast<int>(CONT_FILL))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(extremes, radius_2, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(extremes, radius_40, 40)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode_file, complex_packing, "gfs_2p5deg_f120.grib2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode_file, jpeg2000, "cmc_tmp1_jpeg2000.grib2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode_file, simple_packing, "lambert_1199x799.grib1")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(project, polar_stereographic, static_cast<int>(zav::PROJ_POLAR));
BENCHMARK_CAPTURE(project, lambert, static_cast<int>(zav::PROJ_LAMBERT));
BENCHMARK_CAPTURE(project, latitude_longitude, static_cast<int>(zav::PROJ_LATLON));

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc < 3) return 2;
    folder = argv[1];
    zav::ZAV_install_hooks();
    zav::RES_put("file_path", argv[2]);
    zav::MESS_set(0, zav::MESS_WARN);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
