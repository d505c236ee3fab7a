#include "programs/common/RunProgram.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

#include "main/ErrorChannel.h"
#include "programs/common/Messages.h"

namespace kestol {

namespace {

// Needs no heap: it speaks when there is none.
int TellNoMemory(const char* program) {
  std::fprintf(stderr, "%s: error: %s\n", program, kNoMemory);
  return kFailed;
}

int Tell(const char* program, const char* text, int status) {
  PrintMessage({"error", text, {}, program});
  return status;
}

int TellLast(const char* program, const std::string& deck) {
  try {
    throw;
  } catch (const ProgramEnd& end) {
    return end.status;
  } catch (const FatalError& refusal) {
    PrintRefusal(deck, refusal);
    return kFailed;
  } catch (const ProgramError& failure) {
    return Tell(program, failure.what(), failure.Status());
  } catch (const std::bad_alloc&) {
    return TellNoMemory(program);
  } catch (const std::length_error&) {
    return TellNoMemory(program);
  } catch (const std::exception& failure) {
    return Tell(program, failure.what(), kFailed);
  }
}

}  // namespace

void PrintRefusal(const std::string& deck, const FatalError& refusal, const char* code) {
  Message message{"error", PlainWords(refusal.what()), code};
  message.file = *refusal.File() != '\0' ? refusal.File() : deck.c_str();
  message.line = refusal.Line();
  PrintMessage(message);
}

void PrintRefusal(const std::string& deck, const FatalError& refusal) {
  PrintRefusal(deck, refusal, refusal.Line() > 0 ? "syntax" : "model");
}

// Nothing is opened: the writer of a pipe would take the end of that for the end of its reader.
std::string WhyUnreadable(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), R_OK) != 0)
    return std::strerror(errno);
  return S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "";
}

void RequireReadable(const std::string& deck) {
  const std::string reason = WhyUnreadable(deck);
  if (!reason.empty()) throw ProgramError("can't open file " + deck + ": " + reason);
}

int TellFailure(const char* program, const std::string& deck) {
  try {
    return TellLast(program, deck);
  } catch (const std::bad_alloc&) {  // there was none left to say it
    return TellNoMemory(program);
  }
}

}  // namespace kestol
