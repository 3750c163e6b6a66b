#pragma once

#include <string>

#include "files/date.h"

namespace zav {

// The texts round a plot: six positions (0 upper left, 1 upper centre, 2 upper right, 3 lower left, 4 lower centre,
// 5 lower right) of six overlays each. An overlay is the labels of one layer.

constexpr int PLT_LABELS = 6;
constexpr int PLT_OVERLAYS = 6;
/// Height of the labels when they stand inside the viewport.
constexpr float PLT_FULL_LABEL_SPACE = 0.06F;

/// Empties all labels.
int PLT_init_labels();
/// Overlay that the following labels belong to.
int PLT_set_overlay(int ind);
/// Line steps by which the label stacks are moved.
int PLT_set_overlay_base(int ind);
/// Raises the number of overlays to `ind`; a negative one sets it to -`ind`.
int PLT_set_num_overlay(int ind);
int PLT_get_overlay_base();
int PLT_get_num_over();
/// 0 plain; above 0 counting up with the overlays; below 0 overlays are appended to one line.
int PLT_get_label_type();
int PLT_set_label_type(int type);
/// Goes on to the next overlay: its number, or -1 at the last.
int PLT_next_overlay();

/// Gives position `lab` a label, of the current overlay or appended to the line.
int PLT_set_label(int lab, const std::string& str);
int PLT_label_up_left(const std::string& str);
int PLT_label_up_center(const std::string& str);
int PLT_label_up_right(const std::string& str);
int PLT_label_low_left(const std::string& str);
int PLT_label_low_center(const std::string& str);
int PLT_label_low_right(const std::string& str);

/// Stores a label in the current overlay.
int PLT_label_strcpy(int lab, const std::string& str);
/// Appends a label to the first overlay, behind the text that it had at the last PLT_next_overlay.
int PLT_label_strcat(int lab, const std::string& str);
/// Label at position `lab` of overlay `over`; empty for a number out of range.
const std::string& PLT_get_label(int lab, int over);

/// Date and forecast time (time code) for the codes of PLT_label_format.
int PLT_label_date(const Date* date);
int PLT_label_for_time(long fhour);
/// Expands "%" codes and "_" of `form` into `str`.
int PLT_label_format(const std::string& form, std::string& str);

/// Draws border and labels. 0, or -1 when there is no room for labels.
int PLT_labels();

}  // namespace zav
