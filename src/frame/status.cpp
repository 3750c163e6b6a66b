#include "frame/status.h"

#include <algorithm>

namespace zav {
namespace {

struct State {
    int noted = 0;
};
State state;

}  // namespace

void ZAV_note(int status) { state.noted = std::max(state.noted, status); }

int ZAV_noted() { return state.noted; }

}  // namespace zav
