#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

/// Root of the errors that loading, editing and saving a container report.
class ZUL_runtime_error : public std::runtime_error {
public:
    explicit ZUL_runtime_error(std::string const& message) : std::runtime_error(message) {}

    /// What the message is about: a name, or for a ZUL_file_error without one a single character.
    std::string const& asString() const noexcept { return details; }

protected:
    std::string details;
};

/// An argument that can never be right, whatever the state of the object.
class ZUL_invalid_data : public ZUL_runtime_error {
public:
    using ZUL_runtime_error::ZUL_runtime_error;
};

/// An argument that does not fit the state of the object.
class ZUL_inconsistent_data : public ZUL_runtime_error {
public:
    using ZUL_runtime_error::ZUL_runtime_error;
};

/// A second library with the name and system of one that the container holds.
class ZUL_dll_already_exists : public ZUL_runtime_error {
public:
    explicit ZUL_dll_already_exists(std::string const& libName)
        : ZUL_runtime_error("lib with that name already exists"), m_libName(libName)
    {
        details = libName;
    }

    std::string const& getLibName() const noexcept { return m_libName; }

private:
    std::string m_libName;
};

/// Root of the errors that concern one tag.
class ZUL_file_error : public ZUL_runtime_error {
public:
    ZUL_file_error(std::string const& message, std::uint32_t tagId)
        : ZUL_runtime_error(message), m_tagId(tagId)
    {
        // One character, the low byte of the id: it is what stands behind "Details:" in the printed
        // diagnostics of a load, and readers of those logs tell the tags apart by it.
        details.assign(1, static_cast<char>(static_cast<unsigned char>(tagId & 0xFFU)));
    }

    std::uint32_t getTagId() const noexcept { return m_tagId; }

private:
    std::uint32_t m_tagId;
};

/// A tag of which a container holds only one, or a register name that is already known.
class ZUL_file_duplicate_tag : public ZUL_file_error {
public:
    /// @param name the name that occurs twice; empty where the tag kind has none
    ZUL_file_duplicate_tag(std::uint32_t tagId, std::string const& name)
        : ZUL_file_error("duplicate tag found", tagId)
    {
        details = name;
    }
};

/// A length field that contradicts the kind of the tag, its inner lengths or the bytes that are there.
class ZUL_file_bad_tag_length : public ZUL_file_error {
public:
    explicit ZUL_file_bad_tag_length(std::uint32_t tagId)
        : ZUL_file_error("tag with invalid length information found", tagId)
    {
    }
};

/// A tag that names a process, module or register which no earlier tag provides.
class ZUL_file_bad_reference : public ZUL_file_error {
public:
    explicit ZUL_file_bad_reference(std::uint32_t tagId) : ZUL_file_error("dangling reference", tagId) {}
};

/// A field with a value that the format does not allow.
class ZUL_file_malformed_tag : public ZUL_file_error {
public:
    explicit ZUL_file_malformed_tag(std::uint32_t tagId) : ZUL_file_error("malformed tag found", tagId) {}
};

/// A register link that would lead straight back to another link.
class ZUL_link_loop_detected : public ZUL_file_error {
public:
    ZUL_link_loop_detected(std::string const& message, std::uint32_t tagId, std::uint32_t secondTagId)
        : ZUL_file_error(message, tagId), m_secondTagId(secondTagId)
    {
    }

    /// Id of the link, already in the container, that closes the loop.
    std::uint32_t getSecondTagId() const noexcept { return m_secondTagId; }

private:
    std::uint32_t m_secondTagId;
};

/// A tag that a merge cannot take over.
class ZUL_add_tag_error : public ZUL_file_error {
public:
    using ZUL_file_error::ZUL_file_error;
};
