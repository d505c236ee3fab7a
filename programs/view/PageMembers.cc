#include <algorithm>
#include <span>

#include "algebra/Matriu.h"
#include "programs/common/ResultJson.h"
#include "programs/view/PageModel.h"
#include "programs/view/Runs.h"
#include "results/BeamResults.h"
#include "results/ElementLoads.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

const char* NameOf(PageMesh::Kind kind) {
  constexpr const char* kNames[] = {"beam", "shell", "solid"};
  return kNames[static_cast<int>(kind)];
}

/// What a support does, without the node: supports that agree in it are one group.
struct SupportKind {
  std::string codes;
  std::vector<double> values;
  std::vector<double> axes;  ///< rows; empty where they are the global ones
  bool operator==(const SupportKind&) const = default;
};

SupportKind KindOf(const Constraint& support, int number, bool plane) {
  SupportKind kind;
  for (int d = 0; d < support.dofs; ++d) {
    kind.codes.push_back(static_cast<char>('0' + std::clamp(support.codes[d], 0, 9)));
    kind.values.push_back(support.values[d]);
  }
  Matriu T;
  if (NodeAxesMatrix(support, number, T, plane ? 3 : support.dofs, 0) != 0) return kind;
  for (int axis = 1; axis <= 3; ++axis)
    for (int c = 1; c <= 3; ++c) kind.axes.push_back(T(c, axis));
  return kind;
}

}  // namespace

void PageModel::WriteMembers(JsonWriter& json) const {
  json.NewLine();
  WriteUnitsMember(json, UnitNamesOf(project.units));
  json.Member("dimension", project.problemType == Plane ? 2 : 3);
  json.Member("nodes", static_cast<int>(places.Nodes().size()));
  json.Member("deckNodes", places.DeckNodes());
  WriteMaterials(json);
  WriteMeshes(json);
  WriteSupports(json);
  WriteHinges(json);
}

void PageModel::WriteMaterials(JsonWriter& json) const {
  struct Value {
    const char* name;
    double Material::*value;
  };
  constexpr Value kValues[] = {
      {"E",      &Material::E1    },
      {"Ey",     &Material::E2    },
      {"nu",     &Material::nuXY  },
      {"nuYX",   &Material::nuYX  },
      {"G",      &Material::Gxy   },
      {"Gxz",    &Material::Gxz   },
      {"Gyz",    &Material::Gyz   },
      {"A",      &Material::A     },
      {"Iy",     &Material::Iy    },
      {"Iz",     &Material::Iz    },
      {"J",      &Material::J     },
      {"t",      &Material::t     },
      {"Weight", &Material::Weight},
  };
  json.NewLine().Key("materials").BeginArray();
  for (const auto& [material, number, isInline] : materials_) {
    json.NewLine().BeginObject().Member("number", number);
    if (isInline) json.Member("inline", true);
    for (const auto& [name, value] : kValues)
      if (material->*value != Material::kNotGiven) json.Member(name, material->*value);
    json.EndObject();
  }
  json.EndArray();
}

void PageModel::WriteMeshes(JsonWriter& json) const {
  json.NewLine().Key("meshes").BeginArray();
  for (const PageMesh& mesh : meshes) {
    json.NewLine().BeginObject().Member("kind", NameOf(mesh.kind)).Member("nnode", mesh.nnode);
    json.Member("count", static_cast<std::int64_t>(mesh.elems.size()));
    json.Member("points", mesh.points).Member("first", mesh.elems.front()->number);
    json.Member("material", MaterialPlace(*mesh.elems.front()));
    json.Member("stations", std::span<const double>(mesh.stations)).EndObject();
  }
  json.EndArray();
}

void PageModel::WriteSupports(JsonWriter& json) const {
  std::vector<std::pair<SupportKind, Runs>> groups;
  for (std::size_t i = 0; i < places.Nodes().size(); ++i) {
    const Constraint* const support = places.Nodes()[i]->constraint.get();
    if (support == nullptr) continue;
    const SupportKind kind = KindOf(*support, places.Numbers()[i], project.problemType == Plane);
    // The group of the node before comes first in line: supports come in rows.
    auto found = std::find_if(groups.rbegin(), groups.rend(),
                              [&](const auto& group) { return group.first == kind; });
    if (found == groups.rend()) {
      groups.push_back({kind, {}});
      found = groups.rbegin();
    }
    found->second.Add(static_cast<std::int64_t>(i));
  }
  json.NewLine().Key("supports").BeginArray();
  for (const auto& [kind, runs] : groups) {
    json.NewLine().BeginObject().Member("codes", kind.codes);
    json.Member("values", std::span<const double>(kind.values));
    if (!kind.axes.empty()) json.Member("axes", std::span<const double>(kind.axes));
    WriteRuns(json, runs);
    json.EndObject();
  }
  json.EndArray();
}

void PageModel::WriteHinges(JsonWriter& json) const {
  json.NewLine().Key("hinges").BeginArray();
  const auto write = [&](const Elem& elem, int end) {
    json.BeginObject().Member("element", elem.number).Member("end", end).EndObject();
  };
  for (const PageMesh& mesh : meshes) {
    if (!mesh.IsBeams()) continue;
    for (const Elem* elem : mesh.elems) {
      const BeamHinges hinges = HingesOf(project, *elem);
      if (hinges.end1) write(*elem, 0);
      if (hinges.end2) write(*elem, 1);
    }
  }
  json.EndArray();
}

}  // namespace kestol
