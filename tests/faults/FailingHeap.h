#pragma once

/// Allocations fail as the environment says, counted from now on.
extern "C" void kestol_fail_as_told();

/// Allocations since the start, or since the last call of the other.
extern "C" long kestol_allocations();
