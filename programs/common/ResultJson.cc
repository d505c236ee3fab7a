#include "programs/common/ResultJson.h"

#include <algorithm>
#include <span>

#include "results/ElementLoads.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"

namespace kestol {

namespace {

void WriteAxesMember(JsonWriter& json, const Frame& axes) {
  json.Key("axes").BeginArray();
  for (const Vector3& axis : {axes.x, axes.y, axes.z}) json.Value(axis);
  json.EndArray();
}

/// Numbers of the nodes in the input; those that the conversion created, which have none, are left
/// out.
void WriteNodeNumbers(JsonWriter& json, const ResultData& data, const Elem& elem) {
  json.Key("nodes").BeginArray();
  for (int i = 0; i < elem.nnode; ++i)
    if (const int number = data.NumberOf(*elem.nodes[i]); number != 0) json.Value(number);
  json.EndArray();
}

void BeginElement(JsonWriter& json, const ResultData& data, const Elem& elem) {
  json.NewLine().BeginObject();
  json.Member("element", elem.number).Member("material", elem.materialNumber);
  WriteNodeNumbers(json, data, elem);
}

void WriteNodes(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("nodes").BeginArray();
  ForEachNode(data.project, [&](int number, const Node& node) {
    json.NewLine().BeginObject();
    json.Member("number", number).Member("x", PositionOf(node));
    if (data.solved) {
      const NodeDisplacement at = DisplacementOf(data.project, data.results, node);
      json.Member("u", at.u).Member("rotation", at.rotation);
    }
    json.EndObject();
  });
  json.EndArray();
}

void WriteStations(JsonWriter& json, const BeamTable& beams, int beam) {
  json.Key("stations").BeginArray();
  for (int s = 0; s < beams.stations; ++s) {
    const std::size_t place = beams.Place(beam, s);
    json.BeginObject();
    json.Member("x", beams.XiOf(s) * beams.lengths[static_cast<std::size_t>(beam)]);
    for (int v = 0; v < kBeamValues; ++v)
      json.Member(kBeamValueNames[v], beams.values[static_cast<std::size_t>(v)][place]);
    json.Member("u", beams.displacements[place]);
    json.EndObject();
  }
  json.EndArray();
}

void WriteBeams(JsonWriter& json, const ResultData& data) {
  const BeamTable& beams = data.beams;
  json.NewLine().Key("beams").BeginArray();
  for (int b = 0; b < beams.Count(); ++b) {
    const auto k = static_cast<std::size_t>(b);
    BeginElement(json, data, *beams.beams[k]);
    json.Member("length", beams.lengths[k]);
    WriteAxesMember(json, beams.axes[k]);
    if (data.solved) WriteStations(json, beams, b);
    json.EndObject();
  }
  json.EndArray();
}

void WriteShells(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("shells").BeginArray();
  ForEachShell(data.project, data.solved ? &data.results : nullptr, [&](const ShellView& shell) {
    BeginElement(json, data, *shell.elem);
    WriteAxesMember(json, shell.axes);
    if (data.solved) {
      json.Key("points").BeginArray();
      for (int p = 0; p < shell.pointCount; ++p) {
        const auto& [x, forces] = shell.points[static_cast<std::size_t>(p)];
        json.BeginObject();
        json.Member("x", x);
        json.Member("n", forces.n).Member("m", forces.m).Member("q", forces.q);
        json.Member("top", FaceStress(forces, shell.thickness, ShellFace::Top, shell.axes));
        json.Member("bottom", FaceStress(forces, shell.thickness, ShellFace::Bottom, shell.axes));
        json.EndObject();
      }
      json.EndArray();
    }
    json.EndObject();
  });
  json.EndArray();
}

void WriteUnsolvedSolids(JsonWriter& json, const ResultData& data) {
  for (const auto& mesh : data.project.meshes) {
    if (mesh->elemType != Tetrahedra) continue;
    for (const auto [number, elem] : mesh->elems) {
      BeginElement(json, data, *elem);
      json.EndObject();
    }
  }
}

void WriteSolids(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("solids").BeginArray();
  if (!data.solved) WriteUnsolvedSolids(json, data);
  if (data.solved)
    ForEachSolid(data.project, data.results, [&](const SolidView& solid) {
      BeginElement(json, data, *solid.elem);
      json.Key("points").BeginArray();
      for (int p = 0; p < solid.pointCount; ++p) {
        const auto& [x, stress] = solid.points[static_cast<std::size_t>(p)];
        json.BeginObject();
        json.Member("x", x).Member("stress", stress);
        json.EndObject();
      }
      json.EndArray();
      json.EndObject();
    });
  json.EndArray();
}

void WriteNodalStresses(JsonWriter& json, const ResultData& data) {
  const NodalStresses stresses(data.project, data.results);
  json.NewLine().Key("nodalStresses").BeginArray();
  if (stresses.Exist())
    ForEachNode(data.project, [&](int number, const Node& node) {
      const StressTensor stress = stresses.Of(node.number);
      json.NewLine().BeginObject();
      json.Member("number", number).Member("stress", stress);
      json.Member("vonMises", VonMises(stress));
      json.EndObject();
    });
  json.EndArray();
}

void WriteSupports(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("supports").BeginArray();
  for (const SupportedNode& supported : SupportedNodes(data.project)) {
    const Constraint& support = *supported.node->constraint;
    const auto dofs = static_cast<std::size_t>(std::min(support.dofs, data.project.dofsPerNode));
    json.NewLine().BeginObject();
    json.Member("node", supported.number);
    json.Key("codes").BeginArray();
    for (std::size_t d = 0; d < dofs; ++d) json.Value(support.codes[d]);
    json.EndArray();
    json.Member("values", std::span<const double>(support.values.data(), dofs));
    if (IsInclined(*supported.node))
      json.Member("euler", Vector3{support.Euler1, support.Euler2, support.Euler3});
    json.EndObject();
  }
  json.EndArray();
}

void WriteHinges(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("hinges").BeginArray();
  for (const Elem* beam : data.beams.beams) {
    const BeamHinges hinges = HingesOf(data.project, *beam);
    for (const auto& [end, hinged] : {
             std::pair{1, hinges.end1},
             std::pair{2, hinges.end2}
    })
      if (hinged)
        json.NewLine().BeginObject().Member("element", beam->number).Member("end", end).EndObject();
  }
  json.EndArray();
}

void WriteLoads(JsonWriter& json, const ResultData& data) {
  json.NewLine().Key("loads").BeginArray();
  ForEachNode(data.project, [&](int number, const Node& node) {
    const NodeForces load = LoadOn(data.project, data.results, node);
    if (load.force == Vector3{} && load.moment == Vector3{}) return;
    json.NewLine().BeginObject().Member("node", number);
    WriteForceMembers(json, load);
    json.EndObject();
  });
  json.EndArray();
}

/// What the report prints at a node; null: nothing, which is 0.
void WritePrinted(JsonWriter& json, const Project& project, const Reaction* printed) {
  json.Key("printed").BeginArray();
  for (int d = 0; d < project.dofsPerNode; ++d)
    json.Value(printed == nullptr ? 0.0 : printed->values[static_cast<std::size_t>(d)]);
  json.EndArray();
}

}  // namespace

void WriteUnitsMember(JsonWriter& json, const UnitNames& units) {
  json.Key("units").BeginObject();
  json.Member("force", units.force).Member("length", units.length);
  json.Member("pressure", units.pressure);
  json.EndObject();
}

void WriteForceMembers(JsonWriter& json, const NodeForces& forces) {
  json.Member("force", forces.force).Member("moment", forces.moment);
}

void WriteReactionsMember(JsonWriter& json, const Project& project, const Results& results) {
  json.NewLine().Key("reactions").BeginArray();
  for (const SupportedNode& supported : SupportedNodes(project)) {
    const NodeForces force = SupportForce(project, results, *supported.node);
    json.NewLine().BeginObject();
    json.Member("node", supported.number);
    if (supported.number == 0) json.Member("between", std::span<const int>(supported.between));
    WriteForceMembers(json, force);
    if (IsInclined(*supported.node)) {
      json.Key("inSupportAxes").BeginObject();
      WriteForceMembers(json, SupportForceInItsAxes(project, results, *supported.node));
      json.EndObject();
    }
    WritePrinted(json, project, FindReaction(results, supported.node->number));
    json.EndObject();
  }
  json.EndArray();
}

void WriteEquilibriumMember(JsonWriter& json, const Equilibrium& balance) {
  json.NewLine().Key("equilibrium").BeginObject();
  json.Key("loads").BeginObject();
  WriteForceMembers(json, balance.loads);
  json.EndObject();
  json.Key("reactions").BeginObject();
  WriteForceMembers(json, balance.reactions);
  json.EndObject();
  json.Member("drilling", balance.drilling);
  json.Member("relativeError", balance.relativeError);
  json.EndObject();
}

void WriteResultMembers(JsonWriter& json, const ResultData& data) {
  WriteNodes(json, data);
  WriteBeams(json, data);
  WriteShells(json, data);
  WriteSolids(json, data);
  if (!data.solved) {
    WriteSupports(json, data);
    WriteHinges(json, data);
    WriteLoads(json, data);
    return;
  }
  WriteNodalStresses(json, data);
  WriteReactionsMember(json, data.project, data.results);
  WriteEquilibriumMember(json, EquilibriumOf(data.project, data.results));
}

void WriteResultJson(OutputBuffer& output, const std::string& deck, const ResultData& data) {
  JsonWriter json(output);
  json.BeginObject();
  json.Member("schema", "kestol-result/1").Member("deck", deck);
  WriteUnitsMember(json, data.units);
  WriteResultMembers(json, data);
  json.EndObject();
  output << '\n';
}

}  // namespace kestol
