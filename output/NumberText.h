#pragma once

#include <cstdint>

namespace kestol {

// Numbers as the result files write them: the very bytes of printf, several times faster.
//
// Each function writes at `to`, where kNumberLength characters must be free, appends no NUL, and
// gives the place behind the last character.

/// Most characters that any of the functions below writes.
constexpr int kNumberLength = 24;

/// printf's "%g": six significant digits, the shorter of fixed and exponent notation.
char* WriteDefault(char* to, double value);

/// printf's "  %13.6e": two blanks, then seven significant digits in exponent notation.
char* WriteVectorForm(char* to, double value);

/// printf's "%lld".
char* WriteInteger(char* to, std::int64_t value);

}  // namespace kestol
