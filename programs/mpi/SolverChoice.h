#pragma once

#include <cstdint>

namespace kestol {

class Project;

/// Who solves the distributed system.
enum class MpiSolver {
  Auto,    ///< by family and size
  Gamg,    ///< conjugate gradients with algebraic multigrid
  Direct,  ///< sparse factorisation (MUMPS)
  Hypre    ///< conjugate gradients with another multigrid
};

/// What the elements are, by the most demanding of them.
enum class Family { Frames, Shells, Solids4, Solids10 };

Family FamilyOf(const Project& project);

/// The faster of the direct solver and multigrid for that many equations.
MpiSolver FasterSolver(Family family, std::int64_t equations);

const char* NameOf(MpiSolver solver);

}  // namespace kestol
