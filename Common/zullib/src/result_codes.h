#pragma once

#include <cerrno>

// What loading and saving a container answer when they fail for a reason of their own.
inline constexpr int invalidData = -EINVAL;
inline constexpr int outOfMemory = -ENOMEM;
inline constexpr int unexpectedException = -EFAULT;
