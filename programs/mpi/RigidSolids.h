#pragma once

namespace kestol {

class Project;

/// Whether the elements of every connected part hang together by whole faces, so that no part can
/// move in itself: then supports that stop its rigid motions make the model stable. Models with
/// anything but solids are not told: false.
bool SolidsHangTogether(const Project& project);

}  // namespace kestol
