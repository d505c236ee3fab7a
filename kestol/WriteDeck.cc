#include "kestol/WriteDeck.h"

#include <algorithm>
#include <ostream>
#include <utility>
#include <vector>

#include "input/LoadsReader.h"
#include "input/Project.h"
#include "kestol/Shortest.h"
#include "kestol/WriteProblem.h"

namespace kestol {

namespace {

// --- materials --------------------------------------------------------------------------------

/// The keys of all values that were given.
void WriteKeys(const Material& m, std::ostream& stream) {
  const std::pair<const char*, double> values[] = {
      {"Ex",   m.E1  },
      {"Ey",   m.E2  },
      {"nuXY", m.nuXY},
      {"nuYX", m.nuYX},
      {"Gxy",  m.Gxy },
      {"Gxz",  m.Gxz },
      {"Gyz",  m.Gyz },
      {"A",    m.A   },
      {"Iy",   m.Iy  },
      {"Iz",   m.Iz  },
      {"J",    m.J   },
      {"t",    m.t   },
  };
  for (const auto& [key, value] : values)
    if (value != Material::kNotGiven) stream << ' ' << key << '=' << Shortest{value};
  if (m.Weight != Material::kNotGiven) stream << " Weight=" << Shortest{m.Weight};
  if (m.hasEuler)
    stream << " Euler1=" << Shortest{m.Euler1} << " Euler2=" << Shortest{m.Euler2}
           << " Euler3=" << Shortest{m.Euler3};
}

void WriteMaterials(const Project& project, std::ostream& stream) {
  if (project.materials.Highest() == 0) return;
  stream << "materials\n";
  for (const auto [number, material] : project.materials) {
    stream << "  " << number;
    WriteKeys(*material, stream);
    stream << '\n';
  }
  stream << "end materials\n";
}

// --- meshes -----------------------------------------------------------------------------------

void WriteCoordinates(const Mesh& mesh, std::ostream& stream) {
  for (const auto [number, node] : *mesh.nodes) {
    stream << "    " << number << ' ' << Shortest{node->x} << ' ' << Shortest{node->y};
    if (mesh.dimension == 3) stream << ' ' << Shortest{node->z};
    stream << '\n';
  }
}

/// The number of a node, or one that no node has: not the same twice, since beams on one number are
/// refused when they are read.
int NumberOf(const Node* node, int place) {
  return node != nullptr ? node->number : -place;
}

void WriteElement(const Elem& elem, std::ostream& stream) {
  stream << "    " << elem.number;
  for (int i = 0; i < elem.nnode; ++i) stream << ' ' << NumberOf(elem.nodes[i], i);
  stream << ' ' << elem.materialNumber;
  if (elem.material) {
    // Some key must make the definition, also of a material without any value.
    stream << " Weight=" << Shortest{elem.material->Weight};
    Material others = elem.material->Copy();
    others.Weight = Material::kNotGiven;
    WriteKeys(others, stream);
  }
  stream << '\n';
}

/// `listed`: whether this mesh lists the nodes.
void WriteMesh(const Mesh& mesh, bool listed, std::ostream& stream) {
  stream << "mesh\n  dimension = " << mesh.dimension << "   elemtype "
         << Mesh::NameOfElemType(mesh.elemType) << "   nnode = " << mesh.nnode
         << "\n  coordinates\n";
  if (listed) WriteCoordinates(mesh, stream);
  stream << "  end coordinates\n  elements\n";
  for (const auto [number, elem] : mesh.elems) WriteElement(*elem, stream);
  stream << "  end elements\n";
}

/// The first mesh lists the nodes. Where a later one listed them anew with another dimension, it
/// does so again.
void WriteMeshes(const Project& project, std::ostream& stream) {
  int listedAs = 0;
  for (const auto& mesh : project.meshes) {
    const Node* const first = mesh->nodes->Get(mesh->nodes->Lowest());
    const int wanted = first != nullptr ? first->dim : mesh->dimension;
    const bool listed = listedAs == 0 || (listedAs != wanted && mesh->dimension == wanted);
    if (listed) listedAs = mesh->dimension;
    WriteMesh(*mesh, listed, stream);
  }
}

// --- what hangs on nodes ----------------------------------------------------------------------

void WriteSupport(int number, const Constraint& support, int dofs, std::ostream& stream) {
  stream << "  " << number << ' ';
  for (int d = 0; d < dofs; ++d) stream << support.codes[d];
  for (int d = 0; d < dofs; ++d) stream << ' ' << Shortest{support.values[d]};
  if (support.hasLocalAxes)
    stream << " Euler1=" << Shortest{support.Euler1} << " Euler2=" << Shortest{support.Euler2}
           << " Euler3=" << Shortest{support.Euler3};
  stream << '\n';
}

/// The section of all nodes that `has` picks; none without any.
template <class Has, class Write>
void WriteNodeSection(const Project& project, const char* keyword, std::ostream& stream, Has has,
                      Write write) {
  bool begun = false;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!has(*node)) continue;
    if (!begun) stream << keyword << '\n';
    begun = true;
    write(number, *node);
  }
  if (begun) stream << "end " << keyword << '\n';
}

