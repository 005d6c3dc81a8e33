#pragma once

#include <utility>

namespace kova::templates::patterns {

/// What scope guards have in common: the object they guard, and whether they still have to act at the end of the scope.
/// @tparam T the guarded object, usually a pointer
template <class T>
class Guard {
public:
    /// An enabled guard of @p object.
    explicit Guard(T object) : m_object(std::move(object)) {}
    Guard(Guard const&) = delete;
    Guard& operator=(Guard const&) = delete;

    /// Whether the guard acts on destruction.
    bool isEnabled() const noexcept { return m_enabled; }
    /// From now on the guard leaves its object alone; whoever calls this takes over what the guard was to do.
    void disable() noexcept { m_enabled = false; }
    T const& getGuardedObject() const noexcept { return m_object; }

private:
    T m_object;
    bool m_enabled = true;
};

} // namespace kova::templates::patterns
