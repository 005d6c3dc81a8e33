#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

struct Content;

/// Bytes and whatever owns them.
class Stored {
public:
    Stored() = default;
    /// @param owner anything that converts its bytes into a span
    template <class Owner>
    explicit Stored(Owner owner)
    {
        auto const kept = std::make_shared<Owner>(std::move(owner));
        m_bytes = std::as_bytes(std::span(kept->data(), kept->size()));
        m_owner = kept;
    }
    Stored(std::shared_ptr<void const> owner, std::span<std::byte const> bytes)
        : m_owner(std::move(owner)), m_bytes(bytes)
    {
    }
    std::span<std::byte const> bytes() const { return m_bytes; }
    std::size_t size() const { return m_bytes.size(); }

private:
    std::shared_ptr<void const> m_owner;
    std::span<std::byte const> m_bytes;
};

/// What looking registers up has found; the same for every format.
struct LookedUp {
    std::uint64_t registers = 0;
    std::uint64_t addresses = 0; ///< their sum

    void add(std::uint32_t address)
    {
        ++registers;
        addresses += address;
    }
    bool operator==(LookedUp const&) const = default;
};

/// What a walk over the parameters of all modules has seen; the same for every format.
struct Walked {
    std::uint64_t parameters = 0;
    std::uint64_t values = 0;   ///< their sum
    std::uint64_t initials = 0; ///< sum of the first characters of the names

    void add(std::uint64_t value, char initial)
    {
        ++parameters;
        values += value;
        initials += static_cast<unsigned char>(initial);
    }
    bool operator==(Walked const&) const = default;
};

/// A design that has been opened; ending it closes it.
class OpenDesign {
public:
    OpenDesign() = default;
    OpenDesign(OpenDesign const&) = delete;
    OpenDesign& operator=(OpenDesign const&) = delete;
    virtual ~OpenDesign() = default;

    /// Finds the register of each name.
    virtual LookedUp lookUp(std::span<std::string const> names) = 0;
    virtual Walked walk() = 0;
    /// The bitstreams of all configurations, valid as long as the design.
    virtual std::vector<std::span<std::byte const>> bitstreams() = 0;
    /// The whole design as it is now, written anew as after a change of anything in it.
    virtual Stored save() = 0;
};

/// One way of keeping a design.
class Format {
public:
    Format() = default;
    Format(Format const&) = delete;
    Format& operator=(Format const&) = delete;
    virtual ~Format() = default;

    virtual std::string name() const = 0;
    virtual bool canSave() const { return true; }
    /// The content in this format.
    virtual Stored write(Content const& content, std::span<std::byte const> container) const = 0;
    /// Opens until every record can be reached and nothing in the bytes can do harm any more.
    /// @throws std::runtime_error for damaged bytes, or what the format's library throws
    virtual std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const = 0;
};

/// All formats; the first one is the measure of the others.
std::vector<std::unique_ptr<Format>> allFormats();

// One file each.
std::unique_ptr<Format> classLibrary();
std::unique_ptr<Format> cInterface();
std::unique_ptr<Format> floorFormat();
std::unique_ptr<Format> protobuf();
std::unique_ptr<Format> protobufArena();
std::unique_ptr<Format> flatBuffers();
std::unique_ptr<Format> capnProto();
std::unique_ptr<Format> sqlite();
std::unique_ptr<Format> jsonText();
