#pragma once

#include <memory>
#include <string>
#include <vector>

#include "programs/common/OutputFile.h"

namespace kestol {

/// The files that one run writes. They get their names together when all are complete: a run that
/// fails leaves none of them.
class OutputFiles {
public:
  /// No file may be one of `inputs`.
  explicit OutputFiles(std::vector<std::string> inputs) : inputs_(std::move(inputs)) {}

  /// Opens one more; it stays where it is.
  OutputFile& Open(const std::string& name);

  /// Refuses two of the files, or of `others` that are opened later, that are the same.
  void RefuseSharedNames(std::vector<std::string> others = {}) const;

  /// Those that nothing more is written to may be closed one by one; this closes them all.
  void Close();

  /// Names all of them; when one cannot have its name, none has, and what was there stays.
  void Commit();

  /// After Commit: takes them all away again, and what was there comes back.
  void Withdraw();

private:
  std::vector<std::string> inputs_;
  std::vector<std::unique_ptr<OutputFile>> files_;
};

}  // namespace kestol
