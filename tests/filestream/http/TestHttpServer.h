#pragma once
#include <cstdint>
#include <string>
#include <vector>

// nginx on 127.0.0.1 in a folder of its own, with a fault-injecting proxy
// before it, started and stopped by the test (testhttpd.py does the work).
// Files are served from www/ in that folder.
class TestHttpServer {
public:
  enum Route { eDIRECT, ePROXY, eHTTPS };
  struct Access {
    int64_t connection = 0;
    std::string method, target, range, agent;
    int status = 0;
    uint64_t bytes = 0;
  };
  struct ProxyCall {
    std::string method, target, range;
    int activeConnections = 0;
  };

  explicit TestHttpServer(bool https = false);
  ~TestHttpServer();
  TestHttpServer(const TestHttpServer&) = delete;
  TestHttpServer& operator=(const TestHttpServer&) = delete;

  // Empty when the server is up, else why not.
  const std::string& Failure() const { return failure; }
  std::u16string Url(const std::string& name, Route route = eDIRECT) const;
  // The file's bytes, served from now on.
  void Serve(const std::string& name, const std::vector<uint8_t>& bytes) const;
  // Rules of the proxy as a JSON array (see testhttpd.py); "[]" for none.
  void SetRules(const std::string& json) const;
  // nginx writes a line once its answer has gone, so a test that has its
  // answer waits here for the lines it expects.
  std::vector<Access> AccessLog(size_t expected = 0) const;
  std::vector<ProxyCall> ProxyLog() const;
  bool StopNginx();
  bool StartNginx();
  // The test authority's certificate, for clients that take a file.
  std::string AuthorityFile() const;
  // Bytes of a pattern that no two offsets of a block share.
  static std::vector<uint8_t> Pattern(size_t size, uint64_t seed = 1);

private:
  bool Command(const std::string& name);
  std::string Local(const std::string& relative) const;
  std::string root;  // the Linux path
  std::string failure;
  int ports[3] = {};
};
