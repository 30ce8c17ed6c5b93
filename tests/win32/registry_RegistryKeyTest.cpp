// The registry on the real calls.
#include "core/Windows.h"
#include "registry/RegistryKey.h"
#include "tests/support/Testing.h"

namespace {

constexpr char kTestKey[] = "Software\\KorbTest";

struct Fixture {
  Fixture() { REQUIRE(key.Open(user, kTestKey) != KEY_NOT_OPENED); }
  ~Fixture() {
    key.CloseAll();
    RegistryKey().DeleteKey(user, kTestKey);
  }

  void Store(const char *name, DWORD type, const std::string &bytes) {
    HKEY handle;
    REQUIRE(RegOpenKeyExA(HKEY_CURRENT_USER, kTestKey, 0, KEY_ALL_ACCESS, &handle) == 0);
    RegSetValueExA(handle, name, 0, type, reinterpret_cast<const BYTE *>(bytes.data()),
                   static_cast<DWORD>(bytes.size()));
    RegCloseKey(handle);
  }
  /// Type and bytes as they are stored.
  std::string Stored(const char *name) {
    char bytes[256];
    DWORD type, size = sizeof bytes;
    HKEY handle;
    REQUIRE(RegOpenKeyExA(HKEY_CURRENT_USER, kTestKey, 0, KEY_ALL_ACCESS, &handle) == 0);
    const LONG error = RegQueryValueExA(handle, name, nullptr, &type, reinterpret_cast<BYTE *>(bytes), &size);
    RegCloseKey(handle);
    return error == 0 ? std::to_string(type) + ":" + std::string(bytes, size) : "none";
  }
  std::string Text(const char *name) {
    String text;
    key.ReadString(text, name, "default");
    return std::string(text.c_str(), static_cast<size_t>(text.length()));
  }

  const RegistryHandle user = HandleOf(RegistryRoot::CurrentUser);
  RegistryKey key;
};

} // namespace

TEST_CASE_FIXTURE(Fixture, "keys are opened on a stack, and a failed open leaves the key") {
  CHECK(key.OpenChild("child", RK_OPEN_ONLY) == KEY_NOT_OPENED);
  CHECK(key.OpenChild("child") == KEY_CREATED);
  CHECK(key.WriteNumber("depth", 2));
  key.Close();
  CHECK_FALSE(key.ValueExists("depth"));
  CHECK(key.SubKeyCount() == 1);
  CHECK(key.OpenChild("child") == KEY_OPENED);
  CHECK(key.OpenChild("child", RK_OPEN_ONLY) == KEY_NOT_OPENED);
  CHECK(key.ReadNumber("depth", 0) == 2);
}

TEST_CASE_FIXTURE(Fixture, "below no key there is none") {
  key.Close();
  key.Close();
  CHECK(key.SubKeyCount() == -1);
  CHECK(key.OpenChild("child") == KEY_NOT_OPENED);
}

TEST_CASE_FIXTURE(Fixture, "values of every kind are read as what is asked for") {
  const std::string long_text(100, 'x');
  const std::string terminator(1, '\0');
  struct Row {
    const char *name;
    DWORD type;
    std::string bytes, text;
    int32_t number;
    bool boolean;
  };
  const Row rows[] = {
      {"text", REG_SZ, "12,5x" + terminator, "12,5x", 125, true},
      {"no", REG_SZ, "NO" + terminator, "NO", 0, false},
      {"long", REG_SZ, long_text + terminator, long_text, 0, true},
      {"expand", REG_EXPAND_SZ, "7" + terminator, "7" + terminator, 7, true},
      {"bytes", REG_BINARY, "abc", "abc", 0, true},
      {"longbytes", REG_BINARY, long_text, long_text, 0, true},
      {"multi", REG_MULTI_SZ, "a" + terminator + "b" + terminator + terminator,
       "a" + terminator + "b" + terminator + terminator, 0, true},
      {"longmulti", REG_MULTI_SZ, long_text + terminator + terminator, long_text + terminator, 0, true},
      {"number", REG_DWORD, std::string("\x05\0\0\x80", 4), "-2147483643", -2147483643, true},
      {"zero", REG_DWORD, std::string(4, '\0'), "0", 0, false},
      {"short", REG_DWORD, "ab", "default", 42, true}, // of no meaning: the default
      {"other", REG_LINK, "abcd", "default", 42, true},
      {"longother", REG_LINK, long_text, long_text, 0, true}, // long enough to be text
  };
  for (const Row &row : rows) {
    CAPTURE(row.name);
    Store(row.name, row.type, row.bytes);
    CHECK(Text(row.name) == row.text);
    CHECK(key.ReadNumber(row.name, 42) == row.number);
    CHECK(key.ReadBoolean(row.name, true) == row.boolean);
  }
  CHECK(Text("missing") == "default");
}

