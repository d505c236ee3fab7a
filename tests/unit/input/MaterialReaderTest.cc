#include <cmath>
#include <sstream>

#include "input/MaterialReader.h"
#include "input/TextInput.h"
#include "input/Units.h"
#include "input/Words.h"
#include "model/Material.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

Material Read(std::string_view text, const Units* units = nullptr) {
  Material material;
  EXPECT_EQ(material.ReadMaterialText(text, units), 1) << text;
  return material;
}

/// The materials of a section with these lines.
Plex<Material> Section(const std::string& lines) {
  Plex<Material> materials(100);
  TextInput input(lines + "\nend materials\n");
  ReadMaterials(materials, input, nullptr);
  return materials;
}

std::string Printed(const Material& material) {
  std::ostringstream stream;
  material.Print(stream);
  return stream.str();
}

/// Results in N and m; the default of materials has F = 7 and L = 3, the system "other" F = 2 and
/// L = 10.
Units UnitsOfTwoSystems() {
  Units units;
  units.materialForce = 7.0;
  units.materialLength = 3.0;
  units.table = {
      {"other", "n", "m", "p", 2.0, 10.0},
      {"wrong", "n", "m", "p", 0.0, 1.0 }
  };
  return units;
}

// --- keys and values --------------------------------------------------------------------------

TEST(MaterialReader, SectionLineLeavesWhatIsNotGivenMarked) {
  const Plex<Material> materials = Section("7 E=210000 nu=0.3 A=0.01 Iz=8.33e-6");
  EXPECT_EQ(Printed(*materials.Get(7)),
            "7 E1=210000 E2=210000 nuXY=0.3 nuYX=0.3 Iy=-1 Iz=8.33e-06 Gxy=-1 Gxz=-1 Gyz=-1 J=-1 "
            "A=0.01 Weight=-1 t=-1\n");
  EXPECT_EQ(materials.Get(7)->hasEuler, 0);
}

TEST(MaterialReader, KeyAndValueMayBeJoinedByBlankColonOrEqualSign) {
  for (const char* text : {"E=2.1e11", "E: 2.1e11", "E 2.1e11", "  E=2.1e11\t", "\tE:2.1e11\r",
                           "E= 2.1e11", "E\t2.1e11", "=E=2.1e11", ":: E 2.1e11"})
    EXPECT_EQ(Read(text).E1, 2.1e11) << text;
}

TEST(MaterialReader, SeparateEqualSignIsAValueOfZero) {
  EXPECT_EQ(Read("E =2e11").E1, 0.0);
  EXPECT_FATAL(Read("E = 2e11 A=1"), "Input of materials not correct. Unknown char: '2e11'\n");
}

TEST(MaterialReader, MalformedValueIsItsLongestNumberElseZero) {
  EXPECT_EQ(Read("A=abc").A, 0.0);
  EXPECT_EQ(Read("A=1.5x").A, 1.5);
  EXPECT_EQ(Read("A==5").A, 0.0);
  EXPECT_EQ(Read("A=-2e-3").A, -2e-3);
}

struct KeyCase {
  const char* key;
  double Material::*field;
};

TEST(MaterialReader, EveryKeySetsItsField) {
  const KeyCase cases[] = {
      {"Weight",    &Material::Weight},
      {"Weights",   &Material::Weight},
      {"nuXY",      &Material::nuXY  },
      {"nuXYZ",     &Material::nuXY  },
      {"nuYX",      &Material::nuYX  },
      {"t",         &Material::t     },
      {"thickness", &Material::t     },
      {"ttt",       &Material::t     },
      {"Ex",        &Material::E1    },
      {"ex",        &Material::E1    },
      {"Exyz",      &Material::E1    },
      {"Ey",        &Material::E2    },
      {"ey",        &Material::E2    },
      {"Iy",        &Material::Iy    },
      {"IY",        &Material::Iy    },
      {"iy",        &Material::Iy    },
      {"Iz",        &Material::Iz    },
      {"IZ",        &Material::Iz    },
      {"iz",        &Material::Iz    },
      {"I",         &Material::Iz    },
      {"i",         &Material::Iz    },
      {"Inertia",   &Material::Iz    },
      {"Gxy",       &Material::Gxy   },
      {"Gxyz",      &Material::Gxy   },
      {"gxy",       &Material::Gxy   },
      {"Gxz",       &Material::Gxz   },
      {"Gyz",       &Material::Gyz   },
      {"J",         &Material::J     },
      {"j",         &Material::J     },
      {"Jx",        &Material::J     },
      {"A",         &Material::A     },
      {"a",         &Material::A     },
      {"Area",      &Material::A     },
      {"Euler1",    &Material::Euler1},
      {"Euler2",    &Material::Euler2},
      {"Euler3",    &Material::Euler3},
      {"Euler3rd",  &Material::Euler3},
  };
  for (const auto& [key, field] : cases) {
    const Material material = Read(std::string(key) + "=4.5");
    EXPECT_EQ(material.*field, 4.5) << key;
    Material rest = material;  // nothing else was set
    rest.*field = Material::kNotGiven;
    if (std::string_view(key).substr(0, 5) == "Euler") {
      EXPECT_EQ(material.hasEuler, 1) << key;
      rest.*field = 0.0;
    } else {
      EXPECT_EQ(material.hasEuler, 0) << key;
    }
    EXPECT_EQ(Printed(rest),
              "0 E1=-1 E2=-1 nuXY=-1 nuYX=-1 Iy=-1 Iz=-1 Gxy=-1 Gxz=-1 Gyz=-1 J=-1 A=-1 "
              "Weight=-1 t=-1\n")
        << key;
    EXPECT_EQ(rest.Euler1 + rest.Euler2 + rest.Euler3, 0.0) << key;
  }
}

