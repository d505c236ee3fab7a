#include "kestol/findings/SolutionRules.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "analysis/PointLayout.h"
#include "kestol/Condition.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/Profile.h"
#include "kestol/findings/ReaderRules.h"
#include "main/ErrorChannel.h"
#include "model/Constraint.h"
#include "results/Equilibrium.h"

namespace kestol {

SolverName SuitableSolver(const Project& project) {
  if (DirectSolverIsBuilt()) return SolverName::Direct;
  return ProfileBytes(project) <= kMostProfile ? SolverName::SkyLine : SolverName::Deck;
}

namespace {

/// The number behind one of the words, any case; 0 without one.
int NumberBehind(const std::string& text, std::initializer_list<std::string_view> words) {
  for (const std::string_view word : words)
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
      std::size_t i = at + word.size();
      while (i < text.size() &&
             (text[i] == ':' || text[i] == ' ' || text[i] == '=' || text[i] == 's'))
        ++i;
      int number = 0;
      for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && number < 100000000; ++i)
        number = 10 * number + (text[i] - '0');
      if (number > 0) return number;
    }
  return 0;
}

}  // namespace

void AddRefusal(Inspection& deck, const std::string& text) {
  const std::string message = WithoutLineEnd(text);
  const int element = NumberBehind(message, {"lement", "ElemNum", "Elements"});
  const int node = NumberBehind(message, {"ode"});
  Place place;
  if (element > 0)
    place = deck.PlaceOfRecord(RecordKind::Element, element);
  else if (node > 0)
    place = deck.PlaceOfRecord(RecordKind::Node, node);
  else if (message.find("olver") != std::string::npos ||
           message.find("iterations") != std::string::npos)
    place = deck.PlaceOfKeyword("Solver");
  Finding& finding = AddLines(deck, "model", place, message);
  if (element > 0) finding.elements = {element};
  if (node > 0 && element == 0) finding.nodes = {node};
}

// --- mechanisms -------------------------------------------------------------------------------

namespace {

/// "hinges at nodes 3 and 5 (lines 22-23)".
std::string CauseText(const Inspection& deck, const char* what, RecordKind kind,
                      const std::vector<int>& nodes, Finding& finding) {
  constexpr std::size_t kMostMentions = 70, kMostHere = 8;
  std::string text =
      std::string(what) + (nodes.size() == 1 ? " at node " : " at nodes ") + ListText(nodes, 8);
  std::vector<std::uint64_t> offsets;
  for (std::size_t i = 0; i < nodes.size() && i < kMostHere; ++i) {
    const Place place = deck.PlaceOfRecord(kind, nodes[i]);
    if (place.offset != Finding::kNowhere) offsets.push_back(place.offset);
  }
  // All lines or none: a part of them would look like all.
  if (offsets.empty() || finding.mentions.size() + offsets.size() > kMostMentions) return text;
  std::string lines;
  for (const std::uint64_t offset : offsets) {
    lines += static_cast<char>('0' + finding.mentions.size());
    finding.mentions.push_back(offset);
  }
  return text + " (" + kLines + lines + kLines + ")";
}

void AppendMode(const Inspection& deck, const MechanismMode& mode, std::size_t number,
                Finding& finding) {
  const std::string name = "mode " + std::to_string(number) + ": ";
  for (std::size_t i = 0; i < mode.text.size(); ++i)
    finding.more.push_back((i == 0 ? name : std::string(name.size(), ' ')) + mode.text[i]);
  if (!mode.hinges.empty())
    finding.more.push_back("  " +
                           CauseText(deck, "hinges", RecordKind::Hinge, mode.hinges, finding));
  if (!mode.supports.empty())
    finding.more.push_back(
        "  " + CauseText(deck, "supports", RecordKind::Support, mode.supports, finding));
  for (const NodeMotion& motion : mode.motion) finding.nodes.push_back(motion.node);
}

void SortNodes(Finding& finding) {
  std::sort(finding.nodes.begin(), finding.nodes.end());
  finding.nodes.erase(std::unique(finding.nodes.begin(), finding.nodes.end()), finding.nodes.end());
}

std::string MotionsText(int count) {
  return count == 1 ? "a rigid motion" : std::to_string(count) + " rigid motions";
}

std::string PartsText(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " more part" : " more parts");
}

}  // namespace

