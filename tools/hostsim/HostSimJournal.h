#pragma once
#include <cstdio>
#include <string>

// Every call the host receives, one line each, in order, written through
// to a file as it happens so that a crash loses nothing:
//   Role(args) -> 0xHHHHHHHH result
// Arguments in the caller's order, the result only on success. Strings in
// double quotes (HostSimText::Quote), booleans as the VARIANT_BOOL given,
// doubles with 17 significant digits, host objects as kind and number
// (Document#2), null for a null object or string, * for an out argument,
// whose value follows the result. QueryInterface for the host's own
// interfaces reads QueryInterface(PartDocument), for others the IID; a call
// that no role answers reads Invoke(Object#N, 0xDISPID, flags).
class HostSimJournal {
public:
  HostSimJournal() = default;
  HostSimJournal(const HostSimJournal&) = delete;
  HostSimJournal& operator=(const HostSimJournal&) = delete;
  ~HostSimJournal();

  // "-" for standard output.
  bool Open(const std::string& path);
  void Write(const std::string& line);
  // A muted journal only counts calls: nobody reads the lines, so they
  // aren't made and the host answers as fast as it can.
  void Mute() { muted = true; }
  bool IsMuted() const { return muted; }
  void Tick() { ++count; }
  long Count() const { return count; }
  const std::string& Last() const { return last; }

private:
  FILE* file = nullptr;
  bool muted = false;
  long count = 0;
  std::string last;
};
