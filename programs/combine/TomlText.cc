#include "programs/combine/TomlText.h"

#include <algorithm>
#include <cmath>

#include "input/NearestWord.h"

namespace kestol {

namespace {

bool Before(const toml::source_position& a, const toml::source_position& b) {
  return a.line != b.line ? a.line < b.line : a.column < b.column;
}

bool ContinuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xc0u) == 0x80u;
}

/// What may stand in a key between its dots.
bool IsOfKey(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         c == '-' || c == ' ' || c == '\t';
}

/// The place behind the string that begins at `begin`. One that is not closed ends with its line,
/// or with the text: the library has words for it.
std::size_t EndOfString(const std::string& text, std::size_t begin) {
  const char quote = text[begin];
  const std::string three(3, quote);
  const bool isLong = text.compare(begin, 3, three) == 0;
  std::size_t at = begin + (isLong ? 3 : 1);
  for (; at < text.size(); ++at) {
    if (text[at] == '\\' && quote == '"')
      ++at;
    else if (isLong ? text.compare(at, 3, three) == 0 : text[at] == quote)
      return at + (isLong ? 3 : 1);
    else if (!isLong && text[at] == '\n')
      return at;
  }
  return text.size();
}

}  // namespace

std::vector<std::pair<const toml::key*, const toml::node*>> InOrder(const toml::table& table) {
  std::vector<std::pair<const toml::key*, const toml::node*>> entries;
  for (const auto& [key, node] : table) entries.emplace_back(&key, &node);
  std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
    return Before(a.first->source().begin, b.first->source().begin);
  });
  return entries;
}

/// Keys of few parts are all that such a file needs. The library makes a table of each part, one in
/// the other, and goes as deep into the stack to take them away.
bool TomlText::HasLongKey() {
  constexpr int kMostParts = 20;
  int parts = 1;
  for (std::size_t at = 0; at < text_.size(); ++at) {
    const char c = text_[at];
    if (c == '#')
      at = std::min(text_.find('\n', at), text_.size()) - 1;
    else if (c == '"' || c == '\'')
      at = EndOfString(text_, at) - 1;
    else if (c == '.')
      ++parts;
    else if (!IsOfKey(c))
      parts = 1;
    if (parts <= kMostParts) continue;
    const std::size_t line = text_.rfind('\n', at) + 1;  // 0 on the first line
    const long number =
        1 + std::count(text_.begin(), text_.begin() + static_cast<long>(line), '\n');
    const long column = static_cast<long>(at - line) + 1;
    mistakes_.push_back({"a key of more than " + std::to_string(kMostParts) + " parts", "syntax",
                         number, column, column + 1});
    return true;
  }
  return false;
}

toml::table TomlText::Parse() {
  if (HasLongKey()) return {};
  try {
    return toml::parse(text_);
  } catch (const toml::parse_error& wrong) {
    Note(wrong.source(), std::string(wrong.description()), "syntax");
    return {};
  }
}

/// Line and column of a position; the library counts characters, we count bytes. Most positions
/// follow each other: the way goes on from the last one.
std::pair<long, long> TomlText::PlaceOf(const toml::source_position& position) {
  if (Before(position, here_.position)) here_ = {};
  auto& [place, lineBegin, byte] = here_;
  for (; place.line < position.line; ++place.line) {
    const std::size_t end = text_.find('\n', lineBegin);
    if (end == std::string::npos) break;
    lineBegin = byte = end + 1;
    place.column = 1;
  }
  place.line = position.line;
  for (; place.column < position.column && byte < text_.size(); ++place.column) {
    ++byte;
    while (byte < text_.size() && ContinuesCharacter(text_[byte])) ++byte;
  }
  return {static_cast<long>(position.line), static_cast<long>(byte - lineBegin) + 1};
}

void TomlText::Note(const toml::source_region& place, std::string text, std::string code) {
  FileMistake mistake{std::move(text), std::move(code)};
  if (place.begin) std::tie(mistake.line, mistake.column) = PlaceOf(place.begin);
  if (place.end && place.end.line == place.begin.line)
    mistake.endColumn = PlaceOf(place.end).second;
  mistakes_.push_back(std::move(mistake));
}

void TomlText::NoteUnknown(const toml::source_region& place, const std::string& what,
                           std::string_view word, std::span<const std::string_view> known,
                           const std::string& code) {
  std::string text = "unknown " + what + " \"" + std::string(word) + '"';
  const int aThird = std::max(1, static_cast<int>(word.size() / 3));
  const std::string_view nearest = NearestWord(word, known, aThird);
  if (!nearest.empty()) text += ": did you mean \"" + std::string(nearest) + "\"?";
  Note(place, std::move(text), code);
}

void TomlText::RefuseUnknownKeys(const toml::table& table, const std::string& what,
                                 std::span<const std::string_view> known) {
  for (const auto& [key, node] : InOrder(table))
    if (std::find(known.begin(), known.end(), key->str()) == known.end())
      NoteUnknown(key->source(), "key in " + what + ":", key->str(), known, "unknown-word");
}

template <class T>
const T* TomlText::Typed(const toml::table& table, std::string_view key, const char* type) {
  const toml::node* const node = table.get(key);
  if (node == nullptr) return nullptr;
  const T* const typed = node->as<T>();
  if (typed == nullptr) Note(*node, '"' + std::string(key) + "\" must be " + type, "wrong-type");
  return typed;
}

std::optional<std::string> TomlText::Text(const toml::table& table, std::string_view key) {
  const auto* const text = Typed<toml::value<std::string>>(table, key, "a text in quotes");
  return text == nullptr ? std::nullopt : std::optional(text->get());
}

std::optional<bool> TomlText::Flag(const toml::table& table, std::string_view key) {
  const auto* const flag = Typed<toml::value<bool>>(table, key, "true or false");
  return flag == nullptr ? std::nullopt : std::optional(flag->get());
}

const toml::array* TomlText::Array(const toml::table& table, std::string_view key) {
  return Typed<toml::array>(table, key, "a list in brackets");
}

const toml::table* TomlText::Table(const toml::table& table, std::string_view key) {
  return Typed<toml::table>(table, key, "a table");
}

std::optional<double> TomlText::Number(const toml::node& node, const std::string& what) {
  const std::optional<double> number = node.is_number() ? node.value<double>() : std::nullopt;
  if (number && std::isfinite(*number)) return number;
  Note(node, what + " must be a number", "wrong-type");
  return std::nullopt;
}

std::optional<std::vector<double>> TomlText::Numbers(const toml::node& node,
                                                     const std::string& what, std::size_t count) {
  const toml::array* const array = node.as_array();
  if (array == nullptr || array->size() != count) {
    Note(node, what + " must be a list of " + std::to_string(count) + " numbers", "wrong-type");
    return std::nullopt;
  }
  std::vector<double> numbers;
  for (const toml::node& element : *array) {
    const std::optional<double> number = Number(element, what);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

}  // namespace kestol
