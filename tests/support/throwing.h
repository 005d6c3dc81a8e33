#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <string_view>
#include <typeinfo>

/// Whether @p action throws an Error, of exactly this class, with that message.
template <class Error, class Action>
testing::AssertionResult throws(Action action, std::string_view message)
{
    try {
        action();
        return testing::AssertionFailure() << "nothing was thrown";
    } catch (std::exception const& error) {
        if (typeid(error) != typeid(Error) || error.what() != message) {
            return testing::AssertionFailure() << typeid(error).name() << " \"" << error.what() << '"';
        }
        return testing::AssertionSuccess();
    }
}
