#include "zul_class.h"

#include "kova/templates/platform/file_replacement.h"
#include "result_codes.h"
#include "zul_private.h"
#include "zullib.h"

#include <cerrno>
#include <new>

namespace {

constexpr int noLibrary = -ENOENT;

/// Writes tags back to back.
class TagWriter {
public:
    explicit TagWriter(std::byte* to) : m_to(to) {}

    void write(ZUL_tag* tag)
    {
        if (tag != nullptr) {
            unsigned long const length = tag->getSaveLength();
            tag->Save(m_to);
            m_to += length;
            m_emptyCount += length == 0 ? 1 : 0;
        }
    }

    template <class Array>
    void writeAll(Array const& tags)
    {
        for (std::uint32_t i = 0; i < tags.getCount(); ++i) {
            write(tags.at(i));
        }
    }

    /// How many tags had nothing to write.
    std::uint32_t emptyCount() const { return m_emptyCount; }

private:
    std::byte* m_to;
    std::uint32_t m_emptyCount = 0;
};

unsigned long lengthOf(ZUL_tag* tag)
{
    return tag == nullptr ? 0 : tag->getSaveLength();
}

} // namespace

unsigned long ZUL::getSaveLength()
{
    generateAllIds(true);
    for (unsigned int i = 0; i < getConfigCount(); ++i) {
        getConfigAt(i)->checkDependentFields();
    }
    return ZUL_multi_head(this, 0, 0).getSaveLength() + lengthOf(m_private->m_author.get()) +
           lengthOf(m_private->m_designVersion.get()) + lengthOf(m_private->m_designName.get()) +
           m_private->m_tags.getSaveLength() + m_private->m_configs.getSaveLength();
}

int ZUL::Save(void* buffer, unsigned long size)
{
    if (size != getSaveLength() || buffer == nullptr) {
        return invalidData;
    }
    ZUL_multi_head head(this, 0, 0);
    TagWriter writer(static_cast<std::byte*>(buffer) + head.getSaveLength());
    writer.write(m_private->m_designVersion.get());
    writer.write(m_private->m_author.get());
    writer.write(m_private->m_designName.get());
    writer.writeAll(m_private->m_tags);
    // A version number of 0.0 is filed but not written, and a head that counted it could not be loaded again.
    head.setTags(getTotalTagCount() - writer.emptyCount());
    writer.writeAll(m_private->m_configs);
    head.setConfigs(getConfigCount());
    head.setDest(m_private->m_headDestination);
    head.Save(buffer);
    return 0;
}

int ZUL::Save(char const* fileName)
{
    kova::templates::platform::FileContents contents;
    try {
        contents.length = getSaveLength();
    } catch (...) {
        return unexpectedException; // memory running out included: callers know this one code for "cannot be measured"
    }
    try {
        contents.fill = [&](std::byte* to) { return Save(to, contents.length) == 0; };
        // Tags may refer to bytes of the very file that is overwritten, under this name or another.
        contents.beforeOverwriting = [this] {
            for (MappedFile& mapping : m_private->m_mappings) {
                if (int const result = mapping.detach(); result != 0) {
                    return result;
                }
            }
            return 0;
        };
        return kova::templates::platform::replaceFile(fileName, contents);
    } catch (std::bad_alloc const&) {
        return outOfMemory;
    } catch (...) {
        return unexpectedException;
    }
}

int ZUL::saveLibs(char const* dir, zul_opsys system, ZUL_dll::savepolicy policy) const
{
    int result = noLibrary;
    unsigned int const count = getTagCount(ZUL_dll::tag_id);
    for (unsigned int i = 0; i < count; ++i) {
        auto* const lib = dynamic_cast<ZUL_dll*>(getTagAt(ZUL_dll::tag_id, i));
        if (lib != nullptr && lib->getSystem() == system) {
            result = lib->toFile(dir, policy);
            if (result != 0) {
                return result;
            }
        }
    }
    return result;
}
