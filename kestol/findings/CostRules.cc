#include <algorithm>
#include <string>
#include <vector>

#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "kestol/findings/Profile.h"

namespace kestol {

namespace {

constexpr double kGigabyte = 1e9;

/// Bytes that the result file takes for the stations of all beams, about.
double StationBytes(const Project& project) {
  constexpr double kPerStation = 45.0;  // three numbers
  double beams = 0.0;
  for (std::size_t m = 0; m < project.meshes.size(); ++m)
    if (project.meshes[m]->elemType == Linear) beams += project.numElements[m];
  const double blocks = 1.0 + project.dofsPerNode;  // displacements, then each internal force
  return beams * (1.0 + project.NumOfDivisions) * blocks * kPerStation;
}

std::string Gigabytes(double bytes) {
  return NumberText(bytes / kGigabyte) + " GB";
}

}  // namespace

void FindCosts(Inspection& deck) {
  constexpr double kMostOutput = 1e9;
  const Project& project = deck.project;
  if (project.meshes.empty()) return;
  if (const double bytes = StationBytes(project); bytes > kMostOutput)
    deck.Add(deck.PlaceOfKeyword("NumOfDivisions"),
             "the stations of the beams take " + Gigabytes(bytes) +
                 " in the result file: fewer NumOfDivisions?");
  if (project.solverChoice != SolveSkyLine || deck.AnyError()) return;
  if (const double bytes = ProfileBytes(project); bytes > kMostProfile)
    deck.Add(deck.PlaceOfKeyword("Solver"), "Solver SkyLine takes " + Gigabytes(bytes) +
                                                " for its matrix: Solver Sparse takes less");
}

}  // namespace kestol
