#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestol {

enum class Severity { Warning, Error };

/// In the text of a finding under way: with the character behind it, from '0', it stands for the
/// line of one of its mentions. Words of the deck come into a text without such characters: Quoted.
constexpr char kLineNumber = '\1';
/// Between two of these such characters stand for the lines of all of their mentions.
constexpr char kLines = '\2';

/// For the text of a finding: the line of its first mention.
inline std::string LineOfMention() {
  return {kLineNumber, '0'};
}

/// Something that is wrong with a deck, or suspicious.
struct Finding {
  static constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

  std::string_view code;  ///< a row of the catalogue
  Severity severity = Severity::Error;
  std::string text;
  std::vector<std::string> more{};  ///< further lines of a text that does not fit one
  std::vector<int> nodes{};         ///< numbers of the input
  std::vector<int> elements{};
  std::vector<std::uint64_t> mentions{};  ///< places whose lines the text names
  std::uint64_t offset = kNowhere;        ///< of the word in the deck
  std::size_t length = 0;                 ///< of the word; 0: up to the next white space
  long line = 0;                          ///< from 1; 0 where it has no place
  long column = 0, endColumn = 0;         ///< bytes, from 1; endColumn stands behind the word
  std::string sourceLine{};               ///< the line of the deck
};

}  // namespace kestol
