#pragma once

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/Vector3.h"
#include "model/Material.h"

namespace kestol {

// Expectations about the axes of beams and shells, the columns of T.

/// A material whose Euler angles are given.
inline Material WithAngles(double Euler1, double Euler2, double Euler3) {
  Material material;
  material.hasEuler = 1;
  material.Euler1 = Euler1;
  material.Euler2 = Euler2;
  material.Euler3 = Euler3;
  return material;
}

inline Vector3 Column(const Matriu& T, int j) {
  return {T(1, j), T(2, j), T(3, j)};
}

inline void ExpectVector(const Vector3& actual, const Vector3& expected, double tolerance = 1e-15) {
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(actual[k], expected[k], tolerance) << "component " << k;
}

inline void ExpectRightHanded(const Matriu& T, double tolerance = 4e-16) {
  const Vector3 x = Column(T, 1), y = Column(T, 2), z = Column(T, 3);
  EXPECT_NEAR(Norm(x), 1.0, tolerance);
  EXPECT_NEAR(Norm(y), 1.0, tolerance);
  EXPECT_NEAR(Dot(x, y), 0.0, tolerance);
  ExpectVector(z, Cross(x, y), tolerance);
}

inline void ExpectBlockDiagonal(const Matriu& T) {
  ASSERT_EQ(T.nrows, 6);
  ASSERT_EQ(T.ncols, 6);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) {
      EXPECT_EQ(T(i + 3, j + 3), T(i, j));
      EXPECT_EQ(T(i, j + 3), 0.0);
      EXPECT_EQ(T(i + 3, j), 0.0);
    }
}

/// Directions of unit length: the axes, beside the axes, and all over the sphere.
inline std::vector<Vector3> Directions() {
  std::vector<Vector3> directions;
  for (const double sign : {-1.0, 1.0})
    for (int axis = 0; axis < 3; ++axis)
      for (int beside = 0; beside < 3; ++beside)
        for (const double tilt : {0.0, 1e-17, 1e-14, 1e-8, 0.01}) {
          Vector3 d{};
          d[axis] = sign;
          d[beside] += tilt;
          directions.push_back(Unit(d));
        }
  std::mt19937 generator(1);
  std::normal_distribution<double> component;
  for (int k = 0; k < 500; ++k)
    directions.push_back(Unit({component(generator), component(generator), component(generator)}));
  return directions;
}

}  // namespace kestol
