#include "analysis/BeamElement.h"

#include "algebra/Tolerances.h"
#include "analysis/DistributedLoads.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/TurnBlock.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// f += K u.
void AddProduct(const Matriu& K, const double* u, double* f) {
  for (int i = 1; i <= K.nrows; ++i)
    for (int j = 1; j <= K.ncols; ++j) f[i - 1] += K(i, j) * u[j - 1];
}

/// f += K^T u.
void AddTransposedProduct(const Matriu& K, const double* u, double* f) {
  for (int i = 1; i <= K.nrows; ++i)
    for (int j = 1; j <= K.ncols; ++j) f[j - 1] += K(i, j) * u[i - 1];
}

/// The node's entries of the global vector.
double* EntriesOf(ReaVecT& global, const Node& node, int dofs) {
  return &global(FirstEquation(node.number, dofs));
}

}  // namespace

BeamElement::BeamElement(const Project& owner) : project(owner) {
  weight_.values = ReaVecT(owner.problemType == Plane ? 3 : 6);
}

void BeamElement::SetElem(const Elem& next) {
  SetAxes(next);
  SetStiffness();
  SetLoads();
}

void BeamElement::SetAxes(const Elem& next) {
  elem = &next;
  material = &MaterialOf(project, next);
  next.CalcTransfMatrixBeam(T, material, project.problemType);
  L = next.Length();
  endCode = project.EndCodeOf(next.number);
}

void BeamElement::SetStiffness() {
  // The material is given the squared length. No digit is lost: the rounded root of the rounded
  // square of a number is the number.
  material->ConstructLocalK(elem->number, L * L, project.problemType, endCode, Kii, Kij, Kjj);
}

bool BeamElement::HasLoads(const Elem& beam) const {
  if (project.loads.Get(beam.number) != nullptr) return true;
  const Material& own = MaterialOf(project, beam);
  return OwnWeight(project, own, own.A) > kZero;
}

void BeamElement::SetLoads() {
  loads.clear();
  const auto add = [this](const PreassureLT& load) {
    loads.push_back(LocalIntensities(load, *elem, T, project.problemType));
  };
  const double weight = OwnWeight(project, *material, material->A);
  if (weight > kZero) {
    const Vector3 q = WeightAlongGravity(project, weight);
    for (int i = 0; i < 3; ++i) weight_.values(i + 1) = q[i];
    add(weight_);
  }
  for (const PreassureLT* load = project.loads.Get(elem->number); load != nullptr;
       load = load->next.get())
    add(*load);
}

void BeamElement::LocalDisplacements(const ReaVecT& global, double u1[6], double u2[6]) const {
  const int dofs = project.dofsPerNode;
  const FixedMatrix<3, 3> toLocal = Transpose(RotationOf(T));
  double* const ends[] = {u1, u2};
  for (int end = 0; end < 2; ++end) {
    const int first = FirstEquation(elem->nodes[end]->number, dofs);
    for (int d = 0; d < dofs; ++d) ends[end][d] = global(first + d);
    TurnVector(toLocal, ends[end], dofs);
  }
}

void BeamElement::TurnStiffnessToGlobal() {
  const FixedMatrix<3, 3> R = RotationOf(T);
  for (Matriu* const K : {&Kii, &Kij, &Kjj}) TurnBlock(R, R, *K);
}

void AddBeamStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& K) {
  BeamElement beam(project);
  for (const auto [number, elem] : mesh.elems) {
    beam.SetAxes(*elem);
    beam.SetStiffness();
    beam.TurnStiffnessToGlobal();
    const Node& end1 = *elem->nodes[0];
    const Node& end2 = *elem->nodes[1];
    K.Add(end1, end1, beam.Kii);
    K.Add(end1, end2, beam.Kij);
    K.Add(end2, end2, beam.Kjj);
  }
}

void AddBeamLoads(const Project& project, const MeshPart& mesh, ReaVecT& f) {
  const int dofs = project.dofsPerNode;
  BeamElement beam(project);
  for (const auto [number, elem] : mesh.elems) {
    if (!beam.HasLoads(*elem)) continue;
    beam.SetAxes(*elem);
    beam.SetLoads();
    const FixedMatrix<3, 3> toGlobal = RotationOf(beam.T);
    double* const entries1 = EntriesOf(f, *elem->nodes[0], dofs);
    double* const entries2 = EntriesOf(f, *elem->nodes[1], dofs);
    for (const BeamLoad& load : beam.loads) {
      BeamEndForces forces = EquivalentEndForces(load, beam.L, project.problemType, beam.endCode);
      TurnVector(toGlobal, forces.f1.data(), dofs);
      TurnVector(toGlobal, forces.f2.data(), dofs);
      for (int d = 0; d < dofs; ++d) {
        entries1[d] += forces.f1[d];
        entries2[d] += forces.f2[d];
      }
    }
  }
}

void BeamStrengths(const Project& project, const MeshPart& mesh, const ReaVecT& u,
                   ReaVecT& values) {
  const int dofs = project.dofsPerNode;
  values.Fill(0.0);
  double* place = values.begin();
  BeamElement beam(project);
  double u1[6] = {}, u2[6] = {};
  for (const auto [number, elem] : mesh.elems) {
    beam.SetAxes(*elem);
    beam.SetStiffness();
    beam.LocalDisplacements(u, u1, u2);
    AddProduct(beam.Kii, u1, place);
    AddProduct(beam.Kij, u2, place);
    AddTransposedProduct(beam.Kij, u1, place + dofs);
    AddProduct(beam.Kjj, u2, place + dofs);
    place += 2 * dofs;
  }
}

}  // namespace kestol
