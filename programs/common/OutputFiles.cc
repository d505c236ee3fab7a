#include "programs/common/OutputFiles.h"

namespace kestol {

OutputFile& OutputFiles::Open(const std::string& name) {
  files_.push_back(std::make_unique<OutputFile>(name, inputs_));
  return *files_.back();
}

void OutputFiles::RefuseSharedNames(std::vector<std::string> others) const {
  for (const auto& file : files_) others.push_back(file->Name());
  kestol::RefuseSharedNames(others);
}

void OutputFiles::Commit() {
  for (const auto& file : files_) file->Close();
  for (const auto& file : files_) file->Commit();
}

}  // namespace kestol
