#include <type_traits>

#include "main/ErrorChannel.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

TEST(ErrorChannel, ComposesPiecesInOrder) {
  EXPECT_FATAL(Fatal("error: element: ", 7, "  have both nodes equal\n"),
               "error: element: 7  have both nodes equal\n");
}

TEST(ErrorChannel, CutsTheTextAt2047CharactersAndStaysTerminated) {
  const std::string longText(5000, 'x');
  EXPECT_FATAL(Fatal(longText, "tail"), std::string(2047, 'x'));
}

TEST(ErrorChannel, ClearForgetsTextAndPlace) {
  error.message << "half a sentence";
  error.SetPlace("deck.dat", 12);
  error.Clear();
  EXPECT_STREQ(error.Text(), "");
  EXPECT_STREQ(error.deck, "");
  EXPECT_EQ(error.line, 0);
}

TEST(ErrorChannel, CutsALongNameOfADeck) {
  error.SetPlace(std::string(5000, 'd'), 1);
  EXPECT_EQ(std::string(error.deck), std::string(2047, 'd'));
  error.Clear();
}

TEST(FatalError, KnowsThePlaceOfItsRecord) {
  error.SetPlace("deck.dat", 12);
  try {
    Fatal("no\n");
  } catch (const FatalError& refusal) {
    EXPECT_STREQ(refusal.what(), "no\n");
    EXPECT_STREQ(refusal.File(), "deck.dat");
    EXPECT_EQ(refusal.Line(), 12);
  }
  error.Clear();
}

TEST(FatalError, HoldsNoHeap) {
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<FatalError>);
  EXPECT_LE(sizeof(FatalError), 3 * sizeof(void*));
}

}  // namespace

}  // namespace kestol
