#include "tests/support/MeshModel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "algebra/ReaVec3.h"
#include "model/EulerAngles.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

std::string Angles(const std::optional<Vector3>& angles) {
  if (!angles) return "";
  return Print(" Euler1=%.17g Euler2=%.17g Euler3=%.17g", (*angles)[0], (*angles)[1], (*angles)[2]);
}

/// Angles of the axes that R makes of those of `angles`.
Vector3 TurnedAngles(const Rotation& R, const std::optional<Vector3>& angles) {
  const Vector3 a = angles.value_or(Vector3{});
  const ReaVec3 turned = FrameToAngles(R * EulerRotation(a[0], a[1], a[2]));
  return {turned(1), turned(2), turned(3)};
}

std::string Triple(const Vector3& v) {
  return Print(" %.17g %.17g %.17g", v[0], v[1], v[2]);
}

template <class Records, class Writer>
std::string Lines(const Records& records, bool backwards, const Writer& write) {
  std::vector<std::string> lines;
  for (const auto& record : records) lines.push_back(write(record));
  if (backwards) std::reverse(lines.begin(), lines.end());
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string ElementLine(const MeshModel::Element& element) {
  std::string line = std::to_string(element.number);
  for (const int node : element.nodes) line += ' ' + std::to_string(node);
  return line + ' ' + std::to_string(element.material);
}

std::string BlocksText(const MeshModel& model) {
  std::vector<int> numbers(model.nodes.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<int>(i) + 1;
  std::string coordinates = Lines(numbers, model.backwards,
                                  [&](int n) { return std::to_string(n) + Triple(model.At(n)); });
  std::string text;
  for (const MeshModel::Block& block : model.blocks) {
    text += "mesh dimension = 3 elemtype " + block.elemType +
            Print(" nnode = %d\ncoordinates\n", static_cast<int>(block.elements[0].nodes.size())) +
            coordinates + "end coordinates\n" +
            Section("elements", Lines(block.elements, model.backwards, ElementLine));
    coordinates.clear();  // later meshes stand on the nodes of the first
  }
  return text;
}

std::string MaterialsText(const MeshModel& model, const std::string& units) {
  const auto line = [&](const auto& entry) {
    const auto& [number, material] = entry;
    std::string text = std::to_string(number);
    for (const auto& [key, value] : material.values) text += ' ' + key + Print("=%.17g", value);
    return text + Angles(material.angles) + units;
  };
  return Section("materials", Lines(model.materials, false, line));
}

std::string SupportsText(const MeshModel& model, const std::string& units) {
  const int dofs = model.IsSolid() ? 3 : 6;
  const auto line = [&](const MeshModel::Support& support) {
    std::string text = Print("%d %s", support.node, support.codes.c_str());
    for (int d = 0; d < dofs; ++d) text += Print(" %.17g", support.values[d]);
    return text + Angles(support.angles) + units;
  };
  return Section("constraints", Lines(model.supports, model.backwards, line));
}

std::string NodeLoadsText(const MeshModel& model, const std::string& units) {
  const auto line = [&](const MeshModel::NodeLoad& load) {
    return std::to_string(load.node) + Triple(load.force) +
           (model.IsSolid() ? "" : Triple(load.moment)) + units;
  };
  return Section("nodal_point_loads", Lines(model.nodeLoads, model.backwards, line));
}

std::string ElementLoadsText(const MeshModel& model, const std::string& units) {
  return Lines(model.elementLoads, model.backwards, [&](const MeshModel::ElementLoad& load) {
    std::string line = std::to_string(load.element);
    if (load.face != MeshModel::kNoFace) line += Print(" %d", load.face);
    line += Triple(load.q);
    if (load.couple != 0.0) line += Print(" %.17g", load.couple);
    return load.section + "\n" + line + Angles(load.angles) + units + "\nend";
  });
}

// --- units --------------------------------------------------------------------------------------

/// How the numbers of lines grow when N and m become other units.
class Scale {
public:
  Scale(const UnitSizes& lines, const UnitSizes& results) : lines_(lines), results_(results) {}

  double Of(int force, int length) const {
    return std::pow(lines_.force, force) * std::pow(lines_.length, length);
  }
  double OfResults(int force, int length) const {
    return std::pow(results_.force, force) * std::pow(results_.length, length);
  }

private:
  UnitSizes lines_, results_;
};

double ScaleOfKey(const std::string& key, const Scale& scale) {
  if (key == "Weight") return scale.Of(1, -3);
  switch (key[0]) {
    case 'E':
    case 'G':
      return scale.Of(1, -2);
    case 'A':
      return scale.Of(0, 2);
    case 'I':
    case 'J':
      return scale.Of(0, 4);
    case 't':
      return scale.Of(0, 1);
    default:
      return 1.0;  // Poisson's ratios
  }
}

/// Deliberate: a node of three degrees takes its third for a rotation, in solids too; what its
/// line says is multiplied by F L (loads, springs) or by nothing (prescribed values).
void ScaleThirdOfSolid(MeshModel::Support& support, double value, const Scale& scale) {
  if (support.codes[2] == '1') support.values[2] = value * scale.OfResults(0, 1);
  if (support.codes[2] == '2') support.values[2] = value * scale.Of(1, 1) * scale.OfResults(0, -2);
}

void ScaleSupport(MeshModel::Support& support, bool solid, const Scale& scale) {
  const double third = support.values[2];
  for (std::size_t d = 0; d < support.codes.size(); ++d) {
    const bool turns = d >= 3;
    if (support.codes[d] == '1' && !turns) support.values[d] *= scale.Of(0, 1);
    if (support.codes[d] == '2') support.values[d] *= scale.Of(1, turns ? 1 : -1);
  }
  if (solid) ScaleThirdOfSolid(support, third, scale);
}

/// Minus the power of the length in a load: edges 1, surfaces 2, volumes 3.
int SizeOfLoaded(const MeshModel& model, const MeshModel::ElementLoad& load) {
  const bool onFace = load.face >= 0;
  if (model.IsSolid()) return onFace ? 2 : 3;
  return onFace || model.ElementOf(load.element).nodes.size() == 2 ? 1 : 2;
}

}  // namespace

Vector3 Turn(const Rotation& R, const Vector3& v) {
  Vector3 turned{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) turned[i] += R(i + 1, j + 1) * v[j];
  return turned;
}

bool MeshModel::Material::Has(const std::string& key) const {
  return std::any_of(values.begin(), values.end(),
                     [&](const auto& entry) { return entry.first == key; });
}

double MeshModel::Material::operator[](const std::string& key) const {
  for (const auto& [name, value] : values)
    if (name == key) return value;
  throw std::out_of_range(key);
}

const MeshModel::Element& MeshModel::ElementOf(int number) const {
  for (const Block& block : blocks)
    for (const Element& element : block.elements)
      if (element.number == number) return element;
  throw std::out_of_range("element");
}

std::vector<int> MeshModel::Where(const std::function<bool(const Vector3&)>& test) const {
  std::vector<int> found;
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (test(nodes[i])) found.push_back(static_cast<int>(i) + 1);
  return found;
}

std::string MeshModel::Text() const {
  const std::string units = lineUnits.empty() ? "" : " units=" + lineUnits;
  return "PROBLEM test\nTYPE 3d\n" + keys + "\nGravityDirection" + Triple(gravity) + "\n" +
         BlocksText(*this) + MaterialsText(*this, units) + SupportsText(*this, units) +
         NodeLoadsText(*this, units) + ElementLoadsText(*this, units);
}

MeshModel ModelOf(const TestMesh& mesh) {
  MeshModel model;
  model.nodes = mesh.nodes;
  model.blocks.push_back({mesh.elemType, {}});
  int number = 0;
  for (const std::vector<int>& nodes : mesh.elems)
    model.blocks[0].elements.push_back({++number, nodes, 1});
  return model;
}

MeshModel Turned(MeshModel model, const Rotation& R, const Vector3& shift) {
  for (Vector3& p : model.nodes) p = Plus(Turn(R, p), shift);
  for (auto& [number, material] : model.materials)
    if (material.angles) material.angles = TurnedAngles(R, material.angles);
  for (MeshModel::Support& support : model.supports)
    support.angles = TurnedAngles(R, support.angles);
  for (MeshModel::NodeLoad& load : model.nodeLoads) {
    load.force = Turn(R, load.force);
    load.moment = Turn(R, load.moment);
  }
  for (MeshModel::ElementLoad& load : model.elementLoads) {
    if (load.section == "local_pressure_loads") continue;  // its axes turn with the element
    if (load.angles)
      load.angles = TurnedAngles(R, load.angles);
    else
      load.q = Turn(R, load.q);
  }
  model.gravity = Turn(R, model.gravity);
  return model;
}

std::vector<int> Shuffle(int count) {
  std::vector<int> numbers(count);
  for (int i = 0; i < count; ++i) numbers[i] = i + 1;
  unsigned state = 12345;
  for (int i = count - 1; i > 0; --i) {
    state = state * 1103515245U + 12345U;
    std::swap(numbers[i], numbers[(state >> 16) % static_cast<unsigned>(i + 1)]);
  }
  return numbers;
}

MeshModel Renumbered(const MeshModel& model, const std::vector<int>& newNumber, int pieces) {
  MeshModel other = model;
  const auto renumber = [&](int& node) { node = newNumber[node - 1]; };
  for (std::size_t i = 0; i < model.nodes.size(); ++i)
    other.nodes[newNumber[i] - 1] = model.nodes[i];
  for (MeshModel::Block& block : other.blocks)
    for (MeshModel::Element& element : block.elements) {
      element.number = NewElementNumber(element.number);
      for (int& node : element.nodes) renumber(node);
    }
  for (MeshModel::Support& support : other.supports) renumber(support.node);
  for (MeshModel::NodeLoad& load : other.nodeLoads) renumber(load.node);
  for (MeshModel::ElementLoad& load : other.elementLoads)
    load.element = NewElementNumber(load.element);
  std::vector<MeshModel::Block> split(pieces, {model.blocks[0].elemType, {}});
  int next = 0;  // dealt out like cards: neighbours fall into different meshes
  for (const MeshModel::Element& element : other.blocks[0].elements)
    split[next++ % pieces].elements.push_back(element);
  other.blocks.erase(other.blocks.begin());
  other.blocks.insert(other.blocks.begin(), split.begin(), split.end());
  other.backwards = true;
  return other;
}

MeshModel InUnits(MeshModel model, const UnitSizes& mesh, const UnitSizes& lines,
                  const UnitSizes& results) {
  const Scale scale(lines, results);
  const bool solid = model.IsSolid();
  for (Vector3& p : model.nodes) p = Times(p, mesh.length);
  for (auto& [number, material] : model.materials)
    for (auto& [key, value] : material.values) value *= ScaleOfKey(key, scale);
  for (MeshModel::Support& support : model.supports) ScaleSupport(support, solid, scale);
  for (MeshModel::NodeLoad& load : model.nodeLoads) {
    load.force = Times(load.force, scale.Of(1, 0));
    load.moment = Times(load.moment, scale.Of(1, 1));
    if (solid) load.force[2] *= scale.Of(0, 1) * scale.OfResults(0, -1);
  }
  for (MeshModel::ElementLoad& load : model.elementLoads) {
    const int size = SizeOfLoaded(model, load);
    load.q = Times(load.q, scale.Of(1, -size));
    load.couple *= scale.Of(1, 1 - size);
  }
  return model;
}

std::unique_ptr<SolvedProject> Solved(MeshModel model, const std::string& keys, int renumber) {
  model.keys += "\n" + keys;
  return RunDeck(model.Text(), renumber);
}

}  // namespace kestol
