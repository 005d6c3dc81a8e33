#include "zullib.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>
#include <string>

namespace {

/// The rules of the look-up, word for word: scans the tag list for every question.
class PlainLookup {
public:
    explicit PlainLookup(ZUL const& zul) : m_zul(zul) {}

    unsigned numberOf(std::string name) const
    {
        for (unsigned steps = 0; steps <= m_zul.getTagCount(ZUL_register_link::tag_id); ++steps) {
            unsigned const oldCount = m_zul.getTagCount(ZUL_register::old_tag_id);
            for (unsigned number = 1; number <= oldCount + m_zul.getTagCount(ZUL_register::new_tag_id);
                 ++number) {
                if (equal(m_zul.getRegisterAt(number)->getName(), name)) {
                    return number;
                }
            }
            ZUL_register_link const* const link = linkOf(name);
            if (link == nullptr || link->getTarget() == nullptr) {
                return 0;
            }
            name = link->getTarget();
        }
        return 0;
    }

private:
    static bool equal(char const* text, std::string const& name) { return text != nullptr && text == name; }

    ZUL_register_link const* linkOf(std::string const& alias) const
    {
        for (unsigned i = 0; i < m_zul.getTagCount(ZUL_register_link::tag_id); ++i) {
            auto const* const link = m_zul.getTagAt<ZUL_register_link>(i);
            if (equal(link->getAlias(), alias)) {
                return link;
            }
        }
        return nullptr;
    }

    ZUL const& m_zul;
};

/// Edits a container at random, with few names, so that they meet.
class RandomEdits {
public:
    explicit RandomEdits(unsigned seed) : m_random(seed) {}

    void step()
    {
        unsigned const kind = below(8);
        if (kind < 2) {
            addRegister();
        } else if (kind < 5) {
            addLink();
        } else if (kind == 5) {
            rename();
        } else if (kind == 6) {
            retarget();
        } else {
            remove();
        }
    }

    static constexpr std::array<char const*, 9> names{"a", "b", "c", "d", "e", "f", "g", "", nullptr};
    ZUL zul;

private:
    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(m_random); }
    char const* name() { return names[below(names.size())]; }

    void addRegister()
    {
        auto reg = std::make_unique<ZUL_register>(&zul, name(), below(2) == 0);
        bool const known = reg->getName() != nullptr && PlainLookup(zul).numberOf(reg->getName()) != 0;
        try {
            zul.AddRegister(reg.get());
            EXPECT_FALSE(known);
            reg.release();
        } catch (ZUL_file_duplicate_tag const&) {
            EXPECT_TRUE(known);
        }
    }

    void addLink()
    {
        auto link = std::make_unique<ZUL_register_link>(&zul, name(), name());
        try {
            zul.AddLink(link.get());
            link.release();
        } catch (ZUL_link_loop_detected const&) {
        }
    }

    ZUL_register* anyRegister()
    {
        unsigned const count =
            zul.getTagCount(ZUL_register::old_tag_id) + zul.getTagCount(ZUL_register::new_tag_id);
        return count == 0 ? nullptr : zul.getRegisterAt(1 + below(count));
    }

    ZUL_register_link* anyLink()
    {
        unsigned const count = zul.getTagCount(ZUL_register_link::tag_id);
        return count == 0 ? nullptr : zul.getTagAt<ZUL_register_link>(below(count));
    }

    void rename()
    {
        if (ZUL_register* const reg = anyRegister()) {
            reg->setName(below(6) == 0 ? std::string(65, 'a').c_str() : name());
        }
    }

    void retarget()
    {
        if (ZUL_register_link* const link = anyLink()) {
            below(2) == 0 ? link->setAlias(name()) : link->setTarget(name());
        }
    }

    void remove()
    {
        ZUL_tag* const tag = below(2) == 0 ? static_cast<ZUL_tag*>(anyRegister()) : anyLink();
        zul.removeTag(tag);
    }

    std::mt19937 m_random;
};

TEST(RegisterLookupModel, AgreesWithAPlainScanAfterEveryEdit)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        RandomEdits edits(seed);
        for (unsigned step = 0; step < 60; ++step) {
            edits.step();
            for (char const* const name : RandomEdits::names) {
                unsigned const expected = name == nullptr ? 0 : PlainLookup(edits.zul).numberOf(name);
                ASSERT_EQ(edits.zul.getRegisterByName(name), expected) << "seed " << seed << " step " << step;
                ASSERT_EQ(edits.zul.findRegister(name), edits.zul.getRegisterAt(expected));
            }
        }
    }
}

} // namespace
