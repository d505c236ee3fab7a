#include "kestol/mechanisms/MechanismText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numeric>
#include <set>

#include "kestol/mechanisms/Bodies.h"
#include "output/NumberText.h"

namespace kestol {

namespace {

constexpr double kSmall = 1e-6;  ///< of the largest component: not seen
constexpr std::size_t kMostLines = 10;

std::string Number(double value) {
  // Three digits tell a place; what is rounding is 0.
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", std::abs(value) < 1e-9 ? 0.0 : value);
  return text;
}

std::string Components(const Project& project, const Vector3& v) {
  std::string text = "(";
  for (int a = 0; a < (IsPlaneFrame(project) ? 2 : 3); ++a) {
    if (a > 0) text += ", ";
    text += Number(v[a]);
  }
  return text += ')';
}

/// "x", or the components of a direction that is no axis.
std::string Direction(const Project& project, Vector3 v) {
  v = Unit(v);
  for (int a = 0; a < 3; ++a)
    if (std::abs(std::abs(v[a]) - 1.0) < kSmall) return std::string(1, static_cast<char>('x' + a));
  // The first component that is not 0 points forward.
  for (int a = 0; a < 3; ++a) {
    if (std::abs(v[a]) < kSmall) continue;
    if (v[a] < 0.0) v = Times(v, -1.0);
    break;
  }
  for (double& component : v)
    if (std::abs(component) < kSmall) component = 0.0;
  return Components(project, v);
}

std::string Plural(std::string_view one, std::size_t count) {
  return std::string(one) + (count == 1 ? " " : "s ");
}

/// "2, 4 and 7-9".
std::string RangesText(std::vector<int> numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  std::vector<std::string> ranges;
  for (std::size_t i = 0; i < numbers.size();) {
    std::size_t j = i;
    while (j + 1 < numbers.size() && numbers[j + 1] == numbers[j] + 1) ++j;
    if (j > i + 1) {
      ranges.push_back(std::to_string(numbers[i]) + "-" + std::to_string(numbers[j]));
      i = j + 1;
    } else {
      ranges.push_back(std::to_string(numbers[i++]));
    }
  }
  constexpr std::size_t kMost = 12;
  const std::size_t shown = ranges.size() > kMost ? kMost - 2 : ranges.size();
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    const bool last = i + 1 == ranges.size();
    if (i > 0) text += last ? " and " : ", ";
    text += ranges[i];
  }
  if (shown < ranges.size()) text += " and more";
  return text;
}

/// "turn about the line through (3, 0, 2) along z", "slide along x".
std::string MotionText(const Project& project, const RigidMotion& motion, bool isPlural,
                       double size) {
  const char* const s = isPlural ? "" : "s";
  const double turn = Norm(motion.rotation) * size;
  if (turn <= kSmall * std::max(Norm(motion.velocity), turn))
    return std::string("slide") + s + " along " + Direction(project, motion.velocity);
  const double squared = Dot(motion.rotation, motion.rotation);
  const Vector3 through =
      Plus(motion.center, Times(Cross(motion.rotation, motion.velocity), 1.0 / squared));
  std::string text = std::string("turn") + s + " about ";
  if (IsPlaneFrame(project)) {
    text += "z at " + Components(project, through);
  } else {
    text += "the line through " + Components(project, through) + " along " +
            Direction(project, motion.rotation);
    const double along = Dot(motion.rotation, motion.velocity) / std::sqrt(squared);
    if (std::abs(along) > kSmall * size * std::sqrt(squared))
      text += ", and slide" + std::string(s) + " along it";
  }
  return text;
}

/// The distance of the farthest node.
double SizeOf(const Parts& parts, const std::vector<int>& nodes, const Vector3& center) {
  double size = 1e-300;
  for (const int index : nodes)
    size = std::max(size, Norm(Minus(PositionOf(parts.NodeAt(index)), center)));
  return size;
}

/// The moving nodes of a mode and what hangs on them.
class Mover {
public:
  Mover(const Project& project, const Parts& parts, const ReaVecT& z)
      : project_(project), parts_(parts), z_(z) {
    double largest = 0.0;
    for (int index = 1; index <= parts.NodeCount(); ++index) {
      largest = std::max(
          {largest, Norm(TranslationOf(project, z, index)), Norm(RotationOf(project, z, index))});
    }
    noise_ = kSmall * largest;
    for (int index = 1; index <= parts.NodeCount(); ++index)
      if (Moves(index)) moving_.push_back(index);
  }

  const std::vector<int>& Moving() const { return moving_; }
  double Noise() const { return noise_; }
  bool Moves(int index) const { return Slides(index) || Turns(index); }
  bool Slides(int index) const { return Norm(TranslationOf(project_, z_, index)) > noise_; }
  bool Turns(int index) const { return Norm(RotationOf(project_, z_, index)) > noise_; }

  /// Numbers of the input; created nodes are left out.
  std::vector<int> Numbers(const std::vector<int>& indices) const {
    std::vector<int> numbers;
    for (const int index : indices)
      if (const int number = project_.ExternalNumber(index); number <= project_.nodesAsRead)
        numbers.push_back(number);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
  }

