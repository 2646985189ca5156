#include <brindle/utility/SmallBlockAllocator.h>

#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <thread>

namespace brindle::utility {

namespace {

// Under the address sanitizer, its own search for leaks is the test.
TEST(ThreadStock, IsReturnedByAThreadThatFirstAllocatesWhileItEnds) {
    pthread_key_t key{};
    ASSERT_EQ(pthread_key_create(&key,
                                 [](void*) {
                                     SmallBlockAllocator::Dispose(SmallBlockAllocator::Allocate(32),
                                                                  32);
                                 }),
              0);
    auto const endThreads = [key](int inCount) {
        for (int i = 0; i < inCount; ++i) {
            std::thread([key] { EXPECT_EQ(pthread_setspecific(key, "not null"), 0); }).join();
        }
        SmallBlockAllocator::ReleaseStock();
        return mallinfo2().uordblks;
    };
    auto const before = endThreads(5);
    EXPECT_LT(endThreads(100), before + 100'000);
    pthread_key_delete(key);
}

} // namespace

} // namespace brindle::utility
