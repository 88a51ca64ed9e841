// Posting work on behalf of the model. A job that comes when the model is gone does nothing, and a job that runs keeps
// the model alive until it ends: every job that the model's parts give away goes through here.
#pragma once

#include "platform/api/runtime.h"

#include <memory>
#include <utility>

namespace lumbrine {

class Jobs {
public:
    explicit Jobs(Runtime& rt) : runtime(rt) {}

    // The object that the jobs belong to; jobs made before do nothing. Once, before any other thread.
    void bind(std::weak_ptr<const void> modelToGuard) { model = std::move(modelToGuard); }

    // The same callable, made harmless. Adds 16 bytes, so a callable of up to 48 is still posted without allocation.
    template <typename Function>
    auto guarded(Function function) const {
        return [model = model, function = std::move(function)]() mutable {
            if (const auto held = model.lock()) function();
        };
    }

    // At once when already on the main thread, else posted to it.
    template <typename Function>
    void runOnMain(Function function) const {
        if (runtime.onMain()) {
            function();
        } else {
            runtime.postMain(guarded(std::move(function)));
        }
    }

    template <typename Function>
    void onMainAfter(Duration delay, Function function) const {
        runtime.postMainAfter(delay, guarded(std::move(function)));
    }

    template <typename Function>
    void inBackground(Priority priority, Function function) const {
        runtime.background(priority, guarded(std::move(function)));
    }

    template <typename Function>
    void inBackgroundAfter(Duration delay, Function function) const {
        runtime.backgroundAfter(delay, guarded(std::move(function)));
    }

    template <typename Function>
    void onQueue(SerialQueue& queue, Function function) const {
        queue.post(guarded(std::move(function)));
    }

    Runtime& runtime;

private:
    std::weak_ptr<const void> model;
};

} // namespace lumbrine
