#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "programs/common/Messages.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"
#include "programs/common/Utf8.h"
#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(Messages, PlaceTextAndCodeStandOnOneLine) {
  const Message message{"error", "no such node: 12\n", "unknown-node", "a.dat", 23, 3, 5};
  const std::string line = "  12 13";
  EXPECT_EQ(MessageText(message, nullptr, false),
            "a.dat:23:3: error: no such node: 12 [unknown-node]\n");
  EXPECT_EQ(MessageText(message, &line, false),
            "a.dat:23:3: error: no such node: 12 [unknown-node]\n"
            "   23 |   12 13\n"
            "      |   ^~\n");
}

TEST(Messages, WhatIsNotKnownIsLeftOut) {
  EXPECT_EQ(MessageText({"warning", "odd"}, nullptr, false), "warning: odd\n");
  EXPECT_EQ(MessageText({"error", "bad", "", "a.dat", 4}, nullptr, false), "a.dat:4: error: bad\n");
  EXPECT_EQ(MessageText({"error", "bad", "", "a.dat", 0, 7}, nullptr, false),
            "a.dat: error: bad\n");
  const std::string line = "text";
  EXPECT_EQ(MessageText({"error", "bad", "", "a.dat", 4}, &line, false),
            "a.dat:4: error: bad\n    4 | text\n");
}

TEST(Messages, TheCaretStandsUnderAWordBehindTabs) {
  const std::string line = "\tE=2,1";
  const Message message{"error", "cut", "", "a.dat", 123456, 4, 7};
  EXPECT_THAT(MessageText(message, &line, false),
              HasSubstr("123456 | \tE=2,1\n       | \t  ^~~\n"));
}

TEST(Messages, ACaretStaysInsideItsLine) {
  const std::string line = "ab";
  EXPECT_THAT(MessageText({"error", "x", "", "a", 1, 2, 99}, &line, false), HasSubstr(" |  ^\n"));
  EXPECT_THAT(MessageText({"error", "x", "", "a", 1, 3, 4}, &line, false), HasSubstr(" |   ^\n"));
  EXPECT_EQ(MessageText({"error", "x", "", "a", 1, 4, 5}, &line, false).find('^'),
            std::string::npos);
}

TEST(Messages, ControlCharactersOfADeckReachNoTerminal) {
  const std::string line = "a\x1b[2Jb\x7f";
  const std::string text = MessageText({"error", "\x1b]0;x\a", "", "a", 1, 1, 2}, &line, false);
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  EXPECT_EQ(text.find('\x7f'), std::string::npos);
  EXPECT_THAT(text, HasSubstr("a?[2Jb?"));
}

TEST(Messages, ANameOfAFileStaysOnItsLine) {
  EXPECT_EQ(MessageText({"error", "bad", "", "a\nb\tc", 4}, nullptr, false),
            "a b c:4: error: bad\n");
}

