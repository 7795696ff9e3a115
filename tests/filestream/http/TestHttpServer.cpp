#include "TestHttpServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

#include "HttpTestProcess.h"

namespace {
// Starting nginx and making certificates take well under this even on a
// loaded machine; past it the server is broken, not slow.
const auto kLimit = std::chrono::seconds(60);

bool Exists(const std::string& path) {
  std::ifstream file(path);
  return file.good();
}

template <typename Done>
bool PollUntil(Done done) {
  auto limit = std::chrono::steady_clock::now() + kLimit;
  while (!done()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// The next quoted field from at, unquoted.
std::string Quoted(const std::string& line, size_t& at) {
  size_t open = line.find('"', at);
  size_t close = open == std::string::npos ? open : line.find('"', open + 1);
  if (close == std::string::npos) {
    at = line.size();
    return std::string();
  }
  at = close + 1;
  return line.substr(open + 1, close - open - 1);
}
}  // namespace

TestHttpServer::TestHttpServer(bool https) {
  static std::atomic<int> serial{0};
  root = "/tmp/twhttp-" + std::to_string(HttpTestProcess::ProcessId()) + "-" + std::to_string(serial++) + "-" +
         std::to_string(std::chrono::steady_clock::now().time_since_epoch().count() % 1000000);
  std::vector<std::string> arguments = {"/usr/bin/python3", TW_TEST_HTTPD, "--dir", root};
  if (https) arguments.push_back("--https");
  if (!HttpTestProcess::Start(arguments)) {
    failure = "python3 could not be started";
    return;
  }
  if (!PollUntil([&] { return Exists(Local("ports")) || Exists(Local("failed")); }) || Exists(Local("failed"))) {
    failure = "the test server did not start: " + ReadAll(Local("logs/error.log")) + ReadAll(Local("logs/httpd.log"));
    return;
  }
  std::istringstream(ReadAll(Local("ports"))) >> ports[0] >> ports[1] >> ports[2];
}

TestHttpServer::~TestHttpServer() {
  if (root.empty() || !Exists(Local("ports"))) return;
  Command("stop");
  // The folder goes with a shell-free walk: nothing here is worth keeping.
  std::vector<std::string> arguments = {"/bin/rm", "-rf", root};
  HttpTestProcess::Start(arguments);
}

std::string TestHttpServer::Local(const std::string& relative) const {
  return HttpTestProcess::LocalPath(root + "/" + relative);
}

std::u16string TestHttpServer::Url(const std::string& name, Route route) const {
  std::string text = std::string(route == eHTTPS ? "https" : "http") + "://127.0.0.1:" +
                     std::to_string(ports[route == eDIRECT ? 0 : route == ePROXY ? 1 : 2]) + "/" + name;
  return std::u16string(text.begin(), text.end());
}

void TestHttpServer::Serve(const std::string& name, const std::vector<uint8_t>& bytes) const {
  std::string temporary = Local("www/.incoming");
  {
    std::ofstream file(temporary, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  }
  std::remove(Local("www/" + name).c_str());
  std::rename(temporary.c_str(), Local("www/" + name).c_str());
}

void TestHttpServer::SetRules(const std::string& json) const {
  {
    std::ofstream file(Local("rules.tmp"), std::ios::binary);
    file << json;
  }
  std::remove(Local("rules.json").c_str());
  std::rename(Local("rules.tmp").c_str(), Local("rules.json").c_str());
}

std::vector<TestHttpServer::Access> TestHttpServer::AccessLog(size_t expected) const {
  std::string text;
  PollUntil([&] {
    text = ReadAll(Local("logs/access.log"));
    return size_t(std::count(text.begin(), text.end(), '\n')) >= expected;
  });
  std::vector<Access> entries;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    Access entry;
    std::istringstream head(line);
    int64_t requests = 0;
    head >> entry.connection >> requests;
    size_t at = 0;
    std::string request = Quoted(line, at);
    entry.range = Quoted(line, at);
    entry.agent = Quoted(line, at);
    if (entry.range == "-") entry.range.clear();
    std::istringstream tail(line.substr(at));
    tail >> entry.status >> entry.bytes;
    std::istringstream parts(request);
    parts >> entry.method >> entry.target;
    entries.push_back(entry);
  }
  return entries;
}

std::vector<TestHttpServer::ProxyCall> TestHttpServer::ProxyLog() const {
  std::vector<ProxyCall> calls;
  std::istringstream lines(ReadAll(Local("logs/proxy.log")));
  for (std::string line; std::getline(lines, line);) {
    ProxyCall call;
    call.method = line.substr(0, line.find(' '));
    size_t at = 0;
    call.target = Quoted(line, at);
    call.range = Quoted(line, at);
    std::istringstream(line.substr(at)) >> call.activeConnections;
    calls.push_back(call);
  }
  return calls;
}

bool TestHttpServer::Command(const std::string& name) {
  std::remove(Local(name + ".done").c_str());
  { std::ofstream(Local(name)) << "\n"; }
  return PollUntil([&] { return Exists(Local(name + ".done")); });
}

bool TestHttpServer::StopNginx() { return Command("nginx-stop"); }

bool TestHttpServer::StartNginx() { return Command("nginx-start"); }

std::string TestHttpServer::AuthorityFile() const { return Local("conf/ca.pem"); }

std::vector<uint8_t> TestHttpServer::Pattern(size_t size, uint64_t seed) {
  std::vector<uint8_t> data(size);
  uint64_t state = seed * 0x9E3779B97F4A7C15ull;
  for (size_t i = 0; i < size; i += 8) {
    state += 0x9E3779B97F4A7C15ull;
    uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    for (size_t k = 0; k < 8 && i + k < size; ++k) data[i + k] = uint8_t(z >> (8 * k));
  }
  return data;
}
