#pragma once

class Project;
class TextInput;

/// Reads the constraints section into the nodes of the first mesh.
void ReadConstraints(Project& project, TextInput& input);
