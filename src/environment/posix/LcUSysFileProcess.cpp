#include <dlfcn.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "environment/LcUSysFile.h"
#include "environment/posix/LcUSysPath.h"

extern char** environ;

namespace {
// As a Windows program splits its command line: blanks separate arguments,
// double quotes hold blanks together, and \" is a quote itself.
std::vector<LcUStringA> SplitArguments(const char* text) {
  std::vector<LcUStringA> arguments;
  for (const char* p = text; p && *p;) {
    while (*p == ' ' || *p == '\t') ++p;
    if (!*p) break;
    LcUStringA argument("");
    bool quoted = false;
    for (; *p && (quoted || (*p != ' ' && *p != '\t')); ++p) {
      if (p[0] == '\\' && p[1] == '"')
        argument.Append(*++p);
      else if (*p == '"')
        quoted = !quoted;
      else
        argument.Append(*p);
    }
    arguments.push_back(argument);
  }
  return arguments;
}

void* Reap(void* child) {
  waitpid(pid_t(intptr_t(child)), nullptr, 0);
  return nullptr;
}

bool FromNative(const char* text, LcUString& out) {
  if (text && LcUString::UTF8ToUTF16(text, -1, out)) return true;
  out.Clear();
  return false;
}
}  // namespace

bool LcUSysFile::Execute(const char16_t* file, const char16_t* parameters, bool wait) {
  LcUStringA program, narrowParameters;
  if (!LcUSysPath::ToNative(file, program)) return false;
  if (parameters && !LcUString::UTF16ToUTF8(parameters, narrowParameters, true)) return false;
  std::vector<LcUStringA> arguments = SplitArguments(narrowParameters.Get());
  std::vector<char*> argv{program.GetBuffer()};
  for (LcUStringA& argument : arguments) argv.push_back(argument.GetBuffer());
  argv.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawnp(&child, program.Get(), nullptr, nullptr, argv.data(), environ) != 0) return false;
  if (wait) return waitpid(child, nullptr, 0) == child;
  // Someone has to collect the child's exit, or it stays a zombie.
  pthread_t reaper;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  if (pthread_create(&reaper, &attributes, Reap, reinterpret_cast<void*>(intptr_t(child))) != 0)
    waitpid(child, nullptr, WNOHANG);
  pthread_attr_destroy(&attributes);
  return true;
}

bool LcUSysFile::GetEnvironment(const char16_t* name, LcUString& out) {
  LcUStringA narrow;
  if (!name || !LcUString::UTF16ToUTF8(name, narrow, true)) {
    out.Clear();
    return false;
  }
  return FromNative(std::getenv(narrow.Get()), out);
}

bool LcUSysFile::GetCurrentDirectory(LcUString& out) {
  char path[4096];
  return FromNative(getcwd(path, sizeof path), out);
}

bool LcUSysFile::GetExecutablePath(LcUString& out) {
  char path[4096];
  ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
  if (n < 0) n = 0;
  path[n] = 0;
  return FromNative(n > 0 ? path : nullptr, out);
}

bool LcUSysFile::GetModulePath(const void* address, LcUString& out) {
  if (!address) return GetExecutablePath(out);
  Dl_info info;
  if (!dladdr(address, &info)) return FromNative(nullptr, out);
  // The program itself is named as it was started, perhaps relatively.
  if (!info.dli_fname || info.dli_fname[0] != '/') return GetExecutablePath(out);
  return FromNative(info.dli_fname, out);
}

bool LcUSysFile::GetSystemTempFolder(LcUString& out) {
  const char* folder = std::getenv("TMPDIR");
  return FromNative(folder && *folder ? folder : "/tmp", out);
}

uint32_t LcUSysFile::GetProcessId() {
  return uint32_t(getpid());
}
