#include "programs/common/RunProgram.h"

#include <fcntl.h>
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
  PrintRefusal(deck, refusal, IsOfReader(refusal) ? "syntax" : "model");
}

bool IsOfReader(const FatalError& refusal) {
  return *refusal.File() != '\0';
}

// A pipe is not opened: its writer would take the end of that for the end of its reader. Some files
// open and yet cannot be read, which the reader of decks takes for their end.
std::string WhyUnreadable(const std::string& path) {
  const auto told = [&](const char* what) { return what + path + ": " + std::strerror(errno); };
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), R_OK) != 0)
    return told("can't open file ");
  if (S_ISDIR(status.st_mode)) errno = EISDIR;
  if (S_ISDIR(status.st_mode)) return told("can't open file ");
  if (!S_ISREG(status.st_mode)) return {};
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return told("can't open file ");
  char first = 0;
  const bool isRead = ::read(file, &first, 1) >= 0;
  std::string reason = isRead ? std::string() : told("failed reading ");
  ::close(file);
  return reason;
}

void RequireReadable(const std::string& deck) {
  const std::string reason = WhyUnreadable(deck);
  if (!reason.empty()) throw ProgramError(reason);
}

int TellFailure(const char* program, const std::string& deck) {
  try {
    return TellLast(program, deck);
  } catch (const std::bad_alloc&) {  // there was none left to say it
    return TellNoMemory(program);
  }
}

}  // namespace kestol