// The rigid motions of one part have one cause: its supports.
void FindRigid(Inspection& deck) {
  const Mechanisms& mechanisms = *deck.solution->mechanisms;
  const std::vector<MechanismMode>& modes = mechanisms.modes;
  std::size_t m = 0, parts = 0;
  for (const FreePart& part : mechanisms.freeParts) {
    if (parts > 0 && (m == modes.size() || !modes[m].isRigid)) break;
    Finding& finding =
        deck.Add({}, std::string("the supports leave ") +
                         (mechanisms.isOnePart ? "the model " : "a part of the model ") +
                         MotionsText(part.motions));
    ++parts;
    for (; m < modes.size() && modes[m].isRigid && modes[m].part == part.part; ++m)
      AppendMode(deck, modes[m], m + 1, finding);
    SortNodes(finding);
  }
  if (parts < mechanisms.freeParts.size())
    deck.Add({}, "the supports leave rigid motions to " +
                     PartsText(mechanisms.freeParts.size() - parts));
  // A part that is loose is apart: that is said already.
  if (parts > 0 && !mechanisms.isOnePart)
    std::erase_if(deck.findings, [](const Finding& f) { return f.code == "disconnected"; });
}

void FindMechanism(Inspection& deck) {
  const Mechanisms& mechanisms = *deck.solution->mechanisms;
  const std::vector<MechanismMode>& modes = mechanisms.modes;
  int count = mechanisms.count;
  for (const FreePart& part : mechanisms.freeParts) count -= part.motions;
  if (count <= 0) return;
  Finding& finding =
      deck.Add({}, "the model is a mechanism in " + WaysText(count, mechanisms.isCounted));
  int explained = 0;
  for (std::size_t m = 0; m < modes.size(); ++m) {
    if (modes[m].isRigid) continue;
    AppendMode(deck, modes[m], m + 1, finding);
    ++explained;
  }
  if (explained > 0 && explained < count)
    finding.more.push_back("and " + std::to_string(count - explained) + " more");
  SortNodes(finding);
}

// --- springs ----------------------------------------------------------------------------------

void FindStiffSprings(Inspection& deck) {
  constexpr double kStiff = 1e6;
  const Project& project = deck.project;
  const std::vector<bool> has = NodesWithElements(project);
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!node->constraint || number > project.nodesAsRead) continue;
    if (!has[static_cast<std::size_t>(number)]) continue;  // nothing is around it
    const int first = FirstEquation(node->number, project.dofsPerNode);
    for (int d = 0; d < project.dofsPerNode; ++d) {
      if (node->constraint->codes[d] != Spring) continue;
      const double spring = node->constraint->values[d];
      const double scale = deck.solution->scaled->Scale()(first + d);
      const double around = 1.0 / (scale * scale) - spring;
      if (!(spring > 0.0) || !(around > 0.0) || !(spring > kStiff * around)) continue;
      Place place = deck.PlaceOfRecord(RecordKind::Support, number);
      for (const Inspection::NodeLine& line : deck.supports)
        if (line.node == number && line.codes[d] == Spring) place = line.places[d];
      deck.Add(place, "the spring at node " + std::to_string(number) +
                          " is a million times stiffer than the model around it: prescribe 0")
          .nodes = {number};
      break;
    }
  }
}

// --- what the solution shows ------------------------------------------------------------------

