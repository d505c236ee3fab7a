#include "programs/view/SvgFiles.h"

#include <algorithm>
#include <vector>

#include "programs/view/SvgDrawings.h"

namespace kestol {

SvgFiles::SvgFiles(const std::string& prefix, const std::string& deck, OutputFiles& files)
    : prefix_(prefix), files_(files) {
  std::vector<std::string> names;
  for (const char* ending : {"_model.svg", "_deformed.svg", "_N.svg", "_V.svg", "_M.svg"}) {
    const OutputFile tried(prefix_ + ending, {deck});
    names.push_back(tried.Name());
  }
  files_.RefuseSharedNames(names);
}

void SvgFiles::WriteOne(const char* name, const std::string& drawing) {
  files_.Open(prefix_ + name) << drawing;
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
