// Material::ConstructLocalK: the Euler-Bernoulli beam in its local axes.
#include <cmath>

#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"
#include "model/Material.h"

namespace kestol {

namespace {

/// A value that every beam needs, and what is said when it is missing.
struct NeededValue {
  double Material::*value;
  const char* refusal;
};

/// In the order of the tests; a plane beam needs the first three.
constexpr NeededValue kNeededValues[] = {
    {&Material::E1,  "error: material parameter E is 0 for element "},
    {&Material::A,   "error: section parameter A is 0 for element " },
    {&Material::Iz,  "error: section parameter Iz is 0 for element "},
    {&Material::Iy,  "error: section parameter Iy is 0 for element "},
    {&Material::Gxy, "error: material parameter G is 0 for element "},
    {&Material::J,   "error: section parameter J is 0 for element " },
};
constexpr int kNeededInPlane = 3;
constexpr int kNeededInSpace = 6;

void CheckBeamValues(const Material& material, int elementNumber, ProblemType problemType) {
  if (problemType != Plane && problemType != Space)
    Fatal("error in Material::ConstructLocalK. Unknown problem type\n");
  const int needed = problemType == Plane ? kNeededInPlane : kNeededInSpace;
  for (int i = 0; i < needed; ++i)
    if (!(material.*kNeededValues[i].value >= kZero))
      Fatal(kNeededValues[i].refusal, elementNumber, "\n");
}

struct Blocks {
  Matriu &ii, &ij, &jj;
};

/// A bar along degree d: its own stiffness at both ends, the negative between them.
void AddBar(const Blocks& K, int d, double stiffness) {
  K.ii(d, d) = K.jj(d, d) = stiffness;
  K.ij(d, d) = -stiffness;
}

/// One bending plane with translation v and rotation r. `sign` is -1 where a positive rotation
/// lowers the far side: for (w, theta_y).
void AddBending(const Blocks& K, int v, int r, const BendingTerms& terms, double sign, double EI,
                double L) {
  const double vv = terms.vv * EI / std::pow(L, 3.0);
  const double vr1 = sign * terms.vr1 * EI / (L * L);
  const double vr2 = sign * terms.vr2 * EI / (L * L);
  K.ii(v, v) = K.jj(v, v) = vv;
  K.ij(v, v) = -vv;
  K.ii(v, r) = K.ii(r, v) = vr1;
  K.ij(r, v) = -vr1;
  K.ij(v, r) = vr2;
  K.jj(v, r) = K.jj(r, v) = -vr2;
  K.ii(r, r) = terms.r1r1 * EI / L;
  K.ij(r, r) = terms.r1r2 * EI / L;
  K.jj(r, r) = terms.r2r2 * EI / L;
}

}  // namespace

void Material::ConstructLocalK(int elementNumber, double L2, ProblemType problemType, int endCode,
                               Matriu& Kii, Matriu& Kij, Matriu& Kjj) const {
  CheckBeamValues(*this, elementNumber, problemType);
  const int dofs = problemType == Plane ? 3 : 6;
  for (Matriu* const K : {&Kii, &Kij, &Kjj}) {
    K->Redimension(dofs, dofs);
    K->Fill(0.0);
  }
  const BeamEnds* const ends = FindBeamEnds(endCode);
  if (ends == nullptr) return;

  const double L = std::sqrt(L2);
  const Blocks K{Kii, Kij, Kjj};
  AddBar(K, 1, E1 * A / L);
  if (problemType == Plane) {
    AddBending(K, 2, 3, ends->bending, 1.0, E1 * Iz, L);
    return;
  }
  AddBar(K, 4, Gxy * J / L);
  AddBending(K, 2, 6, ends->bending, 1.0, E1 * Iz, L);
  AddBending(K, 3, 5, ends->bending, -1.0, E1 * Iy, L);
}

}  // namespace kestol
