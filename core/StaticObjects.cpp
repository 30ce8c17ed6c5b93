// Static objects live until ExitProcess: nothing relies on their destructors.

/// Asked to remember each of those destructors. The compiler sees that it does not, and leaves out the asking and the
/// destructors; for that it stands apart from the rest of the runtime, which is finished code before the link.
extern "C" int atexit(void (*)()) {
  return 0;
}
