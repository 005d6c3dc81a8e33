#pragma once

#include "design_tags.h"

#include <functional>

/// @return what @p get answers for @p object, as the type of the @p miss value; @p miss when there is no object
template <class Object, class Get, class Miss>
Miss of(Object const* object, Get get, Miss miss) noexcept
{
    return object == nullptr ? miss : static_cast<Miss>(std::invoke(get, *object));
}

/// For texts.
template <class Object, class Get>
char const* of(Object const* object, Get get, std::nullptr_t) noexcept
{
    return object == nullptr ? nullptr : std::invoke(get, *object);
}

/// The same for the @p i-th tag of a list.
template <class Tag, class Get, class Miss>
auto of(TagList<Tag> const& list, unsigned int i, Get get, Miss miss) noexcept
{
    return of(static_cast<Tag const*>(list.at(i)), get, miss);
}

template <class Tag>
unsigned int countOf(TagList<Tag> const& list) noexcept
{
    return static_cast<unsigned int>(list.size());
}

/// What @p question answers, or @p miss when it throws: queries have no other way to fail.
template <class Miss, class Question>
auto answer(Miss miss, Question const& question) noexcept -> decltype(question())
{
    try {
        return question();
    } catch (...) {
        return miss;
    }
}
