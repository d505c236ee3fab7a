#include "main/ErrorChannel.h"
#include "tests/support/FatalExit.h"

namespace {

TEST(ErrorChannel, ComposesPiecesInOrder) {
  EXPECT_FATAL(Fatal("error: element: ", 7, "  have both nodes equal\n"),
               "error: element: 7  have both nodes equal\n");
}

TEST(ErrorChannel, KernelRefusalsEndWithStatusOne) {
  error.message << "Bad transa";
  EXPECT_EXIT_TEXT(KernelExit(error), 1, "Bad transa");
}

TEST(ErrorChannel, CutsTheTextAt2047CharactersAndStaysTerminated) {
  const std::string longText(5000, 'x');
  EXPECT_FATAL(Fatal(longText, "tail"), std::string(2047, 'x'));
}

TEST(ErrorChannel, ExhaustedHeapDropsWhatWasComposed) {
  error.message << "half a sentence";
  EXPECT_FATAL(HeapExhausted(), "Not space available on heap");
}

}  // namespace
