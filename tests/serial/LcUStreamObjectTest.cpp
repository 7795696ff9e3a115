#include <memory>
#include <string>

#include "ObjectTesting.h"
#include "StreamTesting.h"
#include "serial/LcUStreamCopy.h"

using namespace ObjectTesting;
using namespace StreamTesting;

namespace {
class StreamObjects : public StreamTest {
protected:
  void SetUp() override {
    FixUpOrder().clear();
    FailCreate() = 0;
    FailRead() = 0;
  }
  void TearDown() override { FreeCreated(); }
};

// a -> b -> c -> a, a.other = c shared, b.other null.
struct Graph {
  Node a, c;
  Derived b;
  Graph() {
    a.value = 1;
    b.value = 2;
    c.value = 3;
    b.weight = 2.5;
    b.label = "middle";
    a.next = &b;
    b.next = &c;
    c.next = &a;
    a.other = &c;
  }
};

// The roots in order, then the first again and a null.
std::string WriteRoots(LcUStreamFormat* format, const Choices& c, std::initializer_list<Node*> roots,
                       bool definitions = true) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  Configure(writer, c);
  writer.format = format;
  EXPECT_TRUE(writer.WriteBegin(true, definitions));
  for (Node* root : roots) WriteRef(&writer, root);
  WriteRef(&writer, *roots.begin());
  WriteRef(&writer, nullptr);
  EXPECT_TRUE(writer.WriteEnd()) << writer.GetError();
  return Bytes(buffer);
}

std::string WriteGraph(LcUStreamFormat* format, const Choices& c, Node* root, bool definitions = true) {
  return WriteRoots(format, c, {root}, definitions);
}

TEST_F(StreamObjects, SharedObjectsNullsAndACycleRoundTrip) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(false));
  for (Choices c : {Choices{0, 1, 0}, Choices{1, 1, 0}, Choices{0, 0, 1}, Choices{1, 0, 1}}) {
    FixUpOrder().clear();
    Graph g;
    std::string bytes = WriteGraph(format.get(), c, &g.a);
    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    reader.OfferFormat(format.get());
    ASSERT_TRUE(BeginReading(buffer, reader, bytes, true, true));
    Node* a = static_cast<Node*>(reader.ReadObject(eNODE));
    Node* again = static_cast<Node*>(reader.ReadObject(eNODE));
    Node* none = static_cast<Node*>(reader.ReadObject(eNODE));
    ASSERT_TRUE(reader.ReadEnd(true)) << reader.GetError();
    ASSERT_NE(nullptr, a);
    EXPECT_EQ(a, again);
    EXPECT_EQ(nullptr, none);
    Derived* b = dynamic_cast<Derived*>(a->next);
    ASSERT_NE(nullptr, b);
    EXPECT_EQ(2.5, b->weight);
    EXPECT_EQ("middle", b->label);
    EXPECT_EQ(nullptr, b->other);
    Node* c3 = b->next;
    EXPECT_EQ(3, c3->value);
    EXPECT_EQ(a, c3->next);
    EXPECT_EQ(c3, a->other);
    // Each object fixed up once, in id order: a 100, b 101, c 102.
    EXPECT_EQ((std::vector<int32_t>{1, 2, 3}), FixUpOrder());
    EXPECT_EQ(1, a->fixUps);
  }
}

TEST_F(StreamObjects, AsciiFormsOfReferences) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(false, false));
  Node a;
  a.value = 5;
  a.next = &a;
  std::string text = WriteGraph(format.get(), {1, 1, 0}, &a);
  EXPECT_EQ("#LcUStream-V1.1 ascii double release utf8 Shapes\n"
            "  DEF 100 Node\n  {\n                5\n    USE 100\n    NULL_OBJECT\n  }\n"
            "  USE 100\n  NULL_OBJECT\n",
            text);
  std::string binary = WriteGraph(format.get(), {0, 1, 0}, &a).substr(56);
  EXPECT_EQ(std::string("\x64\0\0\0\0\0\0\0\x05\0\0\0\x01\0\0\0\x64\0\0\0\0\0\0\0"
                        "\x01\0\0\0\x64\0\0\0\0\0\0\0\0\0\0\0",
                        40),
            binary);
}

