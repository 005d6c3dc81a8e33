#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HUGE_TEXTS_ARE_CHEAP 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define HUGE_TEXTS_ARE_CHEAP 0
#endif
#endif
#ifndef HUGE_TEXTS_ARE_CHEAP
#define HUGE_TEXTS_ARE_CHEAP 1
#endif

#if HUGE_TEXTS_ARE_CHEAP
/// A terminated text of the character 'x' that may have billions of characters: the same few pages, mapped again and
/// again. In this test program, whatever operator new gives out from 1 GiB on is made of such pages too, so that the
/// code under test can copy the text at no cost. A copy into memory that was made for a longer text is no longer true.
/// Sanitizers replace the allocator themselves, so there is none of this with them.
class HugeText {
public:
    explicit HugeText(std::size_t length);
    ~HugeText();
    HugeText(HugeText const&) = delete;
    HugeText& operator=(HugeText const&) = delete;

    char const* get() const noexcept { return m_chars; }

private:
    char* m_chars;
};
#endif
