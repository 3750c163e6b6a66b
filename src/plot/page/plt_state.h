#pragma once

/// Private to plot control.

#include "plot/page/plt_tool.h"

namespace zav {

struct PLT_state {
    Gint work_id = 1;
    Gws_type wk_type = GWS_ASK;
    Glim dis_view;                            ///< the plot's viewport in the page
    Glim view_off{0.0F, 0.0F, 0.04F, 0.04F};  ///< margins on its four sides
    Glim dis_size;                            ///< the panel
    float view_offset = 0.0F;
    int border = 1;
    bool letter = false;  ///< each point and cell as the grid has it
    int zoom = 0;         ///< zoom depth
    int dump = PLT_DUMP_NONE;
    std::string dump_file;  ///< name pattern of image output
    int bar = 0;            ///< 1 once the colour bar of this frame is done
    PLT_requests requests;
    int full_lab = 0;  ///< 1 puts the labels inside the viewport
    PLT_event_func callback = nullptr;
    PLT_redraw_func zoom_func = nullptr;
    PLT_redraw_func resize_func = nullptr;
    PLT_redraw_func refresh_func = nullptr;
};

PLT_state& PLT_state_get();

}  // namespace zav