// The promise to old readers: a class they lack reads as its nearest known
// base, and what they could not read goes out again unchanged.
TEST_F(StreamObjects, UnknownClassesReadAsTheirBaseAndKeepTheirTail) {
  std::unique_ptr<LcUStreamFormat> full(MakeFormat(true));
  std::unique_ptr<LcUStreamFormat> old(MakeFormat(false));
  for (Choices c : {Choices{0, 1, 0}, Choices{1, 1, 0}}) {
    Extended e;
    Node child, after;
    e.value = 10;
    e.weight = -1.5;
    e.label = "ext";
    e.extra = {4, 5, 6};
    e.child = &child;
    child.value = 11;
    child.next = &e;
    after.value = 12;
    after.next = &e;
    std::string original = WriteRoots(full.get(), c, {&e, &after});

    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    reader.OfferFormat(old.get());
    ASSERT_TRUE(BeginReading(buffer, reader, original, true, true));
    int32_t entry;
    LcUStreamUnknownData* unknown = nullptr;
    Node* read = static_cast<Node*>(reader.ReadAnyObject(&entry, &unknown));
    ASSERT_NE(nullptr, read) << reader.GetError();
    read->unknown = unknown;
    EXPECT_EQ(eDERIVED, entry);
    ASSERT_NE(nullptr, unknown);
    EXPECT_EQ(2, unknown->entry);
    Derived* d = dynamic_cast<Derived*>(read);
    ASSERT_NE(nullptr, d);
    EXPECT_EQ(-1.5, d->weight);
    EXPECT_EQ("ext", d->label);
    // The child inside the tail took id 101, so `after` is 102 as written.
    Node* readAfter = static_cast<Node*>(reader.ReadObject(eNODE));
    ASSERT_NE(nullptr, readAfter) << reader.GetError();
    EXPECT_EQ(12, readAfter->value);
    EXPECT_EQ(read, readAfter->next);
    EXPECT_EQ(read, reader.ReadObject(eDERIVED));
    EXPECT_EQ(nullptr, reader.ReadObject(eNODE));
    std::unique_ptr<LcUStreamFormat> working(reader.TakeWorkingFormat());
    EXPECT_TRUE(reader.ReadEnd(true)) << reader.GetError();
    EXPECT_EQ(2u, old->entries.size());
    ASSERT_EQ(3u, working->entries.size());
    EXPECT_STREQ("Extended", working->entries[2].name.Get());
    EXPECT_EQ(1, working->entries[2].substitute);

    // Written again with the extended table, the stream is the original.
    std::string rewritten = WriteRoots(working.get(), c, {read, readAfter});
    EXPECT_EQ(original, rewritten);
    LcUStreamBuffer again;
    LcUStreamReader full_reader(&again);
    full_reader.OfferFormat(full.get());
    ASSERT_TRUE(BeginReading(again, full_reader, rewritten, true, true));
    Extended* back = dynamic_cast<Extended*>(static_cast<Node*>(full_reader.ReadObject(eEXTENDED)));
    ASSERT_NE(nullptr, back) << full_reader.GetError();
    EXPECT_EQ((std::vector<int32_t>{4, 5, 6}), back->extra);
    ASSERT_NE(nullptr, back->child);
    EXPECT_EQ(11, back->child->value);
    EXPECT_EQ(back, back->child->next);
    EXPECT_EQ(back, static_cast<Node*>(full_reader.ReadObject(eNODE))->next);
    EXPECT_EQ(back, full_reader.ReadObject(eEXTENDED));
    EXPECT_EQ(nullptr, full_reader.ReadObject(eNODE));
    EXPECT_TRUE(full_reader.ReadEnd(true));
  }
}

// A caller that does not ask for the tail still gets the base, and the
// stream reads on past what it could not interpret.
TEST_F(StreamObjects, AnUnknownClassReadsWithoutItsTailWhenNotAsked) {
  std::unique_ptr<LcUStreamFormat> full(MakeFormat(true));
  std::unique_ptr<LcUStreamFormat> old(MakeFormat(false));
  Extended e;
  Node child, after;
  e.extra = {1, 2};
  e.child = &child;
  after.value = 5;
  std::string bytes = WriteRoots(full.get(), {0, 1, 0}, {&e, &after});
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  reader.OfferFormat(old.get());
  ASSERT_TRUE(BeginReading(buffer, reader, bytes, true, true));
  EXPECT_NE(nullptr, dynamic_cast<Derived*>(static_cast<Node*>(reader.ReadObject(eDERIVED))));
  Node* second = static_cast<Node*>(reader.ReadObject(eNODE));
  ASSERT_NE(nullptr, second);
  EXPECT_EQ(5, second->value);
  EXPECT_EQ(0, reader.GetError());
  reader.ReadEnd(false);
}

