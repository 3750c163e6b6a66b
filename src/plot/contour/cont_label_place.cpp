/// The choice of places for labels of lines.

#include <algorithm>
#include <cmath>
#include <exception>
#include <map>

#include "frame/mess.h"
#include "gks/gks_text.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_room.h"

namespace zav {
namespace {

// In millimetres.
constexpr float MARGIN = 0.8F;      ///< about a label
constexpr float GAP_MARGIN = 0.5F;  ///< between a label and its line
constexpr float NEAR_EDGE = 0.5F;   ///< of the frame
constexpr float SPACING = 60.0F;    ///< of labels of one level
/// A grid of wider cells is labelled by its columns and rows first.
constexpr float COARSE_STEP = 1.5F;

constexpr float MOST_BEND = 0.25F;  ///< of the line under a label
constexpr float WORST_BEND = 0.5F;  ///< under the only label of a level
/// What the way from the part of the page that a level prefers counts beside the bend of the line.
constexpr float PREFERENCE = 0.08F;
/// Next levels prefer parts of the page this far apart, of its width: the golden section, by which they are spread.
constexpr double NEXT_PART = 0.6180339887;

struct Label {
    Gpt pt;
    std::string text;
    bool sideways = false;
};

struct State {
    std::vector<Label> labels;
    std::map<float, Gpt> sizes;  ///< of the texts of levels
    int decimals = 0;
};
State state;

bool is_sideways(const Cont_spot& spot) { return spot.steep && cont.rot_label != 0; }

Glim box_of(const Cont_spot& spot, const Cont_paper& paper, float margin) {
    const Gpt half = cont_label_half(spot.label, is_sideways(spot), paper);
    const Gpt at = paper.at(spot.pt);
    return {at.x - half.x - margin, at.x + half.x + margin, at.y - half.y - margin, at.y + half.y + margin};
}

bool is_free(const Cont_spot& spot, const Cont_paper& paper) {
    return PLT_box_inside(box_of(spot, paper, NEAR_EDGE), PLT_room_view()) &&
           PLT_room().is_free(box_of(spot, paper, MARGIN));
}

/// Distance on paper of the points about the middle of the view.
float mean_step(const Cont_source& source, const Cont_paper& paper) {
    const Domain& domain = source.grid->domain;
    const Glim view = PLT_room_view();
    for (int part = 40; part > 0; part = part > 1 ? 1 : 0) {
        const int stride = part > 1 ? std::max(std::max(domain.nx, domain.ny) / part, 1) : 1;
        double sum = 0.0;
        int count = 0;
        for (int j = 0; j < domain.ny; j += stride) {
            for (int i = 0; i < domain.nx; i += stride) {
                Gpt pt;
                if (!source.position(i, j, &pt)) continue;
                const Gpt mm = paper.at(pt);
                if (!PLT_box_inside({mm.x, mm.x, mm.y, mm.y}, view)) continue;
                sum += cont_paper_step(source, paper, i, j);
                ++count;
            }
        }
        if (count > 0) return static_cast<float>(sum / count);
    }
    return 0.0F;
}

class Label_choice {
  public:
    explicit Label_choice(const Cont_paper& paper) : paper_(paper), view_(PLT_room_view()) {}

    /// Each spot where there is room.
    void take_all(const std::vector<Cont_spot>& spots) {
        for (const Cont_spot& spot : spots) take(spot);
    }

    /// Along lines: first one for each level, then as many as fit.
    void take_best(std::vector<Cont_spot>* spots) {
        for (Cont_spot& spot : *spots) spot.bend = std::max(spot.bend, 0.0F);
        std::stable_sort(spots->begin(), spots->end(),
                         [this](const Cont_spot& a, const Cont_spot& b) { return cost(a) < cost(b); });
        take_rare(*spots);
        for (const Cont_spot& spot : *spots) {
            if (spot.bend <= MOST_BEND && stands_apart(spot)) take(spot);
        }
    }

  private:
    /// Gives each level a label, those with the fewest places first.
    void take_rare(const std::vector<Cont_spot>& spots) {
        std::map<float, std::vector<const Cont_spot*>> by_level;
        for (const Cont_spot& spot : spots) {
            if (spot.bend <= WORST_BEND) by_level[spot.label.level].push_back(&spot);
        }
        std::vector<const std::vector<const Cont_spot*>*> order;
        for (const auto& [level, own] : by_level) {
            if (taken_.count(level) == 0) order.push_back(&own);
        }
        std::stable_sort(order.begin(), order.end(),
                         [](const auto* a, const auto* b) { return a->size() < b->size(); });
        for (const auto* own : order) {
            for (const Cont_spot* spot : *own) {
                if (take(*spot)) break;
            }
        }
    }

