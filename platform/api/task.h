// A unit of work for another thread or for later.
#pragma once

#include <cstddef>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>

namespace lumbrine {

// A move-only `void()` callable. Callables of up to 64 bytes are stored inline, so that posting the small jobs of the
// hot path allocates nothing. Larger ones go to the heap.
class Task {
public:
    static constexpr std::size_t inlineSize = 64;

    Task() = default;

    template <typename Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, Task> && std::is_invocable_v<Callable&>)
    Task(Callable&& callable) { // NOLINT(google-explicit-constructor): a lambda is a task wherever a task is asked for
        using Stored = std::decay_t<Callable>;
        if constexpr (sizeof(Stored) <= inlineSize && alignof(Stored) <= alignof(std::max_align_t) &&
                      std::is_nothrow_move_constructible_v<Stored>) {
            ::new (static_cast<void*>(storage)) Stored(std::forward<Callable>(callable));
            operations = &inlineOperations<Stored>;
        } else {
            ::new (static_cast<void*>(storage)) Stored*(new Stored(std::forward<Callable>(callable)));
            operations = &heapOperations<Stored>;
        }
    }

    Task(Task&& other) noexcept : operations(std::exchange(other.operations, nullptr)) {
        if (operations != nullptr) operations->move(other.storage, storage);
    }

    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            reset();
            operations = std::exchange(other.operations, nullptr);
            if (operations != nullptr) operations->move(other.storage, storage);
        }
        return *this;
    }

    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() { reset(); }

    explicit operator bool() const { return operations != nullptr; }

    // May be called more than once. Must not be called when the task is empty.
    void operator()() { operations->call(storage); }

private:
    struct Operations {
        void (*call)(std::byte*);
        void (*move)(std::byte* from, std::byte* to) noexcept; // leaves no object at `from`
        void (*destroy)(std::byte*) noexcept;
    };

    template <typename Stored>
    static Stored& at(std::byte* where) {
        return *std::launder(reinterpret_cast<Stored*>(where));
    }

    template <typename Stored>
    static constexpr Operations inlineOperations{
        [](std::byte* where) { at<Stored>(where)(); },
        [](std::byte* from, std::byte* to) noexcept {
            ::new (static_cast<void*>(to)) Stored(std::move(at<Stored>(from)));
            at<Stored>(from).~Stored();
        },
        [](std::byte* where) noexcept { at<Stored>(where).~Stored(); },
    };

    template <typename Stored>
    static constexpr Operations heapOperations{
        [](std::byte* where) { (*at<Stored*>(where))(); },
        [](std::byte* from, std::byte* to) noexcept { ::new (static_cast<void*>(to)) Stored*(at<Stored*>(from)); },
        [](std::byte* where) noexcept { delete at<Stored*>(where); },
    };

    void reset() noexcept {
        if (operations != nullptr) std::exchange(operations, nullptr)->destroy(storage);
    }

    alignas(std::max_align_t) std::byte storage[inlineSize];
    const Operations* operations = nullptr;
};

} // namespace lumbrine
