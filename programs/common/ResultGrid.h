#pragma once

#include <string>
#include <vector>

#include "programs/common/ResultData.h"
#include "programs/common/VtuWriter.h"
#include "results/ElementLoads.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"

namespace kestol {

/// A model and its results as one unstructured grid. Its arrays are made while they are written,
/// from `data`, which must outlive it.
///
///     points   every node by number in the input, created ones behind; then the stations of beam
///     1,
///              of beam 2, ...
///     cells    mesh by mesh: beams as polylines over their stations, triangles, tetrahedra
class ResultGrid {
public:
  explicit ResultGrid(const ResultData& data);
  ResultGrid(const ResultGrid&) = delete;
  ResultGrid& operator=(const ResultGrid&) = delete;

  const VtuGrid& Grid() const { return grid_; }

private:
  /// A shell with the means of its points, and the main values of these.
  struct ShellCell {
    Frame axes;
    double thickness;
    ShellForces mean;
    ShellMain main;
  };

  void TakeCells();
  void TakeShells();
  void TakeMainStresses();
  void PutConnectivity(VtuValues& out) const;
  void AddGeometry();
  void AddNodeData();
  void AddBeamPointData();
  void AddSolidPointData();
  void AddElementData();
  void AddAxes();
  void AddShellData();
  void AddElementLoads();

  std::int64_t NodeCount() const { return static_cast<std::int64_t>(data_.nodes.size()); }
  std::int64_t StationCount() const {
    return static_cast<std::int64_t>(data_.beams.Count()) * data_.beams.stations;
  }
  std::int64_t PointCount() const { return NodeCount() + StationCount(); }

  /// Corners of a cell of the mesh.
  int CornersOf(const Mesh& mesh) const {
    return mesh.elemType == Linear ? data_.beams.stations : mesh.nnode;
  }
  template <class Action>
  void ForEachElement(Action action) const;
  template <class T, int N, class ValueAt>
  void AddAtNodes(const std::string& name, VtuType type, ValueAt valueAt,
                  std::vector<std::string> componentNames = {});
  void AddVectorWithStations(const std::string& name, bool rotations);
  template <class T, int N, class ValueAt>
  void AddAtElements(const std::string& name, VtuType type, ValueAt valueAt,
                     std::vector<std::string> componentNames = {});
  template <int N, class ValueAt>
  void AddAtShells(const std::string& name, ValueAt valueAt,
                   std::vector<std::string> componentNames = {});
  void AddLoadArray(const std::string& name, Vector3 ElementLoads::*part);

  const ResultData& data_;
  std::vector<std::vector<const Elem*>> elems_;  ///< by mesh; a walk through a Plex is slow
  NodalStresses stresses_;
  std::vector<MainStress> mainStresses_;  ///< by place of the node; solids
  std::vector<ShellCell> shells_;
  std::int64_t cells_ = 0, corners_ = 0;
  VtuGrid grid_;
};

/// The diagrams of the beams' internal forces: a strip of quadrilaterals for each beam and value,
/// from the axis to the value, drawn as the solver's own viewer would. The largest value of each
/// kind stands at 10 % of the model's size; one that is rounding beside the others stays flat.
class DiagramGrid {
public:
  explicit DiagramGrid(const ResultData& data);
  DiagramGrid(const DiagramGrid&) = delete;
  DiagramGrid& operator=(const DiagramGrid&) = delete;

  const VtuGrid& Grid() const { return grid_; }

private:
  void TakeScales();
  void AddGeometry();
  void AddData();
  template <class Action>
  void ForEachStrip(Action action) const;

  const ResultData& data_;
  std::vector<BeamValue> kinds_;             ///< those that the problem has
  std::array<double, kBeamValues> scale_{};  ///< length per value
  VtuGrid grid_;
};

/// Where the diagrams stand that belong to the grid in the file `vtu`: beside it. Empty where
/// nothing stands beside it.
std::string DiagramsBeside(const std::string& vtu);

}  // namespace kestol
