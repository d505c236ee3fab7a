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

}  // namespace

std::vector<std::pair<const toml::key*, const toml::node*>> InOrder(const toml::table& table) {
  std::vector<std::pair<const toml::key*, const toml::node*>> entries;
  for (const auto& [key, node] : table) entries.emplace_back(&key, &node);
  std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
    return Before(a.first->source().begin, b.first->source().begin);
  });
  return entries;
}

toml::table TomlText::Parse() {
  try {
    return toml::parse(text_);
  } catch (const toml::parse_error& wrong) {
    Note(wrong.source(), std::string(wrong.description()), "syntax");
    return {};
  }
}

/// Line and column of a position; the library counts characters, we count bytes.
std::pair<long, long> TomlText::PlaceOf(const toml::source_position& position) const {
  std::size_t begin = 0;
  for (toml::source_index line = 1; line < position.line; ++line) {
    const std::size_t end = text_.find('\n', begin);
    if (end == std::string::npos) break;
    begin = end + 1;
  }
  std::size_t byte = begin;
  for (toml::source_index column = 1; column < position.column && byte < text_.size(); ++column) {
    ++byte;
    while (byte < text_.size() && ContinuesCharacter(text_[byte])) ++byte;
  }
  return {static_cast<long>(position.line), static_cast<long>(byte - begin) + 1};
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
