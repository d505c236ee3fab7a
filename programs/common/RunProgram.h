#pragma once

#include <stdexcept>
#include <string>

namespace kestol {

/// Exit statuses of the companions: done and nothing wrong; done and something is wrong with the
/// model; could not be done.
constexpr int kDone = 0, kFindings = 1, kFailed = 2;

/// Something that stops a companion and is no refusal of the solver: a file that cannot be written,
/// options that do not fit. The program ends with `status` and says what() on one line.
class ProgramError : public std::runtime_error {
public:
  explicit ProgramError(const std::string& text, int status = kFailed)
      : std::runtime_error(text), status_(status) {}
  int Status() const { return status_; }

private:
  int status_;
};

/// Everything has been said: the program ends with `status`.
struct ProgramEnd {
  int status;
};

/// What is said when there is no memory.
constexpr const char* kNoMemory = "Not space available on heap";

/// The rest of RunProgram, for what was thrown last.
int TellFailure(const char* program, const std::string& deck);

/// Runs `action`, all that the program does, and gives the exit status: that of the action, kFailed
/// after a refusal of the deck, an exhausted heap or a failure of the program's own. Refusals go to
/// standard error with the solver's words, the file and, where it is known, the line. `program` is
/// the name that stands before messages that are not about the deck. The action may be what reads
/// the name of the deck.
template <class Action>
int RunProgram(const char* program, const std::string& deck, Action action) {
  try {
    return action();
  } catch (...) {
    return TellFailure(program, deck);
  }
}

/// The solver's refusal on standard error, in the form of all messages. For programs that have more
/// to say about it than RunProgram.
void PrintRefusal(const std::string& deck, const class FatalError& refusal);

/// The same with a code of its own, for a refusal of the model and not of a line of the deck.
void PrintRefusal(const std::string& deck, const class FatalError& refusal, const char* code);

/// Whether the reader of decks refused: it gives its refusals the file and, where there is one, the
/// line. Their code is "syntax".
bool IsOfReader(const class FatalError& refusal);

/// What is said of a file that cannot be read, with the system's reason; empty when it can. Of a
/// regular file one character is read, nothing else is opened.
std::string WhyUnreadable(const std::string& path);

/// Refuses, as ProgramError in the words of WhyUnreadable, a deck that cannot be read.
void RequireReadable(const std::string& deck);

}  // namespace kestol
