#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "analysis/ElementRoutines.h"
#include "analysis/ShellPoints.h"
#include "analysis/ShellTriangle.h"
#include "analysis/SolidPoints.h"
#include "kestol/findings/ElementGroups.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/LoadRecords.h"
#include "kestol/findings/ModelRules.h"
#include "main/ErrorChannel.h"
#include "model/Constraint.h"

namespace kestol {

namespace {

/// What `action` is refused with; empty when it is not.
std::string RefusalOf(const std::function<void()>& action) {
  std::string text;
  try {
    action();
  } catch (const FatalError& refusal) {
    text = refusal.what();
    while (!text.empty() && text.back() == '\n') text.pop_back();
  }
  error.Clear();
  return text;
}

Place PlaceOfElement(const Inspection& deck, const Elem& elem) {
  return deck.PlaceOfRecord(RecordKind::Element, elem.number);
}

void EvaluateTetrahedron(const Elem& elem) {
  if (elem.nnode == 4) {
    SolidPoints<4, 1> points;
    EvaluateTetra4(elem, points);
  } else {
    SolidPoints<10, 4> points;
    EvaluateTetra10(elem, points);
  }
}

/// Asks of one element what the solver would, in its order: axes, shape, material.
std::string ElementRefusal(const Project& project, const Elem& elem) {
  return RefusalOf([&] {
    const Material* const material = elem.GetMaterial(project.materials);
    if (material == nullptr) return;
    if (elem.mesh->elemType == Linear) {
      Matriu T, Kii, Kij, Kjj;
      elem.CalcTransfMatrixBeam(T, material, project.problemType);
      const double L = elem.Length();
      material->ConstructLocalK(elem.number, L * L, project.problemType, BothFixed, Kii, Kij, Kjj);
    } else if (elem.mesh->elemType == Triangle) {
      ShellElement shell(project);
      shell.SetElem(elem);
      if (elem.nnode == 3) {
        ShellPoints<3, 1> points;
        shell.Evaluate(points);
      } else {
        ShellPoints<6, 3> points;
        shell.Evaluate(points);
      }
    } else if (elem.mesh->elemType == Tetrahedra) {
      Matriu D;
      material->SolidMatrix(elem.number, D);
      EvaluateTetrahedron(elem);
    }
  });
}

/// Whether the refusal speaks of the axes that the material gives to the element.
bool IsOfAxes(const std::string& refusal) {
  return refusal.find("Local x axe is orthogonal") != std::string::npos ||
         refusal.find("X local are parallel") != std::string::npos;
}

/// Whether the refusal speaks of the material alone: it comes again for each element that has it.
bool IsOfMaterial(const std::string& refusal) {
  for (const std::string_view text : {" is 0", "Ex*nuXY", "nuXY*nuYX", "nu must be", " is 1"})
    if (refusal.find(text) != std::string::npos && refusal.find("jacobian") == std::string::npos &&
        refusal.find("length") == std::string::npos)
      return true;
  return false;
}

class ModelRefusals {
public:
  explicit ModelRefusals(Inspection& deck) : deck_(deck) {}

