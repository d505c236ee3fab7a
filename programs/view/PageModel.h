#pragma once

#include <vector>

#include "kestol/Model.h"
#include "kestol/Results.h"
#include "programs/common/JsonWriter.h"
#include "programs/view/PageBlock.h"
#include "programs/view/PageMesh.h"

namespace kestol {

/// Everything of the model that is no number of its solution: the members of the page's head, and
/// the blocks of places and elements.
class PageModel {
public:
  explicit PageModel(const Project& project);

  const Project& project;
  NodePlaces places;
  std::vector<PageMesh> meshes;

  std::vector<PageBlock> Blocks() const;
  void WriteMembers(JsonWriter& json) const;
  void WriteLoads(JsonWriter& json) const;

  /// The outer faces of the solids of meshes[m]; none of other meshes.
  const std::vector<std::uint32_t>& FacesOf(std::size_t m) const { return faces_[m]; }

  /// Triangles that the page will draw.
  std::int64_t Triangles() const;

private:
  void WriteMaterials(JsonWriter& json) const;
  void WriteMeshes(JsonWriter& json) const;
  void WriteSupports(JsonWriter& json) const;
  void WriteHinges(JsonWriter& json) const;
  void WriteNodalLoads(JsonWriter& json) const;
  void WriteElementLoads(JsonWriter& json) const;
  int MaterialPlace(const Elem& elem) const;
  bool HasWeight() const;

  struct NumberedMaterial {
    const Material* material;
    int number;     ///< as the element line writes it
    bool isInline;  ///< written behind an element
  };
  std::vector<NumberedMaterial> materials_;        ///< by address
  std::vector<std::vector<std::uint32_t>> faces_;  ///< by place in `meshes`; of solids
};

}  // namespace kestol
