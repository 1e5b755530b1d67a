#pragma once

#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

/// Runs `call` in a thread of its own, which nobody has to wait for: it must own all that it touches. Where
/// the system has no thread left to give, nothing runs, and the result is there at once and empty.
template <typename Result, typename Call> std::future<Result> inBackground(Call call) {
    auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
    std::future<Result> result = task->get_future();
    try {
        std::thread([task] { (*task)(); }).detach();
    } catch (const std::system_error &) {
        std::promise<Result> nothing;
        nothing.set_value(Result());
        result = nothing.get_future();
    }
    return result;
}
