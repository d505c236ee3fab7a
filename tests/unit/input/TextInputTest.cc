#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "input/TextInput.h"

namespace kestol {

namespace {

// An open file that holds `text`.
std::FILE* FileWith(const std::string& text) {
  std::FILE* file = std::tmpfile();
  EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file), text.size());
  std::rewind(file);
  return file;
}

std::string AllOf(TextInput& input) {
  std::string all;
  for (int c = input.Get(); c != TextInput::kEnd; c = input.Get()) all += static_cast<char>(c);
  return all;
}

TEST(TextInput, PeekDoesNotTakeAndGetDoes) {
  TextInput input(std::string("ab"));
  EXPECT_EQ(input.Peek(), 'a');
  EXPECT_EQ(input.Peek(), 'a');
  EXPECT_EQ(input.Get(), 'a');
  EXPECT_EQ(input.Get(), 'b');
  EXPECT_EQ(input.Peek(), TextInput::kEnd);
  EXPECT_EQ(input.Get(), TextInput::kEnd);
  EXPECT_EQ(input.Get(), TextInput::kEnd);
}

TEST(TextInput, ByteOf255IsNotTheEnd) {
  TextInput input(std::string("\xff\0x", 3));
  EXPECT_EQ(input.Get(), 255);
  EXPECT_EQ(input.Get(), 0);
  EXPECT_EQ(input.Get(), 'x');
}

TEST(TextInput, NoFileIsAnEmptyText) {
  TextInput input(static_cast<std::FILE*>(nullptr));
  EXPECT_EQ(input.Peek(), TextInput::kEnd);
  EXPECT_EQ(input.PeekWord(), "");
  EXPECT_EQ(input.PeekLine(), "");
}

TEST(TextInput, DirectoryIsAnEmptyText) {
  TextInput input(std::fopen(".", "r"));
  EXPECT_EQ(input.Get(), TextInput::kEnd);
  EXPECT_EQ(input.PeekLine(), "");
}

TEST(TextInput, FileLongerThanTheWindowComesWhole) {
  std::string text;
  for (int i = 0; text.size() < 300000; ++i) text += std::to_string(i) + " ";
  TextInput input(FileWith(text));
  EXPECT_EQ(AllOf(input), text);
}

TEST(TextInput, WordAcrossTheEndOfTheWindowIsWhole) {
  const std::string blanks(64 * 1024 - 3, ' ');
  TextInput input(FileWith(blanks + "coordinates end"));
  for (std::size_t i = 0; i < blanks.size(); ++i) input.Get();
  EXPECT_EQ(input.PeekWord(), "coordinates");
  input.Advance(11);
  EXPECT_EQ(AllOf(input), " end");
}

TEST(TextInput, WordOfTenMegabytesIsWhole) {
  const std::string word(10'000'000, 'w');
  TextInput input(FileWith("\n" + word + " x"));
  EXPECT_EQ(input.PeekWord(), "");
  EXPECT_EQ(input.Get(), '\n');
  EXPECT_TRUE(input.PeekWord() == word);
  input.Advance(word.size());
  EXPECT_EQ(AllOf(input), " x");
}

TEST(TextInput, LineOfTenMegabytesIsWhole) {
  std::string line;
  while (line.size() < 10'000'000) line += "1 2.5 word ";
  TextInput input(FileWith(line + "\nnext"));
  EXPECT_TRUE(input.PeekLine() == line);
  input.Advance(line.size() + 1);
  EXPECT_EQ(input.PeekLine(), "next");
}

TEST(TextInput, WordStopsAtEveryKindOfWhiteSpace) {
  for (const char space : {' ', '\t', '\n', '\v', '\f', '\r'}) {
    TextInput input(std::string("ab") + space + "c");
    EXPECT_EQ(input.PeekWord(), "ab") << "in front of character " << int{space};
  }
}

TEST(TextInput, PeekAheadGivesWhatIsThereAndAtLeastWhatIsWanted) {
  const std::string text(200000, 'a');
  TextInput input(FileWith(text));
  EXPECT_GE(input.PeekAhead(150000).size(), 150000U);
  EXPECT_EQ(input.PeekAhead(500000).size(), text.size());
  input.Advance(199990);
  EXPECT_EQ(input.PeekAhead(64), "aaaaaaaaaa");
}

}  // namespace

}  // namespace kestol