    /// The less the better: a straight line, at the part of the page that the level prefers, so that labels of
    /// neighbouring lines don't stand in a row.
    float cost(const Cont_spot& spot) const {
        const Gpt at = paper_.at(spot.pt);
        const float across = (at.x - view_.x_min) / (view_.x_max - view_.x_min);
        const float up = (at.y - view_.y_min) / (view_.y_max - view_.y_min);
        double whole = 0.0;
        const auto preferred =
            static_cast<float>(std::modf(NEXT_PART * (1.0 + spot.label.k / cont.label_skip), &whole));
        return spot.bend + PREFERENCE * std::fabs((spot.steep ? up : across) - preferred);
    }

    bool stands_apart(const Cont_spot& spot) const {
        const auto own = taken_.find(spot.label.level);
        if (own == taken_.end()) return true;
        const Gpt at = paper_.at(spot.pt);
        return std::none_of(own->second.begin(), own->second.end(),
                            [&at](const Gpt& other) { return std::hypot(at.x - other.x, at.y - other.y) < SPACING; });
    }

    bool take(const Cont_spot& spot) {
        if (!is_free(spot, paper_)) return false;
        PLT_room().add(box_of(spot, paper_, MARGIN));
        cont_open_gap(box_of(spot, paper_, GAP_MARGIN), paper_);
        taken_[spot.label.level].push_back(paper_.at(spot.pt));
        state.labels.push_back({spot.pt, cont_label_text(spot.label, state.decimals), is_sideways(spot)});
        return true;
    }

    Cont_paper paper_;
    Glim view_;
    std::map<float, std::vector<Gpt>> taken_;  ///< places on paper of the labels of each level
};

void choose(const Cont_source& source, const Cont_paper& paper) {
    const bool by_user = cont.x_label_space != MISS || cont.y_label_space != MISS;
    const float step = mean_step(source, paper);
    Label_choice choice(paper);
    std::vector<Cont_spot> spots;
    if (by_user || step > COARSE_STEP) {
        cont_lattice_spots(source, &spots);
        choice.take_all(spots);
        spots.clear();
    }
    if (by_user || step == 0.0F) return;
    cont_line_spots(*source.field, paper, step / static_cast<float>(source.steps), is_free, &spots);
    choice.take_best(&spots);
}

}  // namespace

std::string cont_label_text(const Cont_labelled& label, int decimals) {
    const bool named = label.k < CONT_LEVELS && !cont.cont_label[label.k].empty();
    return named ? cont.cont_label[label.k] : cont_value_text(label.level, decimals);
}

Gpt cont_label_half(const Cont_labelled& label, bool sideways, const Cont_paper& paper) {
    const auto [place, is_new] = state.sizes.try_emplace(label.level);
    if (is_new) place->second = ginq_text_size(cont_label_text(label, state.decimals), cont.text_size);
    const Gpt& size = place->second;
    const Gpt half{(sideways ? size.y : size.x) / 2.0F, (sideways ? size.x : size.y) / 2.0F};
    return {std::fabs(half.x * paper.unit.x), std::fabs(half.y * paper.unit.y)};
}

void cont_place_labels(const Cont_source& source, const Cont_paper& paper) {
    state.labels.clear();
    state.sizes.clear();
    if (cont.label_skip < 1 || source.field->domain.nx < 2 || source.field->domain.ny < 2) return;
    if (!cont_start_labels(cont.scale * cont.vert_size * CONT_TEXT_SHARE)) return;
    state.decimals = cont_decimals();
    try {
        choose(source, paper);
    } catch (const std::exception&) {
        MESS_print(MESS_WARN, "CONT_draw: Not enough memory for the labels of lines\n");
    }
}

void cont_write_labels() {
    if (state.labels.empty() || !cont_start_labels(cont.scale * cont.vert_size * CONT_TEXT_SHARE)) return;
    const Gpt upright{0.0F, 1.0F};
    const Gpt sideways{1.0F, 0.0F};
    for (const Label& label : state.labels) {
        gset_char_up_vec(label.sideways ? &sideways : &upright);
        cont.text(&label.pt, label.text);
    }
    gset_char_up_vec(&upright);
    state.labels.clear();
}

}  // namespace zav
