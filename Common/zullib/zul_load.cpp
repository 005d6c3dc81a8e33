#include "zul_class.h"

#include "little_endian.h"
#include "result_codes.h"
#include "tag_kinds.h"
#include "zul_private.h"
#include "zullib.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <new>
#include <utility>

namespace {

/// Kinds that are in order after a load; all others stay as the file has them.
constexpr std::array sortedKinds{ZUL_process::tag_id, ZUL_camparam::tag_id, ZUL_dmacnt_register::tag_id};

constexpr std::uint64_t headLength = 24;
constexpr std::uint64_t tagHeaderLength = 8;
constexpr std::uint64_t readAhead = 2048;

/// One walk over the bytes of a container.
class ContainerLoader {
public:
    ContainerLoader(ZUL& zul, ZUL_private& store, ZULLoadMode mode, std::byte const* bytes,
                    std::uint64_t size)
        : m_zul(zul), m_store(store), m_mode(mode), m_bytes(bytes), m_size(size), m_head(&zul, 0, 0)
    {
    }
    ContainerLoader(ContainerLoader const&) = delete;
    ContainerLoader& operator=(ContainerLoader const&) = delete;
    // Appending does not touch the search cache during the walk.
    ~ContainerLoader() { m_store.m_search.invalidate(0); }

    int run()
    {
        readHead();
        if (!walk() || (m_mode == ZUL_LOAD_STRICT && !countsMatch())) {
            return invalidData;
        }
        finish();
        return 0;
    }

private:
    void readHead();
    bool walk();
    void readTag();
    void readRawTag(std::uint32_t id);
    void file(std::unique_ptr<ZUL_tag> tag);
    template <class Tag>
    void fileSingle(std::unique_ptr<Tag>& single, std::unique_ptr<ZUL_tag> tag);
    void fileLib(std::unique_ptr<ZUL_tag> lib);
    void fileConfig(std::unique_ptr<ZUL_tag> tag);
    void noteOrder(std::uint32_t id, ZUL_tag const& tag);
    bool countsMatch() const;
    void finish();
    template <class Array>
    static void announce(Array& array, std::uint32_t count);

