#pragma once

#include "bytes.h"
#include "zul_class.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// A container loaded from a buffer that ends exactly where its bytes end and lives as long as it does.
class LoadedContainer {
public:
    /// @throws what loading throws; std::runtime_error when it returns anything but 0
    explicit LoadedContainer(Bytes const& bytes) : m_bytes(bytes.data(), bytes.data() + bytes.size())
    {
        if (zul.Load(m_bytes.data(), m_bytes.size()) != 0) {
            throw std::runtime_error("the container is refused");
        }
    }

private:
    std::vector<std::byte> m_bytes;

public:
    ZUL zul; // after the bytes: it goes first
};

/// The bytes that @p zul saves.
inline Bytes savedContainer(ZUL& zul)
{
    Bytes saved;
    saved.zeros(zul.getSaveLength());
    if (zul.Save(saved.data(), saved.size()) != 0) {
        throw std::runtime_error("the container is not saved");
    }
    return saved;
}

/// The ids of the tag list and the configurations, in the order in which a save writes them.
inline std::vector<std::uint32_t> savedIds(Bytes const& saved)
{
    std::vector<std::uint32_t> ids;
    std::uint32_t header[2];
    for (std::size_t offset = 24; offset + sizeof header <= saved.size(); offset += header[1]) {
        std::memcpy(header, saved.data() + offset, sizeof header);
        ids.push_back(header[0]);
    }
    return ids;
}
