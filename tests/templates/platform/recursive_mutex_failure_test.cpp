#include "kova/templates/platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>
#include <system_error>

namespace {

thread_local int failure = 0;

} // namespace

/// The function of the system, until a test wants it to fail.
extern "C" int pthread_mutexattr_settype(pthread_mutexattr_t* attribute, int kind) noexcept
{
    static auto* const real =
        reinterpret_cast<int (*)(pthread_mutexattr_t*, int)>(dlsym(RTLD_NEXT, "pthread_mutexattr_settype"));
    return failure != 0 ? failure : real(attribute, kind);
}

namespace {

TEST(RecursiveMutexFailure, IsThrownByTheConstructor)
{
    failure = ENOMEM;
    int thrown = 0;
    try {
        kova::templates::platform::RecursiveMutex const mutex;
    } catch (std::system_error const& error) {
        thrown = error.code().value();
    }
    failure = 0;
    EXPECT_EQ(thrown, ENOMEM);
}

} // namespace
