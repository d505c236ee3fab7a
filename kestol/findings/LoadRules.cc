#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <tuple>

#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "input/ProjectReader.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/LoadRecords.h"
#include "kestol/findings/ModelRules.h"
#include "kestol/findings/TextRules.h"
#include "model/Constraint.h"
#include "model/EulerAngles.h"
#include "model/Frame.h"

namespace kestol {

namespace {

bool HasWeight(const Project& project) {
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      const Material* const material = elem->GetMaterial(project.materials);
      if (material != nullptr && material->Weight > 0.0) return true;
    }
  return false;
}

/// Whether anything makes the model move.
bool HasCause(const Project& project) {
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (node->load &&
        std::any_of(node->load->begin(), node->load->end(), [](double f) { return f != 0.0; }))
      return true;
    if (!node->constraint) continue;
    for (int d = 0; d < node->constraint->dofs; ++d)
      if (node->constraint->codes[d] == Prescribed && node->constraint->values[d] != 0.0)
        return true;
  }
  for (const auto [number, load] : project.loads)
    for (const PreassureLT* l = load; l != nullptr; l = l->next.get())
      if (std::any_of(l->values.begin(), l->values.end(), [](double q) { return q != 0.0; }))
        return true;
  return HasWeight(project);
}

bool AnyLoadSpoilt(const Inspection& deck) {
  return deck.AnySpoilt(RecordKind::NodalLoad) || deck.AnySpoilt(RecordKind::ElementLoad) ||
         deck.AnySpoilt(RecordKind::Support) || deck.AnySpoilt(RecordKind::Material);
}

}  // namespace

void FindNoLoads(Inspection& deck) {
  if (deck.project.meshes.empty() || AnyLoadSpoilt(deck)) return;
  // A load or settlement that was refused, of a node that does not exist perhaps, was meant.
  const auto& refusals = deck.map.Refusals();
  const bool lost = std::any_of(refusals.begin(), refusals.end(), [](const auto& refusal) {
    return refusal.record.kind == RecordKind::NodalLoad ||
           refusal.record.kind == RecordKind::ElementLoad ||
           refusal.record.kind == RecordKind::Support;
  });
  if (!lost && !HasCause(deck.project))
    deck.Add({}, "nothing moves the model: no loads, no weight, no settlements");
}

// --- loads on supports ------------------------------------------------------------------------

namespace {

/// A nodal load in the axes of the node's support.
std::array<double, 6> InSupportAxes(const Project& project, const Constraint& support,
                                    const std::array<double, 6>& load) {
  if (support.hasLocalAxes == 0) return load;
  const Frame axes = FrameOf(EulerRotation(support.Euler1, support.Euler2, support.Euler3));
  std::array<double, 6> turned = load;
  if (project.problemType == Plane) {
    const Vector3 force{load[0], load[1], 0.0};
    turned[0] = Dot(axes.x, force);
    turned[1] = Dot(axes.y, force);
    return turned;
  }
  for (int block = 0; block < project.dofsPerNode; block += 3) {
    const Vector3 v{load[block], load[block + 1], load[block + 2]};
    turned[block] = Dot(axes.x, v);
    turned[block + 1] = Dot(axes.y, v);
    turned[block + 2] = Dot(axes.z, v);
  }
  return turned;
}

double LargestOf(const std::array<double, 6>& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::abs(value));
  return largest;
}

}  // namespace

void FindLoadsOnFixed(Inspection& deck) {
  constexpr double kNoise = 1e-9;
  if (deck.project.meshes.empty()) return;
  for (const Inspection::NodeLine& line : deck.nodalLoads) {
    const Node* const node = deck.project.meshes[0]->nodes->Get(line.node);
    if (node == nullptr || !node->constraint || deck.IsSpoilt(RecordKind::Support, line.node))
      continue;
    const Constraint& support = *node->constraint;
    const std::array<double, 6> load = InSupportAxes(deck.project, support, line.values);
    for (int d = 0; d < deck.project.dofsPerNode; ++d) {
      if (support.codes[d] != Prescribed || std::abs(load[d]) <= kNoise * LargestOf(load)) continue;
      deck.Add(support.hasLocalAxes != 0 ? Place{line.offset, 0} : line.places[d],
               "a load of " + NumberText(load[d]) + " on node " + std::to_string(line.node) +
                   " goes straight into its support: no result shows it")
          .nodes = {line.node};
      break;
    }
  }
}

// --- loads given twice ------------------------------------------------------------------------

namespace {

const Elem* ElementOf(const Project& project, int number) {
  for (const auto& mesh : project.meshes)
    if (const Elem* const elem = mesh->elems.Get(number)) return elem;
  return nullptr;
}

}  // namespace