TEST(MaterialReader, KeysWithoutDirectionSetAllDirections) {
  for (const char* key : {"E=3", "e=3"}) {
    const Material material = Read(key);
    EXPECT_EQ(material.E1, 3.0);
    EXPECT_EQ(material.E2, 3.0);
  }
  for (const char* key : {"G=3", "g=3"}) {
    const Material material = Read(key);
    EXPECT_EQ(material.Gxy, 3.0);
    EXPECT_EQ(material.Gxz, 3.0);
    EXPECT_EQ(material.Gyz, 3.0);
  }
  for (const char* key : {"nu=0.2", "nux=0.2", "nuxy=0.2"}) {
    const Material material = Read(key);
    EXPECT_EQ(material.nuXY, 0.2) << key;
    EXPECT_EQ(material.nuYX, 0.2) << key;
  }
}

TEST(MaterialReader, LaterKeysOverwriteEarlierOnes) {
  const Material material = Read("E=3 Ey=4 nu=0.2 nuYX=0.1 A=1 A=2");
  EXPECT_EQ(material.E1, 3.0);
  EXPECT_EQ(material.E2, 4.0);
  EXPECT_EQ(material.nuXY, 0.2);
  EXPECT_EQ(material.nuYX, 0.1);
  EXPECT_EQ(material.A, 2.0);
}

TEST(MaterialReader, ReadingAnewForgetsWhatWasThere) {
  Material material = Read("E=3 Euler2=1 A=5");
  EXPECT_EQ(material.ReadMaterialText("t=2", nullptr), 1);
  EXPECT_EQ(material.E1, -1.0);
  EXPECT_EQ(material.A, -1.0);
  EXPECT_EQ(material.t, 2.0);
  EXPECT_EQ(material.hasEuler, 0);
  EXPECT_EQ(material.Euler2, 0.0);
}

// --- refusals of keys -------------------------------------------------------------------------

TEST(MaterialReader, EulerAnglesAreOneTwoAndThree) {
  for (const char* text : {"Euler4=3", "Euler=3", "Euler0=3", "Eulerx=3"})
    EXPECT_FATAL(Read(text), "error: Euler angles must be: Euler1,Euler2 or Euler3\n");
}

// Deliberate: "EX" is wrong, "Ex" is the modulus.
TEST(MaterialReader, YoungModulusHasSmallDirections) {
  for (const char* text : {"EX=3", "EY=3", "Ez=3", "euler1=3", "E1=3", "EULER1=3"})
    EXPECT_FATAL(Read(text), "error in materials. Young Modulus can only be E, Ex or Ey\n");
}

TEST(MaterialReader, InertiaAboutXEndsTheRun) {
  for (const char* text : {"Ix=1", "IX=1", "ix=1", "iX=1"})
    EXPECT_FATAL(Read(text), "error in materials. Inertia modules cannot be for X axe\n");
}

TEST(MaterialReader, ShearModulusHasSmallPlanes) {
  for (const char* text : {"GXY=1", "Gx=1", "Gyx=1", "G1=1", "gravity=1"})
    EXPECT_FATAL(Read(text), "error in materials. G can be: G Gxy Gxz or Gyz\n");
}

TEST(MaterialReader, ValueIsLookedForBeforeTheKeyIsTested) {
  Material material;
  for (const char* key : {"T", "Ix", "Gx", "EX", "Euler4"})
    EXPECT_FATAL(material.ReadDefinition(key, nullptr),
                 std::string("error in materials. Key without value: '") + key + "'\n");
}