TEST_CASE_FIXTURE(Fixture, "a required value that is missing ends the run with its name") {
  CHECK(Trapped([&] {
          Value value;
          key.ReadValue("missing", value, RK_REQUIRED);
        }) == "The following registry key is required by KORB Installer, but is invalid or does not exist:\n\n"
              "HKEY_CURRENT_USER\\Software\\KorbTestmissing\n\nIf you have tried moving this program to a different "
              "computer by copying files, this will not work.  This program must be reinstalled.");
}

TEST_CASE_FIXTURE(Fixture, "values are written as the options say") {
  CHECK(key.WriteString("a", "text"));
  CHECK(Stored("a") == std::string("1:text\0", 7));
  CHECK(key.WriteString("a", "text", RK_EXPAND));
  CHECK(key.KindOption("a") == RK_EXPAND);
  CHECK(Stored("a") == std::string("2:text\0", 7));
  CHECK(key.WriteString("a", "text", RK_EXPAND | RK_BINARY));
  CHECK(Stored("a") == "3:text");
  CHECK(key.WriteString("a", "", RK_DELETE_EMPTY));
  CHECK(Stored("a") == "none");
  CHECK_FALSE(key.WriteString("a", "", RK_DELETE_EMPTY));
  CHECK(key.WriteString("a", ""));
  CHECK(key.ValueExists("a"));
  CHECK(key.WriteNumber("n", -2));
  CHECK(Stored("n") == "4:\xFE\xFF\xFF\xFF");
  CHECK(key.WriteNumber("n", 0, RK_DELETE_EMPTY));
  CHECK(Stored("n") == "none");
  CHECK(key.WriteBoolean("n", true));
  CHECK(key.ReadBoolean("n", false));
}

TEST_CASE_FIXTURE(Fixture, "a value is exchanged in the direction that is set") {
  key.writing = true;
  for (Value value : {Value(int64_t{-2}), Value("-2")}) {
    CHECK(key.Exchange("x", value));
    CHECK(Stored("x") == (value.kind() == Value::Kind::Text ? std::string("1:-2\0", 5) : "4:\xFE\xFF\xFF\xFF"));
  }
  key.writing = false;
  Value read;
  CHECK(key.Exchange("x", read));
  CHECK(read.to_string() == "-2");
  CHECK_FALSE(key.ChangePath("\\")); // the registry is not walked
}

TEST_CASE_FIXTURE(Fixture, "a value is found by its path, and reading may make its key") {
  Store("value", REG_SZ, std::string("x\0", 2));
  String text;
  key.ReadStringAt(text, user, "Software\\KorbTest\\value", "default", RK_OPEN_ONLY);
  CHECK(text == "x");
  key.ReadStringAt(text, user, "Software\\KorbTest\\made\\value", "default", RK_OPEN_ONLY);
  CHECK(text == "default");
  CHECK_FALSE(RegistryKey::KeyExists(user, "Software\\KorbTest\\made"));
  CHECK_FALSE(RegistryKey::KeyExists(user, ""));
  key.ReadStringAt(text, user, "Software\\KorbTest\\made\\value", "default");
  CHECK(text == ""); // the key is there now, without the value
  CHECK(RegistryKey::KeyExists(user, "Software\\KorbTest\\made"));
  key.ReadStringAt(text, user, "value", "default");
  CHECK(text == "default");
}

TEST_CASE_FIXTURE(Fixture, "keys are deleted with all that is below them, or only if there is nothing") {
  for (const char *child : {"a\\b\\c", "empty"}) {
    key.OpenChild(child);
    key.Close();
  }
  Vector<String> names;
  CHECK(key.EnumerateSubKeys(names) == 2);
  CHECK(names.count == 2);
  CHECK(key.DeleteChild("a", RK_ONLY_IF_EMPTY) == DELETE_NOT_EMPTY);
  CHECK(key.DeleteChild("empty", RK_ONLY_IF_EMPTY) == DELETE_DONE);
  CHECK(key.DeleteChild("a") == DELETE_DONE);
  CHECK(key.IsEmpty());
}

TEST_CASE_FIXTURE(Fixture, "a deletion of what is not there is told apart") {
  CHECK(key.DeleteChild("missing", RK_ONLY_IF_EMPTY) == DELETE_NOT_EMPTY);
  CHECK(key.DeleteChild("missing") == DELETE_REFUSED);
  CHECK(key.DeleteChild("") == DELETE_NO_KEY);
  CHECK(key.DeleteKey(user, "KorbTest") == DELETE_NO_KEY); // no parent in the path
  CHECK(key.DeleteKeyIn(user, "Software\\NoSuchKorb", "x") == DELETE_NO_KEY);
}
