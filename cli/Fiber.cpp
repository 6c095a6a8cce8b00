// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/Fiber.h"

#include <QMetaObject>

#include <cstdlib>
#include <utility>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define RS_FIBER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RS_FIBER_ASAN 1
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define RS_FIBER_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define RS_FIBER_TSAN 1
#endif
#endif

#ifdef RS_FIBER_ASAN
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#endif
#ifdef RS_FIBER_TSAN
#include <sanitizer/tsan_interface.h>
#endif

namespace cli {

namespace {

// A command's deepest calls (parsing, the field table, Qt's text streams)
// stay far below this; only the pages it touches take memory. The
// sanitizers' instrumented frames are several times larger.
#if defined(RS_FIBER_ASAN) || defined(RS_FIBER_TSAN)
constexpr std::size_t StackSize = 8 << 20;
#else
constexpr std::size_t StackSize = 1 << 20;
#endif

thread_local Fiber *t_current = nullptr;

std::size_t pageSize()
{
    static const auto size = std::size_t(sysconf(_SC_PAGESIZE));
    return size;
}

// Stacks of finished fibers, kept for the next ones: a fleet runs a fiber
// per recorder, and a fresh mapping costs three system calls and a page
// fault for each page the command touches again.
struct StackPool
{
    static constexpr std::size_t Kept = 64;

    std::vector<void *> free;

    ~StackPool()
    {
        for (void *stack : free)
            munmap(stack, StackSize);
    }
    void *take()
    {
        if (!free.empty()) {
            void *stack = free.back();
            free.pop_back();
            return stack;
        }
        void *stack = mmap(nullptr, StackSize, PROT_READ | PROT_WRITE,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
        if (stack == MAP_FAILED)
            std::abort();
        // An overflow hits the guard page instead of another fiber's stack.
        mprotect(stack, pageSize(), PROT_NONE);
        return stack;
    }
    void give(void *stack)
    {
        if (free.size() < Kept)
            free.push_back(stack);
        else
            munmap(stack, StackSize);
    }
};

thread_local StackPool t_stacks;

} // namespace

Fiber::Fiber(std::function<void()> body, std::function<void()> finished)
    : m_body(std::move(body))
    , m_finishedHook(std::move(finished))
{
    m_stack = t_stacks.take();
    getcontext(&m_context);
    m_context.uc_stack.ss_sp = static_cast<char *>(m_stack) + pageSize();
    m_context.uc_stack.ss_size = StackSize - pageSize();
    m_context.uc_link = nullptr;
    makecontext(&m_context, &Fiber::entry, 0);
#ifdef RS_FIBER_TSAN
    m_tsanFiber = __tsan_create_fiber(0);
#endif
}

Fiber::~Fiber()
{
#ifdef RS_FIBER_TSAN
    __tsan_destroy_fiber(m_tsanFiber);
#endif
#ifdef RS_FIBER_ASAN
    // The frame of entry() never returned: its marks must not outlive the
    // stack, or memory mapped there later would look poisoned.
    __asan_unpoison_memory_region(m_context.uc_stack.ss_sp, m_context.uc_stack.ss_size);
#endif
    t_stacks.give(m_stack);
}

Fiber *Fiber::current()
{
    return t_current;
}

void Fiber::wake()
{
    if (m_wakePending || m_finished)
        return;
    m_wakePending = true;
    QMetaObject::invokeMethod(
        &m_waker,
        [this] {
            m_wakePending = false;
            resume();
            if (m_finished && m_finishedHook)
                m_finishedHook();
        },
        Qt::QueuedConnection);
}

void Fiber::resume()
{
    if (m_finished || t_current)
        return;
    t_current = this;
    m_callerScope = SessionScope::enter(&m_scope);
    switchIn();
    SessionScope::enter(m_callerScope);
    t_current = nullptr;
    if (m_exception)
        std::rethrow_exception(std::exchange(m_exception, nullptr));
}

void Fiber::switchIn()
{
#ifdef RS_FIBER_ASAN
    void *callerFakeStack = nullptr;
    __sanitizer_start_switch_fiber(&callerFakeStack, m_context.uc_stack.ss_sp,
                                   m_context.uc_stack.ss_size);
#endif
#ifdef RS_FIBER_TSAN
    m_tsanCaller = __tsan_get_current_fiber();
    __tsan_switch_to_fiber(m_tsanFiber, 0);
#endif
    swapcontext(&m_caller, &m_context);
#ifdef RS_FIBER_ASAN
    __sanitizer_finish_switch_fiber(callerFakeStack, nullptr, nullptr);
#endif
}

void Fiber::switchOut(bool leaving)
{
#ifdef RS_FIBER_ASAN
    // A fiber that leaves for good has no frames left to keep.
    __sanitizer_start_switch_fiber(leaving ? nullptr : &m_fakeStack, m_callerStack,
                                   m_callerStackSize);
#else
    (void)leaving;
#endif
#ifdef RS_FIBER_TSAN
    __tsan_switch_to_fiber(m_tsanCaller, 0);
#endif
    swapcontext(&m_context, &m_caller);
#ifdef RS_FIBER_ASAN
    __sanitizer_finish_switch_fiber(m_fakeStack, &m_callerStack, &m_callerStackSize);
#endif
}

void Fiber::yield()
{
    if (Fiber *self = t_current)
        self->switchOut(false);
}

void Fiber::entry()
{
    Fiber *self = t_current;
#ifdef RS_FIBER_ASAN
    __sanitizer_finish_switch_fiber(nullptr, &self->m_callerStack, &self->m_callerStackSize);
#endif
    try {
        self->m_body();
    } catch (...) {
        self->m_exception = std::current_exception();
    }
    self->m_finished = true;
    self->switchOut(true);
}

} // namespace cli
