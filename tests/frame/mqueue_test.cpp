#include "frame/mqueue.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "frame/mess.h"
#include "frame/resrc.h"
#include "support/support.h"

namespace zav {
namespace {

struct Message {
    long type;
    std::array<char, 120> text;
};

void send(int queue, long type, const std::string& text) {
    Message message{type, {}};
    std::copy(text.begin(), text.end(), message.text.begin());
    msgsnd(queue, &message, text.size() + 1, 0);
}

/// A loop window for one program: it knows the time alone, and keeps what it was taught in a file.
void serve(int queue, const std::string& record) {
    std::string taught;
    Message message{};
    while (msgrcv(queue, &message, message.text.size(), 1, 0) > 0) {
        const std::string text(message.text.data() + 1);
        if (message.text[0] == '/') {
            send(queue, 2, "25");
        } else if (text.compare(0, 10, "query res ") == 0) {
            send(queue, 5, text == "query res time" ? "0h24\n" : "0!\n");
            send(queue, 5, "1");
        } else {
            taught += text + ";";
            send(queue, 5, "1");
        }
        if (text == "quit") break;
    }
    test::write_file(record, taught);
}

TEST(LoopWindow, GivesAndTakesResources) {
    constexpr int WINDOW = 471123;
    const int queue = msgget(WINDOW, IPC_CREAT | IPC_EXCL | 0600);
    if (queue < 0) GTEST_SKIP() << "no message queue of the system can be made";
    const test::TempDir dir;
    const std::string record = dir.file("record");
    const pid_t window = fork();
    if (window == 0) {
        serve(queue, record);
        _exit(0);
    }
    const test::EnvSetting path("zavdefault", (dir.path().string() + ":#" + std::to_string(WINDOW)).c_str());
    dir.write(".zavdef", "*.time h12\n*.level 850\n");
    const res_type keys[] = {RES_time, RES_level, RES_variable, RES_icon, RES_null};
    const char* argv[] = {"prog", "-va", "temp", "-ic"};
    RES_init(4, argv, keys, nullptr);
    waitpid(window, nullptr, 0);
    msgctl(queue, IPC_RMID, nullptr);
    EXPECT_STREQ(RES_get("time"), "h24");
    EXPECT_STREQ(RES_get("level"), "850");
    EXPECT_EQ(test::read_file(record), "set res level 850;set res variable temp;set res icon ;quit;");
}

TEST(LoopWindowDeathTest, SilentWindowEndsTheProgram) {
    constexpr int WINDOW = 471124;
    const int queue = msgget(WINDOW, IPC_CREAT | IPC_EXCL | 0600);
    if (queue < 0) GTEST_SKIP() << "no message queue of the system can be made";
    MESS_set(0, 0xFF);
    EXPECT_EXIT(
        {
            MQ_timeout(1);
            MQ_connect(MQ_open(WINDOW));
        },
        ::testing::ExitedWithCode(7), "Queue not responding!!\n");
    msgctl(queue, IPC_RMID, nullptr);
    EXPECT_EQ(MQ_open(WINDOW), -1);
    // Key 0 would make a new queue of the system.
    EXPECT_EQ(MQ_open(0), -1);
}

}  // namespace
}  // namespace zav