// Deliberate: "T" is unknown, "t" the thickness.
TEST(MaterialReader, UnknownKeyEndsTheRun) {
  EXPECT_FATAL(Read("T=1"), "Input of materials not correct. Unknown char: 'T'\n");
  EXPECT_FATAL(Read("widthy=1"), "Input of materials not correct. Unknown char: 'widthy'\n");
  EXPECT_FATAL(Read("weight=1"), "Input of materials not correct. Unknown char: 'weight'\n");
  EXPECT_FATAL(Read("n=1"), "Input of materials not correct. Unknown char: 'n'\n");
  EXPECT_FATAL(Read("uNits=SI"), "Input of materials not correct. Unknown char: 'uNits'\n");
  EXPECT_FATAL(Read("A=1 # steel"), "Input of materials not correct. Unknown char: '#'\n");
}

// --- texts without keys or values -------------------------------------------------------------

TEST(MaterialReader, TextWithoutKeysIsReported) {
  for (const char* text : {"", "   ", "\t\r", ": =", "=", " :: "}) {
    Material material;
    EXPECT_EQ(material.ReadMaterialText(text, nullptr), -1) << text;
    EXPECT_EQ(material.E1, -1.0);
    EXPECT_FALSE(material.ReadDefinition(text, nullptr)) << text;
  }
}

TEST(MaterialReader, KeyWithoutValueIsReportedWithTheKey) {
  Material material;
  std::string_view key;
  EXPECT_EQ(material.ReadMaterialText("E=3 nu=", nullptr, &key), 0);
  EXPECT_EQ(key, "nu");
  EXPECT_EQ(material.ReadMaterialText("A", nullptr), 0);
}

TEST(MaterialReader, KeyWithoutValueEndsTheRunInBothPlaces) {
  const char* const text = "error in materials. Key without value: 'nu'\n";
  Material material;
  EXPECT_FATAL(Section("7 E=3 nu=\n8 E=2"), text);
  EXPECT_FATAL(material.ReadDefinition("E=3 nu", nullptr), text);
  EXPECT_FATAL(material.ReadDefinition("2e11", nullptr),
               "error in materials. Key without value: '2e11'\n");
  EXPECT_FATAL(material.ReadDefinition("E=3 units=", nullptr),
               "error in materials. Key without value: 'units'\n");
}

TEST(MaterialReader, FinalCarriageReturnIsNoKey) {
  const Plex<Material> materials = Section("7 E=3 \r\n8 A=2\r");
  EXPECT_EQ(materials.Get(7)->E1, 3.0);
  EXPECT_EQ(materials.Get(8)->A, 2.0);
}

// --- lines ------------------------------------------------------------------------------------

TEST(MaterialReader, LineThatIsNoNumberEndsTheSection) {
  Plex<Material> materials(100);
  TextInput input(std::string("  end materials\n8 A=2"));
  ReadMaterials(materials, input, nullptr);
  EXPECT_EQ(materials.Highest(), 0);
  EXPECT_EQ(ReadWord(input), "8");
}

TEST(MaterialReader, LineWithoutKeysIsAMaterialWithoutValues) {
  const Plex<Material> materials = Section("7\n8 A=2");
  EXPECT_EQ(materials.Get(7)->number, 7);
  EXPECT_EQ(materials.Get(7)->E1, -1.0);
  EXPECT_EQ(materials.Get(8)->number, 8);
  EXPECT_EQ(materials.Get(8)->A, 2.0);
}

TEST(MaterialReader, NumberAtTheEndOfTheTextIsAMaterial) {
  Plex<Material> materials(100);
  TextInput input(std::string("7"));
  EXPECT_FATAL(ReadMaterials(materials, input, nullptr),
               "can't find word ***end*** in input file\n");
  EXPECT_EQ(materials.Get(7)->number, 7);
}

TEST(MaterialReader, LongLinesAreReadWhole) {
  EXPECT_EQ(Section("7 " + std::string(5000, ' ') + "A=2").Get(7)->A, 2.0);
}

TEST(MaterialReader, NumberInUseIsRefused) {
  EXPECT_FATAL(Section("7 A=2\n7 A=3"), "Repeated index 7 in VoidPlex");
}

TEST(MaterialReader, NumberOutOfRangeIsRefused) {
  EXPECT_FATAL(Section("2147483648 A=2"), "error: number out of range in input file\n");
}

// --- units ------------------------------------------------------------------------------------

struct ScaledKey {
  const char* key;
  double Material::*field;
  int force, length;  ///< powers of F and L
};

