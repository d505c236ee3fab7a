#pragma once

#include <span>
#include <string_view>

#include "input/Project.h"

namespace kestol {

/// Elements of one kind, row by row.
struct ElementRows {
  ElemType type;
  int nodesPerElement;
  std::span<const int> numbers;    ///< of the elements
  std::span<const int> nodes;      ///< nodesPerElement for each element
  std::span<const int> materials;  ///< one for each element, or one for all
};

/// Makes a model without a deck, piece by piece. What a deck says in text goes through the readers
/// of the deck, so that it means and refuses the same; nodes and elements come as arrays.
///
///     ModelBuilder builder(2);
///     builder.Say("units_res kN-m");
///     builder.AddNodes(numbers, coordinates);
///     builder.AddElements({Linear, 2, numbers, nodes, materials});
///     builder.AddRecord("materials", "1 E=2e11 A=1e-2 Iz=1e-5");
///     builder.Check();
///
/// The order is that of a deck: units before the values that they scale; nodes before elements;
/// both before what speaks of them. Every call may refuse with FatalError; what it was to add is
/// then not there.
class ModelBuilder {
public:
  /// An empty model in the plane (2) or in space (3).
  explicit ModelBuilder(int dimension);
  /// Goes on with a model that was not prepared for a solution.
  explicit ModelBuilder(Project model, bool isChanged = false);

  const Project& Model() const { return project_; }

  /// Whether anything was added to the model that it began with.
  bool IsChanged() const { return isChanged_; }

  /// A keyword of the deck with its values.
  void Say(std::string_view statement);

  /// A record of a section of the deck: one line.
  void AddRecord(std::string_view section, std::string_view record);

  /// A row of the table of unit systems.
  void AddUnits(std::string_view row);

  /// Adds nodes: two coordinates for each in the plane, three in space, in the unit of the mesh.
  /// Refuses numbers below 1 or in use.
  void AddNodes(std::span<const int> numbers, std::span<const double> coordinates);

  /// Adds elements: all of one type and node count make one mesh. Refuses numbers below 1 or in
  /// use, and unknown nodes. Solids come before supports and loads, which have half as many
  /// components on them.
  void AddElements(const ElementRows& rows);

  /// The least number above all that are in use.
  int NextNodeNumber() const;
  int NextElementNumber() const;

  /// Coordinates of a node: 2 or 3.
  int Dimension() const;

  /// Refuses a model that a deck cannot hold: without a mesh, with gaps in the numbers of the
  /// nodes, with solids beside other elements.
  void Check();

private:
  Mesh& NodeMesh();
  Mesh& MeshFor(ElemType type, int nodesPerElement);
  void CheckNewNodes(std::span<const int> numbers, std::span<const double> coordinates);
  void CheckNewElements(const ElementRows& rows) const;
  void CountElements(const Mesh& mesh, std::size_t added);

  Project project_;
  bool isChanged_ = false;
};

}  // namespace kestol
