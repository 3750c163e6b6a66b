#pragma once

#include <string>
#include <vector>

#include "map/region.h"

namespace zav {

/// The program: takes the options, finds the grid file, and plots what the prompts or the resources choose.
/// Returns the exit status, 0 when the prompt loops have run out.
int GRD_main(int argc, const char* const* argv);

/// Sets the naming convention, the input type and the model string from the resources and the model list file.
/// Result 0.
int GRD_in_file();

/// Chooses a forecast time: 1 when there is one, 0 when there is nothing more to choose.
int GRD_prompt_time();
/// 1 asks for the time again, 0 says that it is answered for good.
void GRD_set_prompt_time(int val);

/// Chooses a vertical level: 1 or 0, as GRD_prompt_time.
int UPA_prompt_level();
void UPA_set_prompt_level(int val);

/// Chooses a variable and compiles its string: not 0 when there is one, 0 otherwise.
int GRD_prompt_variable();
void GRD_set_prompt_variable(int val);

/// Variable string of the current choice.
const std::string& GRD_get_variable();
/// Time words of the current choice; more than one makes a loop of frames.
const std::vector<std::string>& GRD_get_times();

/// Asks for a place: a station or "lat,lon" in degrees. The result is that of the station look-up, 1 for a position.
int GRD_prompt_id(std::string& id, float* lat, float* lon);

/// Plots the current variable for all chosen times on `domain`. Also the redraw after a zoom or a resize. Result 0.
int GRD_plot(Domain* domain);

/// Reads what the options say of the map, anew when they have changed. False, with a warning that names the text, if it
/// can't be read and no other option gives a whole domain.
bool GRD_read_domain();
/// The map of the plot: that of the options, or the one of the file. False as GRD_read_domain.
bool GRD_choose_domain(Domain* domain);
/// Tells of each grid that lies wholly outside of the map where it lies.
void GRD_tell_outside(const Domain* map);

/// Reads the resource "plot_param"; its words are decoded by the plot layers. Result 0.
int GRD_plot_param();

/// Hands a mouse or key event to the plot layers, each of which acts on its own.
void GRD_callback(int type, const char* str, float x, float y);

}  // namespace zav
