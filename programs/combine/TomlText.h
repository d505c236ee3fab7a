#pragma once

#include <toml++/toml.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "programs/combine/CombinationFile.h"

namespace kestol {

/// A TOML document that is read key by key; every mistake is noted with its place.
class TomlText {
public:
  TomlText(std::string text, std::vector<FileMistake>& mistakes)
      : text_(std::move(text)), mistakes_(mistakes) {}

  /// The document; empty when it is no TOML.
  toml::table Parse();

  /// Notes a mistake at a part of the document.
  void Note(const toml::source_region& place, std::string text, std::string code);
  void Note(const toml::node& place, std::string text, std::string code) {
    Note(place.source(), std::move(text), std::move(code));
  }

  /// Notes every key of the table that is none of `known`, with the nearest of them.
  void RefuseUnknownKeys(const toml::table& table, const std::string& what,
                         std::span<const std::string_view> known);

  /// Notes `word` as none of `known`, with the nearest of them.
  void NoteUnknown(const toml::source_region& place, const std::string& what, std::string_view word,
                   std::span<const std::string_view> known, const std::string& code);

  /// The text, number, flag, array or table under a key; none, with a note, for another type; none
  /// without one where the key is missing.
  std::optional<std::string> Text(const toml::table& table, std::string_view key);
  std::optional<double> Number(const toml::node& node, const std::string& what);
  std::optional<bool> Flag(const toml::table& table, std::string_view key);
  const toml::array* Array(const toml::table& table, std::string_view key);
  const toml::table* Table(const toml::table& table, std::string_view key);
  /// `count` numbers (0: none with a note unless the node is an array of them).
  std::optional<std::vector<double>> Numbers(const toml::node& node, const std::string& what,
                                             std::size_t count);

private:
  struct Here {
    toml::source_position position{1, 1};
    std::size_t lineBegin = 0, byte = 0;
  };

  bool HasLongKey();
  std::pair<long, long> PlaceOf(const toml::source_position& position);
  template <class T>
  const T* Typed(const toml::table& table, std::string_view key, const char* type);

  std::string text_;
  std::vector<FileMistake>& mistakes_;
  Here here_;
};

/// The member `name` of every row.
template <class Rows>
std::vector<std::string_view> NamesOfRows(const Rows& rows) {
  std::vector<std::string_view> names;
  names.reserve(std::size(rows));
  for (const auto& row : rows) names.push_back(row.name);
  return names;
}

/// Key and value in the order of the document; the library sorts them by name.
std::vector<std::pair<const toml::key*, const toml::node*>> InOrder(const toml::table& table);

}  // namespace kestol