// A hand-made stream of the "Shapes" format: its header, then the words.
template <typename F>
std::string Handmade(F write, bool debug = false) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  writer.debug = debug;
  writer.formatName.Assign("Shapes");
  EXPECT_TRUE(writer.WriteBegin(true));
  write(writer);
  EXPECT_TRUE(writer.WriteEnd());
  return Bytes(buffer);
}

int32_t ReadWith(LcUStreamFormat* format, const std::string& bytes, std::string* logged = nullptr, bool strict = true,
                 int32_t expected = eNODE) {
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  reader.OfferFormat(format);
  std::string log = Logged([&] {
    if (BeginReading(buffer, reader, bytes, true, strict))
      for (int i = 0; i < 4 && !reader.GetError(); ++i) reader.ReadObject(expected);
    reader.ReadEnd(false);
  });
  if (logged) *logged = log;
  return reader.GetError();
}

TEST_F(StreamObjects, DefinitionsAreValidated) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(true));
  struct Row {
    const char* what;
    int32_t index;
    const char* name;
    int32_t base;
    int32_t code;
  } rows[] = {
      {"base equals index", 5, "Five", 5, 17},     {"index above 0x4000", 0x4001, "Big", 0, 17},
      {"empty name", 3, "", 0, 17},                {"negative base", 3, "Three", -1, 17},
      {"unknown base", 4, "Four", 3, 19},          {"old entry, other base", 2, "Extended", 0, 19},
      {"index defined twice", 1, "Derived", 0, 0},
  };
  for (const Row& row : rows) {
    std::string bytes = Handmade([&](LcUStreamWriter& w) {
      w.WriteInt32(row.index);
      w.WriteString(row.name);
      w.WriteInt32(row.base);
      if (row.code == 0) {  // the same index again
        w.WriteInt32(row.index);
        w.WriteString(row.name);
        w.WriteInt32(row.base);
      }
      w.WriteInt32(-1);
    });
    EXPECT_EQ(row.code == 0 ? 19 : row.code, ReadWith(format.get(), bytes)) << row.what;
  }
  // Without definitions asked for, the block is only its end mark.
  Node n;
  std::string plain = WriteGraph(format.get(), {0, 1, 0}, &n, false);
  EXPECT_EQ(std::string("\xff\xff\xff\xff", 4), plain.substr(56, 4));
  std::string with = WriteGraph(format.get(), {0, 1, 0}, &n, true);
  EXPECT_EQ(std::string("\x01\0\0\0\x07\0\0\0", 8), with.substr(56, 8));
}

TEST_F(StreamObjects, ReadErrorsOnHandmadeStreams) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(false, false));
  auto def = [](uint32_t id, int32_t entry) {
    return [=](LcUStreamWriter& w) {
      w.WriteNat32(id);
      w.WriteInt32(entry);
      w.WriteInt32(1);
      w.WriteNat32(0);
      w.WriteNat32(0);
    };
  };
  struct Row {
    const char* what;
    std::string bytes;
    int32_t code;
    const char* message;
    int failCreate;
    int failRead;
    int32_t expected = eNODE;
  } rows[] = {
      {"an id that skips one", Handmade(def(101, 0)), 16, "Read \"101\", expected \"100\"", 0, 0},
      {"a reference out of range", Handmade([](LcUStreamWriter& w) { w.WriteNat32(1); w.WriteNat32(100); }), 16,
       "Read \"Bad reference id\", expected \"Object!\"", 0, 0},
      {"a bad entry", Handmade(def(100, 9)), 16, "Read \"9\", expected \"Entry!\"", 0, 0},
      {"the first entry past the table", Handmade(def(100, 2)), 16, "Read \"2\", expected \"Entry!\"", 0, 0},
      {"a create that fails", Handmade(def(100, 0)), 21, nullptr, 1, 0},
      {"a read that fails", Handmade(def(100, 0)), 22, nullptr, 0, 1},
      {"the wrong entry", Handmade(def(100, 0)), 24, "Object has entry 0, expected 1", 0, 0, eDERIVED},
      {"an ascii word that is no reference", "#LcUStream-V1.1 ascii double release utf8 Shapes\n  NOPE\n", 16,
       "expected \"Object!\"", 0, 0},
      {"a negative ascii reference", "#LcUStream-V1.1 ascii double release utf8 Shapes\n  USE -5\n", 16,
       "Read \"Bad reference id\", expected \"Object!\"", 0, 0},
      {"an ascii reference beyond 32 bits", "#LcUStream-V1.1 ascii double release utf8 Shapes\n  USE 4294967396\n",
       16, "Read \"Bad reference id\", expected \"Object!\"", 0, 0},
      {"objects nested without end", Handmade([](LcUStreamWriter& w) {
         for (uint32_t id = 100; id < 100 + 3000; ++id) {
           w.WriteNat32(id);
           w.WriteInt32(0);
           w.WriteInt32(1);
         }
       }),
       16, "Read \"Nested too deep\", expected \"Object!\"", 0, 0},
  };
  for (const Row& row : rows) {
    FailCreate() = row.failCreate;
    FailRead() = row.failRead;
    std::string logged;
    EXPECT_EQ(row.code, ReadWith(format.get(), row.bytes, &logged, true, row.expected)) << row.what;
    if (row.message) {
      EXPECT_NE(std::string::npos, logged.find(row.message)) << row.what << ": " << logged;
    }
  }
  FailCreate() = FailRead() = 0;
  // Without a format an object cannot be read or written.
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, Handmade(def(100, 0)), true, false));
  EXPECT_EQ(nullptr, reader.ReadObject(eNODE));
  EXPECT_EQ(1, reader.GetError());
  LcUStreamWriter writer(&buffer);
  writer.WriteBegin(false);
  Node n;
  EXPECT_EQ(0u, writer.WriteObject(&n, eNODE));
  EXPECT_EQ(1, writer.GetError());
}

