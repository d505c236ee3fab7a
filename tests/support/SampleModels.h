#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/MeshModel.h"

namespace kestol {

// Models that are irregular in every way a deck allows, small enough for many runs.

/// How much of a sample is there.
enum class Dress {
  Bare,     ///< mesh and materials; nothing weighs
  Held,     ///< and all nodes of the end x = 0 clamped
  Complete  ///< springs, inclined and settled supports, own weight, loads of every keyword instead
};

/// A plate that bends out of its plane behind a quarter of its length: 16 triangles of 3 or 6
/// nodes, the last four orthotropic with given axes. With `curved` the mid-sides of the flat part
/// leave their chords, in its plane.
MeshModel SampleShell(bool sixNodes, Dress dress, bool curved = false);

/// The same shell, not curved, with beams along two of its lines, from corner to corner.
MeshModel SampleStiffenedShell(bool sixNodes, Dress dress);

/// A warped block of 24 tetrahedra of 4 or 10 nodes, of two materials. With `curved` the mid-sides
/// follow the warp, else they stay on the chords.
MeshModel SampleSolid(bool tenNodes, Dress dress, bool curved = false);

/// One of them by name, for tests over all.
struct Sample {
  const char* name;
  MeshModel (*build)(Dress dress);
};
std::vector<Sample> AllSamples();
inline std::string NameOf(const testing::TestParamInfo<Sample>& info) {
  return info.param.name;
}

}  // namespace kestol
