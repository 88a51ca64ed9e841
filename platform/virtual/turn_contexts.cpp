#include "platform/virtual/turn.h"

#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <thread>
#include <utility>

namespace lumbrine {

namespace {

// The system provides only the pages that are used. A page that nobody may touch lies below, so that a stack which
// overflows ends the program.
class Stack {
public:
    Stack() : memory(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0)) {
        if (memory == MAP_FAILED) throw std::bad_alloc();
        ::mprotect(memory, static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)), PROT_NONE);
    }
    ~Stack() { ::munmap(memory, size); }
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    stack_t range() const { return {memory, 0, size}; }

private:
    static constexpr std::size_t size = 1 << 20;
    void* memory;
};

} // namespace

struct Turn::Flow {
    std::unique_ptr<Stack> stack; // of its own, unless it is a thread's own flow
    ucontext_t context{};         // where it goes on
    std::function<void()> body;
    ucontext_t* afterEnd = nullptr;
    std::thread::id id = std::this_thread::get_id();

    static void run(unsigned high, unsigned low);
};

// `makecontext` hands over numbers of the size of int only.
void Turn::Flow::run(unsigned high, unsigned low) {
    auto& flow = *std::bit_cast<Flow*>(std::uintptr_t{high} << 32 | low);
    flow.body();
    ::setcontext(flow.afterEnd);
}

Turn::Turn() : flow(std::make_unique<Flow>()) {}

Turn::Turn(std::function<void()> body) : flow(std::make_unique<Flow>()) {
    flow->stack = std::make_unique<Stack>();
    flow->body = std::move(body);
    ::getcontext(&flow->context);
    flow->context.uc_stack = flow->stack->range();
    const auto address = reinterpret_cast<std::uintptr_t>(flow.get());
    ::makecontext(&flow->context, reinterpret_cast<void (*)()>(&Flow::run), 2, static_cast<unsigned>(address >> 32),
                  static_cast<unsigned>(address));
}

Turn::~Turn() = default;

void Turn::passTo(Turn& other) {
    ::swapcontext(&flow->context, &other.flow->context);
}

void Turn::letEnd(Turn& other) {
    other.flow->afterEnd = &flow->context;
    passTo(other);
}

bool Turn::onItsThread() const {
    return flow->id == std::this_thread::get_id();
}

} // namespace lumbrine
