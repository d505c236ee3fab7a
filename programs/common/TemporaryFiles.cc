#include "programs/common/TemporaryFiles.h"

#include <unistd.h>

#include <atomic>
#include <mutex>

namespace kestol {

/// A place of the list, which only grows: a handler of signals may walk along it at any time.
struct Entry {
  std::atomic<const char*> name;
  Entry* next;      ///< of the list
  Entry* nextFree;  ///< of those without a name
};

namespace {

std::atomic<Entry*> entries{nullptr};
Entry* freeEntries = nullptr;
std::mutex changing;

Entry* TakeEntry() {
  const std::lock_guard lock(changing);
  if (freeEntries != nullptr) {
    Entry* const entry = freeEntries;
    freeEntries = entry->nextFree;
    return entry;
  }
  Entry* const entry = new Entry{nullptr, entries, nullptr};
  entries = entry;
  return entry;
}

}  // namespace

TemporaryFile::TemporaryFile() : entry_(TakeEntry()) {}

void TemporaryFile::Is(const char* name) {
  entry_->name = name;
}

TemporaryFile::~TemporaryFile() {
  entry_->name = nullptr;
  const std::lock_guard lock(changing);
  entry_->nextFree = freeEntries;
  freeEntries = entry_;
}

void RemoveTemporaryFiles() {
  for (const Entry* entry = entries; entry != nullptr; entry = entry->next)
    if (const char* const name = entry->name) ::unlink(name);
}

SignalsWait::SignalsWait() {
  sigset_t ending;
  ::sigemptyset(&ending);
  for (const int number : kEndingSignals) ::sigaddset(&ending, number);
  ::pthread_sigmask(SIG_BLOCK, &ending, &before_);
}

SignalsWait::~SignalsWait() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace kestol
