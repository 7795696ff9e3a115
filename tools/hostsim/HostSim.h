#pragma once
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "HostSimJournal.h"
#include "HostSimModel.h"
#include "HostSimObject.h"

// The simulated Gearloft: its model, the objects it has handed out, the
// journal of the calls it received and how often each role was called.
class HostSim {
public:
  HostSim(HostSimModel& model, HostSimJournal& journal);
  HostSim(const HostSim&) = delete;
  HostSim& operator=(const HostSim&) = delete;

  // The site an add-in's Activate gets.
  IDispatch* Site() const { return site; }
  // An object standing for a part of the model: made on first use and the
  // same object every time after.
  HostSimObject& Shared(HostSimKind kind, HostSimModel::Document* document = nullptr,
                        HostSimModel::Node* node = nullptr, int view = -1, bool inContext = false);
  // A new object of its own each time, such as a camera's copy or a point.
  HostSimObject& Make(HostSimKind kind);
  // Our object behind a pointer, or null for anything else.
  HostSimObject* Find(IDispatch* pointer) const;
  const std::vector<std::unique_ptr<HostSimObject>>& Objects() const { return objects; }
  // How a value looks in the journal.
  std::string Show(const VARIANT& value) const;

  void Count(const char* role) { ++calls[role]; }
  long CallCount(const std::string& role) const;
  // Every call a role answered, with its result. The add-in reads the main
  // window first thing for every message, which starts the next one.
  void Note(const char* role, HRESULT hr);
  // With verbose set, the message under way is summed up there in one line
  // (HostSimState::Message); the loop calls this once it has handled its work.
  void EndMessage();

  // What happened in the message under way.
  struct Message {
    bool open = false;
    bool cameraApplied = false;
    std::string firstFailure;
  };
  const Message& CurrentMessage() const { return message; }

  // A document of the model by a path in any case, opened if need be and
  // made active with its first view when visible; null when the model has
  // no such document.
  HostSimModel::Document* Open(const std::u16string& path, bool visible, const std::string& how);
  void Activate(HostSimModel::Document* document, int view);

  HostSimModel& model;
  HostSimJournal& journal;
  int32_t mainWindow = 0;
  FILE* verbose = nullptr;

private:
  std::vector<std::unique_ptr<HostSimObject>> objects;
  std::map<std::tuple<HostSimKind, const void*, const void*, int, bool>, HostSimObject*> shared;
  std::map<const IDispatch*, HostSimObject*> byPointer;
  int numbers[int(HostSimKind::eCount)] = {};
  std::map<std::string, long> calls;
  IDispatch* site = nullptr;
  Message message;
};
