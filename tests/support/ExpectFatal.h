#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "main/ErrorChannel.h"

namespace kestol {

/// Runs `statement`; expects that it is refused with exactly the message `wantedText`, for which a
/// program ends with `wantedStatus`.
#define EXPECT_EXIT_TEXT(statement, wantedStatus, wantedText) \
  try {                                                       \
    statement;                                                \
    ADD_FAILURE() << "not refused, wanted: " << (wantedText); \
  } catch (const kestol::FatalError& caught) {                \
    EXPECT_EQ(std::string(caught.what()), (wantedText));      \
    EXPECT_EQ(caught.Status(), (wantedStatus));               \
    kestol::error.Clear();                                    \
  }

/// The same for the refusals of the solver: exit status 2.
#define EXPECT_FATAL(statement, text) EXPECT_EXIT_TEXT(statement, 2, text)

/// Runs `statement`; expects that it asks for more memory than there can be.
#define EXPECT_NO_MEMORY(statement) EXPECT_THROW(statement, std::bad_alloc)

}  // namespace kestol
