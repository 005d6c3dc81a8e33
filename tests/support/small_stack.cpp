#include "small_stack.h"

#include <pthread.h>
#include <stdexcept>

void onSmallStack(std::function<void()> const& action)
{
    constexpr std::size_t stackSize = 256 * 1024;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stackSize);
    auto const run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    auto copy = action;
    pthread_t thread{};
    int const error = pthread_create(&thread, &attributes, run, &copy);
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        throw std::runtime_error("no thread can be made");
    }
    pthread_join(thread, nullptr);
}
