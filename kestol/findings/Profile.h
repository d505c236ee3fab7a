#pragma once

namespace kestol {

class Project;

/// The largest profile that is factorised without asking.
constexpr double kMostProfile = 4e9;

/// Bytes of the profile of the model as it was read, with the nodes in the order of the profile
/// solver.
double ProfileBytes(const Project& project);

}  // namespace kestol
