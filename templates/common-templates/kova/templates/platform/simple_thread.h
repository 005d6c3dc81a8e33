#pragma once

#include <pthread.h>

namespace kova::templates::platform {

class SimpleThread {
public:
    /// Identity of the calling thread: pthread_self().
    static pthread_t currentThreadId() noexcept { return pthread_self(); }
};

} // namespace kova::templates::platform
