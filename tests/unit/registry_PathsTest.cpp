#include "registry/RegistryPath.h"
#include "registry/TreeWalker.h"
#include "tests/support/Testing.h"

namespace {

/// Writes down where it is sent; has no node called "no".
struct Recorder final : TreeWalker<Recorder> {
  bool Descend(const char *name) {
    steps += std::string(name) + ">";
    return std::string(name) != "no";
  }
  bool GoToRoot() {
    steps += "root>";
    return has_root;
  }

  std::string steps;
  bool has_root = true;
};

} // namespace

TEST_CASE("a path is walked step by step, up to its last separator") {
  struct Row {
    const char *path;
    bool done, done_without_root;
    const char *steps;
  };
  const Row rows[] = {
      {nullptr, false, false, ""},       {"", true, false, "root>"},       {"\\", true, false, "root>"},
      {"a\\b\\", true, true, "a>b>"},    {"a\\b", true, true, "a>"},       {"a", true, true, ""},
      {"a\\\\b\\", true, true, "a>>b>"}, {"no\\b\\", false, false, "no>"}, {"\\a\\value", true, false, "root>a>"},
  };
  for (const Row &row : rows) {
    CAPTURE(row.steps);
    Recorder walker, rootless;
    CHECK(walker.ChangePath(row.path) == row.done);
    CHECK(walker.steps == row.steps);
    rootless.has_root = false;
    CHECK(rootless.ChangePath(row.path) == row.done_without_root);
  }
}

TEST_CASE("a registry path falls into key and value name") {
  struct Row {
    const char *path, *key, *name;
  };
  for (const Row &row : {Row{"a\\b\\c", "a\\b", "c"}, Row{"a\\", "a", ""}, Row{"c:value", "c:", "value"},
                         Row{"c:a\\b", "c:a", "b"}, Row{"value", "", "as before"}, Row{nullptr, "", "as before"}}) {
    CAPTURE(row.path);
    String key, name("as before");
    const bool split = SplitRegistryPath(row.path, key, name);
    CHECK(split == !(name == "as before"));
    CHECK(key == row.key);
    CHECK(name == row.name);
  }
  CHECK(SoftwarePath("x") == "Software\\x");
}