void FindIllConditioning(Inspection& deck) {
  constexpr double kLargest = 1e12;
  SolvedModel& solution = *deck.solution;
  if (!solution.condition || !(*solution.condition > kLargest)) return;
  const int digits =
      std::max(0, static_cast<int>(std::floor(16.0 - std::log10(*solution.condition))));
  const std::vector<int> elements = SoftestElements(*solution.system, *solution.scaled, 6);
  deck.Add({}, "about " + std::to_string(digits) + " digits of the results are sound (condition " +
                   NumberText(*solution.condition) + "): see element" +
                   (elements.size() == 1 ? " " : "s ") + ListText(elements))
      .elements = elements;
}

void FindLargeDisplacements(Inspection& deck) {
  constexpr double kLarge = 0.1;
  const Project& project = deck.project;
  // Where a value is out of all proportion it is no wonder.
  const auto isCause = [](const Finding& finding) {
    return finding.code == "magnitude" || finding.code.starts_with("units-");
  };
  if (std::any_of(deck.findings.begin(), deck.findings.end(), isCause)) return;
  const double size = SizeOfModel(project);
  double largest = 0.0;
  int at = 0;
  ForEachNode(project, [&](int number, const Node& node) {
    const double u = Norm(DisplacementOf(project, *deck.solution->results, node).u);
    if (!(u > largest)) return;
    largest = u;
    at = number;
  });
  if (!(largest > kLarge * size)) return;
  deck.Add({}, "node " + std::to_string(at) + " moves by " + NumberText(largest) +
                   ", a model of size " + NumberText(size) +
                   ": linear theory holds for small displacements")
      .nodes = {at};
}

namespace {

/// Rounding of the forces: about eps |K| |u| at the worst equation.
double RoundingOf(const SolvedModel& solution) {
  constexpr double kManyRoundings = 1e3;
  double largest = 0.0;
  const ReaVecT& u = solution.results->displacements;
  const ReaVecT& scale = solution.scaled->Scale();
  for (int i = 1; i <= u.n; ++i)
    if (scale(i) > 0.0) largest = std::max(largest, std::abs(u(i)) / (scale(i) * scale(i)));
  return kManyRoundings * std::numeric_limits<double>::epsilon() * largest;
}

/// Whether a model has 6-noded shells whose mid-sides leave the plane of their corners.
bool HasCurvedShells(const Project& project) {
  constexpr double kFlat = 1e-9;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 6) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < 3; ++i) {
        const Vector3 a = PositionOf(*elem->nodes[i]), b = PositionOf(*elem->nodes[(i + 1) % 3]);
        const Vector3 d = Minus(PositionOf(*elem->nodes[i + 3]), Times(Plus(a, b), 0.5));
        if (std::abs(Dot(d, elem->UnitNormal())) > kFlat * Norm(Minus(b, a))) return true;
      }
  }
  return false;
}

double LargestOf(const Vector3& v) {
  return std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
}

}  // namespace

void FindImbalance(Inspection& deck) {
  constexpr double kLargest = 1e-8;
  const SolvedModel& solution = *deck.solution;
  const Equilibrium balance = EquilibriumOf(deck.project, *solution.results);
  const double rounding = RoundingOf(solution);
  const double size = SizeOfModel(deck.project);
  const auto isWrong = [&](const Vector3& errors, const Vector3& rest, double noise) {
    return LargestOf(errors) > kLargest && LargestOf(rest) > noise;
  };
  const Vector3 force = Plus(balance.loads.force, balance.reactions.force);
  const Vector3 moment =
      Plus(Plus(balance.loads.moment, balance.reactions.moment), balance.drilling);
  const bool forces = isWrong(balance.relativeErrors.force, force, rounding);
  const bool moments =
      !HasCurvedShells(deck.project) &&
      isWrong(balance.relativeErrors.moment, moment, rounding * std::max(1.0, size));
  if (!forces && !moments) return;
  const double worst =
      forces ? LargestOf(balance.relativeErrors.force) : LargestOf(balance.relativeErrors.moment);
  deck.Add({}, std::string("loads and reactions differ by ") + NumberText(worst) + " of their " +
                   (forces ? "forces" : "moments") + ": the solution is not sound");
}

}  // namespace kestol
