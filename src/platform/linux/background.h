#pragma once

#include <future>
#include <memory>
#include <thread>
#include <utility>

/// Runs `call` in a thread of its own, which nobody has to wait for: it must own all that it touches.
template <typename Result, typename Call> std::future<Result> inBackground(Call call) {
    auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
    std::future<Result> result = task->get_future();
    std::thread([task] { (*task)(); }).detach();
    return result;
}
