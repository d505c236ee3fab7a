#include "algebra/Matriu.h"
#include "input/Project.h"
#include "model/EulerAngles.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"

namespace kestol {

namespace {

// Stress options under which a block is written, and where its values come from.
enum class Axes { Local, Main };
enum class Source { Gauss, MainValues, Directions, ElementAxes };

struct PointBlock {
  Axes axes;
  Source source;
  int first;  ///< place of the first value at a point, from 1
  int count;  ///< values written; a 0 stands for the third of two
  const char* header;
};

// clang-format off
constexpr PointBlock kPointBlocks[] = {
    {Axes::Local, Source::Gauss,       1, 3, "Axial Force     4 1.0 Estatic 2 2 1 \"Triangles\"\nNx'\nNy'\nNxy'\n"},
    {Axes::Main,  Source::MainValues,  1, 3, "Main Ax. Force  4 1.0 Estatic 2 2 1 \"Triangles\"\nN11\nN22\n0\n"},
    {Axes::Local, Source::Gauss,       4, 3, "Momentus        4 1.0 Estatic 2 2 1 \"Triangles\"\nMx'\nMy'\nMxy'\n"},
    {Axes::Main,  Source::MainValues,  4, 3, "Main Momentus   4 1.0 Estatic 2 2 1 \"Triangles\"\nM11\nM22\n0\n"},
    {Axes::Local, Source::Gauss,       7, 2, "Shear          4 1.0 Estatic 2 2 1 \"Triangles\"\nQx'\nQy'\n0\n"},
    {Axes::Main,  Source::MainValues,  7, 2, "Shear in Main  4 1.0 Estatic 2 2 1 \"Triangles\"\nQm1\nQm2\n0\n"},
    {Axes::Local, Source::ElementAxes, 1, 3, "Local Axes      4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
    {Axes::Main,  Source::Directions,  1, 3, "L Axes Axial    4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
    {Axes::Main,  Source::Directions,  4, 3, "L Axes Momentus 4 1.0 Estatic 6 2 0 \"Triangles\"\n"},
};
// clang-format on

bool IsWritten(const PointBlock& block, int stressOption) {
  const int other = block.axes == Axes::Local ? MainStresses : LocalStresses;
  return stressOption != other;
}

constexpr int kValuesPerPoint = 8, kAnglesPerPoint = 6;

int PointsPerElement(const Mesh& mesh) {
  return mesh.nnode == 3 ? 1 : 3;
}

// The element number starts the first point's line; the lines of later points start with a blank.
void WritePointLine(const double* values, int count, OutputText& results) {
  for (int i = 0; i < count; ++i) results << ' ' << values[i];
  results << (count == 2 ? " 0\n" : "\n");
}

void WriteValues(const Mesh& mesh, const ReaVecT& array, int stride, const PointBlock& block,
                 OutputText& results) {
  const int points = PointsPerElement(mesh);
  const double* values = array.begin();
  for (const auto [number, elem] : mesh.elems) {
    results << number;
    for (int point = 0; point < points; ++point, values += stride)
      WritePointLine(values + (block.first - 1), block.count, results);
  }
}

void WriteElementAxes(const Project& project, const Mesh& mesh, OutputText& results) {
  const int points = PointsPerElement(mesh);
  Matriu T, T6;
  for (const auto [number, elem] : mesh.elems) {
    elem->ShellAxes(T, T6, elem->GetMaterial(project.materials));
    const ReaVec3 angles = FrameToAngles(T);
    results << number;
    for (int point = 0; point < points; ++point) WritePointLine(angles.data, 3, results);
  }
}

void WriteBlock(const Project& project, int m, const PointBlock& block, OutputText& results) {
  const Mesh& mesh = *project.meshes[m];
  results << block.header;
  switch (block.source) {
    case Source::Gauss:
      return WriteValues(mesh, project.gaussVariables[m], kValuesPerPoint, block, results);
    case Source::MainValues: {
      // With MainStresses they have taken the place of the local values.
      const auto& source = project.stressOption == MainAndLocalStresses ? project.localValues
                                                                        : project.gaussVariables;
      return WriteValues(mesh, source[m], kValuesPerPoint, block, results);
    }
    case Source::Directions:
      return WriteValues(mesh, project.mainDirections[m], kAnglesPerPoint, block, results);
    case Source::ElementAxes:
      return WriteElementAxes(project, mesh, results);
  }
}

}  // namespace

void WriteTriangleResults(const Project& project, int m, OutputText& results) {
  WriteVemoDisplacements(project, results);
  for (const PointBlock& block : kPointBlocks)
    if (IsWritten(block, project.stressOption)) WriteBlock(project, m, block, results);
}

}  // namespace kestol
