#pragma once

#include <vector>

#include "programs/combine/CombinationFile.h"
#include "programs/combine/TomlText.h"

namespace kestol {

/// Reads the table [eurocode] of a combination file whose cases and combinations are read.
class EurocodeReader {
public:
  /// `caseTables` are the tables of the cases in `file`.
  EurocodeReader(TomlText& text, const std::vector<const toml::table*>& caseTables,
                 CombinationFile& file)
      : text_(text), caseTables_(caseTables), file_(file) {}

  /// Fills the actions and the rules of the file.
  void Read(const toml::table& eurocode);

  /// Fills the combinations that the rules of the table give; only after a table without mistakes.
  void Generate(const toml::table& eurocode);

private:
  void ReadActions();
  void ReadRules(const toml::table& eurocode);
  void ReadPsi(const toml::table& eurocode);
  void ReadGamma(const toml::table& eurocode);
  void ReadPermanentFactors(const toml::node& G);
  void ReadExclusive(const toml::table& eurocode);
  std::vector<int> ReadGroup(const toml::array& group);

  TomlText& text_;
  const std::vector<const toml::table*>& caseTables_;
  CombinationFile& file_;
};

}  // namespace kestol
