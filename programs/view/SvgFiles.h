#pragma once

#include <memory>
#include <string>
#include <vector>

#include "programs/common/OutputFile.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// The drawings PREFIX_model.svg and so on: all names are tried before anything is solved.
class SvgFiles {
public:
  SvgFiles(const std::string& prefix, const std::string& deck);

  /// Without results the model alone; diagrams where there are beams.
  void Write(const PageModel& model, const Results* results);

private:
  void WriteOne(const char* name, const std::string& drawing);

  std::string prefix_, deck_;
};

}  // namespace kestol
