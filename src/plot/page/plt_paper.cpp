#include "plot/page/plt_paper.h"

#include "plot/page/plt_tool.h"

namespace zav {
namespace {

Gtran selected() {
    Gint error = 0;
    Gint number = 0;
    Gtran tran;
    ginq_cur_norm_tran_num(&error, &number);
    ginq_norm_tran(number, &error, &tran);
    return tran;
}

float scale(float view, float window) { return window == 0.0F ? 0.0F : view / window * PLT_PAGE_MM; }

Gpt scale_of(const Gtran& tran) {
    return {scale(tran.vp.x_max - tran.vp.x_min, tran.win.x_max - tran.win.x_min),
            scale(tran.vp.y_max - tran.vp.y_min, tran.win.y_max - tran.win.y_min)};
}

}  // namespace

Gpt PLT_on_paper(const Gpt& pt) {
    const Gtran tran = selected();
    const Gpt unit = scale_of(tran);
    return {tran.vp.x_min * PLT_PAGE_MM + (pt.x - tran.win.x_min) * unit.x,
            tran.vp.y_min * PLT_PAGE_MM + (pt.y - tran.win.y_min) * unit.y};
}

Gpt PLT_paper_scale() { return scale_of(selected()); }

Glim PLT_paper_view() {
    Glim view;
    PLT_get_view(&view);
    return {view.x_min * PLT_PAGE_MM, view.x_max * PLT_PAGE_MM, view.y_min * PLT_PAGE_MM, view.y_max * PLT_PAGE_MM};
}

}  // namespace zav
