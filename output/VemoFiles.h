#pragma once

#include <string>

class OutputText;
class Project;

/// Writes the post-processor's result file and, unless `meshFileName` is null, its mesh file.
void WriteVemoFiles(const Project& project, OutputText& results, const std::string* meshFileName);
