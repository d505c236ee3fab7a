#include "programs/common/OutputFiles.h"

#include "programs/common/RunProgram.h"
#include "programs/common/TemporaryFiles.h"

namespace kestol {

OutputFile& OutputFiles::Open(const std::string& name) {
  files_.push_back(std::make_unique<OutputFile>(name, inputs_));
  return *files_.back();
}

void OutputFiles::RefuseSharedNames(std::vector<std::string> others) const {
  for (const auto& file : files_) others.push_back(file->Name());
  kestol::RefuseSharedNames(others);
}

void OutputFiles::Close() {
  for (const auto& file : files_) file->Close();
}

void OutputFiles::Commit() {
  Close();
  const SignalsWait untilAllHaveTheirNames;
  try {
    for (const auto& file : files_) file->Commit();
  } catch (const ProgramError&) {
    Withdraw();
    throw;
  }
}

void OutputFiles::Withdraw() {
  for (const auto& file : files_) file->Withdraw();
}

}  // namespace kestol
