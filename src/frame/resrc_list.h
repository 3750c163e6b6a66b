#pragma once

#include <deque>
#include <optional>
#include <string>

#include "frame/resrc.h"

namespace zav {

/// One resource.
struct res_obj {
    int index;  ///< row in the option table, MISS for a free resource
    std::string name;
    std::optional<std::string> data;  ///< absent for an option without a value
    DEF_convert cvt;
};

/// All resources in the order of their first creation. They don't move.
std::deque<res_obj>& RES_objects();
/// A resource by its exact name, null if there is none.
const res_obj* RES_find(const std::string& name);

}  // namespace zav
