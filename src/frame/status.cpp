#include "frame/status.h"

#include <algorithm>

namespace zav {
namespace {

struct State {
    int noted = 0;
    bool unfinished = true;
};
State state;

}  // namespace

void ZAV_note(int status) { state.noted = std::max(state.noted, status); }

int ZAV_noted() { return state.noted; }

void ZAV_set_unfinished(bool unfinished) { state.unfinished = unfinished; }

int ZAV_input_ended() { return state.unfinished ? STATUS_INPUT_ENDED : 0; }

}  // namespace zav
