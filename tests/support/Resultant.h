#pragma once

#include <gtest/gtest.h>

#include "algebra/Vector3.h"

namespace kestol {

/// Sum of forces, and of moments about the origin.
struct Resultant {
  Vector3 force{}, moment{};

  void AddForce(const Vector3& at, const Vector3& f) {
    force = Plus(force, f);
    moment = Plus(moment, Cross(at, f));
  }
  void AddCouple(const Vector3& m) { moment = Plus(moment, m); }
  void Add(const Resultant& other) {
    force = Plus(force, other.force);
    moment = Plus(moment, other.moment);
  }
};

inline void ExpectNone(const Resultant& sum, double tolerance) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(sum.force[i], 0.0, tolerance) << "force " << i;
    EXPECT_NEAR(sum.moment[i], 0.0, tolerance) << "moment " << i;
  }
}

}  // namespace kestol
