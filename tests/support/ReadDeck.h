#pragma once

#include <memory>
#include <string>

#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"

namespace kestol {

// Small decks, whole or from their problem section alone, into a model.

inline constexpr char kHeader[] = "problem beams\ntype 2d\n";

/// A block of one mesh with `elements`; nodes 1 to 4 stand on a line.
inline std::string MeshOf(const std::string& elemType, int nnode, const std::string& elements) {
  return "mesh dimension 2 elemtype " + elemType + " nnode " + std::to_string(nnode) +
         "\ncoordinates\n1 0 0\n2 1 0\n3 2 0\n4 3 0\nend coordinates\nelements\n" + elements +
         "\nend elements\n";
}

inline const std::string kMesh = MeshOf("Linear", 2, "1 1 2 1");

inline const std::string kSystems =
    "units_names\nSI N m Pa 1 1\nkN-m kN m kPa 1000 1\nN-mm N mm MPa 1 0.001\n"
    "zero N none Pa 1 0\nend\n";

inline std::unique_ptr<Project> Read(const std::string& deck) {
  auto project = std::make_unique<Project>(100);
  TextInput input(deck);
  ReadProject(*project, input);
  return project;
}

/// Reads a deck whose problem section is `text`.
inline std::unique_ptr<Project> ReadKeywords(const std::string& text) {
  return Read(kHeader + text + "\n" + kMesh);
}

}  // namespace kestol
