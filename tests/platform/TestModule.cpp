// A shared object that the bundle tests place into a bundle as its executable.
extern "C" __attribute__((visibility("default"))) int XPTestModuleAnswer(void) {
  return 42;
}
