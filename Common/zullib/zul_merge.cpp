#include "zul_class.h"

#include "container_merge.h"
#include "merge_undo.h"

namespace {

/// Everything but the ids.
void addAll(ZUL& zul, ZUL_private& own, ZUL const& other, ZUL_private const& others)
{
    own += others;
    // Tags without a text may be there: those are not replaced.
    if (zul.getAuthor() == nullptr && other.getAuthor() != nullptr) {
        zul.setAuthor(other.getAuthor());
    }
    if (zul.getDesignName() == nullptr && other.getDesignName() != nullptr) {
        zul.setDesignName(other.getDesignName());
    }
}

} // namespace

ZUL_private& ZUL_private::operator+=(ZUL_private const& other)
{
    ContainerMerge(*this, other).run();
    return *this;
}

ZUL& ZUL::operator+=(ZUL const& other)
{
    if (other.getId() != nullptr) {
        m_private->removeTagsIf(isContainerId);
    }
    addAll(*this, *m_private, other, *other.m_private);
    return *this;
}

void ZUL::mergeAllOrNothing(ZUL const& other, std::function<void()> const& finish)
{
    MergeUndo undo(*m_private);
    try {
        if (other.getId() != nullptr) {
            undo.keep(m_private->takeOutIf(isContainerId));
        }
        addAll(*this, *m_private, other, *other.m_private);
        if (finish) {
            finish();
        }
    } catch (...) {
        undo.restore();
        throw;
    }
}
