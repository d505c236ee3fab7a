#pragma once

namespace kestol {

class Project;

/// A model of its own that says the same. A solution prepares the model that it is given, so who
/// wants to go on with it solves a copy. The model must not have been prepared itself.
Project CopyModel(const Project& model);

}  // namespace kestol
