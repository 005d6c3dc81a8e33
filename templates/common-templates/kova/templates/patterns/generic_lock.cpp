#include "kova/templates/patterns/generic_lock.h"

#include "kova/templates/platform/invariant.h"

#include <stdexcept>

namespace kova::templates::patterns {

using platform::checkInvariant;

namespace {

constexpr char const* thisFile = "GenericLock";

} // namespace

GenericLock::~GenericLock()
{
    checkInvariant(!m_locked, "GenericLock object destroyed with lock still held", thisFile, __LINE__);
}

void GenericLock::enter()
{
    acquire();
    if (m_locked) {
        checkInvariant(false, "!m_locked", thisFile, 49);
        release();
        throw std::logic_error("GenericLock object got lock but is already marked as locked");
    }
    m_locked = true;
}

void GenericLock::leave()
{
    if (!m_locked) {
        checkInvariant(false, "m_locked", thisFile, 73);
        throw std::logic_error("GenericLock::leave() called with lock not held");
    }
    m_locked = false;
    release();
}

} // namespace kova::templates::patterns
