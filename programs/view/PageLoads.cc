#include <algorithm>
#include <span>

#include "programs/view/LoadGroups.h"
#include "programs/view/PageModel.h"
#include "programs/view/Runs.h"
#include "results/ElementLoads.h"

namespace kestol {

namespace {

void WriteVector(JsonWriter& json, const char* name, double x, double y, double z) {
  const double values[] = {x, y, z};
  json.Member(name, std::span<const double>(values));
}

}  // namespace

bool PageModel::HasWeight() const {
  const ReaVec3& g = project.gravity;
  if (g(1) == 0.0 && g(2) == 0.0 && g(3) == 0.0) return false;  // a case without weight
  return std::any_of(materials_.begin(), materials_.end(),
                     [](const NumberedMaterial& one) { return one.material->Weight > 0.0; });
}

void PageModel::WriteLoads(JsonWriter& json) const {
  json.NewLine().Key("loads").BeginObject();
  WriteNodalLoads(json);
  WriteElementLoads(json);
  WriteVector(json, "gravity", project.gravity(1), project.gravity(2), project.gravity(3));
  json.Member("weight", HasWeight()).EndObject();
}

void PageModel::WriteNodalLoads(JsonWriter& json) const {
  json.Key("nodal").BeginArray();
  std::array<double, 6> last{};
  Runs runs;
  const auto flush = [&] {
    if (runs.Pairs().empty()) return;
    json.NewLine().BeginObject();
    WriteVector(json, "force", last[0], last[1], last[2]);
    WriteVector(json, "moment", last[3], last[4], last[5]);
    WriteRuns(json, runs);
    json.EndObject();
  };
  for (std::size_t i = 0; i < places.Nodes().size(); ++i) {
    const Node& node = *places.Nodes()[i];
    if (!node.load) continue;
    const std::array<double, 6> load = SixComponents(*node.load, project);
    if (load == std::array<double, 6>{}) continue;
    if (load != last) {
      flush();
      runs = {};
      last = load;
    }
    runs.Add(static_cast<std::int64_t>(i));
  }
  flush();
  json.EndArray();
}

void PageModel::WriteElementLoads(JsonWriter& json) const {
  json.Key("elements").BeginArray();
  for (std::size_t m = 0; m < meshes.size(); ++m) {
    for (const LoadGroup& group : LoadGroupsOf(project, meshes[m].elems)) {
      json.NewLine().BeginObject().Member("mesh", static_cast<int>(m));
      json.Member("kind", group.kind).Member("face", group.face);
      WriteVector(json, "value", group.value[0], group.value[1], group.value[2]);
      json.Member("couple", group.value[3]);
      WriteRuns(json, group.runs);
      json.EndObject();
    }
  }
  json.EndArray();
}

}  // namespace kestol
