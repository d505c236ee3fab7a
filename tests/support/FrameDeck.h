#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>

namespace kestol {

/// The deck of a frame in the making. Numbers are written with all their digits.
class FrameDeck {
public:
  explicit FrameDeck(int dimension) : dimension_(dimension) {}

  FrameDeck& Node(int number, double x, double y, double z = 0.0) {
    coordinates_ += Line(number, dimension_ == 2 ? std::initializer_list<double>{x, y}
                                                 : std::initializer_list<double>{x, y, z});
    return *this;
  }
  FrameDeck& Beam(int number, int node1, int node2, int material = 1) {
    elements_ += std::to_string(number) + ' ' + std::to_string(node1) + ' ' +
                 std::to_string(node2) + ' ' + std::to_string(material) + '\n';
    return *this;
  }
  /// Later beams belong to another mesh, on the nodes of the first.
  FrameDeck& NextMesh() {
    elements_ += "end elements\nmesh\ndimension = " + std::to_string(dimension_) +
                 " elemtype Linear nnode = 2\ncoordinates\nend coordinates\nelements\n";
    return *this;
  }
  FrameDeck& Material(int number, const std::string& keys) { return Add(materials_, number, keys); }
  /// Codes and values as on the line of a constraint.
  FrameDeck& Support(int node, const std::string& line) { return Add(constraints_, node, line); }
  /// All degrees of the node held.
  FrameDeck& Clamp(int node) {
    return Support(node, dimension_ == 2 ? "111 0 0 0" : "111111 0 0 0 0 0 0");
  }
  FrameDeck& Rotule(int node) {
    rotules_ += std::to_string(node) + '\n';
    return *this;
  }
  FrameDeck& Load(int node, std::initializer_list<double> components) {
    nodalLoads_ += Line(node, components);
    return *this;
  }
  /// A line of one of the sections of distributed loads.
  FrameDeck& LineLoad(const std::string& section, int element, const std::string& line) {
    lineLoads_ += section + '\n' + std::to_string(element) + ' ' + line + "\nend\n";
    return *this;
  }
  /// A line of the problem section.
  FrameDeck& Key(const std::string& line) {
    keys_ += line + '\n';
    return *this;
  }

  std::string Text() const {
    std::string text = "PROBLEM frame\nTYPE " + std::to_string(dimension_) + "d\n" + keys_ +
                       "mesh\ndimension = " + std::to_string(dimension_) +
                       " elemtype Linear nnode = 2\ncoordinates\n" + coordinates_ +
                       "end coordinates\nelements\n" + elements_ + "end elements\n";
    text += Section("materials", materials_) + Section("constraints", constraints_) +
            Section("rotules", rotules_) + Section("nodal_point_loads", nodalLoads_);
    return text + lineLoads_;
  }

private:
  FrameDeck& Add(std::string& section, int number, const std::string& rest) {
    section += std::to_string(number) + ' ' + rest + '\n';
    return *this;
  }

  static std::string Line(int number, std::initializer_list<double> values) {
    std::string line = std::to_string(number);
    char text[32];
    for (const double value : values) {
      std::snprintf(text, sizeof text, " %.17g", value);
      line += text;
    }
    return line + '\n';
  }

  static std::string Section(const std::string& keyword, const std::string& lines) {
    return lines.empty() ? "" : keyword + '\n' + lines + "end " + keyword + '\n';
  }

  int dimension_;
  std::string keys_, coordinates_, elements_, materials_, constraints_, rotules_, nodalLoads_,
      lineLoads_;
};

}  // namespace kestol
