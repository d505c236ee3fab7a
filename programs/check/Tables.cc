#include "programs/check/Tables.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "programs/common/Utf8.h"
#include "results/Equilibrium.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

/// The components of forces that a problem has, and how they are written in 80 columns.
class Columns {
public:
  explicit Columns(const Project& project) {
    const UnitNames units = UnitNamesOf(project.units);
    const bool isSolid = !project.meshes.empty() && project.meshes[0]->elemType == Tetrahedra;
    isPlane_ = project.problemType == Plane && !isSolid;
    const std::string N = HarmlessWords(units.force), m = HarmlessWords(units.length);
    const std::string force = units.Known() ? " [" + N + "]" : "";
    const std::string moment = units.Known() ? " [" + N + " " + m + "]" : "";
    for (const char axis : {'x', 'y', 'z'})
      if (axis != 'z' || !isPlane_) names_.push_back(std::string("F") + axis + force);
    if (isPlane_) names_.push_back("Mz" + moment);
    if (!isPlane_ && !isSolid)
      for (const char axis : {'x', 'y', 'z'}) names_.push_back(std::string("M") + axis + moment);
    width_ = names_.size() > 3 ? 11 : 14;
    digits_ = names_.size() > 3 ? 5 : 8;
  }

  std::size_t Title() const { return names_.size() > 3 ? 14 : 26; }

  std::string Heading(const std::string& title) const {
    std::string text = title;
    text.resize(std::max(title.size(), Title()), ' ');
    for (const std::string& name : names_) text += Right(name);
    return text + '\n';
  }

  std::string Row(const std::string& name, const NodeForces& forces, int digits = 0) const {
    std::string text = name;
    text.resize(std::max(name.size(), Title()), ' ');
    for (const double value : Values(forces)) {
      char number[40];
      std::snprintf(number, sizeof number, "%.*g", digits > 0 ? digits : digits_,
                    value == 0.0 ? 0.0 : value);
      text += Right(number);
    }
    return text + '\n';
  }

private:
  std::vector<double> Values(const NodeForces& forces) const {
    const auto& [F, M] = forces;
    if (isPlane_) return {F[0], F[1], M[2]};
    if (names_.size() == 3) return {F[0], F[1], F[2]};
    return {F[0], F[1], F[2], M[0], M[1], M[2]};
  }
  std::string Right(const std::string& text) const {
    const std::string blanks(text.size() < width_ ? width_ - text.size() : 1, ' ');
    return blanks + text;
  }

  bool isPlane_;
  std::vector<std::string> names_;
  std::size_t width_;
  int digits_;
};

std::string NameOf(const SupportedNode& supported) {
  if (supported.number > 0) return "node " + std::to_string(supported.number);
  return "between " + std::to_string(supported.between[0]) + "-" +
         std::to_string(supported.between[1]);
}

}  // namespace

void WriteReactions(OutputBuffer& output, const Project& project, const Results& results) {
  const Columns columns(project);
  output << "TRUE REACTIONS (K u - F)\n" << columns.Heading("");
  for (const SupportedNode& supported : SupportedNodes(project)) {
    const NodeForces forces = SupportForce(project, results, *supported.node);
    output << columns.Row(NameOf(supported), forces);
    if (IsInclined(*supported.node))
      output << columns.Row("  in its axes",
                            SupportForceInItsAxes(project, results, *supported.node));
  }
  output << '\n';
}

void WriteEquilibrium(OutputBuffer& output, const Project& project, const Results& results) {
  constexpr int kErrorDigits = 2;
  const Columns columns(project);
  const Equilibrium balance = EquilibriumOf(project, results);
  output << "EQUILIBRIUM about the origin\n" << columns.Heading("");
  output << columns.Row("loads", balance.loads) << columns.Row("reactions", balance.reactions);
  if (Norm(balance.drilling) > 0.0) output << columns.Row("drilling", {{}, balance.drilling});
  output << columns.Row("relative error", balance.relativeErrors, kErrorDigits);
}

}  // namespace kestol
