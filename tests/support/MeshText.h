#pragma once

#include <memory>
#include <string>

#include "input/TextInput.h"
#include "input/Units.h"
#include "model/Mesh.h"

namespace kestol {

// Mesh blocks as text, and their reading outside of a whole deck.

/// A block of 2-noded elements in the plane.
inline std::string Beams(const std::string& coordinates, const std::string& elements) {
  return " dimension = 2 ElemType Linear Nnode = 2\ncoordinates\n" + coordinates +
         "end coordinates\nelements\n" + elements + "end elements\n";
}

inline const std::string kTwoNodes = " 1 0 0\n 2 3 4\n";

inline void ReadInto(Mesh& mesh, const std::string& text, const Units* units = nullptr) {
  TextInput input(text);
  mesh.ReadMesh(input, units);
}

inline std::unique_ptr<Mesh> Read(const std::string& text, const Units* units = nullptr) {
  auto mesh = std::make_unique<Mesh>();
  ReadInto(*mesh, text, units);
  return mesh;
}

inline std::string Heading(const std::string& elemType, int nnode) {
  return "dimension 2 elemtype " + elemType + " nnode " + std::to_string(nnode) + "\n";
}

/// Reads a heading, then ends for want of the coordinates; gives what was read.
inline std::unique_ptr<Mesh> ReadHeading(const std::string& elemType, int nnode) {
  return Read(Heading(elemType, nnode) + "coordinates 1 0 0\nend elements end");
}

}  // namespace kestol
