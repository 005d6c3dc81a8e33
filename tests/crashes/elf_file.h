#pragma once

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// What a built 64-bit program or shared library tells the loader.
class ElfFile {
public:
    explicit ElfFile(std::string const& path)
    {
        m_bytes.resize(std::filesystem::file_size(path));
        std::ifstream(path, std::ios::binary)
            .read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
        if (m_bytes.size() < sizeof(Elf64_Ehdr) || std::memcmp(m_bytes.data(), ELFMAG, SELFMAG) != 0) {
            throw std::runtime_error(path + " is nothing that the loader knows");
        }
    }

    Elf64_Ehdr header() const { return at<Elf64_Ehdr>(0)[0]; }
    std::span<Elf64_Phdr const> segments() const
    {
        return at<Elf64_Phdr>(header().e_phoff, header().e_phnum);
    }

    bool hasSegment(Elf64_Word type) const
    {
        return std::ranges::any_of(segments(),
                                   [type](auto const& segment) { return segment.p_type == type; });
    }

    /// The value of the dynamic entry @p tag; 0 when there is none.
    Elf64_Xword dynamic(Elf64_Sxword tag) const
    {
        for (auto const& entry : table<Elf64_Dyn>(SHT_DYNAMIC)) {
            if (entry.d_tag == tag) {
                return entry.d_un.d_val;
            }
        }
        return 0;
    }

    /// The dynamic symbols, of which each has a name() and, when it is defined here, code().
    std::span<Elf64_Sym const> symbols() const { return table<Elf64_Sym>(SHT_DYNSYM); }
    std::string name(Elf64_Sym const& symbol) const
    {
        return &at<char>(sections()[section(SHT_DYNSYM).sh_link].sh_offset + symbol.st_name)[0];
    }
    std::string_view code(Elf64_Sym const& symbol) const
    {
        Elf64_Shdr const& text = sections()[symbol.st_shndx];
        auto const bytes = at<char>(symbol.st_value - text.sh_addr + text.sh_offset, symbol.st_size);
        return {bytes.data(), bytes.size()};
    }

    /// The names that are to be found elsewhere.
    std::vector<std::string> imports() const
    {
        std::vector<std::string> names;
        for (auto const& symbol : symbols()) {
            if (symbol.st_shndx == SHN_UNDEF) {
                names.push_back(name(symbol));
            }
        }
        return names;
    }

private:
    template <class T>
    std::span<T const> at(std::size_t offset, std::size_t count = 1) const
    {
        if (offset > m_bytes.size() || count > (m_bytes.size() - offset) / sizeof(T)) {
            throw std::runtime_error("a table lies outside of the file");
        }
        return {reinterpret_cast<T const*>(m_bytes.data() + offset), count};
    }

    std::span<Elf64_Shdr const> sections() const
    {
        return at<Elf64_Shdr>(header().e_shoff, header().e_shnum);
    }

    Elf64_Shdr const& section(Elf64_Word type) const
    {
        auto const found = std::ranges::find(sections(), type, &Elf64_Shdr::sh_type);
        if (found == sections().end()) {
            throw std::runtime_error("a section is missing");
        }
        return *found;
    }

    template <class T>
    std::span<T const> table(Elf64_Word type) const
    {
        return at<T>(section(type).sh_offset, section(type).sh_size / sizeof(T));
    }

    std::vector<char> m_bytes;
};
