#include "HostSimJournal.h"

HostSimJournal::~HostSimJournal() {
  if (file && file != stdout) std::fclose(file);
}

bool HostSimJournal::Open(const std::string& path) {
  if (file && file != stdout) std::fclose(file);
  file = path == "-" ? stdout : std::fopen(path.c_str(), "w");
  return file != nullptr;
}

void HostSimJournal::Write(const std::string& line) {
  ++count;
  last = line;
  if (!file) return;
  std::fputs(line.c_str(), file);
  std::fputc('\n', file);
  std::fflush(file);
}
