#pragma once

namespace kestol {

class Project;
class SourceMap;
class TextInput;

/// Reads the constraints section into the nodes of the first mesh, up to and with the line that
/// ends it. A record is a line
///
///     node  codes  value per degree  [key value ...]
///
/// with one digit per degree of freedom, written together (ConstraintCode), and the keys Euler1,
/// Euler2, Euler3 (radians) and units. Lines of the same node add up; where a line has the digit 0
/// the degree stays as it was. Values are stored in result units.
void ReadConstraints(Project& project, TextInput& input, SourceMap* map = nullptr);

}  // namespace kestol