    ZUL& m_zul;
    ZUL_private& m_store;
    ZULLoadMode m_mode;
    std::byte const* m_bytes;
    std::uint64_t m_size;
    ZUL_multi_head m_head;
    std::uint64_t m_offset = 0;
    std::uint64_t m_consumed = 0; // by the last tag that read itself
    std::uint32_t m_skippedLibs = 0;
    std::array<ZUL_tag const*, sortedKinds.size()> m_latest{}; // the last one filed of each sorted kind
    std::array<bool, sortedKinds.size()> m_toSort{};
};

void ContainerLoader::readHead()
{
    m_offset = m_head.Load(m_bytes, m_size);
    m_store.m_headDestination = m_head.getDest();
    m_toSort.fill(m_store.m_tags.getCount() != 0);
    announce(m_store.m_configs, m_head.getConfigCount());
    announce(m_store.m_tags, m_head.getTagCount());
}

/// Sets a capacity; what is in a filled container stays.
template <class Array>
void ContainerLoader::announce(Array& array, std::uint32_t count)
{
    array.scale(std::max(count, array.getCount()));
}

/// @return false when the walk cannot go on
bool ContainerLoader::walk()
{
    bool repeated = false;
    // The last 8 bytes never begin a tag: they are ignored, as files with a padded end demand.
    while (m_offset < m_size - tagHeaderLength) {
        // Nobody has touched these bytes yet: to ask for them some tags ahead hides most of their way from memory.
        __builtin_prefetch(m_bytes + std::min(m_offset + readAhead, m_size - 1));
        try {
            readTag();
        } catch (ZUL_runtime_error const& error) {
            std::printf("ZUL Exception: %s\n", error.what());
            std::printf("  Details: %s\n", error.asString().c_str());
            if (m_mode != ZUL_LOAD_TOLERANT) {
                throw;
            }
            // The step is the length of the last tag that read itself, not the failing tag's own, which may be what
            // is wrong with it. When no tag read itself yet, the same tag is read again, and once is enough.
            if (m_consumed == 0 && repeated) {
                return false;
            }
            repeated = true;
        }
        m_offset += m_consumed;
    }
    return true;
}

void ContainerLoader::readTag()
{
    auto const id = little_endian::read<std::uint32_t>(m_bytes + m_offset);
    TagKind const* const kind = findTagKind(id);
    if (kind == nullptr) {
        readRawTag(id);
        return;
    }
    std::unique_ptr<ZUL_tag> tag = kind->createIn(m_store.m_blocks, &m_zul);
    m_consumed = tag->Load(m_bytes + m_offset, m_size - m_offset);
    file(std::move(tag));
}

void ContainerLoader::readRawTag(std::uint32_t id)
{
    auto const length = little_endian::read<std::uint32_t>(m_bytes + m_offset + 4);
    if (length < tagHeaderLength || length > m_size - m_offset) {
        throw ZUL_file_bad_tag_length(id);
    }
    // The tag takes all bytes that are left, not just its own: what an unknown tag means for those behind it is
    // unknown too, and a save writes all of them back unchanged.
    auto tag = std::make_unique<ZUL_binary_data>(&m_zul, id);
    m_consumed = tag->Load(m_bytes + m_offset, m_size - m_offset);
    file(std::move(tag));
}

void ContainerLoader::file(std::unique_ptr<ZUL_tag> tag)
{
    std::uint32_t const id = tag->getTagId();
    switch (id) {
    case ZUL_author::tag_id:
        return fileSingle(m_store.m_author, std::move(tag));
    case ZUL_design_name::tag_id:
        return fileSingle(m_store.m_designName, std::move(tag));
    case ZUL_design_version::tag_id:
        return m_zul.setDesignVersion(static_cast<ZUL_design_version const*>(tag.get()));
    case ZUL_design_version_nr::tag_id:
        return m_zul.setDesignVersion(static_cast<ZUL_design_version_nr const*>(tag.get()));
    case ZUL_multi_data::tag_id:
        return fileConfig(std::move(tag));
    case ZUL_dll::tag_id:
        return fileLib(std::move(tag));
    case ZUL_multi_head::tag_id:
        throw ZUL_file_duplicate_tag(ZUL_multi_head::tag_id, "");
    case ZUL_register::old_tag_id:
    case ZUL_register::new_tag_id:
        m_store.appendRegister(static_cast<ZUL_register*>(tag.get()));
        break;
    case ZUL_register_link::tag_id:
        m_store.appendLink(static_cast<ZUL_register_link*>(tag.get()));
        break;
    default:
        m_store.appendLoaded(id, tag.get());
        noteOrder(id, *tag);
    }
    tag.release();
}

/// Most files are in order: then nothing is sorted.
void ContainerLoader::noteOrder(std::uint32_t id, ZUL_tag const& tag)
{
    auto const kind = std::find(sortedKinds.begin(), sortedKinds.end(), id);
    if (kind != sortedKinds.end()) {
        auto const i = static_cast<std::size_t>(kind - sortedKinds.begin());
        ZUL_tag const* const before = std::exchange(m_latest.at(i), &tag);
        m_toSort.at(i) = m_toSort.at(i) || (before != nullptr && *before > tag);
    }
}

template <class Tag>
void ContainerLoader::fileSingle(std::unique_ptr<Tag>& single, std::unique_ptr<ZUL_tag> tag)
{
    if (single != nullptr) {
        throw ZUL_file_duplicate_tag(tag->getTagId(), "");
    }
    single.reset(static_cast<Tag*>(tag.release()));
}

void ContainerLoader::fileLib(std::unique_ptr<ZUL_tag> lib)
{
    // Containers of version 1, the only ones that are read, may hold a library twice; the first one counts, and
    // nobody compares the two.
    if (m_zul.hasLib(static_cast<ZUL_dll const*>(lib.get()))) {
        ++m_skippedLibs;
        return;
    }
    m_store.append(lib.get());
    lib.release();
}

void ContainerLoader::fileConfig(std::unique_ptr<ZUL_tag> tag)
{
    auto* const config = static_cast<ZUL_multi_data*>(tag.get());
    m_store.appendConfig(config);
    tag.release();
    if (ZUL_destination* const destination = m_store.m_index.lastDestination(config->getIndex())) {
        config->setDestination(destination);
    }
}

bool ContainerLoader::countsMatch() const
{
    return std::int64_t{m_head.getTagCount()} - m_skippedLibs == m_zul.getTotalTagCount() &&
           m_store.m_configs.getCount() == m_store.m_configs.getLength() &&
           m_store.m_configs.getCount() == m_head.getConfigCount();
}

void ContainerLoader::finish()
{
    m_store.m_tags.scale(m_store.m_tags.getCount());
    for (std::size_t i = 0; i < sortedKinds.size(); ++i) {
        if (m_toSort.at(i)) {
            m_store.m_tags.sort(sortedKinds.at(i));
        }
    }
    m_store.m_index.changed(ZUL_process::tag_id); // another process may be the first with its id now
}

} // namespace

int ZUL::Load(void const* buffer, unsigned long size)
{
    auto const* const bytes = static_cast<std::byte const*>(buffer);
    if (bytes == nullptr || size < headLength ||
        little_endian::read<std::uint32_t>(bytes) != ZUL_multi_head::tag_id) {
        return invalidData;
    }
    return ContainerLoader(*this, *m_private, m_loadMode, bytes, size).run();
}

int ZUL::Load(char const* fileName)
{
    MappedFile file(fileName);
    if (!file) {
        return -errno;
    }
    void const* const bytes = file.data();
    unsigned long const size = file.size();
    // Kept even when the load fails: tags that were filed before may point into it.
    try {
        m_private->m_mappings.push_back(std::move(file));
        return Load(bytes, size);
    } catch (std::bad_alloc const&) {
        std::printf("Exception while parsing ZUL: %s", "Bad Alloc");
        return outOfMemory;
    } catch (ZUL_runtime_error const& error) {
        std::printf("ZUL-Exception while parsing ZUL: %s", error.what());
        std::printf("  Additional Information: %s", error.asString().c_str());
        return invalidData;
    } catch (...) {
        std::printf("Exception while parsing ZUL: %s", "unexpected Exception");
        return unexpectedException;
    }
}

int ZUL::Load(char const* fileName, ZULLoadMode mode)
{
    class RestoredMode {
    public:
        explicit RestoredMode(ZULLoadMode& mode) : m_mode(mode), m_saved(mode) {}
        RestoredMode(RestoredMode const&) = delete;
        RestoredMode& operator=(RestoredMode const&) = delete;
        ~RestoredMode() { m_mode = m_saved; }

    private:
        ZULLoadMode& m_mode;
        ZULLoadMode m_saved;
    };
    RestoredMode const restored(m_loadMode);
    m_loadMode = mode;
    return Load(fileName);
}