  /// Beams whose chord turns although no end says so, by the axis.
  std::map<std::string, std::vector<int>> TurningBeams() const {
    std::map<std::string, std::vector<int>> beams;
    for (const auto& mesh : project_.meshes) {
      if (mesh->elemType != Linear) continue;
      for (const auto [number, elem] : mesh->elems) {
        const int a = elem->nodes[0]->number, b = elem->nodes[1]->number;
        const Vector3 d = Minus(PositionOf(*elem->nodes[1]), PositionOf(*elem->nodes[0]));
        const Vector3 du = Minus(TranslationOf(project_, z_, b), TranslationOf(project_, z_, a));
        if (Norm(du) <= noise_ || MoveTogether(project_, parts_, z_, a, b, noise_)) continue;
        const Vector3 turn = Cross(d, du);
        if (Norm(turn) > noise_ * Norm(d)) beams[Direction(project_, turn)].push_back(number);
      }
    }
    return beams;
  }

private:
  const Project& project_;
  const Parts& parts_;
  const ReaVecT& z_;
  double noise_ = 0.0;
  std::vector<int> moving_;
};

std::string BodyText(const Project& project, const Parts& parts, const Mover& mover,
                     const Body& body, const ReaVecT& z) {
  std::vector<int> nodes = body.moving;
  nodes.insert(nodes.end(), body.still.begin(), body.still.end());
  double misfit = 0.0;
  const RigidMotion motion = FitRigidMotion(project, parts, nodes, z, misfit);
  const std::vector<int> numbers = mover.Numbers(body.moving);
  const std::string who = NodesText(numbers) + " ";
  const bool isPlural = numbers.size() != 1;
  if (body.moving.size() == 1 && (body.still.empty() || misfit > kSmall)) {
    const int index = nodes[0];
    std::string text = who;
    if (mover.Slides(index))
      text += "moves along " + Direction(project, TranslationOf(project, z, index));
    if (mover.Turns(index))
      text += std::string(mover.Slides(index) ? " and turns" : "turns") + " about " +
              Direction(project, RotationOf(project, z, index));
    return text;
  }
  if (misfit > kSmall) return who + (isPlural ? "move" : "moves") + " in different ways";
  return who + MotionText(project, motion, isPlural, SizeOf(parts, nodes, motion.center));
}

/// Bodies of one node that move alike are said together.
std::vector<std::string> BodyLines(const Project& project, const Parts& parts, const Mover& mover,
                                   const ReaVecT& z) {
  std::vector<std::string> lines;
  std::map<std::string, std::vector<int>> single;
  for (const Body& body : BodiesOf(project, parts, z, mover.Moving(), mover.Noise())) {
    const std::vector<int> numbers = mover.Numbers(body.moving);
    if (numbers.empty()) continue;
    const std::string text = BodyText(project, parts, mover, body, z);
    if (numbers.size() > 1 || !body.still.empty()) {
      lines.push_back(text);
      continue;
    }
    const std::size_t begin = text.find(' ', text.find(' ') + 1) + 1;
    single[text.substr(begin)].push_back(numbers[0]);
  }
  for (const auto& [motion, nodes] : single) {
    std::string text = motion;
    if (nodes.size() > 1) {
      for (const std::string_view verb : {"moves", "turns"})
        if (const std::size_t at = text.find(verb); at != std::string::npos)
          text.erase(at + verb.size() - 1, 1);
    }
    lines.push_back(NodesText(nodes) + " " + text);
  }
  return lines;
}

/// Nodes with a hinge, and supported ones, that move or are joined to one that moves.
void FindCauses(const Project& project, const Mover& mover, MechanismMode& mode) {
  std::set<int> hinges, supports;
  const auto note = [&](const Node* node) {
    const int number = project.ExternalNumber(node->number);
    if (number > project.nodesAsRead) return;
    if (node->isHinge) hinges.insert(number);
    if (node->constraint) supports.insert(number);
  };
  std::vector<bool> moves(static_cast<std::size_t>(project.numNodes) + 1);
  for (const int index : mover.Moving()) moves[static_cast<std::size_t>(index)] = true;
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      bool any = false;
      for (int i = 0; i < elem->nnode; ++i)
        any = any || moves[static_cast<std::size_t>(elem->nodes[i]->number)];
      if (!any) continue;
      for (int i = 0; i < elem->nnode; ++i) note(elem->nodes[i]);
    }
  mode.hinges.assign(hinges.begin(), hinges.end());
  mode.supports.assign(supports.begin(), supports.end());
}

}  // namespace

std::string NodesText(std::vector<int> numbers) {
  const std::size_t count = numbers.size();
  return Plural("node", count) + RangesText(std::move(numbers));
}

void DescribeMode(const Project& project, const Parts& parts, const ReaVecT& z,
                  const RigidMotion* rigid, MechanismMode& mode) {
  const Mover mover(project, parts, z);
  for (const int index : mover.Moving())
    if (const int number = project.ExternalNumber(index); number <= project.nodesAsRead)
      mode.motion.push_back(
          {number, TranslationOf(project, z, index), RotationOf(project, z, index)});
  std::sort(mode.motion.begin(), mode.motion.end(),
            [](const NodeMotion& a, const NodeMotion& b) { return a.node < b.node; });
  if (rigid != nullptr) {
    const std::vector<int>& nodes = parts.NodesOf(rigid->part);
    const std::vector<int> numbers = mover.Numbers(nodes);
    mode.text = {
        NodesText(numbers) + " " +
        MotionText(project, *rigid, numbers.size() != 1, SizeOf(parts, nodes, rigid->center))};
  } else {
    mode.text = BodyLines(project, parts, mover, z);
    for (const auto& [axis, beams] : mover.TurningBeams())
      mode.text.push_back(Plural("element", beams.size()) + RangesText(beams) +
                          (beams.size() == 1 ? " turns" : " turn") + " about " + axis);
  }
  if (mode.text.size() > kMostLines) {
    mode.text.resize(kMostLines - 1);
    mode.text.emplace_back("and more nodes move");
  }
  FindCauses(project, mover, mode);
}

}  // namespace kestol
