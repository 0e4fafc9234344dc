#pragma once

#include <functional>
#include <stop_token>

namespace tallowmere::cli {

// Runs `work` on a worker thread while this thread waits for SIGINT; an interrupt asks the
// work to stop through its token and waits for it to end. Returns true when interrupted.
// Keeping the signal on a waiting thread avoids doing anything unsafe in a signal handler.
bool runInterruptibly(const std::function<void(std::stop_token)>& work);

}  // namespace tallowmere::cli
