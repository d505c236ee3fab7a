#include "tests/support/SampleModels.h"

#include <algorithm>

namespace kestol {

namespace {

constexpr int kNone = MeshModel::kNoFace;

bool AtEnd(const Vector3& p) {
  return p[0] == 0.0;
}

void ClampEnd(MeshModel& model) {
  for (const int node : model.Where(AtEnd)) model.Hold(node, model.IsSolid() ? "111" : "111111");
}

void LetWeigh(MeshModel& model) {
  for (auto& [number, material] : model.materials)
    material.values.emplace_back("Weight", 20.0 + 15.0 * number);
  model.gravity = Unit({1, -2, -3});
}

// --- shell --------------------------------------------------------------------------------------

Vector3 Bent(double x, double y, double) {
  const double rise = std::max(0.0, x - 0.25);
  return {3 * x * (1 + 0.1 * y * (1 - x)), 2 * y + 0.2 * x - 0.3 * x * y,
          1.1 * rise * rise + 0.4 * rise * y};
}

/// The middle of a chord of the flat part moves in the plane; the ends of the part stay straight.
void CurveFlatPart(TestMesh& mesh, int corners) {
  for (std::size_t i = corners; i < mesh.nodes.size(); ++i) {
    Vector3& p = mesh.nodes[i];
    if (p[2] == 0.0 && p[0] > 0.0 && p[0] < 0.7) p = Plus(p, {0.04, -0.03, 0.0});
  }
}

/// G = E / 2 (1 + nu), or the axes that the program chooses would matter.
MeshModel::Material Isotropic() {
  const MeshModel::Values values = {
      {"E",  2.6e6},
      {"nu", 0.3  },
      {"G",  1e6  },
      {"t",  0.15 }
  };
  return {values, {}};
}

/// Ex nuXY and Ey nuYX must be equal to the last bit, in every unit: powers of two.
MeshModel::Material Orthotropic() {
  const MeshModel::Values values = {
      {"Ex",   4e6  },
      {"Ey",   2e6  },
      {"nuXY", 0.125},
      {"nuYX", 0.25 },
      {"Gxy",  9e5  },
      {"Gxz",  7e5  },
      {"Gyz",  5e5  },
      {"t",    0.125}
  };
  return {
      values, Vector3{0.4, -0.3, 0.7}
  };
}

void DressShell(MeshModel& model) {
  LetWeigh(model);
  model.Hold(1, "111111");
  model.Hold(6, "111010", {0, 1e-3, -5e-4, 0, 2e-4, 0});
  model.Hold(11, "101000", {1e-3, 0, 5e-4}, Vector3{0.3, 0.8, 2.0});
  model.Hold(5, "012020", {0, 1e-3, 4e4, 0, 500, 0}, Vector3{-0.7, 0.2, 1.1});
  model.Hold(15, "222222", {3e4, 2e4, 5e4, 400, 500, 600});
  model.Load(8, {10, -20, 30}, {4, 5, -6}).Load(14, {-15, 5, -25}, {-3, 0, 2}).Load(8, {1, 2, 3});
  model.Load("global_pressure_loads", 3, kNone, {12, -7, 25});
  model.Load("global_pressure_loads", 3, kNone, {20, 1, -2}, 0.0, Vector3{0.5, -0.2, 0.9});
  model.Load("global_projected_pressure_loads", 5, kNone, {-9, 14, -30});
  model.Load("local_pressure_loads", 6, kNone, {0, 0, 18});
  model.Load("local_pressure_loads", 7, kNone, {11, -6, 16}, 3.5);
  model.Load("local_pressure_loads", 15, kNone, {-4, 8, 0}, -2.0);
  model.Load("face_loads", 12, kNone, {5, 6, -7});
  model.Load("face_loads", 13, 0, {8, -9, 10});
  model.Load("face_loads", 14, 1, {-8, 9, 5});
  model.Load("face_loads", 10, 2, {3, 3, -12});
}

// --- solid --------------------------------------------------------------------------------------

Vector3 Warped(double x, double y, double z) {
  return {2 * x * (1 + 0.1 * y - 0.2 * z), 1.5 * y + 0.2 * x * x + 0.1 * z,
          1.2 * z + 0.25 * x * y - 0.1 * y * y};
}

void DressSolid(MeshModel& model) {
  LetWeigh(model);
  const std::vector<int> end = model.Where(AtEnd);
  model.Hold(end[0], "111", {0, 1e-3, -5e-4});
  model.Hold(end[1], "111", {1e-3, 0, 2e-4}, Vector3{0.3, 0.8, 2.0});
  model.Hold(end[3], "101", {0, 0, 1e-3});
  model.Hold(end[4], "010", {0, -1e-3, 0}, Vector3{0.4, -0.6, 1.0});
  model.Hold(3, "222", {3e5, 2e5, 5e5});
  model.Hold(6, "021", {0, 4e5, 1e-3}, Vector3{-0.7, 0.2, 1.1});
  model.Load(9, {100, -200, 300}).Load(18, {-150, 50, -250}).Load(9, {10, 20, 30});
  const Vector3 axes{0.5, -0.2, 0.9};
  model.Load("global_pressure_loads", 8, -1, {120, -70, 250});
  model.Load("local_pressure_loads", 9, 0, {0, 0, 180});
  model.Load("global_projected_pressure_loads", 10, 1, {-90, 140, -300});
  model.Load("face_loads", 11, 2, {80, -90, 100});
  model.Load("global_pressure_loads", 12, 3, {-80, 90, 50});
  model.Load("face_loads", 20, 1, {30, 30, -120}, 0.0, axes);
  model.Load("face_loads", 20, -1, {30, 30, -120}, 0.0, axes);
}

}  // namespace

MeshModel SampleShell(bool sixNodes, Dress dress, bool curved) {
  TestMesh mesh = Grid(4, 2, Cut::Right, Bent);
  const int corners = static_cast<int>(mesh.nodes.size());
  if (sixNodes) ToSix(mesh);
  if (curved) CurveFlatPart(mesh, corners);
  MeshModel model = ModelOf(mesh);
  for (MeshModel::Element& element : model.blocks[0].elements)
    if ((element.number - 1) / 2 % 4 == 3) element.material = 2;
  model.materials[1] = Isotropic();
  model.materials[2] = Orthotropic();
  if (dress == Dress::Held) ClampEnd(model);
  if (dress == Dress::Complete) DressShell(model);
  return model;
}

MeshModel SampleStiffenedShell(bool sixNodes, Dress dress) {
  MeshModel model = SampleShell(sixNodes, dress);
  model.blocks.push_back({"Linear", {}});
  int number = 100;
  for (const auto& [a, b] : {
           std::pair{6, 7 },
           {7, 8 },
           {8, 9 },
           {9, 10},
           {3, 8 },
           {8, 13}
  })
    model.blocks[1].elements.push_back({
        ++number, {a, b},
         3
    });
  // Without a preferred direction: the axes that the program chooses do not matter.
  model.materials[3].values = {
      {"E",  5e6   },
      {"G",  2e6   },
      {"A",  0.02  },
      {"Iy", 1e-3  },
      {"Iz", 1e-3  },
      {"J",  1.5e-3}
  };
  if (dress != Dress::Complete) return model;
  model.materials[3].values.emplace_back("Weight", 65.0);
  model.Load("global_pressure_loads", 102, kNone, {7, -8, 9});
  model.Load("global_projected_pressure_loads", 105, kNone, {0, 3, -9});
  model.Load("local_pressure_loads", 103, kNone, {6, 0, 0}, 2.0);
  return model;
}

MeshModel SampleSolid(bool tenNodes, Dress dress, bool curved) {
  TestMesh mesh = Box(2, 2, 1, tenNodes && curved, Warped);
  if (tenNodes && !curved) ToTen(mesh);
  MeshModel model = ModelOf(mesh);
  for (MeshModel::Element& element : model.blocks[0].elements)
    if ((element.number - 1) / 6 % 2 == 1) element.material = 2;
  model.materials[1].values = {
      {"E",  3e6},
      {"nu", 0.3}
  };
  model.materials[2].values = {
      {"E",  8e6},
      {"nu", 0.2}
  };
  if (dress == Dress::Held) ClampEnd(model);
  if (dress == Dress::Complete) DressSolid(model);
  return model;
}

std::vector<Sample> AllSamples() {
  return {
      {"ThreeNodedShell", [](Dress dress) { return SampleShell(false, dress); }        },
      {"SixNodedShell",   [](Dress dress) { return SampleShell(true, dress, true); }   },
      {"StiffenedShell",  [](Dress dress) { return SampleStiffenedShell(true, dress); }},
      {"FourNodedSolid",  [](Dress dress) { return SampleSolid(false, dress); }        },
      {"TenNodedSolid",   [](Dress dress) { return SampleSolid(true, dress, true); }   },
  };
}

}  // namespace kestol
