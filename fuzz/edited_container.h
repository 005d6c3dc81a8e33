#pragma once

#include "zullib.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// One edit: what is done, and up to three numbers for it.
struct Operation {
    unsigned code;
    unsigned a;
    unsigned b;
    unsigned c;
};

/// A container and, beside it, a list of its tags: what it answers is compared with a search through that.
class EditedContainer {
public:
    /// Does one edit, with failing allocations. One that fails has done nothing to the list of tags.
    void apply(Operation const& operation);
    /// Compares all that it answers.
    void compareAll() const;

private:
    void edit(Operation const& operation);
    void makeTag(Operation const& operation);
    void change(ZUL_tag* tag, Operation const& operation);
    void changeWhole(Operation const& operation);
    void addConfig(Operation const& operation);
    void remove(ZUL_tag* tag);
    void removeKind(std::uint32_t id);
    void load(unsigned number);
    void merge(unsigned number);
    void copyOver();
    void setId(char const* id);

    template <class Tag>
    void add(std::unique_ptr<Tag> tag);
    template <class Tag>
    Tag* pick(unsigned number) const;
    ZUL_tag* pickAny(unsigned number) const;
    void compareName(unsigned number) const;

    void compareList();

    ZUL m_zul;
    std::vector<ZUL_tag*> m_tags; // what the container's list holds
    bool m_mayHaveGrown = false;  // there may be further tags behind those
    bool m_mayBeSorted = false;   // a load puts some kinds in order
};
