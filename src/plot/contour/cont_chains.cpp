/// Lines from segments.

#include "plot/contour/cont_chains.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <tuple>

#include "plot/contour/cont_state.h"

namespace zav {
namespace {

constexpr std::uint32_t NONE = 0xFFFFFFFFU;

/// Both ends of a segment, in one order however it runs.
auto ends_of(const Cont_chains::Segment& segment) { return std::minmax(segment.from.key, segment.to.key); }

/// A line at nought, or at the lowest value, runs only where values on one hand are below it and on the other above: it
/// doesn't go round an area without rain.
bool is_drawn(const Cont_chains::Segment& segment, float level) {
    if (!segment.on_points) return true;
    return !cont_may_be_flat(level) || (segment.below && segment.above);
}

}  // namespace

void Cont_chains::draw(const std::vector<Cont_layer>& layers) {
    std::vector<std::vector<std::uint32_t>> lines(layers.size());
    for (std::uint32_t i = 0; i < segments_.size(); ++i) {
        lines[static_cast<std::size_t>(segments_[i].layer)].push_back(i);
    }
    std::vector<std::size_t> order(layers.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return layers[a].number < layers[b].number; });
    for (const std::size_t layer : order) {
        line_ = std::move(lines[layer]);
        leave_out(layers[layer].nlevel);
        if (line_.empty()) continue;
        cont.con_off = layers[layer].con_off;
        cont_set_line_attributes(layers[layer].entry, layers[layer].nlevel);
        draw_line();
    }
    segments_.clear();
}

/// Keeps one of two equal segments, and none of those that aren't drawn.
void Cont_chains::leave_out(float level) {
    const auto on_points =
        std::partition(line_.begin(), line_.end(), [&](std::uint32_t i) { return !segments_[i].on_points; });
    std::sort(on_points, line_.end(),
              [&](std::uint32_t a, std::uint32_t b) { return ends_of(segments_[a]) < ends_of(segments_[b]); });
    auto kept = on_points;
    for (auto at = on_points; at != line_.end();) {
        Segment& segment = segments_[*at];
        const auto first = at;
        for (; at != line_.end() && ends_of(segments_[*at]) == ends_of(segment); ++at) {
            segment.below = segment.below || segments_[*at].below;
            segment.above = segment.above || segments_[*at].above;
        }
        if (is_drawn(segment, level)) *kept++ = *first;
    }
    line_.erase(kept, line_.end());
}

const Cont_vertex& Cont_chains::vertex(std::uint32_t end) const {
    const Segment& segment = segments_[line_[end / 2]];
    return end % 2 == 0 ? segment.from : segment.to;
}

/// Gives each end another one at the same point. The last of an odd number stays alone.
void Cont_chains::mate_ends() {
    const std::size_t count = 2 * line_.size();
    mates_.assign(count, NONE);
    slots_.assign(std::bit_ceil(2 * count), NONE);
    for (std::uint32_t end = 0; end < count; ++end) {
        const Cont_key key = vertex(end).key;
        std::size_t slot = cont_slot(key, slots_.size());
        while (slots_[slot] != NONE && vertex(slots_[slot]).key != key) slot = (slot + 1) & (slots_.size() - 1);
        const std::uint32_t other = slots_[slot];
        if (other != NONE && mates_[other] == NONE) {
            mates_[other] = end;
            mates_[end] = other;
        } else {
            slots_[slot] = end;
        }
    }
}

void Cont_chains::draw_line() {
    mate_ends();
    used_.assign(line_.size(), false);
    for (std::uint32_t end = 0; end < mates_.size(); ++end) {
        if (mates_[end] == NONE && !used_[end / 2]) follow(end);
    }
    for (std::uint32_t end = 0; end < mates_.size(); end += 2) {
        if (!used_[end / 2]) follow(end);
    }
}

/// Draws the line that begins at an end, or the closed one that comes back to it.
void Cont_chains::follow(std::uint32_t end) {
    points_.assign(1, vertex(end).pt);
    while (end != NONE && !used_[end / 2]) {
        used_[end / 2] = true;
        points_.push_back(vertex(end ^ 1U).pt);
        end = mates_[end ^ 1U];
    }
    cont_open_line(static_cast<Gint>(points_.size()), points_.data());
}

}  // namespace zav
