#include "programs/combine/EnvelopeJson.h"

#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"

namespace kestol {

namespace {

/// Walks the model in the order of the envelopes.
class EnvelopeWriter {
public:
  EnvelopeWriter(JsonWriter& json, const Project& project, Envelopes& envelopes,
                 const std::vector<Combination>& combinations)
      : json_(json), project_(project), envelopes_(envelopes), combinations_(combinations) {}

  void Write() {
    json_.BeginObject();
    WriteNodes();
    WriteBeams();
    WriteShells();
    WriteSolids();
    WriteReactions();
    json_.EndObject();
  }

private:
  void WriteNodes();
  void WriteBeams();
  void WriteShells();
  void WriteSolids();
  void WriteNodalStresses();
  void WriteReactions();

  /// Takes the next place.
  void Take() { envelopes_.Next(); }
  /// The extremes of value `i` of the place.
  void WriteValue(std::size_t i);
  void WriteExtreme(const char* key, const char* by, const char* with, std::size_t i,
                    const Extreme& extreme);
  /// An array of `count` values from `first` on.
  void WriteArray(const char* key, std::size_t first, std::size_t count);
  void WriteForces() {
    WriteArray("force", 0, 3);
    WriteArray("moment", 3, 3);
  }
  /// Number, material and nodes of an element: those that were read.
  void BeginElement(const Elem& elem);
  void WriteAxes(const Frame& axes);
  void WritePoint(const Vector3& x) {
    json_.NewLine().BeginObject().Member("x", std::span<const double>(x));
  }

