#pragma once
#include <string>
#include <vector>

#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamUnknownData.h"
#include "serial/LcUStreamWriter.h"

// A small class family for the object layer's tests: a root node with two
// references, a derived class and an extension of it that old readers lack.
namespace ObjectTesting {
enum { eNODE = 0, eDERIVED = 1, eEXTENDED = 2 };

struct Node {
  virtual ~Node() { delete unknown; }
  virtual int32_t Entry() const { return eNODE; }
  int32_t value = 0;
  Node* next = nullptr;
  Node* other = nullptr;
  int fixUps = 0;
  LcUStreamUnknownData* unknown = nullptr;
};

struct Derived : Node {
  int32_t Entry() const override { return eDERIVED; }
  double weight = 0;
  std::string label;
};

struct Extended : Derived {
  int32_t Entry() const override { return eEXTENDED; }
  std::vector<int32_t> extra;
  Node* child = nullptr;
};

// Fix-ups in the order they ran, by value.
inline std::vector<int32_t>& FixUpOrder() {
  static std::vector<int32_t> order;
  return order;
}

// Which reads and creates fail, for the error tests.
inline int& FailCreate() {
  static int fail = 0;
  return fail;
}
inline int& FailRead() {
  static int fail = 0;
  return fail;
}

inline uint32_t WriteRef(LcUStreamWriter* w, Node* node) {
  return w->WriteObject(node, node ? (node->unknown ? eDERIVED : node->Entry()) : 0, node ? node->unknown : nullptr);
}

inline Node* ReadRef(LcUStreamReader* r) {
  int32_t entry;
  LcUStreamUnknownData* unknown = nullptr;
  Node* node = static_cast<Node*>(r->ReadAnyObject(&entry, &unknown));
  if (node && unknown) node->unknown = unknown;
  else delete unknown;
  return node;
}

inline int32_t WriteNode(LcUStreamWriter* w, int32_t entry, void* object) {
  Node* n = static_cast<Node*>(object);
  w->WriteInt32(n->value);
  WriteRef(w, n->next);
  WriteRef(w, n->other);
  if (entry == eNODE) return 1;
  Derived* d = static_cast<Derived*>(n);
  w->WriteDouble(d->weight);
  w->WriteString(d->label.c_str());
  if (entry == eDERIVED) return 1;
  Extended* e = static_cast<Extended*>(n);
  w->WriteInt32(int32_t(e->extra.size()));
  w->WriteInt32Array(e->extra.data(), uint32_t(e->extra.size()));
  WriteRef(w, e->child);
  return 1;
}

// Everything the reader made; the test frees it.
inline std::vector<Node*>& Created() {
  static std::vector<Node*> created;
  return created;
}

inline void FreeCreated() {
  for (Node* n : Created()) delete n;
  Created().clear();
}

inline void* CreateNode(LcUStreamReader*, int32_t entry) {
  if (FailCreate()) return nullptr;
  Node* n = entry == eNODE ? new Node : entry == eDERIVED ? static_cast<Node*>(new Derived) : new Extended;
  Created().push_back(n);
  return n;
}

inline int32_t ReadNode(LcUStreamReader* r, int32_t entry, void* object) {
  if (FailRead()) return 0;
  Node* n = static_cast<Node*>(object);
  n->value = r->ReadInt32();
  n->next = ReadRef(r);
  n->other = ReadRef(r);
  if (entry == eNODE) return 1;
  Derived* d = static_cast<Derived*>(n);
  d->weight = r->ReadDouble();
  LcUStringA label;
  r->ReadString(label);
  d->label = label.Get() ? label.Get() : "";
  if (entry == eDERIVED) return 1;
  Extended* e = static_cast<Extended*>(n);
  e->extra.resize(size_t(r->ReadInt32Checked(1000)));
  r->ReadInt32Array(e->extra.data(), uint32_t(e->extra.size()));
  e->child = ReadRef(r);
  return 1;
}

inline void FixUpNode(LcUStreamReader*, int32_t, void* object) {
  Node* n = static_cast<Node*>(object);
  ++n->fixUps;
  FixUpOrder().push_back(n->value);
}

// "Shapes" with two classes, or three with the extension.
inline LcUStreamFormat* MakeFormat(bool extended, bool definitions = true) {
  LcUStreamFormat* f = new LcUStreamFormat("Shapes", 7);
  f->writeDefinitions = definitions ? 1 : 0;
  f->SetEntry(eNODE, WriteNode, CreateNode, ReadNode, "Node", -1);
  f->SetEntry(eDERIVED, WriteNode, CreateNode, ReadNode, "Derived", eNODE);
  if (extended) f->SetEntry(eEXTENDED, WriteNode, CreateNode, ReadNode, "Extended", eDERIVED);
  for (size_t i = 0; i < f->entries.size(); ++i) f->SetFixUp(int32_t(i), FixUpNode);
  return f;
}
}  // namespace ObjectTesting
