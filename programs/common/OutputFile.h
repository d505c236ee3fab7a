#pragma once

#include <optional>
#include <string>
#include <vector>

#include "programs/common/OutputBuffer.h"
#include "programs/common/TemporaryFiles.h"

namespace kestol {

/// A file that appears when it is complete. It is written under a temporary name beside its target
/// and renamed by Commit; without that it leaves nothing behind, also when a signal ends a
/// companion. "-" is standard output; a target that exists and is no regular file (a pipe, a
/// device) is written directly.
///
/// All failures are ProgramError with the name and the system's reason.
class OutputFile final : public OutputBuffer {
public:
  /// Opens the temporary file, so that a target that cannot be written shows before any work is
  /// done. Refuses a target that is one of `inputs`, by whatever name or link.
  OutputFile(const std::string& name, const std::vector<std::string>& inputs);
  ~OutputFile() override;

  /// Everything is on its way to the disk, and nothing more is written; an open file and a buffer
  /// less where many files wait for their names.
  void Close();

  /// Close, and the target has its name.
  void Commit();

  /// After Commit: gives the target back what it was, for a run that could not complete the
  /// others. (The file is only taken away on a file system that cannot swap two names.)
  void Withdraw();

  const std::string& Name() const { return name_; }
  /// The same for a message.
  std::string ShownName() const { return name_ == "-" ? "standard output" : name_; }

  /// Where another writer may put the file, by name, before Commit. One that can write to this
  /// object should: an open file, such as standard output, may not open again, or only empty.
  std::string Path() const;

private:
  void OpenBeside();
  void HandOver(const char* data, std::size_t size) override;
  bool SkipZeros(std::size_t size) override;
  bool Swap() const;
  void Discard();
  [[noreturn]] void Fail(const char* what);

  std::string name_;
  std::string target_;     ///< behind links
  std::string temporary_;  ///< empty for what is written directly
  std::optional<TemporaryFile> untilRenamed_;
  int file_ = -1;
  bool isNamed_ = false;    ///< the target is this file
  bool isSwapped_ = false;  ///< and the temporary name has what was there before
};

/// Whether others may stand beside a file of that name: not beside standard output, by whatever
/// name, nor beside a pipe or a device.
bool HasPlace(const std::string& name);

/// Refuses two outputs of one program that are the same file.
void RefuseSharedNames(const std::vector<std::string>& names);

}  // namespace kestol
