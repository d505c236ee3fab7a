#pragma once

namespace kestol {

class Elem;
class Material;
class Project;

/// The material of an element; ends the run with
/// "error: Material in element: N doesn't exist\n" when there is none.
const Material& MaterialOf(const Project& project, const Elem& elem);

}  // namespace kestol
