#include "Interruptible.h"

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <exception>
#include <thread>

namespace tallowmere::cli {

namespace {

// The worker wakes the waiting thread with this signal when it is done.
constexpr int finishedSignal = SIGUSR1;

}  // namespace

bool runInterruptibly(const std::function<void(std::stop_token)>& work) {
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGINT);
    sigaddset(&awaited, finishedSignal);
    sigset_t previous;
    pthread_sigmask(SIG_BLOCK, &awaited, &previous);  // the worker inherits the block

    const pthread_t waiter = pthread_self();
    std::atomic<bool> finished = false;
    std::exception_ptr failure;
    std::stop_source stop;
    std::thread worker([&] {
        try {
            work(stop.get_token());
        } catch (...) {
            failure = std::current_exception();
        }
        finished = true;
        pthread_kill(waiter, finishedSignal);
    });

    bool interrupted = false;
    while (!finished) {
        int received = 0;
        if (sigwait(&awaited, &received) == 0 && received == SIGINT) {
            interrupted = true;
            stop.request_stop();
            break;
        }
    }
    worker.join();
    // Take a wake-up that arrived after an interrupt, so it cannot fire once unblocked.
    const timespec noWait{0, 0};
    sigset_t wakeUp;
    sigemptyset(&wakeUp);
    sigaddset(&wakeUp, finishedSignal);
    while (sigtimedwait(&wakeUp, nullptr, &noWait) == finishedSignal) {
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    if (failure && !interrupted) {
        std::rethrow_exception(failure);
    }
    return interrupted;
}

}  // namespace tallowmere::cli
