#include "dynarray.h"

#include "kova/templates/platform/invariant.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace {

/// Counts how many of its kind live; the counter belongs to the test.
class Element {
public:
    explicit Element(int& alive) : m_alive(alive) { ++m_alive; }
    Element(Element const&) = delete;
    Element& operator=(Element const&) = delete;
    virtual ~Element() { --m_alive; }

private:
    int& m_alive;
};

class DerivedElement : public Element {
public:
    DerivedElement(int& alive, int& derivedGone) : Element(alive), m_derivedGone(derivedGone) {}
    ~DerivedElement() override { ++m_derivedGone; }

private:
    int& m_derivedGone;
};

/// A stand-in for a tag, with a name to save and a parent that is only a number of our own.
struct Parent {};

class Named {
public:
    explicit Named(Parent* parent) : m_parent(parent) {}
    Named(Parent* parent, std::string name) : m_parent(parent), m_name(std::move(name)) {}
    Named(Named const&) = delete;
    Named& operator=(Named const& other)
    {
        m_name = other.m_name;
        return *this;
    }
    virtual ~Named() = default;

    void setParent(Parent* parent)
    {
        m_parent = parent;
        ++m_parentsSet;
    }
    unsigned long getSaveLength() const { return m_name.size(); }
    void Save(void* dst) const { m_name.copy(static_cast<char*>(dst), m_name.size()); }

    Parent* m_parent;
    std::string m_name;
    int m_parentsSet = 0;
};

using NamedArray = dynarray_zultp<Named, Parent>;

} // namespace

TEST(PointerArrayOwnership, WithoutItNothingIsDeleted)
{
    int alive = 0;
    Element element(alive);
    {
        dynarraytp<Element> array;
        array.Add(&element);
        array.Add(&element);
    }
    EXPECT_EQ(alive, 1);
}

TEST(PointerArrayOwnership, DeletesThroughTheVirtualDestructor)
{
    int alive = 0;
    int derivedGone = 0;
    {
        dynarraytp<Element> array;
        array.ownsobjects() = true;
        EXPECT_TRUE(array.ownsobjects());
        array.Add(new Element(alive));
        array.Add(new DerivedElement(alive, derivedGone));
        array.Add(nullptr);
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(derivedGone, 1);
}

TEST(PointerArrayOwnership, DeletesWhatWasSetBeyondTheCount)
{
    int alive = 0;
    {
        dynarraytp<Element> array;
        array.ownsobjects() = true;
        array.scale(3);
        array.set(2, new Element(alive));
    }
    EXPECT_EQ(alive, 0);
}

TEST(PointerArrayOwnership, RemoveScaleSetAndClearDeleteNothing)
{
    int alive = 0;
    std::array<std::unique_ptr<Element>, 4> elements;
    for (auto& element : elements) {
        element = std::make_unique<Element>(alive);
    }
    {
        dynarraytp<Element> array;
        array.ownsobjects() = true;
        for (auto const& element : elements) {
            array.Add(element.get());
        }
        array.set(0, nullptr);
        array.remove(1);
        array.scale(2);
        EXPECT_EQ(alive, 4);
        array.clear();
        EXPECT_EQ(alive, 4);
    }
    EXPECT_EQ(alive, 4);
}

TEST(PointerArrayOwnership, ElementIsNotAddedTwice)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    int alive = 0;
    Element element(alive);
    auto const addTwice = [&element] {
        dynarraytp<Element> array;
        array.ownsobjects() = true;
        array.Add(&element);
        array.Add(&element);
        EXPECT_EQ(array.getCount(), 2U);
        array.clear();
    };
    if (kova::templates::platform::invariantsAreChecked()) {
        EXPECT_DEATH(addTwice(), "Common/zullib/include/dynarray:44.*m_list\\[i\\] != n");
    } else {
        addTwice();
    }
}

TEST(TagArray, OwnsItsTagsAndKnowsItsParent)
{
    Parent parent;
    NamedArray tags(&parent);
    EXPECT_TRUE(tags.ownsobjects());
    EXPECT_EQ(tags.getParent(), &parent);
}

TEST(TagArray, NewParentIsHandedToEveryTag)
{
    Parent first;
    Parent second;
    NamedArray tags(&first);
    tags.Add(new Named(nullptr, "a"));
    tags.Add(new Named(nullptr, "b"));
    tags.scale(5); // free slots have no tag to hand it to
    tags.setParent(&first);
    EXPECT_EQ(tags.at(0)->m_parentsSet, 0) << "the same parent changes nothing";
    tags.setParent(&second);
    EXPECT_EQ(tags.getParent(), &second);
    for (std::uint32_t i = 0; i < 2; ++i) {
        EXPECT_EQ(tags.at(i)->m_parent, &second);
        EXPECT_EQ(tags.at(i)->m_parentsSet, 1);
    }
    tags.setParent(nullptr);
    EXPECT_EQ(tags.at(1)->m_parent, nullptr);
}

TEST(TagArray, SavesItsTagsBackToBack)
{
    NamedArray tags(nullptr);
    EXPECT_EQ(tags.getSaveLength(), 0U);
    tags.Add(new Named(nullptr, "process"));
    tags.Add(new Named(nullptr, ""));
    tags.Add(new Named(nullptr, "module"));
    ASSERT_EQ(tags.getSaveLength(), 13U);
    std::string saved(15, '.');
    tags.Save(saved.data());
    EXPECT_EQ(saved, "processmodule..");
}

TEST(TagArray, AppendsCopiesWithItsOwnParent)
{
    Parent parent;
    Parent otherParent;
    NamedArray tags(&parent);
    tags.Add(new Named(&parent, "a"));
    NamedArray other(&otherParent);
    other.Add(new Named(&otherParent, "b"));
    other.Add(new Named(&otherParent, "c"));
    EXPECT_EQ(&(tags += other), &tags);
    ASSERT_EQ(tags.getCount(), 3U);
    EXPECT_EQ(tags.getLength(), 3U);
    EXPECT_EQ(tags.at(1)->m_name, "b");
    EXPECT_EQ(tags.at(2)->m_name, "c");
    EXPECT_EQ(tags.at(2)->m_parent, &parent);
    EXPECT_EQ(other.getCount(), 2U);
    EXPECT_NE(tags.at(1), other.at(0));
}

TEST(TagArray, AppendingKeepsALargerCapacityAndTakesAnEmptyArray)
{
    NamedArray tags(nullptr);
    tags.scale(10);
    tags += NamedArray(nullptr);
    EXPECT_EQ(tags.getCount(), 0U);
    EXPECT_EQ(tags.getLength(), 10U);
}

TEST(TagArray, AppendingItselfDoublesIt)
{
    NamedArray tags(nullptr);
    tags.Add(new Named(nullptr, "a"));
    tags.Add(new Named(nullptr, "b"));
    tags += tags;
    ASSERT_EQ(tags.getCount(), 4U);
    EXPECT_EQ(tags.at(2)->m_name, "a");
    EXPECT_EQ(tags.at(3)->m_name, "b");
}
