#include "kova/templates/platform/recursive_mutex.h"

#include <system_error>

namespace kova::templates::platform {

namespace {

void demandSuccess(int result)
{
    if (result != 0) {
        throw std::system_error(result, std::generic_category(), "recursive mutex");
    }
}

} // namespace

RecursiveMutex::RecursiveMutex()
{
    demandSuccess(pthread_mutexattr_init(&m_attribute));
    demandSuccess(pthread_mutexattr_settype(&m_attribute, PTHREAD_MUTEX_RECURSIVE));
    demandSuccess(pthread_mutex_init(&m_mutex, &m_attribute));
}

RecursiveMutex::~RecursiveMutex()
{
    pthread_mutex_destroy(&m_mutex);
    pthread_mutexattr_destroy(&m_attribute);
}

int RecursiveMutex::lock() noexcept
{
    int const result = pthread_mutex_lock(&m_mutex);
    m_lockCount += result == 0 ? 1 : 0;
    return result;
}

int RecursiveMutex::tryLock() noexcept
{
    int const result = pthread_mutex_trylock(&m_mutex);
    m_lockCount += result == 0 ? 1 : 0;
    return result;
}

int RecursiveMutex::unlock() noexcept
{
    int const result = pthread_mutex_unlock(&m_mutex);
    m_lockCount -= result == 0 ? 1 : 0;
    return result;
}

} // namespace kova::templates::platform
