#include "programs/view/SvgFiles.h"

#include <algorithm>

#include "programs/view/SvgDrawings.h"

namespace kestol {

SvgFiles::SvgFiles(const std::string& prefix, const std::string& page, const std::string& deck)
    : prefix_(prefix), deck_(deck) {
  std::vector<std::string> names;
  if (!page.empty()) names.push_back(page);
  for (const char* ending : {"_model.svg", "_deformed.svg", "_N.svg", "_V.svg", "_M.svg"}) {
    const OutputFile tried(prefix_ + ending, {deck_});
    names.push_back(tried.Name());
  }
  RefuseSharedNames(names);
}

void SvgFiles::WriteOne(const char* name, const std::string& drawing) {
  OutputFile& file = *files_.emplace_back(
      std::make_unique<OutputFile>(prefix_ + name, std::vector<std::string>{deck_}));
  file << drawing;
}

void SvgFiles::Write(const PageModel& model, const Results* results) {
  DrawAll(model, results);
  for (const auto& file : files_) file->Commit();
}

void SvgFiles::DrawAll(const PageModel& model, const Results* results) {
  WriteOne("_model.svg", ModelDrawing(model));
  if (results == nullptr) return;
  WriteOne("_deformed.svg", DeformedDrawing(model, *results));
  const bool beams = std::any_of(model.meshes.begin(), model.meshes.end(),
                                 [](const PageMesh& mesh) { return mesh.IsBeams(); });
  if (!beams) return;
  WriteOne("_N.svg", DiagramDrawing(model, *results, DiagramOf::AxialForce));
  WriteOne("_V.svg", DiagramDrawing(model, *results, DiagramOf::Shear));
  WriteOne("_M.svg", DiagramDrawing(model, *results, DiagramOf::Moment));
}

}  // namespace kestol
