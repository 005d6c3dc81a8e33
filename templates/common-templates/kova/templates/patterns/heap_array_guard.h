#pragma once

#include "kova/templates/patterns/guard.h"

namespace kova::templates::patterns {

/// Releases an array made with new[] at the end of the scope, unless it was disabled. A null pointer is allowed.
template <class T>
class HeapArrayGuard : public Guard<T*> {
public:
    explicit HeapArrayGuard(T* array) noexcept : Guard<T*>(array) {}
    ~HeapArrayGuard()
    {
        if (this->isEnabled()) {
            delete[] this->getGuardedObject();
        }
    }
};

} // namespace kova::templates::patterns
