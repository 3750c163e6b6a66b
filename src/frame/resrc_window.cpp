#include "frame/resrc_window.h"

#include "frame/mess.h"
#include "frame/mqueue.h"
#include "frame/tools.h"

namespace zav {
namespace {

/// Seconds that the window has for the first line of its answer to a query.
constexpr int ANSWER_TIME = 100;
constexpr int WINDOW_STOPPED = -3;

bool holds_value(const std::string& line) { return !line.empty() && line.front() != '!' && line.front() != '\n'; }

}  // namespace

void LoopWindow::open(const std::string& name, const std::vector<RES_defobj>& rows) {
    linked_ = false;
    queue_ = MQ_open(text_to_int(name));
    if (queue_ == -1) {
        MESS_print(MESS_WARN, "ZAVloop window: %s not running or no message queue exists\n", name.c_str());
        return;
    }
    connection_ = MQ_connect(queue_);
    if (connection_ == -1) {
        MESS_print(MESS_WARN, "ZAVloop window: %s unable to connect\n", name.c_str());
        return;
    }
    linked_ = true;
    ask(rows);
}

void LoopWindow::ask(const std::vector<RES_defobj>& rows) {
    for (const RES_defobj& def : rows) {
        if (!def.def.empty()) MQ_put(queue_, connection_, "query res %s", def.def.c_str());
    }
    int outstanding = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const std::string& name = rows[row].def;
        if (name.empty() || take_reply(static_cast<int>(row), rows[row])) continue;
        const char* value = RES_get(name);
        if (value == nullptr) continue;
        MQ_put(queue_, connection_, "set res %s %s", name.c_str(), value);
        ++outstanding;
    }
    for (; outstanding > 0; --outstanding) await_reply();
}

/// Reads the reply to one query. True if it held a value.
bool LoopWindow::take_reply(int row, const RES_defobj& def) {
    bool found = false;
    std::string line;
    const int usual = MQ_timeout(ANSWER_TIME);
    int flag = MQ_get(queue_, connection_, line);
    MQ_timeout(usual);
    for (; flag == 0; flag = MQ_get(queue_, connection_, line)) {
        if (!holds_value(line)) continue;
        line.pop_back();
        RES_new(row, def.def, line.c_str(), def.cvt);
        found = true;
    }
    if (flag == WINDOW_STOPPED) MESS_print(MESS_WARN, "ZAVloop not running!\n");
    return found;
}

void LoopWindow::await_reply() {
    std::string line;
    while (MQ_get(queue_, connection_, line) == 0) {
    }
}

void LoopWindow::set(const std::string& name, const std::string& value) {
    MQ_put(queue_, connection_, "set res %s %s", name.c_str(), value.c_str());
    await_reply();
}

void LoopWindow::quit() {
    MQ_put(queue_, connection_, "quit");
    await_reply();
    linked_ = false;
}

}  // namespace zav
