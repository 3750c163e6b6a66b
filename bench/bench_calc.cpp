// Speed of every grid function over a grid of 1500 by 751 points, each beside a plain loop over the same memory: one
// that adds up as many input arrays into one output. Both run in turns; the ratio is that of their least times.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "calc/grd_calc.h"
#include "calc/grd_functions.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "program/install.h"
#include "var/var_tool.h"

namespace {

using namespace zav;

constexpr int COLUMNS = 1500;
constexpr int ROWS = 751;
constexpr int POINTS = COLUMNS * ROWS;

/// What an argument of a name in the catalogue holds.
struct Kind {
    const char* names;  ///< with blanks around each
    const char* var;
    const char* units;
    float low, high;
};
constexpr Kind KINDS[] = {{" a b t t850 t500 ", "temp", "K", 230, 300},
                          {" f rh humidity ", "rhum", "%", 5, 99},
                          {" p ", "pres", "mb", 500, 1040},
                          {" u ua ub speed ", "uwnd", "m/s", -40, 40},
                          {" v va vb ", "vwnd", "m/s", -40, 40},
                          {" direction ", "wdir", "deg", 0, 360},
                          {" z ", "hght", "m", 5000, 6000}};

/// Functions whose time has a limit, as a ratio to the plain loop.
struct Limit {
    const char* name;
    double most;
};
constexpr Limit LIMITS[] = {{"add", 4},  {"sub", 4},  {"mul", 4},    {"div", 4},  {"max", 4},
                            {"min", 4},  {"sum", 4},  {"avg", 4},    {"copy", 4}, {"abs", 4},
                            {"sqrt", 4}, {"wspd", 4}, {"interp", 4}, {"dx", 2.5}, {"dy", 2.5}};

std::vector<std::string> words_of(const std::string& text, char separator) {
    std::vector<std::string> words;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        words.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

/// The last form of a function's arguments, without what may be left out.
std::vector<std::string> arguments_of(const Math_function& function) {
    std::string text = function.arguments;
    const std::size_t alternative = text.rfind(" or ");
    if (alternative != std::string::npos) text.erase(0, alternative + 4);
    std::vector<std::string> words = words_of(text.substr(0, text.find(';')), ',');
    if (words.back() == "...") words.pop_back();
    return words;
}

void fill(GRD_report& grid, const std::string& name, int number) {
    GRD_init(&grid);
    grid.source = 7;
    grid.ltype = 100;
    grid.level = 850;
    grid.domain.proj = PROJ_LATLON;
    grid.domain.plat = grid.domain.clat = 0;
    grid.domain.plon = grid.domain.clon = 180;
    grid.domain.dx = grid.domain.dy = 0.24F;
    grid.domain.nx = COLUMNS;
    grid.domain.ny = ROWS;
    if (GRD_alloc(&grid) != 1) return;
    for (const Kind& kind : KINDS) {
        if (std::string(kind.names).find(" " + name + " ") == std::string::npos) continue;
        grid.units = kind.units;
        grid.var = VAR_search_var_num(kind.var);
        for (int k = 0; k < POINTS; k++) {
            const float wave = 0.5F + 0.5F * std::sin(0.01F * static_cast<float>(k % COLUMNS + 31 * number)) *
                                          std::cos(0.02F * static_cast<float>(k / COLUMNS));
            grid.grid[k] = kind.low + (kind.high - kind.low) * wave;
        }
    }
}

/// The call of a function.
class Call {
  public:
    explicit Call(const Math_function& function) : name_(function.name), results_(function.results) {
        values_.fill(FMISS);
        std::size_t place = 0;
        for (int i = 0; i < results_; i++) {
            GRD_init(&records_[place]);
            records_[place].ltype = 100;
            records_[place].level = 850;
            grids_[place] = &records_[place];
            place++;
        }
        for (const std::string& name : arguments_of(function)) {
            if (name[0] == '#') {
                values_[place++] = -8.0F;
                continue;
            }
            fill(records_[place], name, static_cast<int>(place));
            grids_[place] = &records_[place];
            arrays_.push_back(records_[place++].grid.get());
        }
        plain_.resize(POINTS);
    }

    int run() { return GRD_math(name_, grids_.data(), values_.data()); }

    /// The plain loop.
    void run_plain() {
        float* const out = plain_.data();
        switch (arrays_.size()) {
            case 1:
                return add_up<1>(out);
            case 2:
                return add_up<2>(out);
            case 3:
                return add_up<3>(out);
            default:
                return add_up<4>(out);
        }
    }

  private:
    template <std::size_t N>
    void add_up(float* out) {
        std::array<const float*, N> from{};
        std::copy_n(arrays_.begin(), N, from.begin());
        for (int k = 0; k < POINTS; k++) {
            float sum = from[0][k];
            for (std::size_t n = 1; n < N; n++) sum += from[n][k];
            out[k] = sum;
        }
        benchmark::DoNotOptimize(out);
        benchmark::ClobberMemory();
    }

    std::string name_;
    int results_;
    std::array<GRD_report, GRD_MATH_MAX> records_;
    std::array<GRD_report*, GRD_MATH_MAX> grids_{};
    std::array<float, GRD_MATH_MAX> values_{};
    std::vector<float*> arrays_;
    std::vector<float> plain_;
};

template <class Action>
double seconds_of(const Action& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A function's ratio to its plain loop, for the rows at the end.
struct Row {
    std::string_view name;
    double seconds, plain;
};
std::vector<Row> rows;

void calculate(benchmark::State& state, const Math_function& function) {
    Call call(function);
    double least = INFINITY, plain = INFINITY;
    if (call.run() != 1) state.SkipWithError("the function can't be run");
    for (auto _ : state) {
        const double seconds = seconds_of([&] { call.run(); });
        least = std::min(least, seconds);
        plain = std::min(plain, seconds_of([&] { call.run_plain(); }));
        state.SetIterationTime(seconds);
    }
    state.SetItemsProcessed(state.iterations() * POINTS);
    state.counters["ratio"] = least / plain;
    std::erase_if(rows, [&](const Row& row) { return row.name == function.name; });
    rows.push_back({function.name, least, plain});
}

/// Rows of the functions with a limit; false if one is over it.
bool report() {
    bool good = true;
    for (const Row& row : rows) {
        const auto limit =
            std::find_if(std::begin(LIMITS), std::end(LIMITS), [&](const Limit& l) { return row.name == l.name; });
        if (limit == std::end(LIMITS)) continue;
        const double ratio = row.seconds / row.plain;
        good &= ratio <= limit->most;
        std::printf("%-44s %9.2f ms / %9.2f ms = %6.3f  (at most %g) %s\n",
                    (std::string(row.name) + " / plain loop over the same memory").c_str(), row.seconds * 1000,
                    row.plain * 1000, ratio, limit->most, ratio <= limit->most ? "ok" : "OVER");
    }
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc < 2) return 2;
    ZAV_install_hooks();
    RES_put("file_path", argv[1]);
    MESS_set(0, MESS_WARN);
    for (const Math_function& function : GRD_functions()) {
        if (GRD_is_plot_func(std::string(function.name)) != 0) continue;
        benchmark::RegisterBenchmark(std::string(function.name).c_str(),
                                     [&function](benchmark::State& state) { calculate(state, function); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    return report() ? 0 : 1;
}
