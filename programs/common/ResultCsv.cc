#include "programs/common/ResultCsv.h"

#include "programs/common/CsvWriter.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"

namespace kestol {

namespace {

constexpr const char* kTensorNames[] = {"XX", "YY", "ZZ", "XY", "YZ", "XZ"};

/// A column: its name, and its unit in the letters of ResultData::Label; null: no unit.
struct Column {
  const char* name;
  const char* unit = nullptr;
};

void Header(CsvWriter& csv, const ResultData& data, std::initializer_list<Column> columns) {
  for (const auto& [name, unit] : columns)
    csv.Field(unit != nullptr ? data.Label(name, unit) : std::string(name));
}

void StressHeader(CsvWriter& csv, const ResultData& data, const std::string& prefix) {
  for (const char* name : kTensorNames) csv.Field(data.Label(prefix + name, "P"));
  csv.Field(data.Label(prefix + "vonMises", "P"));
}

void StressFields(CsvWriter& csv, const StressTensor& stress) {
  csv.Fields(stress).Field(VonMises(stress));
}

void WriteNodes(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  Header(csv, data,
         {
             {"node"},
             { "x",   "L"},
             { "y",   "L"},
             { "z",   "L"}
  });
  if (data.solved)
    Header(csv, data,
           {
               {"ux", "L"  },
               {"uy", "L"  },
               {"uz", "L"  },
               {"rx", "rad"},
               {"ry", "rad"},
               {"rz", "rad"}
    });
  csv.EndRow();
  ForEachNode(data.project, [&](int number, const Node& node) {
    csv.Field(number).Fields(PositionOf(node));
    if (data.solved) {
      const NodeDisplacement at = DisplacementOf(data.project, data.results, node);
      csv.Fields(at.u).Fields(at.rotation);
    }
    csv.EndRow();
  });
}

void EndHeader(CsvWriter& csv, const ResultData& data, const std::string& end) {
  for (const char* name : {"Fx", "Fy", "Fz"}) csv.Field(data.Label(name + end, "F"));
  for (const char* name : {"Mx", "My", "Mz"}) csv.Field(data.Label(name + end, "F L"));
}

/// What the nodes exert on an end, in the beam's axes; in the plane Fx, Fy and Mz.
void EndFields(CsvWriter& csv, const Project& project, const std::array<double, 6>& f) {
  if (project.problemType == Plane)
    csv.Fields(std::array{f[0], f[1], 0.0, 0.0, 0.0, f[2]});
  else
    csv.Fields(f);
}

void WriteBeams(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  Header(csv, data,
         {
             {"element" },
             {"material"},
             {"node1"   },
             {"node2"   },
             {"length",   "L"},
             {"exx"         },
             {"exy"},
             {"exz"         },
             {"eyx"},
             {"eyy"         },
             {"eyz"},
             {"ezx"         },
             {"ezy"},
             {"ezz"         }
  });
  if (data.solved)
    for (const char* end : {"1", "2"}) EndHeader(csv, data, end);
  csv.EndRow();
  for (std::size_t b = 0; b < data.beams.beams.size(); ++b) {
    const Elem& elem = *data.beams.beams[b];
    const Frame& axes = data.beams.axes[b];
    csv.Field(elem.number).Field(elem.materialNumber);
    csv.Field(data.NumberOf(*elem.nodes[0])).Field(data.NumberOf(*elem.nodes[1]));
    csv.Field(data.beams.lengths[b]).Fields(axes.x).Fields(axes.y).Fields(axes.z);
    if (data.solved)
      for (const auto* end : {&data.beams.ends[b].f1, &data.beams.ends[b].f2})
        EndFields(csv, data.project, *end);
    csv.EndRow();
  }
}

void WriteStations(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  Header(csv, data,
         {
             {"element"},
             { "x",      "L"},
             { "N",      "F"},
             { "Vy",      "F"},
             { "Vz",      "F"},
             { "T",    "F L"},
             { "My",    "F L"},
             { "Mz",    "F L"},
             { "ux",      "L"},
             { "uy",      "L"},
             { "uz",      "L"}
  });
  csv.EndRow();
  const BeamTable& beams = data.beams;
  for (int b = 0; b < beams.Count(); ++b)
    for (int s = 0; s < beams.stations; ++s) {
      const std::size_t place = beams.Place(b, s);
      const auto k = static_cast<std::size_t>(b);
      csv.Field(beams.beams[k]->number).Field(beams.XiOf(s) * beams.lengths[k]);
      for (const auto& values : beams.values) csv.Field(values[place]);
      csv.Fields(beams.displacements[place]);
      csv.EndRow();
    }
}

void WriteShells(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  Header(csv, data,
         {
             {"element"},
             {   "point"        },
             { "x",         "L"},
             {         "y",         "L"},
             {         "z",         "L"},
             {        "nx",         "F/L"},
             {        "ny",         "F/L"},
             {       "nxy",         "F/L"},
             {        "mx",         "F L/L"},
             {        "my",         "F L/L"},
             {       "mxy",         "F L/L"},
             {        "qx",         "F/L"},
             {        "qy",         "F/L"}
  });
  for (const char* face : {"top", "bottom"}) StressHeader(csv, data, std::string(face) + ' ');
  csv.EndRow();
  ForEachShell(data.project, &data.results, [&](const ShellView& shell) {
    for (int p = 0; p < shell.pointCount; ++p) {
      const auto& [x, forces] = shell.points[static_cast<std::size_t>(p)];
      csv.Field(shell.elem->number).Field(p + 1).Fields(x);
      csv.Fields(forces.n).Fields(forces.m).Fields(forces.q);
      for (const ShellFace face : {ShellFace::Top, ShellFace::Bottom})
        StressFields(csv, FaceStress(forces, shell.thickness, face, shell.axes));
      csv.EndRow();
    }
  });
}

void WriteSolids(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  Header(csv, data,
         {
             {"element"},
             {   "point"        },
             { "x",         "L"},
             {         "y",         "L"},
             {         "z",         "L"}
  });
  StressHeader(csv, data, "");
  csv.EndRow();
  ForEachSolid(data.project, data.results, [&](const SolidView& solid) {
    for (int p = 0; p < solid.pointCount; ++p) {
      const auto& [x, stress] = solid.points[static_cast<std::size_t>(p)];
      csv.Field(solid.elem->number).Field(p + 1).Fields(x);
      StressFields(csv, stress);
      csv.EndRow();
    }
  });
}

void ForceHeader(CsvWriter& csv, const ResultData& data) {
  csv.Field("node");
  EndHeader(csv, data, "");
  csv.EndRow();
}

void ForceRow(CsvWriter& csv, int number, const NodeForces& forces) {
  csv.Field(number).Fields(forces.force).Fields(forces.moment);
  csv.EndRow();
}

void WriteReactions(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  ForceHeader(csv, data);
  for (const SupportedNode& supported : SupportedNodes(data.project))
    ForceRow(csv, supported.number, SupportForce(data.project, data.results, *supported.node));
}

void WriteLoads(OutputBuffer& output, const ResultData& data) {
  CsvWriter csv(output);
  ForceHeader(csv, data);
  for (const Node* node : data.nodes) {
    const NodeForces load = LoadOn(data.project, data.results, *node);
    if (load.force != Vector3{} || load.moment != Vector3{})
      ForceRow(csv, data.NumberOf(*node), load);
  }
}

constexpr CsvTable kTables[] = {
    {"nodes",     false, WriteNodes    },
    {"beams",     false, WriteBeams    },
    {"stations",  true,  WriteStations },
    {"shells",    true,  WriteShells   },
    {"solids",    true,  WriteSolids   },
    {"reactions", true,  WriteReactions},
    {"loads",     false, WriteLoads    },
};

}  // namespace

std::span<const CsvTable> CsvTables() {
  return kTables;
}

}  // namespace kestol