void FindDuplicateLoads(Inspection& deck) {
  std::map<int, std::uint64_t> nodes;
  for (const Inspection::NodeLine& line : deck.nodalLoads) {
    const auto [first, isNew] = nodes.emplace(line.node, line.offset);
    if (isNew) continue;
    Finding& finding =
        deck.Add({line.offset, 0}, "node " + std::to_string(line.node) + " has a load on line " +
                                       LineOfMention() + " already: both are added");
    finding.mentions.push_back(first->second);
    finding.nodes = {line.node};
  }
  std::map<std::tuple<int, int, int>, std::uint64_t> faces;
  ForEachElementLoad(deck, [&](int number, const PreassureLT& load, std::uint64_t offset) {
    const auto [first, isNew] = faces.emplace(std::tuple{number, load.kind, load.face}, offset);
    if (isNew || deck.IsSpoiltAt(offset)) return;
    const std::string face = load.face >= 0 ? ", face " + std::to_string(load.face) + "," : "";
    Finding& finding = deck.Add({offset, 0}, "element " + std::to_string(number) + face +
                                                 " has such a load on line " + LineOfMention() +
                                                 " already: both are added");
    finding.mentions.push_back(first->second);
    finding.elements = {number};
  });
}

// --- gravity ----------------------------------------------------------------------------------

void FindGravityLength(Inspection& deck, const RecordFields& record) {
  if (record.record.kind != RecordKind::Keyword ||
      KeywordNames()[record.record.number] != "GravityDirection")
    return;
  std::vector<double> values;
  Place place{record.record.offset, 0};
  for (const Field& field : record.fields) {
    if (field.role != Role::Real) continue;
    if (values.empty()) place = PlaceOf(field);
    values.push_back(std::strtod(std::string(field.text).c_str(), nullptr));
  }
  if (values.size() != 3 || deck.IsSpoiltAt(record.record.offset)) return;
  const Project& project = deck.project;
  const bool isRefused = project.problemType == Plane && project.gravity(3) > kZero;
  if (isRefused && HasWeight(project)) return;  // for its direction
  const double length = std::hypot(values[0], values[1], values[2]);
  constexpr double kTolerance = 1e-3;
  if (!(length > 0.0) || std::abs(length - 1.0) <= kTolerance) return;
  deck.Add(place, "only the direction counts: the length " + NumberText(length) +
                      " has no effect, Weight is the force per volume");
}

void FindGravity(Inspection& deck) {
  const Project& project = deck.project;
  if (project.problemType != Plane) return;
  if (!(project.gravity(3) < -kZero) || !HasWeight(project)) return;
  deck.Add(deck.PlaceOfKeyword("GravityDirection"),
           "the weight acts along z, out of the plane: it has no effect");
}

// --- loads without effect ---------------------------------------------------------------------

namespace {

/// Size of the element as the load sees it, per size of the element.
double ProjectedSize(const Elem& elem, const Vector3& direction) {
  if (elem.nnode == 2) {
    const Vector3 x = Minus(PositionOf(*elem.nodes[1]), PositionOf(*elem.nodes[0]));
    return Norm(Cross(x, direction)) / Norm(x);
  }
  const Vector3 a = Minus(PositionOf(*elem.nodes[1]), PositionOf(*elem.nodes[0]));
  const Vector3 b = Minus(PositionOf(*elem.nodes[2]), PositionOf(*elem.nodes[0]));
  const Vector3 n = Cross(a, b);
  return std::abs(Dot(n, direction)) / Norm(n);
}

}  // namespace

void FindNoEffectLoads(Inspection& deck) {
  constexpr double kNothing = 1e-6;
  ForEachElementLoad(deck, [&](int number, const PreassureLT& load, std::uint64_t offset) {
    const Elem* const elem = ElementOf(deck.project, number);
    if (load.kind != GlobalProjected || elem == nullptr || !IsSound(deck, *elem)) return;
    const bool isProjected = elem->mesh->elemType == Linear || load.face == -1;
    if (!isProjected || elem->mesh->elemType == Tetrahedra || deck.IsSpoiltAt(offset)) return;
    const Vector3 q{load.values(1), load.values(2), load.values(3)};
    if (!(Norm(q) > 0.0) || !(ProjectedSize(*elem, Unit(q)) < kNothing)) return;
    deck.Add({offset, 0}, "element " + std::to_string(number) +
                              " has no size across this projected load: it has no effect")
        .elements = {number};
  });
}

}  // namespace kestol
