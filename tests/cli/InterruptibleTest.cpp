#include "Interruptible.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>

#include <stdexcept>
#include <thread>

namespace tallowmere {
namespace {

TEST(Interruptible, InterruptAsksTheWorkToStopAndFailuresPassThrough) {
    const pthread_t waiter = pthread_self();
    bool sawStop = false;
    const bool interrupted = cli::runInterruptibly([&](std::stop_token stop) {
        pthread_kill(waiter, SIGINT);  // as Ctrl-C would, aimed at the waiting thread
        while (!stop.stop_requested()) {
            std::this_thread::yield();
        }
        sawStop = true;
    });
    EXPECT_TRUE(interrupted);
    EXPECT_TRUE(sawStop);

    EXPECT_FALSE(cli::runInterruptibly([](std::stop_token) {}));
    EXPECT_THROW(cli::runInterruptibly([](std::stop_token) { throw std::runtime_error("no"); }),
                 std::runtime_error);
}

}  // namespace
}  // namespace tallowmere