TEST_F(StreamObjects, KnownIds) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(false, false));
  Node known, a;
  a.next = &known;
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  writer.format = format.get();
  ASSERT_TRUE(writer.WriteBegin(true));
  EXPECT_EQ(100u, writer.WriteKnownId(&known, eNODE));
  EXPECT_EQ(100u, writer.WriteKnownId(&known, eNODE));
  EXPECT_EQ(101u, WriteRef(&writer, &a));
  ASSERT_TRUE(writer.WriteEnd());
  LcUStreamBuffer scratch;
  LcUStreamWriter failing(&scratch);
  failing.format = format.get();
  failing.WriteBegin(false);
  EXPECT_EQ(0u, failing.WriteKnownId(&a, 7));
  EXPECT_EQ(2, failing.GetError());

  LcUStreamReader reader(&buffer);
  reader.OfferFormat(format.get());
  ASSERT_TRUE(reader.ReadBegin(true, true));
  Node mine;
  EXPECT_TRUE(reader.ReadKnownId(100, &mine, eNODE));
  Node* a2 = static_cast<Node*>(reader.ReadObject(eNODE));
  ASSERT_NE(nullptr, a2);
  EXPECT_EQ(&mine, a2->next);
  EXPECT_FALSE(reader.ReadKnownId(100, &mine, eNODE));
  EXPECT_EQ(16, reader.GetError());
}

TEST_F(StreamObjects, CopyRenumbersIntoAnotherEncoding) {
  std::unique_ptr<LcUStreamFormat> format(MakeFormat(false, false));
  Graph g;
  std::string binary = WriteGraph(format.get(), {0, 1, 1}, &g.a);
  LcUStreamBuffer source;
  LcUStreamReader reader(&source);
  reader.OfferFormat(format.get());
  ASSERT_TRUE(BeginReading(source, reader, binary, true, true));
  LcUStreamBuffer target;
  LcUStreamWriter writer(&target);
  writer.ascii = 1;
  writer.debug = 1;
  writer.format = format.get();
  ASSERT_TRUE(writer.WriteBegin(true));
  LcUStreamCopy::Copy(reader, writer);
  EXPECT_EQ(0, reader.GetError());
  ASSERT_TRUE(writer.WriteEnd());
  std::string text = Bytes(target);
  EXPECT_EQ(text, WriteGraph(format.get(), {1, 1, 1}, &g.a));
  EXPECT_NE(std::string::npos, text.find("DEF 101 Derived"));

  // Ids out of order, and tokens the table does not have.
  struct Row {
    std::string bytes;
    int32_t code;
  } rows[] = {
      {Handmade([](LcUStreamWriter& w) { w.WriteObjectDef(105, 0, "Node"); }, true), 25},
      {Handmade([](LcUStreamWriter& w) {
         w.debug = 0;
         w.WriteInt32(77);
         w.debug = 1;
       }, true),
       16},
  };
  for (const Row& row : rows) {
    LcUStreamBuffer in, out;
    LcUStreamReader r(&in);
    r.OfferFormat(format.get());
    ASSERT_TRUE(BeginReading(in, r, row.bytes, true, true));
    LcUStreamWriter w(&out);
    w.debug = 1;
    w.format = format.get();
    w.WriteBegin(true);
    LcUStreamCopy::Copy(r, w);
    EXPECT_EQ(row.code, r.GetError());
    w.WriteEnd();
  }
}
}  // namespace
