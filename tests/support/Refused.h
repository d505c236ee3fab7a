#pragma once

#include <functional>
#include <string>

#include "tests/support/ExpectFatal.h"
#include "tests/support/RunDeck.h"

namespace kestol {

/// Expects that a model is refused by both solvers, in both numberings, with these warnings in
/// front of the solver's error. `deckWith` gives the text with a further line of keywords.
inline void ExpectRefused(const std::function<std::string(const std::string&)>& deckWith,
                          const std::string& warnings) {
  for (const char* const solver : {"SkyLine", "Sparse 1e-10 1e-8 1000"})
    for (const int renumber : {0, 1}) {
      try {
        RunDeck(deckWith(std::string("Solver ") + solver), renumber);
        ADD_FAILURE() << "solved by " << solver;
      } catch (const FatalError& refusal) {
        EXPECT_EQ(refusal.Status(), 2);
        EXPECT_THAT(refusal.what(), testing::StartsWith(warnings + "error when solving system"));
        EXPECT_THAT(refusal.what(), testing::EndsWith("Probably conditions are not correct\n"));
        error.Clear();
      }
    }
}

}  // namespace kestol