void WriteNodeSections(const Project& project, std::ostream& stream) {
  WriteNodeSection(
      project, "constraints", stream, [](const Node& node) { return node.constraint != nullptr; },
      [&](int number, const Node& node) {
        WriteSupport(number, *node.constraint, project.dofsPerNode, stream);
      });
  WriteNodeSection(
      project, "rotules", stream, [](const Node& node) { return node.isHinge; },
      [&](int number, const Node&) { stream << "  " << number << '\n'; });
  WriteNodeSection(
      project, "nodal_point_loads", stream, [](const Node& node) { return node.load != nullptr; },
      [&](int number, const Node& node) {
        stream << "  " << number;
        for (const double value : *node.load) stream << ' ' << Shortest{value};
        stream << '\n';
      });
}

// --- distributed loads ------------------------------------------------------------------------

struct LoadOfElement {
  int element;
  int elemType;
  const PreassureLT* load;
};

/// How many numbers the reader takes for a load.
int ValueCount(const LoadOfElement& on, ProblemType problemType) {
  if (problemType == Plane) return 2;
  return on.load->kind == LocalPressure && on.elemType != Tetrahedra ? 4 : 3;
}

void WriteLoad(const LoadOfElement& on, ProblemType problemType, std::ostream& stream) {
  stream << "  " << on.element;
  const bool hasSelector =
      problemType != Plane && (on.elemType == Tetrahedra || on.load->kind == FaceLoad);
  if (hasSelector) stream << ' ' << on.load->face;
  for (int i = 1; i <= ValueCount(on, problemType); ++i)
    stream << ' ' << Shortest{on.load->values(i)};
  stream << '\n';
}

int TypeOfElement(const Project& project, int number) {
  for (const auto& mesh : project.meshes)
    if (mesh->elems.Get(number) != nullptr) return mesh->elemType;
  return 0;
}

/// The sections of the loads that stand at the same place in the chains of their elements.
void WriteLoadSections(const std::vector<LoadOfElement>& loads, ProblemType problemType,
                       std::ostream& stream) {
  for (int kind = LocalPressure; kind <= FaceLoad; ++kind) {
    const auto isOfKind = [kind](const LoadOfElement& on) { return on.load->kind == kind; };
    if (std::none_of(loads.begin(), loads.end(), isOfKind)) continue;
    const std::string_view keyword =
        std::ranges::find(kLoadSections, kind, &LoadSection::kind)->keyword;
    stream << keyword << '\n';
    for (const LoadOfElement& on : loads)
      if (isOfKind(on)) WriteLoad(on, problemType, stream);
    stream << "end " << keyword << '\n';
  }
}

/// Loads of an element keep their order, whatever their kinds.
void WriteElementLoads(const Project& project, std::ostream& stream) {
  std::vector<LoadOfElement> loads;
  for (const auto [number, load] : project.loads)
    loads.push_back({number, TypeOfElement(project, number), load});
  while (!loads.empty()) {
    WriteLoadSections(loads, project.problemType, stream);
    for (LoadOfElement& on : loads) on.load = on.load->next.get();
    std::erase_if(loads, [](const LoadOfElement& on) { return on.load == nullptr; });
  }
}

}  // namespace

void WriteDeck(const Project& project, std::ostream& stream) {
  stream << "PROBLEM model\nTYPE " << (project.problemType == Plane ? "2d" : "3d") << "\n\n";
  const bool meshFirst = LosesItsLength(project.units);
  if (meshFirst) WriteMeshes(project, stream);
  WriteUnits(project.units, stream);
  WriteOptions(project, stream);
  if (!meshFirst) WriteMeshes(project, stream);
  WriteMaterials(project, stream);
  if (project.meshes.empty()) return;
  WriteNodeSections(project, stream);
  WriteElementLoads(project, stream);
}

}  // namespace kestol
