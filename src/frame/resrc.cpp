#include "frame/resrc.h"

#include <new>
#include <unordered_map>

#include "frame/mess.h"
#include "frame/resrc_list.h"
#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr M_type LIST_LEVEL = 8;

struct State {
    std::deque<res_obj> objects;
    std::unordered_map<std::string, res_obj*> by_name;
    std::vector<std::string> command_line;
};
State state;

std::optional<std::string> optional_text(const char* data) {
    return data != nullptr ? std::optional<std::string>(data) : std::nullopt;
}

}  // namespace

std::deque<res_obj>& RES_objects() { return state.objects; }

const res_obj* RES_find(const std::string& name) {
    const auto found = state.by_name.find(name);
    return found != state.by_name.end() ? found->second : nullptr;
}

int RES_new(int index, const std::string& name, const char* data, DEF_convert cvt) {
    try {
        res_obj made{index, name, optional_text(data), cvt};
        const auto [place, is_new] = state.by_name.try_emplace(name, nullptr);
        if (!is_new) {
            *place->second = std::move(made);
            return 0;
        }
        try {
            place->second = &state.objects.emplace_back(std::move(made));
        } catch (const std::bad_alloc&) {
            state.by_name.erase(place);
            return -1;
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

int RES_append(int index, const std::string& name, const char* data, DEF_convert cvt) {
    const auto found = state.by_name.find(name);
    if (found == state.by_name.end()) return RES_new(index, name, data, cvt);
    if (data == nullptr) return 0;
    std::optional<std::string>& value = found->second->data;
    try {
        if (value) {
            value->append(1, '\n').append(data);
        } else {
            value = data;
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

int RES_put(const std::string& name, const std::string& value) { return RES_new(MISS, name, value.c_str(), CV_string); }

const char* RES_get(const std::string& name) {
    const res_obj* object = RES_find(name);
    if (object == nullptr) return nullptr;
    return object->data ? object->data->c_str() : "";
}

int RES_getval(const std::string& name, const res_out& out, DEF_convert cvt) {
    const res_obj* object = RES_find(name);
    if (!RES_target_fits(out, cvt)) {
        MESS_print(MESS_ERROR, "RES_getval: The target doesn't take the value of the resource: %s\n", name.c_str());
        return 0;
    }
    if (object == nullptr) return 0;
    return RES_conv_data(object->data ? object->data->c_str() : nullptr, out, cvt);
}

int RES_getvals(const std::string& name, std::vector<std::string>& paramv) {
    paramv.clear();
    const res_obj* object = RES_find(name);
    if (object != nullptr && object->data) paramv = parse_string(*object->data, object->cvt == CV_strings ? '\n' : ',');
    return static_cast<int>(paramv.size());
}

void RES_list() {
    for (const res_obj& object : state.objects) {
        if (object.data) {
            MESS_print(LIST_LEVEL, "%s: %s\n", object.name.c_str(), object.data->c_str());
        } else {
            MESS_print(LIST_LEVEL, "%s:\n", object.name.c_str());
        }
    }
}

void RES_setCL(int argc, const char* const* argv) {
    state.command_line.clear();
    for (int i = 0; i < argc && argv[i] != nullptr; ++i) state.command_line.emplace_back(argv[i]);
}

std::string RES_get_prog() { return state.command_line.empty() ? std::string() : state.command_line.front(); }

std::string RES_get_progname() {
    const std::string prog = RES_get_prog();
    return prog.substr(prog.rfind('/') + 1);
}

}  // namespace zav
