#pragma once

namespace kestol {

class Project;
class TextInput;

/// Reads a whole deck into the project and checks the model as a whole.
void ReadProject(Project& project, TextInput& input);

}  // namespace kestol
