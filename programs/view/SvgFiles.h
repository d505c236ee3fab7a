#pragma once

#include <string>

#include "programs/common/OutputFiles.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// The drawings PREFIX_model.svg and so on: all names are tried before anything is solved.
class SvgFiles {
public:
  /// Refuses a drawing that is the deck or one of `files`, where the drawings will be.
  SvgFiles(const std::string& prefix, const std::string& deck, OutputFiles& files);

  /// Without results the model alone; diagrams where there are beams.
  void Write(const PageModel& model, const Results* results);

private:
  void WriteOne(const char* name, const std::string& drawing);

  std::string prefix_;
  OutputFiles& files_;
};

}  // namespace kestol
