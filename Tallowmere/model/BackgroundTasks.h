#pragma once

#include <QMetaObject>
#include <QObject>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

#include "platform/ThreadPriority.h"

namespace tallowmere {

// How a piece of background work ended: its result, or the exception it threw.
template <typename Result>
struct Outcome {
    std::optional<Result> value;
    std::exception_ptr error;
};

// The threads of the store's background work, each below the window's priority. A task's
// outcome is handed to the main thread of `receiver`, where its thread is then joined, so no
// thread is ever detached. Destroying this asks every task to stop and waits for all of them:
// work that must not stop half-way simply does not look at its stop token.
class BackgroundTasks {
public:
    using TaskID = std::uint64_t;

    explicit BackgroundTasks(QObject* receiver) : m_receiver(receiver) {}
    BackgroundTasks(const BackgroundTasks&) = delete;
    BackgroundTasks& operator=(const BackgroundTasks&) = delete;
    ~BackgroundTasks() = default;  // each std::jthread asks its task to stop, then joins it

    // Runs `work` on a new thread and then `done` with its outcome on the receiver's thread.
    // `work` gets copies only; it may post to the receiver, never touch it.
    template <typename Result>
    TaskID start(std::function<Result(std::stop_token)> work,
                 std::function<void(Outcome<Result>)> done) {
        const TaskID id = ++m_lastID;
        auto finish = [this, id, done = std::move(done)](Outcome<Result> outcome) mutable {
            done(std::move(outcome));
            m_threads.erase(id);
        };
        m_threads.emplace(id, std::jthread([this, work = std::move(work),
                                            finish = std::move(finish)](std::stop_token stop) {
                              lowerThisThreadPriority();
                              auto outcome = std::make_shared<Outcome<Result>>();
                              try {
                                  outcome->value.emplace(work(stop));
                              } catch (...) {
                                  outcome->error = std::current_exception();
                              }
                              QMetaObject::invokeMethod(
                                  m_receiver,
                                  [finish = std::move(finish), outcome]() mutable {
                                      finish(std::move(*outcome));
                                  },
                                  Qt::QueuedConnection);
                          }));
        return id;
    }

    // Asks the task `id` to stop, if it still runs.
    void requestStop(TaskID id) {
        if (const auto thread = m_threads.find(id); thread != m_threads.end()) {
            thread->second.request_stop();
        }
    }

private:
    QObject* m_receiver;
    TaskID m_lastID = 0;
    std::map<TaskID, std::jthread> m_threads;
};

}  // namespace tallowmere
