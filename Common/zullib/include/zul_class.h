#pragma once

#include "ZUL_dll.h"
#include "zul_errors.h"
#include "zul_tag.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

class ZUL_author;
class ZUL_design_name;
class ZUL_design_version;
class ZUL_design_version_nr;
class ZUL_destination;
class ZUL_module;
class ZUL_multi_data;
class ZUL_private;
class ZUL_process;
class ZUL_register;
class ZUL_register_link;
class ZUL_user_info;

/// How a load treats what is wrong. Any other value reports tag errors and ignores counts that differ.
enum ZULLoadMode : std::uint32_t {
    ZUL_LOAD_STRICT = 0,  ///< tag errors leave the load; counts that differ from the head are refused
    ZUL_LOAD_TOLERANT = 1 ///< tag errors are printed and the walk goes on; counts are not looked at
};

/// 0: registers of the older layout are saved in it; anything else: all registers are saved in the newer layout.
enum ZULRegisterPolicy : std::uint32_t {};

/// A design container: a list of tags, a list of configurations, and the author, design name and design version of
/// which there is at most one each.
///
/// The container owns every tag that is handed to it by pointer; when an adding operation throws, the tag stays the
/// caller's. Concurrent reading is safe; loading, editing and saving need the container for themselves.
class ZUL {
public:
    ZUL();
    /// Every tag in place, references to tags of @p other pointing at their copies. Payloads are copied; the counts
    /// that a module was loaded with are not. A tag that is not of a kind of the format becomes a ZUL_binary_data with
    /// the bytes that it saves.
    /// @throws std::bad_alloc; what assigning a ZUL_param throws; what measuring and saving a tag that is not of a
    ///         kind of the format throws. Assignment leaves this container as it was then.
    ZUL(ZUL const& other);
    ZUL& operator=(ZUL const& other);
    ~ZUL();

    // Loading.

    /// Reads a container from @p buffer, which has to outlive this object and its tags: payloads are not copied.
    /// A filled container is added to.
    /// @return 0, or -22 when the buffer is null, shorter than a head or does not begin with one, and in strict mode
    ///         when the counts of the head do not match
    /// @throws ZUL_runtime_error (its family) as the first tag error does, unless the mode is tolerant;
    ///         std::bad_alloc
    int Load(void const* buffer, unsigned long size);
    /// Reads a container from a file, which stays mapped as long as the container lives.
    /// @return 0; a negated errno when the file cannot be mapped; -22 as above and for tag errors, -12 when memory
    ///         runs out, -14 for anything else. Messages go to standard output.
    int Load(char const* fileName);
    /// As above in @p mode; the container's own mode is restored afterwards.
    int Load(char const* fileName, ZULLoadMode mode);
    ZULLoadMode getLoadMode() const noexcept { return m_loadMode; }
    void setLoadMode(ZULLoadMode mode) noexcept { m_loadMode = mode; }

    // Adding. Null is ignored.

    /// Files @p tag as its id demands; single instances replace the one that is there. The tag becomes owned; a
    /// design version number is copied and released.
    /// @throws what AddLib, AddRegister and AddLink throw
    void AddTag(ZUL_tag* tag);
    /// @throws ZUL_dll_already_exists when hasLib() holds
    void AddLib(ZUL_dll* lib);
    /// Whether a library with the same name and system is in the container. A library without name equals no other.
    bool hasLib(ZUL_dll const* lib) const;
    /// @throws ZUL_file_duplicate_tag (id 0x8151000) when getRegisterByName() already knows the name
    void AddRegister(ZUL_register* reg);
    /// @throws ZUL_link_loop_detected when a link in the container has this link's target as its alias. Longer ways
    ///         round are not looked for; a name on one is unknown to the lookups.
    void AddLink(ZUL_register_link* link);
    void AddConfig(ZUL_multi_data* config) { AddConfig(config, ""); }
    /// Appends a configuration and stores @p id as its identifier, which is a user info of the container.
    void AddConfig(ZUL_multi_data* config, char const* id);

    // The design's own texts and version. Null deletes the tag; getters answer null when there is none.

    void setAuthor(char const* author);
    char const* getAuthor() const;
    void setDesignName(char const* name);
    char const* getDesignName() const;
    void setDesignVersion(char const* version);
    /// Stores "major.minor" in decimal.
    void setDesignVersion(unsigned short major, unsigned short minor);
    /// Copies @p version, which stays the caller's.
    void setDesignVersion(ZUL_design_version const* version);
    /// Copies @p version over the version number with the same index, or adds a copy; null does nothing.
    void setDesignVersion(ZUL_design_version_nr const* version);
    char const* getDesignVersion() const;

    // The container's id: the value of the user info "__ZUL_ID__".

    /// The id; one that says that it is not valid is made when there is none. The flag changes nothing.
    char const* generateId(bool);
    /// generateId for the container and for the configurations that the tag search knows, which are none: ids of
    /// configurations are made one by one.
    void generateAllIds(bool flag);
    /// Null removes the id.
    void setId(char const* id);
    char const* getId() const;

    // Merging.