TEST(Messages, OfALongLineTheBeginningIsShown) {
  const std::string line(100'000, 'x');
  const std::string shown(kLongestExcerpt, 'x');
  EXPECT_EQ(MessageText({"error", "bad", "", "a", 1, 500, 600}, &line, false),
            "a:1:500: error: bad\n    1 | " + shown + '\n');
}

TEST(Messages, ColourOnlyMarks) {
  const std::string line = "ab";
  const Message message{"error", "bad", "code", "a.dat", 1, 1, 2};
  std::string painted = MessageText(message, &line, true);
  EXPECT_NE(painted.find("\x1b["), std::string::npos);
  for (std::size_t at; (at = painted.find("\x1b[")) != std::string::npos;)
    painted.erase(at, painted.find('m', at) - at + 1);
  EXPECT_EQ(painted, MessageText(message, &line, false));
}

TEST(Messages, LinesAreReadFromTheFileByNumber) {
  const OwnFolder folder;
  const std::string name = folder.Put("messages.dat", "one\r\ntwo\nthree");
  std::string text;
  EXPECT_TRUE(ReadSourceLine(name, 1, text));
  EXPECT_EQ(text, "one");
  EXPECT_TRUE(ReadSourceLine(name, 3, text));
  EXPECT_EQ(text, "three");
  EXPECT_FALSE(ReadSourceLine(name, 4, text));
  EXPECT_FALSE(ReadSourceLine(name, 0, text));
  EXPECT_FALSE(ReadSourceLine(name + "x", 1, text));
}

TEST(Messages, LinesAreCountedWhateverTheyHold) {
  const OwnFolder folder;
  const std::string name = folder.Put(
      "messages.dat", std::string("a\0b\n", 4) + std::string(100'000, 'x') + "\n\nfour\n");
  std::string text;
  EXPECT_TRUE(ReadSourceLine(name, 1, text));
  EXPECT_EQ(text, std::string("a\0b", 3));
  EXPECT_TRUE(ReadSourceLine(name, 2, text));
  EXPECT_GE(text.size(), kLongestExcerpt);
  EXPECT_LT(text.size(), 20'000u);
  EXPECT_TRUE(ReadSourceLine(name, 3, text));
  EXPECT_EQ(text, "");
  EXPECT_TRUE(ReadSourceLine(name, 4, text));
  EXPECT_EQ(text, "four");
  EXPECT_FALSE(ReadSourceLine(name, 5, text));
}

TEST(Harmless, NothingOfItDrivesATerminal) {
  EXPECT_EQ(Harmless("a\x1b[2J\x07\r\x7f\tb\n"), "a?[2J???\tb\n");
  EXPECT_EQ(Harmless("\x9b"), "?");        // the one-byte form of escape and bracket
  EXPECT_EQ(Harmless("\xc2\x9b["), "?[");  // and in UTF-8
  EXPECT_EQ(Harmless("\xc3\x9b \xe2\x82\xac \xf0\x9f\x8c\x89"),
            "\xc3\x9b \xe2\x82\xac \xf0\x9f\x8c\x89");
  EXPECT_EQ(Harmless("\xe4\xe9"), "\xe4\xe9");  // Latin-1
  EXPECT_EQ(HarmlessWords("a\tb\nc\x1b"), "a b c?");
}

// --- how a program ends -------------------------------------------------------------------------

struct Ending {
  int status;
  std::string text;
};

template <class Action>
Ending Ended(Action action, const std::string& deck = "") {
  CaptureStderr();
  const int status = RunProgram("kestol-x", deck, action);
  return {status, GetCapturedStderr()};
}

TEST(RunProgram, AnActionNamesItsStatus) {
  EXPECT_EQ(Ended([] { return kDone; }).status, 0);
  EXPECT_EQ(Ended([] { return kFindings; }).status, 1);
}

TEST(RunProgram, ARefusalHasTheSolversWordsAndItsLine) {
  const OwnFolder folder;
  const std::string name = folder.Put("refused.dat", "first\nsecond\n");
  const Ending ending = Ended(
      [&]() -> int {
        error.Clear();
        error.SetPlace(name, 2);
        Fatal("error: something is odd\n");
      },
      name);
  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.text, name + ":2: error: something is odd [syntax]\n    2 | second\n");
}

TEST(RunProgram, ARefusalOfAWholeDeckIsTheReadersToo) {
  const OwnFolder folder;
  const std::string name = folder.Put("none.dat", "PROBLEM none\nTYPE 2d\n");
  const Ending ending = Ended(
      [&]() -> int {
        ReadDeck(name);
        return kDone;
      },
      name);
  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.text, name + ": error: it is necessary at least one mesh [syntax]\n");
}

TEST(RunProgram, ARefusalWithoutALineNamesTheDeck) {
  const OwnFolder folder;
  const std::string name = folder.Put("refused.dat", "first\n");
  const Ending ending = Ended(
      []() -> int {
        error.Clear();
        Fatal("error in something\nmore\n");
      },
      name);
  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.text, name + ": error: error in something\nmore [model]\n");
}

TEST(RunProgram, AnExhaustedHeapIsSaid) {
  const Ending bad = Ended([]() -> int { throw std::bad_alloc(); });
  EXPECT_EQ(bad.status, 2);
  EXPECT_EQ(bad.text, "kestol-x: error: Not space available on heap\n");
  EXPECT_EQ(Ended([]() -> int { throw std::length_error("x"); }).text, bad.text);
}

TEST(RunProgram, AProgramErrorHasItsOwnStatus) {
  const Ending ending = Ended([]() -> int { throw ProgramError("no way", kFindings); });
  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.text, "kestol-x: error: no way\n");
}

TEST(RunProgram, WhatIsNotExpectedIsToldToo) {
  const Ending ending = Ended([]() -> int { throw std::runtime_error("unheard of"); });
  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.text, "kestol-x: error: unheard of\n");
}

TEST(RunProgram, ADeckThatCannotBeReadIsRefused) {
  const auto ending = [](const char* deck) {
    return Ended([deck] {
      RequireReadable(deck);
      return kDone;
    });
  };
  EXPECT_EQ(ending("/nowhere/a.dat").status, 2);
  EXPECT_EQ(ending("/nowhere/a.dat").text,
            "kestol-x: error: can't open file /nowhere/a.dat: No such file or directory\n");
  EXPECT_THAT(ending("/").text, HasSubstr("can't open file /: Is a directory"));
}

TEST(ProgressLine, IsSilentWhereNobodyWatches) {
  CaptureStderr();
  {
    ProgressLine progress(false);
    EXPECT_EQ(progress.Info(), nullptr);
    progress.Show("text");
  }
  EXPECT_EQ(GetCapturedStderr(), "");
}

}  // namespace

}  // namespace kestol
