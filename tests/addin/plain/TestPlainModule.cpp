// A module with one export and none of the server functions.
extern "C" int TwPlainModuleAnswer() {
  return 42;
}
