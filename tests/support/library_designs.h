#pragma once

#include "container_bytes.h"
#include "libraries.h"
#include "loaded_container.h"
#include "sample_tags.h"

#include <initializer_list>

inline constexpr char sharedId[] = "__INVALID_ZUL_ID__";
inline constexpr char markerFile[] = "libqel.dylib";

/// A library of this system that is stored compressed, as @p stream.
inline Bytes compressedLibraryTag(std::string_view name, Bytes const& stream)
{
    return Bytes()
        .u32(0x8154000)
        .u32(96 + stream.size())
        .zeros(8)
        .u32(516)
        .u32(0)
        .u32(1)
        .text(name, 64)
        .u32(0)
        .append(stream);
}

/// A loaded design with these library tags, and with an id unless @p id is null.
class LibraryDesign : public LoadedContainer {
public:
    LibraryDesign(char const* id, std::initializer_list<Bytes> libraries)
        : LoadedContainer(bytes(id, libraries))
    {
    }

private:
    static Bytes bytes(char const* id, std::initializer_list<Bytes> libraries)
    {
        ContainerBytes container;
        if (id != nullptr) {
            container.tag(sample::userInfo("__ZUL_ID__", id));
        }
        for (Bytes const& library : libraries) {
            container.tag(library);
        }
        return container.build();
    }
};
