#pragma once

#include <string>

namespace kestol {

class OutputText;
class Project;
struct Results;

/// Writes the post-processor's result file and, unless `meshFileName` is null, its mesh file.
///
/// The mesh file comes first and is closed here. A model with quadrilaterals or hexahedra ends the
/// run with "error: elemtype unknown\n", solids beside any other mesh with
/// "tetrahedra elements cannot be mixed with other elements\n".
void WriteVemoFiles(const Project& project, const Results& results, OutputText& file,
                    const std::string* meshFileName);

}  // namespace kestol
