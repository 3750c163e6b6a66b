#include "frame/system.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "support/support.h"

namespace zav {
namespace {

TEST(System, StopwatchCountsSleeps) {
    ZAV_init_time();
    EXPECT_EQ(ZAV_sleep(0), -1);
    EXPECT_EQ(ZAV_sleep(-1), -1);
    EXPECT_EQ(ZAV_sleep(0.02F), 0);
    EXPECT_EQ(ZAV_sleep(0.03F), 0);
    EXPECT_FLOAT_EQ(ZAV_elapse_time(), 0.05F);
    ZAV_init_time();
    EXPECT_EQ(ZAV_elapse_time(), 0);
}

TEST(SystemDeathTest, ClosedStandardStreamsAreNotTakenByFiles) {
    EXPECT_EXIT(
        {
            for (const int descriptor : {0, 1, 2}) close(descriptor);
            ZAV_open_standard_streams();
            _exit(fileno(std::fopen("/dev/null", "r")) > 2 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(SystemDeathTest, BackgroundProcessGoesOnDetached) {
    const test::TempDir dir;
    const std::string mark = dir.file("mark");
    EXPECT_EXIT(
        {
            const int parent = ZAV_get_pid();
            std::printf("buffered once");
            // An answer that is read ahead isn't one to a question of the detached process.
            int ends[2];
            if (pipe(ends) != 0 || write(ends[1], "a\nb\n", 4) != 4) _exit(4);
            dup2(ends[0], STDIN_FILENO);
            if (std::getchar() != 'a') _exit(5);
            if (ZAV_back_proc() != 1) _exit(3);
            const bool detached = ZAV_get_pid() != parent && getpgrp() == getpid() && std::getchar() == EOF;
            test::write_file(mark, detached ? "detached" : "attached");
            _exit(0);
        },
        ::testing::ExitedWithCode(0), "");
    for (int i = 0; i < 200 && test::read_file(mark).empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(test::read_file(mark), "detached");
}

}  // namespace
}  // namespace zav
