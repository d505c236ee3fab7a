#include "programs/view/SvgFiles.h"

#include <algorithm>

#include "programs/view/SvgDrawings.h"

namespace kestol {

SvgFiles::SvgFiles(const std::string& prefix, const std::string& deck)
    : prefix_(prefix), deck_(deck) {
  const OutputFile tried(prefix_ + "_model.svg", {deck_});
}

void SvgFiles::WriteOne(const char* name, const std::string& drawing) {
  OutputFile file(prefix_ + name, {deck_});
  file << drawing;
  file.Commit();
}

void SvgFiles::Write(const PageModel& model, const Results* results) {
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