    /// Adds copies of everything in @p other, which is not changed and may go afterwards; it may be this container.
    ///
    /// Author, design name and design version are taken over where this container has none. When this container has
    /// processes (modules), those of @p other get the ids (indexes) that follow the highest one, and what refers to
    /// them follows. Of the two sides' events, those of the side whose lowest configuration index is higher move up by
    /// 16 interrupt queues, modulo 256; a side without configurations counts as 0, and its events become firmware
    /// events. The container's id is removed when @p other has one, whose id is not taken over: a merged container
    /// is a new design.
    /// @throws ZUL_add_tag_error when a tag of @p other refers to a process or module that is not there, and when two
    ///         events would share a queue and bit, or a queue that one of them uses exclusively
    /// @throws ZUL_file_duplicate_tag (id 0x8151000) when this container knows the name of a register of @p other
    /// @throws std::bad_alloc; what copying a tag throws. What was added before the failing tag stays.
    ZUL& operator+=(ZUL const& other);
    /// operator+=, then @p finish, which may be empty. When either throws, this container is as it was before, and
    /// the exception goes on. Tags that were there keep their addresses.
    /// @param finish may remove tags only as the last thing it does: removals are not undone
    void mergeAllOrNothing(ZUL const& other, std::function<void()> const& finish);

    // Removing. References of other tags to a removed one become null.

    /// Takes @p tag out of the tag list and deletes it; null does nothing.
    /// @throws ZUL_invalid_data "given tag is not member of this ZUL"; single instances and configurations are not
    ///         in the tag list
    void removeTag(ZUL_tag* tag);
    /// Deletes all tags of @p id from the tag list; for 0x8150120 all configurations and all destinations.
    void removeTags(unsigned int id);
    /// Takes a destination out of the tag list; it becomes the caller's. Does nothing when it is not there.
    void removeDestination(ZUL_destination* destination);

    // Looking up. Names and numbers are found in constant time after the first question; null names never match.

    /// Number of tags with @p id in the tag list (single instances and configurations are not in it).
    unsigned int getTagCount(unsigned int id) const;
    /// The @p i-th tag with @p id in list order, or null.
    ZUL_tag* getTagAt(unsigned int id, unsigned int i) const;
    /// Calls @p visit with every tag of the tag list, in order.
    /// @throws what @p visit throws
    void forEachTag(std::function<void(ZUL_tag&)> const& visit) const;
    /// The @p i-th register of the older layout, or the @p i-th register link. Registers of the newer layout are not
    /// reached: callers use it to number the older ones.
    template <class T>
    T* getTagAt(unsigned int i) const;
    /// Tags in the tag list and single instances.
    unsigned int getTotalTagCount() const;
    /// 1-based number of a register: older layout first, then newer, each in list order; links lead to their
    /// target's. 0 when the name is unknown.
    unsigned int getRegisterByName(char const* name) const;
    /// The register with that number, or null.
    ZUL_register* getRegisterAt(unsigned int number) const;
    /// The register with that name or alias, or null.
    ZUL_register* findRegister(char const* name) const;
    ZUL_register* findRegister(std::string_view name) const;
    /// The first user info with that name, or null.
    ZUL_user_info* findUserInfo(char const* info) const;
    /// The first process with that id, or null.
    ZUL_process* getProcessAt(unsigned int id) const;
    /// The first module with that index, or null.
    ZUL_module* getModuleAt(unsigned int index) const;
    /// The largest process id, compared as a signed number; 0 when there is none.
    unsigned int getHighestProcessId() const;
    /// The largest module index, compared as a signed number; 0 when there is none.
    unsigned int getHighestModuleId() const;
    unsigned int getConfigCount() const;
    ZUL_multi_data* getConfigAt(unsigned int i) const;
    /// The largest configuration index, compared as a signed number; 0xFFFFFFFF when none is 0 or more.
    unsigned int getMaxConfigIndex() const;
    /// The first configuration with that index.
    /// @param board 0 for any; a board type; or, with one of the bits 0xF000 set, board type * 16 + revision
    ZUL_multi_data* getConfig(unsigned int index, unsigned int board) const;
    /// The first destination with all three values, or null.
    ZUL_destination* searchDestination(unsigned char const& index, unsigned short const& board,
                                       unsigned short const& revision) const;

    // Saving.

    /// Bytes that Save writes. Makes an id for the container when it has none.
    /// @throws std::runtime_error and std::invalid_argument as the tags do
    unsigned long getSaveLength();
    /// @param size has to be getSaveLength()
    /// @return 0, or -22 when the size differs or @p buffer is null; nothing is written then
    int Save(void* buffer, unsigned long size);
    /// Writes a file: complete under its name or not at all, unless it has several hard links or is no regular file.
    /// @return 0; -14 when a tag cannot be saved, -12 when memory runs out, otherwise a negated errno
    int Save(char const* fileName);
    /// Writes every library of @p system into @p dir.
    /// @return 0; -2 when there is none; otherwise the first result of ZUL_dll::toFile that is not 0
    int saveLibs(char const* dir, zul_opsys system, ZUL_dll::savepolicy policy) const;

    void setRegisterPolicy(ZULRegisterPolicy const& policy);
    ZULRegisterPolicy getRegisterPolicy() const;

    /// The destination word of the head, as it was loaded; 0 for a new container. It is written back.
    unsigned int getHeadDestination() const;

private:
    friend class ZUL_tag;

    void tagKeyChanged(ZUL_tag const& tag);

    std::unique_ptr<ZUL_private> m_private;
    ZULLoadMode m_loadMode = ZUL_LOAD_STRICT;
};

template <>
ZUL_register* ZUL::getTagAt<ZUL_register>(unsigned int i) const;
template <>
ZUL_register_link* ZUL::getTagAt<ZUL_register_link>(unsigned int i) const;
