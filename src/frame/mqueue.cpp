// Not built yet: the queue of a loop window. There is no such queue for any window, which the caller reports.
#include "frame/mqueue.h"

namespace zav {

int MQ_open(int) { return -1; }

int MQ_connect(int) { return -1; }

void MQ_put(int, int, const char*, ...) {}

int MQ_get(int, int, std::string& item) {
    item.clear();
    return -1;
}

void MQ_alarm(int) {}

void MQ_ignore_alarm() {}

}  // namespace zav
