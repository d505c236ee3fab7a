#pragma once

#include <csignal>

namespace kestol {

/// A file that goes when the process is ended before the owner has renamed or removed it.
class TemporaryFile {
public:
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// The file is there. The name belongs to the owner and must outlive this object.
  void Is(const char* name);

private:
  struct Entry* entry_;
};

/// Removes all of them. May be called by a handler of signals.
void RemoveTemporaryFiles();

/// While one is there, signals that end the process wait: for what must not be left half done.
class SignalsWait {
public:
  SignalsWait();
  ~SignalsWait();
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;

private:
  sigset_t before_;
};

/// Signals that ask a program to end.
constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU};

}  // namespace kestol