  JsonWriter& json_;
  const Project& project_;
  Envelopes& envelopes_;
  const std::vector<Combination>& combinations_;
};

void EnvelopeWriter::WriteExtreme(const char* key, const char* by, const char* with, std::size_t i,
                                  const Extreme& extreme) {
  const ValueNames& names = NamesOf(envelopes_.Current().place.kind);
  json_.Member(key, extreme.values[i]);
  json_.Member(by, combinations_[static_cast<std::size_t>(extreme.combination)].name);
  json_.Key(with).BeginObject();
  for (std::size_t j = 0; j < names.names.size(); ++j)
    if (j != i) json_.Member(names.names[j], extreme.values[j]);
  json_.EndObject();
}

void EnvelopeWriter::WriteValue(std::size_t i) {
  const PlaceEnvelope& place = envelopes_.Current();
  json_.BeginObject();
  WriteExtreme("min", "minBy", "minWith", i, place.least[i]);
  WriteExtreme("max", "maxBy", "maxWith", i, place.largest[i]);
  json_.EndObject();
}

void EnvelopeWriter::WriteArray(const char* key, std::size_t first, std::size_t count) {
  json_.Key(key).BeginArray();
  for (std::size_t i = first; i < first + count; ++i) WriteValue(i);
  json_.EndArray();
}

void EnvelopeWriter::BeginElement(const Elem& elem) {
  json_.NewLine().BeginObject().Member("element", elem.number);
  json_.Member("material", elem.materialNumber).Key("nodes").BeginArray();
  for (int i = 0; i < elem.nnode; ++i) {
    const int number = elem.mesh->ExternalNumber(elem.nodes[i]);
    if (number <= project_.nodesAsRead) json_.Value(number);
  }
  json_.EndArray();
}

void EnvelopeWriter::WriteAxes(const Frame& axes) {
  json_.Key("axes").BeginArray();
  for (const Vector3& axis : {axes.x, axes.y, axes.z}) json_.Value(std::span<const double>(axis));
  json_.EndArray();
}

void EnvelopeWriter::WriteNodes() {
  json_.NewLine().Key("nodes").BeginArray();
  ForEachNode(project_, [&](int number, const Node& node) {
    Take();
    json_.NewLine().BeginObject().Member("number", number);
    json_.Member("x", std::span<const double>(PositionOf(node)));
    WriteArray("u", 0, 3);
    WriteArray("rotation", 3, 3);
    json_.EndObject();
  });
  json_.EndArray();
}

void EnvelopeWriter::WriteBeams() {
  const BeamTable table = GeometryOfBeams(project_);
  const int stations = DeckStations(project_);
  json_.NewLine().Key("beams").BeginArray();
  for (std::size_t b = 0; b < table.beams.size(); ++b) {
    BeginElement(*table.beams[b]);
    json_.Member("length", table.lengths[b]);
    WriteAxes(table.axes[b]);
    json_.Key("stations").BeginArray();
    for (int s = 0; s < stations; ++s) {
      Take();
      json_.NewLine().BeginObject().Member("x", StationXi(s, stations) * table.lengths[b]);
      for (std::size_t v = 0; v < kBeamValues; ++v) {
        json_.Key(kBeamValueNames[v]);
        WriteValue(v);
      }
      Take();
      WriteArray("u", 0, 3);
      json_.EndObject();
    }
    json_.EndArray().EndObject();
  }
  json_.EndArray();
}

void EnvelopeWriter::WriteShells() {
  json_.NewLine().Key("shells").BeginArray();
  ForEachShell(project_, nullptr, [&](const ShellView& shell) {
    BeginElement(*shell.elem);
    WriteAxes(shell.axes);
    json_.Key("points").BeginArray();
    for (int p = 0; p < shell.pointCount; ++p) {
      WritePoint(shell.points[static_cast<std::size_t>(p)].x);
      Take();
      WriteArray("n", 0, 3);
      WriteArray("m", 3, 3);
      WriteArray("q", 6, 2);
      Take();
      WriteArray("top", 0, 6);
      Take();
      WriteArray("bottom", 0, 6);
      json_.EndObject();
    }
    json_.EndArray().EndObject();
  });
  json_.EndArray();
}

void EnvelopeWriter::WriteSolids() {
  constexpr double kNoStress[24] = {};
  bool exist = false;
  json_.NewLine().Key("solids").BeginArray();
  for (const auto& mesh : project_.meshes) {
    if (mesh->elemType != Tetrahedra) continue;
    exist = true;
    for (const auto [number, elem] : mesh->elems) {
      const SolidView solid = SolidViewOf(*elem, kNoStress);
      BeginElement(*elem);
      json_.Key("points").BeginArray();
      for (int p = 0; p < solid.pointCount; ++p) {
        Take();
        WritePoint(solid.points[static_cast<std::size_t>(p)].x);
        WriteArray("stress", 0, 6);
        json_.EndObject();
      }
      json_.EndArray().EndObject();
    }
  }
  json_.EndArray();
  json_.NewLine().Key("nodalStresses").BeginArray();
  if (exist) WriteNodalStresses();
  json_.EndArray();
}

void EnvelopeWriter::WriteNodalStresses() {
  ForEachNode(project_, [&](int number, const Node&) {
    Take();
    json_.NewLine().BeginObject().Member("number", number);
    WriteArray("stress", 0, 6);
    json_.Key("vonMises");
    WriteValue(6);
    json_.EndObject();
  });
}

void EnvelopeWriter::WriteReactions() {
  json_.NewLine().Key("reactions").BeginArray();
  for (const SupportedNode& support : SupportedNodes(project_)) {
    Take();
    json_.NewLine().BeginObject().Member("node", support.number);
    if (support.number == 0) {
      json_.Key("between").BeginArray();
      for (const int corner : support.between) json_.Value(corner);
      json_.EndArray();
    }
    WriteForces();
    if (IsInclined(*support.node)) {
      Take();
      json_.Key("inSupportAxes").BeginObject();
      WriteForces();
      json_.EndObject();
    }
    json_.EndObject();
  }
  json_.EndArray();
}

}  // namespace

void WriteEnvelopes(JsonWriter& json, const Project& project, Envelopes& envelopes,
                    const std::vector<Combination>& combinations) {
  EnvelopeWriter(json, project, envelopes, combinations).Write();
}

}  // namespace kestol
