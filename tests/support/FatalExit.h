#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

/// What the test programs' fatal exit throws in place of ending the process.
struct FatalExit {
  int status;        ///< exit status the program would have had
  std::string text;  ///< the whole message
};

/// Runs `statement`; expects that it ends the run with `status` and exactly the message `text`.
#define EXPECT_EXIT_TEXT(statement, wantedStatus, wantedText)   \
  try {                                                         \
    statement;                                                  \
    ADD_FAILURE() << "no fatal exit, wanted: " << (wantedText); \
  } catch (const FatalExit& exit) {                             \
    EXPECT_EQ(exit.text, (wantedText));                         \
    EXPECT_EQ(exit.status, (wantedStatus));                     \
  }

/// Runs `statement`; expects exit status 2 and exactly the message `text`.
#define EXPECT_FATAL(statement, text) EXPECT_EXIT_TEXT(statement, 2, text)
