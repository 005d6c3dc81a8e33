#pragma once

#include <cerrno>
#include <exception>
#include <new>

/// The result of @p work, which returns 0 or a negative error number; -12 when memory runs out, -14 when it throws
/// anything else of the standard family.
template <class Work>
int outcomeOf(Work const& work)
{
    try {
        return work();
    } catch (std::bad_alloc const&) {
        return -ENOMEM;
    } catch (std::exception const&) {
        return -EFAULT;
    }
}
