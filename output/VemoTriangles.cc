#include "algebra/Matriu.h"
#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "model/EulerAngles.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"

namespace kestol {

namespace {

/// Stress options under which a block is written, and where its values come from.
enum class Axes { Local, Main };
enum class Source { LocalValues, MainValues, Directions, ElementAxes };

struct PointBlock {
  Axes axes;
  Source source;
  int first;  ///< place of the first value at a point, from 1
  int count;  ///< values written; a 0 stands for the third of two
  const char* header;
};

// clang-format off
constexpr PointBlock kPointBlocks[] = {
    {Axes::Local, Source::LocalValues,       1, 3, "Axial Force     4 1.0 Estatic 2 2 1 \"Triangles\"\nNx'\nNy'\nNxy'\n"},
    {Axes::Main,  Source::MainValues,  1, 3, "Main Ax. Force  4 1.0 Estatic 2 2 1 \"Triangles\"\nN11\nN22\n0\n"},
    {Axes::Local, Source::LocalValues,       4, 3, "Momentus        4 1.0 Estatic 2 2 1 \"Triangles\"\nMx'\nMy'\nMxy'\n"},
    {Axes::Main,  Source::MainValues,  4, 3, "Main Momentus   4 1.0 Estatic 2 2 1 \"Triangles\"\nM11\nM22\n0\n"},
    {Axes::Local, Source::LocalValues,       7, 2, "Shear          4 1.0 Estatic 2 2 1 \"Triangles\"\nQx'\nQy'\n0\n"},
    {Axes::Main,  Source::MainValues,  7, 2, "Shear in Main  4 1.0 Estatic 2 2 1 \"Triangles\"\nQm1\nQm2\n0\n"},
    {Axes::Local, Source::ElementAxes, 1, 3, "Local Axes      4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
    {Axes::Main,  Source::Directions,  1, 3, "L Axes Axial    4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
    {Axes::Main,  Source::Directions,  4, 3, "L Axes Momentus 4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
};
// clang-format on

bool IsWritten(const PointBlock& block, StressOption stressOption) {
  const StressOption other = block.axes == Axes::Local ? MainStresses : LocalStresses;
  return stressOption != other;
}

/// The element number starts the first point's line; the lines of later points start with a blank.
void WritePointLine(const double* values, int count, OutputText& file) {
  for (int i = 0; i < count; ++i) file << ' ' << values[i];
  file << (count == 2 ? " 0\n" : "\n");
}

void WriteValues(const Mesh& mesh, const ReaVecT& array, int points, int stride,
                 const PointBlock& block, OutputText& file) {
  const double* values = array.begin();
  for (const auto [number, elem] : mesh.elems) {
    file << number;
    for (int point = 0; point < points; ++point, values += stride)
      WritePointLine(values + (block.first - 1), block.count, file);
  }
}

void WriteElementAxes(const Project& project, const Mesh& mesh, int points, OutputText& file) {
  Matriu T, T6;
  for (const auto [number, elem] : mesh.elems) {
    elem->ShellAxes(T, T6, elem->GetMaterial(project.materials));
    const ReaVec3 angles = FrameToAngles(T);
    file << number;
    for (int point = 0; point < points; ++point) WritePointLine(angles.data, 3, file);
  }
}

void WriteBlock(const Project& project, const Mesh& mesh, const PointValues& values,
                const PointBlock& block, OutputText& file) {
  const PointLayout layout = PointLayoutOf(project, mesh);
  file << block.header;
  switch (block.source) {
    case Source::LocalValues: {
      const ReaVecT& local = project.DoSmoothing ? values.smoothed : values.local;
      return WriteValues(mesh, local, layout.points, layout.values, block, file);
    }
    case Source::MainValues:
      return WriteValues(mesh, values.main, layout.points, layout.values, block, file);
    case Source::Directions:
      return WriteValues(mesh, values.angles, layout.points, kAnglesPerPoint, block, file);
    case Source::ElementAxes:
      return WriteElementAxes(project, mesh, layout.points, file);
  }
}

}  // namespace

void WriteTriangleResults(const Project& project, const Results& results, int m, OutputText& file) {
  WriteVemoDisplacements(project, results, file);
  for (const PointBlock& block : kPointBlocks)
    if (IsWritten(block, project.stressOption))
      WriteBlock(project, *project.meshes[m], results.meshes[m], block, file);
}

}  // namespace kestol
