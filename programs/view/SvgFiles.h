#pragma once

#include <memory>
#include <string>
#include <vector>

#include "programs/common/OutputFile.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// The drawings PREFIX_model.svg and so on: all names are tried before anything is solved, and the
/// files appear when all of them are complete.
class SvgFiles {
public:
  /// Refuses a drawing that is the deck or the `page`, whose name may be empty.
  SvgFiles(const std::string& prefix, const std::string& page, const std::string& deck);

  /// Without results the model alone; diagrams where there are beams.
  void Write(const PageModel& model, const Results* results);

private:
  void DrawAll(const PageModel& model, const Results* results);
  void WriteOne(const char* name, const std::string& drawing);

  std::string prefix_, deck_;
  std::vector<std::unique_ptr<OutputFile>> files_;
};

}  // namespace kestol
