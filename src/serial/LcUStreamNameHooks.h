#pragma once

class LcUName;
class LcUStreamReader;
class LcUStreamWriter;

// Names in object streams, by reference: the first time a name's id, its
// internal name and its user name, later its id alone; 0 is null. Ids come
// from the stream's object numbering. Names read are interned in the
// stream's name table when it has one.
class LcUStreamNameHooks {
public:
  static void Install();
  static void Remove();

  static bool Write(LcUStreamWriter& stream, const LcUName* name);
  // A counted reference for the caller.
  static LcUName* Read(LcUStreamReader& stream);
};