const ScaledKey kScaledKeys[] = {
    {"E",      &Material::E1,     1, -2},
    {"E",      &Material::E2,     1, -2},
    {"Ex",     &Material::E1,     1, -2},
    {"Ey",     &Material::E2,     1, -2},
    {"G",      &Material::Gxy,    1, -2},
    {"G",      &Material::Gxz,    1, -2},
    {"G",      &Material::Gyz,    1, -2},
    {"Gxy",    &Material::Gxy,    1, -2},
    {"Gxz",    &Material::Gxz,    1, -2},
    {"Gyz",    &Material::Gyz,    1, -2},
    {"Weight", &Material::Weight, 1, -3},
    {"A",      &Material::A,      0, 2 },
    {"Iy",     &Material::Iy,     0, 4 },
    {"Iz",     &Material::Iz,     0, 4 },
    {"I",      &Material::Iz,     0, 4 },
    {"J",      &Material::J,      0, 4 },
    {"t",      &Material::t,      0, 1 },
    {"nuXY",   &Material::nuXY,   0, 0 },
    {"nuYX",   &Material::nuYX,   0, 0 },
    {"nu",     &Material::nuXY,   0, 0 },
    {"Euler1", &Material::Euler1, 0, 0 },
    {"Euler2", &Material::Euler2, 0, 0 },
    {"Euler3", &Material::Euler3, 0, 0 },
};

TEST(MaterialReader, ValuesAreScaledByThePowersOfTheirUnits) {
  const Units units = UnitsOfTwoSystems();
  for (const auto& [key, field, force, length] : kScaledKeys) {
    const std::string text = std::string(key) + "=5";
    EXPECT_DOUBLE_EQ(Read(text, &units).*field, 5 * std::pow(7.0, force) * std::pow(3.0, length))
        << key;
    EXPECT_DOUBLE_EQ(Read(text + " units=other", &units).*field,
                     5 * std::pow(2.0, force) * std::pow(10.0, length))
        << key;
  }
}

TEST(MaterialReader, WidthsAreScaledAsLengths) {
  const Units units = UnitsOfTwoSystems();
  const Material material = Read("widthY=0.02 widthZ=0.04 Units: other", &units);
  EXPECT_DOUBLE_EQ(material.A, 0.08);
  EXPECT_DOUBLE_EQ(material.Iy, 0.4 * 0.4 * 0.4 * 0.2 * 0.08333333333333333);
}

TEST(MaterialReader, UnitsOfTheLineHoldForAllItsValuesWhereverTheyStand) {
  const Units units = UnitsOfTwoSystems();
  for (const char* text : {"units=other A=5 t=4", "A=5 Units other t=4", "A=5 t=4 UNITS : other",
                           "A=5 units = other t=4"}) {
    const Material material = Read(text, &units);
    EXPECT_DOUBLE_EQ(material.A, 500.0) << text;
    EXPECT_DOUBLE_EQ(material.t, 40.0) << text;
  }
}

TEST(MaterialReader, WithoutUnitsNothingIsScaledAndTheUnitsKeyIsSkipped) {
  const Material material = Read("E=2 units = other A=5", nullptr);
  EXPECT_EQ(material.E1, 2.0);
  EXPECT_EQ(material.A, 5.0);
}

TEST(MaterialReader, UnitSystemsThatAreUnknownOrNotPositiveEndTheRun) {
  const Units units = UnitsOfTwoSystems();
  EXPECT_FATAL(Read("A=5 units=none", &units),
               "error: Unit name 'none' has not been previously defined\n");
  EXPECT_FATAL(Read("A=5 units=wrong", &units),
               "error: factors of unit system 'wrong' must be two positive numbers\n");
}

// --- rectangle --------------------------------------------------------------------------------

TEST(MaterialReader, RectangleOverwritesTheSection) {
  const Material material = Read("widthY=0.2 widthZ=0.4 A=9 Iy=9 Iz=9 J=9");
  EXPECT_DOUBLE_EQ(material.A, 0.08);
  EXPECT_DOUBLE_EQ(material.J, 0.229 * 0.2 * 0.2 * 0.2 * 0.4);
}

TEST(MaterialReader, WidthYAloneGivesANegativeArea) {
  const Units units = UnitsOfTwoSystems();
  EXPECT_DOUBLE_EQ(Read("widthY=0.2").A, -0.2);
  EXPECT_DOUBLE_EQ(Read("widthY=0.2", &units).A, -0.6);  // the mark of widthZ is not scaled
}

TEST(MaterialReader, RectangleWithoutWidthZHasTheTorsionOfTheFirstRow) {
  EXPECT_DOUBLE_EQ(Read("widthY=0.2").J, 0.141 * -1.0 * 0.2);
  EXPECT_DOUBLE_EQ(Read("widthY=0.2").Iy, -0.2 * 0.08333333333333333);
}

TEST(MaterialReader, WidthKeysMayGoOn) {
  EXPECT_DOUBLE_EQ(Read("widthYY=0.2 widthZ1=0.4").A, 0.08);
}

TEST(MaterialReader, WidthZAloneHasNoEffect) {
  EXPECT_EQ(Read("widthZ=0.4").A, -1.0);
  EXPECT_EQ(Read("widthY=0 widthZ=0.4 A=2").A, 2.0);
  EXPECT_EQ(Read("widthY=-1 widthZ=0.4 A=2").A, 2.0);
}

}  // namespace

}  // namespace kestol
