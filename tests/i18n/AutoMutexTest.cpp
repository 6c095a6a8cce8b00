#include "i18n/AutoMutex.h"
#include "i18n/Mutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <stdexcept>

using namespace nelib;

TEST(AutoMutex, ReleasesWhenAnExceptionLeavesTheScope)
{
    Mutex mutex;
    EXPECT_THROW(
        {
            AutoMutex lock(mutex);
            throw std::runtime_error("leaving");
        },
        std::runtime_error);

    auto other = std::async(std::launch::async, [&mutex] { AutoMutex lock(mutex); });
    const auto status = other.wait_for(std::chrono::seconds(10));
    EXPECT_EQ(status, std::future_status::ready);
    // This thread still owns a lock left behind; free the other thread.
    if (status != std::future_status::ready)
        mutex.unlock();
}
