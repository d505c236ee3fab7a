#pragma once

#include <functional>
#include <vector>

#include "algebra/Vector3.h"
#include "tests/support/FrameDeck.h"

namespace kestol {

/// A spatial frame without any symmetry: four columns of different heights, a ring, a diagonal.
inline const std::vector<Vector3> kFrame = {
    {0.0, 0.0, 0.0},
    {4.0, 0.3, 0.0},
    {4.2, 3.0, 0.5},
    {0.1, 3.3, 0.0},
    {0.2, 0.1, 3.0},
    {4.0, 0.0, 3.5},
    {4.1, 3.2, 4.0},
    {0.0, 3.0, 3.2}
};
inline constexpr int kBeams[][2] = {
    {1, 5},
    {2, 6},
    {7, 3},
    {4, 8},
    {5, 6},
    {6, 7},
    {8, 7},
    {8, 5},
    {5, 7}
};
constexpr int kFrameNodes = 8;
constexpr int kFrameBeams = 9;
constexpr int kFeet = 4;  ///< nodes 1 to 4

/// Nodes and beams alone, the nodes where `place` puts them.
inline FrameDeck BareSpaceFrame(const std::function<Vector3(const Vector3&)>& place) {
  FrameDeck deck(3);
  for (int n = 1; n <= kFrameNodes; ++n) {
    const Vector3 p = place(kFrame[n - 1]);
    deck.Node(n, p[0], p[1], p[2]);
  }
  int number = 0;
  for (const auto& [a, b] : kBeams) deck.Beam(++number, a, b);
  return deck;
}

/// Sections without a preferred direction, so that the axes the program chooses do not matter; the
/// feet clamped.
inline FrameDeck SpaceFrame(const std::function<Vector3(const Vector3&)>& place =
                                [](const Vector3& p) { return p; }) {
  FrameDeck deck = BareSpaceFrame(place);
  deck.Material(1, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1.5e-3");
  for (int n = 1; n <= kFeet; ++n) deck.Clamp(n);
  return deck;
}

}  // namespace kestol
