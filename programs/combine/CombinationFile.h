#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kestol/combine/Eurocode.h"

namespace kestol {

/// A mistake in a combination file; lines and columns count from 1, columns in bytes.
struct FileMistake {
  std::string text, code;
  long line = 0, column = 0, endColumn = 0;
};

/// One load case of the file.
struct CaseEntry {
  std::string name;
  std::string category;   ///< empty where none is given
  std::string loads;      ///< path of the file with its loads; empty for the model's own
  bool ofModel = false;   ///< its loads are those of the model
  bool separate = false;  ///< a permanent action with a factor of its own
};

/// What a combination file says.
///
///     model = "portal.dat"             # relative to the file
///     [cases.G]
///     category = "permanent"
///     loads = "model"                  # the model's own; else a file
///     [combinations]
///     ULS1 = { G = 1.35, Q1 = 1.5 }
///     [eurocode]
///     rules = ["6.10"]
struct CombinationFile {
  std::string model;                      ///< path of the deck
  std::vector<CaseEntry> cases;           ///< in the order of the file
  std::vector<Combination> combinations;  ///< those that the file names, in its order
  std::vector<Action> actions;            ///< one per case; with [eurocode]
  EurocodeRules rules;                    ///< of [eurocode]
  std::vector<Combination> generated;     ///< by the rules

  std::vector<std::string> CaseNames() const;
  /// The place of a case; -1: there is none of that name.
  int CaseIndex(std::string_view name) const;
  /// The combinations that the file names, then the generated ones.
  std::vector<Combination> AllCombinations() const;
};

/// Reads the file `path`; all its mistakes go to `mistakes`, in the order of the lines. With
/// mistakes what is returned is incomplete.
CombinationFile ReadCombinationFile(const std::string& path, std::vector<FileMistake>& mistakes);

/// The same for a text in memory; paths are relative to `folder` (empty: the current one).
CombinationFile ReadCombinationText(const std::string& text, const std::string& folder,
                                    std::vector<FileMistake>& mistakes);

/// The mistakes of the file on standard error, with its lines.
void PrintMistakes(const std::string& path, const std::vector<FileMistake>& mistakes);

}  // namespace kestol