  void LookAt(const Elem& elem) {
    if (HasNoSize(deck_.project, elem)) return;
    const bool isOwn = elem.material != nullptr;
    const std::pair key{isOwn ? RecordKind::Element : RecordKind::Material,
                        isOwn ? elem.number : elem.materialNumber};
    const bool hasMaterial = !deck_.IsSpoilt(key.first, key.second);
    if (!hasMaterial && elem.mesh->elemType != Tetrahedra) return;  // it gives the axes
    const std::string text = hasMaterial ? ElementRefusal(deck_.project, elem)
                                         : RefusalOf([&] { EvaluateTetrahedron(elem); });
    if (text.empty()) return;
    if (IsOfMaterial(text)) {
      if (!materials_.insert(key).second) return;
      deck_.Add(deck_.PlaceOfRecord(key.first, key.second), text).elements = {elem.number};
    } else {
      if (IsOfAxes(text) && !axes_.insert(key).second) return;
      deck_.Add(PlaceOfElement(deck_, elem), text).elements = {elem.number};
    }
  }

private:
  Inspection& deck_;
  std::set<std::pair<RecordKind, int>> materials_, axes_;  // those that are refused
};

/// Meshes that nothing can be done with. True when there is one.
bool RefuseMeshes(Inspection& deck) {
  const Project& project = deck.project;
  bool any = false;
  bool hasTetra = false, hasOther = false;
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    (mesh.elemType == Tetrahedra ? hasTetra : hasOther) = true;
    std::string text;
    if (mesh.elemType == Triangle && project.problemType == Plane)
      text = "error: triangle elements need a problem of type 3d";
    else
      text = RefusalOf([&] { RoutinesFor(mesh); });
    if (text.empty()) continue;
    any = true;
    const Place place = PlaceOfMeshWord(deck, m, ElemtypeWord);
    if (!deck.IsSpoiltAt(place.offset)) deck.Add(place, text);
  }
  return any || (hasTetra && hasOther);  // which the reader refuses
}

void RefuseSolver(Inspection& deck) {
  const Project& project = deck.project;
  if (project.solverChoice != SolveDouble) return;
  for (const auto& mesh : project.meshes)
    if ((mesh->elemType == Triangle && mesh->nnode != 3) || mesh->elemType == Tetrahedra) {
      deck.Add(deck.PlaceOfKeyword("Solver"),
               mesh->elemType == Tetrahedra
                   ? "error: Double solver not implemented for tetrahedras"
                   : "error: Solver DOUBLE needs a shell mesh of 3-noded triangles");
      return;
    }
}

/// Supports whose axes leave the plane.
void RefuseSupportAxes(Inspection& deck) {
  const Project& project = deck.project;
  Matriu T;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!node->constraint || node->constraint->hasLocalAxes == 0) continue;
    const std::string text = RefusalOf([&, support = node->constraint.get(), n = number] {
      NodeAxesMatrix(*support, n, T, project.dofsPerNode, project.problemType == Plane ? 1 : 0);
    });
    if (text.empty() || deck.IsSpoilt(RecordKind::Support, number)) continue;
    Place place = deck.PlaceOfRecord(RecordKind::Support, number);
    for (const Inspection::NodeLine& line : deck.supports)
      if (line.node == number && line.hasEuler) place = {line.offset, 0};
    deck.Add(place, text).nodes = {number};
  }
}

/// Loads of shells on beams: space problems refuse them when they are read.
void RefuseFaceLoads(Inspection& deck) {
  const Project& project = deck.project;
  const auto& mesh = project.meshes;
  ForEachElementLoad(deck, [&](int number, const PreassureLT& load, std::uint64_t offset) {
    const bool isBeam = std::any_of(mesh.begin(), mesh.end(), [number](const auto& m) {
      return m->elemType == Linear && m->elems.Get(number) != nullptr;
    });
    if (isBeam && load.kind == FaceLoad)
      deck.Add({offset, 0},
               "error: applying a shell load to a beam element. ElemNum=" + std::to_string(number))
          .elements = {number};
  });
}

/// The weight of a plane problem that acts along z.
void RefuseGravity(Inspection& deck) {
  const Project& project = deck.project;
  if (project.problemType != Plane || !(project.gravity(3) > kZero)) return;
  int material = 0;
  bool hasWeight = false;
  ForEachSoundElement(deck, project, [&](const Mesh&, const Elem& elem) {
    const Material* const m = elem.GetMaterial(project.materials);
    const bool isHeavy = m != nullptr && m->Weight > 0.0 && m->A > 0.0 &&
                         elem.mesh->elemType == Linear && m->A * m->Weight > kZero;
    if (!isHeavy || hasWeight) return;
    hasWeight = true;
    material = elem.materialNumber;
  });
  if (!hasWeight) return;
  const Place keyword = deck.PlaceOfKeyword("GravityDirection");
  if (deck.IsSpoiltAt(keyword.offset)) return;
  deck.Add(keyword.offset != Finding::kNowhere ? keyword
                                               : deck.PlaceOfRecord(RecordKind::Material, material),
           "error: for 2D problems GravityDirection_Z must be 0.0")
      .more.emplace_back("write GravityDirection 0 -1 0 for a weight along -y");
}

}  // namespace

void FindModelRefusals(Inspection& deck) {
  const Project& project = deck.project;
  if (project.meshes.empty()) return;
  const bool isHopeless = RefuseMeshes(deck);
  RefuseSolver(deck);
  RefuseSupportAxes(deck);
  RefuseFaceLoads(deck);
  RefuseGravity(deck);
  if (isHopeless) return;
  ModelRefusals refusals(deck);
  ForEachSoundElement(deck, project, [&](const Mesh&, const Elem& elem) { refusals.LookAt(elem); });
}

}  // namespace kestol
