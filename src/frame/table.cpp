#include "frame/table.h"

namespace zav {

int TAB_hash(int tab_size, const std::string& key) {
    int h = 0;
    for (const char c : key) h = (257 * h + static_cast<unsigned char>(c)) % 35177;
    return tab_size > 0 ? h % tab_size : 0;
}

}  // namespace zav
