// A library with a version, for the system folder.
extern "C" __declspec(dllexport) int AtlasScale() {
  return 1;
}
