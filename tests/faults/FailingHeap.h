#pragma once

/// For a process that has the failing heap loaded and no end of its own between two trials: the
/// allocation of that number from now on fails (0: none does), it alone or it and all after it.
extern "C" void kestol_fail_allocation(long number, int once);

/// The same as the environment says.
extern "C" void kestol_fail_as_told();

/// Allocations since the start, or since the last call of the other.
extern "C" long kestol_allocations();
