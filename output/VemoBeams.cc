#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "analysis/Results.h"
#include "input/Project.h"
#include "model/EulerAngles.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"
#include "results/BeamStations.h"

namespace kestol {

// D = NumOfDivisions; the stations s = 0..D of a beam are at xi = s/D. They are computed one by one
// as they are written: their number has no limit but the disk.

namespace {

constexpr const char* kPlaneHeaders[] = {
    "X'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n",
};
constexpr const char* kSpaceHeaders[] = {
    "X'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Z'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "X'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Y'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n",
    "Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n",
};

void WriteDisplacements(const Project& project, const Results& results, const Mesh& mesh,
                        BeamElement& beam, OutputText& file) {
  file << "BDisplacements 4 1.0 Estatic 2 2 1 \"Beams\"\nX\nY\nZ\n";
  const std::int64_t D = project.NumOfDivisions;
  for (const auto [number, elem] : mesh.elems) {
    beam.SetAxes(*elem);
    beam.SetLoads();
    const BeamDisplacements displacements(beam, results.displacements);
    file << number;
    for (std::int64_t s = 0; s <= D; ++s) {
      const auto [x, y, z] = displacements.At(static_cast<double>(s) / static_cast<double>(D));
      file << ' ' << x << ' ' << y << ' ' << z << " \n";
    }
  }
}

/// The line of one station. Forces that are constant along the beam are common: a value that comes
/// again keeps its text.
class StationLine {
public:
  explicit StationLine(const Vector3& direction) : direction_(direction) {}

  std::string_view TextOf(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if (end_ == text_ || bits != bits_) Compose(value);
    bits_ = bits;
    return {text_, static_cast<std::size_t>(end_ - text_)};
  }

private:
  void Compose(double value) {
    char* to = text_;
    *to++ = ' ';
    to = WriteVectorForm(to, value * direction_[0]);
    to = WriteVectorForm(to, value * direction_[1]);
    to = WriteVectorForm(to, value * direction_[2]);
    *to++ = ' ';
    to = WriteDefault(to, value);
    *to++ = '\n';
    end_ = to;
  }

  Vector3 direction_;
  std::uint64_t bits_ = 0;
  char text_[4 * kNumberLength + 3];
  char* end_ = text_;
};

void WriteStrength(const Project& project, const Results& results, int m, int c, BeamElement& beam,
                   OutputText& file) {
  file << (project.problemType == Plane ? kPlaneHeaders : kSpaceHeaders)[c - 1];
  const std::int64_t D = project.NumOfDivisions;
  const double* ends = results.meshes[m].local.begin();
  for (const auto [number, elem] : project.meshes[m]->elems) {
    beam.SetAxes(*elem);
    beam.SetLoads();
    const BeamStrength strength(beam, ends, c);
    StationLine line(DiagramDirection(FrameOf(beam.T), project.problemType, c));
    ends += 2 * project.dofsPerNode;
    file << number;
    for (std::int64_t s = 0; s <= D; ++s)
      file << line.TextOf(strength.At(static_cast<double>(s) / static_cast<double>(D)));
  }
}

// Deliberate: only the middle station carries the axes, behind two blanks.
void WriteAxes(const Project& project, const Mesh& mesh, BeamElement& beam, OutputText& file) {
  file << "Local Axes Beam   4 1.0 Estatic 6 2 0 \"Beams\"\n";
  const int middle = project.NumOfDivisions / 2;
  for (const auto [number, elem] : mesh.elems) {
    beam.SetAxes(*elem);
    const ReaVec3 angles = FrameToAngles(beam.T);
    file << number;
    for (int s = 0; s < middle; ++s) file << " 1000 1000 1000\n";
    file << "  " << angles(1) << ' ' << angles(2) << ' ' << angles(3) << '\n';
    for (int s = middle; s < project.NumOfDivisions; ++s) file << " 1000 1000 1000\n";
  }
}

}  // namespace

void WriteBeamResults(const Project& project, const Results& results, int m, OutputText& file) {
  const Mesh& mesh = *project.meshes[m];
  BeamElement beam(project);
  WriteDisplacements(project, results, mesh, beam, file);
  for (int c = 1; c <= project.dofsPerNode; ++c) WriteStrength(project, results, m, c, beam, file);
  WriteAxes(project, mesh, beam, file);
}

}  // namespace kestol
