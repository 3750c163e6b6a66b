#include "frame/flag.h"

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>

namespace zav {
namespace {

struct State {
    std::array<long, FLAG_COUNT> flags{};
    std::array<int, PLOT_COUNT> plot_it{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
};
State state;

bool in_table(int flag) { return flag >= 0 && flag < FLAG_COUNT; }

}  // namespace

int FLAG_get(int flag) { return static_cast<int>(std::clamp(FLAG_getl(flag), long{INT_MIN}, long{INT_MAX})); }

long FLAG_getl(int flag) { return in_table(flag) ? state.flags[flag] : 0; }

int FLAG_set(int flag, int value) { return FLAG_setl(flag, value); }

int FLAG_setl(int flag, long value) {
    if (!in_table(flag)) return -1;
    state.flags[flag] = value;
    return 0;
}

void FLAG_reset(int value) { FLAG_resetl(value); }

void FLAG_resetl(long value) { state.flags.fill(value); }

int FLAG_batch() { return FLAG_getl(FLAG_BATCH_RUN) > 0; }

int FLAG_help() { return FLAG_getl(FLAG_HELP_ASKED) > 0; }

void FLAG_set_batch(int val) { FLAG_set(FLAG_BATCH_RUN, val); }

void FLAG_setplot(int type, int val) {
    if (type < 0 || type >= PLOT_COUNT) return;
    auto& plot = state.plot_it;
    plot[type] = val;
    if (type == PLOT_ALL) std::fill(plot.begin(), plot.begin() + PLOT_ALL, val);
    if (type == PLOT_TEXT) std::fill(plot.begin(), plot.begin() + PLOT_DATA, val);
    plot[PLOT_TEXT] = std::accumulate(plot.begin() + PLOT_TEXT_UL, plot.begin() + PLOT_DATA, 0);
    plot[PLOT_ALL] = std::accumulate(plot.begin(), plot.begin() + PLOT_ALL, 0);
}

int FLAG_getplot(int type) { return type >= 0 && type < PLOT_COUNT ? state.plot_it[type] : 0; }

void FLAG_resetplot(int val) { state.plot_it.fill(val); }

}  // namespace zav
