// The system's registry: a stack of open keys, with reads, writes and deletions below them.
#pragma once

#include <cstdint>

#include "core/Options.h"
#include "core/String.h"
#include "core/Value.h"
#include "core/Vector.h"
#include "registry/TreeWalker.h"

/// What the platform's HKEY points to.
struct HKEY__;

namespace korb {

// Options, one word for all operations.
enum RegistryOptions : uint32_t {
  RK_NONE = 0,
  RK_REQUIRED = 0x2,       ///< a missing value ends the process with a report
  RK_DELETE_EMPTY = 0x8,   ///< an empty text, or 0, deletes the value instead
  RK_REPORT = 0x10,        ///< a failure shows a box
  RK_ONLY_IF_EMPTY = 0x20, ///< delete a key only when it has no subkeys and no values
  RK_OPEN_ONLY = 0x40,     ///< never create the key
  RK_BINARY = 0x80,        ///< write bytes
  RK_EXPAND = 0x100,       ///< write a text with environment variables; RK_BINARY wins
};
template <>
inline constexpr bool IsOptionWord<RegistryOptions> = true;

/// A root or an open key; the system's own handle.
using RegistryHandle = HKEY__ *;
template <>
inline constexpr const char *TypeName<RegistryHandle> = "HKEY";

/// The predefined roots.
enum class RegistryRoot : uint32_t {
  ClassesRoot = 0x80000000,
  CurrentUser = 0x80000001,
  LocalMachine = 0x80000002,
  Users = 0x80000003,
  CurrentConfig = 0x80000005,
};

inline RegistryHandle HandleOf(RegistryRoot root) {
  return reinterpret_cast<RegistryHandle>(static_cast<uintptr_t>(root));
}

/// What a deletion comes to.
enum DeleteStatus : int32_t {
  DELETE_DONE = 1,
  DELETE_NO_KEY = 2,    ///< no name, no parent, or nothing open
  DELETE_REFUSED = 3,   ///< by the system; so is a child that is missing
  DELETE_NOT_EMPTY = 4, ///< with RK_ONLY_IF_EMPTY, of a child that is missing too
};

/// What an open comes to.
enum KeyOpened : int32_t {
  KEY_NOT_OPENED = 0,
  KEY_OPENED = 1,
  KEY_CREATED = 2,
};

/// The root of the settings of the machine, or of the current user.
inline RegistryHandle SoftwareRoot(bool current_user) {
  return HandleOf(current_user ? RegistryRoot::CurrentUser : RegistryRoot::LocalMachine);
}

/// Keys are opened with full access, for reading too. Each successful open needs a Close; the destructor closes the
/// rest. Keys are reached by the stack, so paths of the TreeWalker lead nowhere.
class RegistryKey final : public TreeWalker<RegistryKey> {
public:
  RegistryKey();
  ~RegistryKey();
  RegistryKey(const RegistryKey &) = delete;
  RegistryKey &operator=(const RegistryKey &) = delete;

  /// Opens or creates `subkey` and makes it the current key; on failure the current one stays.
  KeyOpened Open(RegistryHandle root, const char *subkey, RegistryOptions options = RK_NONE);
  /// The same below "Software\" of the machine, or of the current user.
  KeyOpened OpenSoftware(const char *path, bool current_user, RegistryOptions options = RK_NONE);
  KeyOpened OpenChild(const char *subkey, RegistryOptions options = RK_NONE);
  /// Goes back to the key that was current before.
  void Close();
  void CloseAll();

  /// False for a key that may not be opened with full access, and for null or empty.
  static bool KeyExists(RegistryHandle root, const char *subkey);
  static bool SoftwareKeyExists(const char *path, bool current_user);
  bool ValueExists(const char *name) const;
  /// -1 when no key is open.
  int32_t SubKeyCount() const;
  /// No subkeys and no values; false when no key is open.
  bool IsEmpty() const;
  /// The same of a key below; false when it can't be opened.
  bool IsChildEmpty(const char *subkey);
  /// Appends the names and gives how many.
  int32_t EnumerateSubKeys(Vector<String> &names) const;

  /// The system has refused to read or write a value, for whom a missing one is another matter, or who writes many and
  /// tells once.
  mutable bool refused = false;
  /// False, and `value` as it was, when there is no such value. One of a kind that has no meaning here is none.
  bool ReadValue(const char *name, Value &value, RegistryOptions options = RK_NONE) const;
  // A value of another kind is converted; a missing one gives the default.
  void ReadString(String &text, const char *name, const char *fallback, RegistryOptions options = RK_NONE) const;
  int32_t ReadNumber(const char *name, int32_t fallback, RegistryOptions options = RK_NONE) const;
  bool ReadBoolean(const char *name, bool fallback, RegistryOptions options = RK_NONE) const;
  /// RK_EXPAND for a text with environment variables, RK_NONE for any other value and for none: with it WriteString
  /// makes the same kind again.
  RegistryOptions KindOption(const char *name) const;
  /// One value of a key that is opened for it, and created unless RK_OPEN_ONLY is set. False when it can't be opened.
  bool ReadStringIn(RegistryHandle root, const char *key, const char *name, String &text,
                    RegistryOptions options = RK_NONE);
  /// The same with key and value name in one path.
  void ReadStringAt(String &text, RegistryHandle root, const char *path, const char *fallback,
                    RegistryOptions options = RK_NONE);

  // False when no key is open or the system refuses; with RK_DELETE_EMPTY also when there was nothing to delete.
  bool WriteString(const char *name, const String &text, RegistryOptions options = RK_NONE);
  bool WriteNumber(const char *name, int32_t number, RegistryOptions options = RK_NONE);
  bool WriteBoolean(const char *name, bool value) { return WriteNumber(name, value); }
  bool DeleteValue(const char *name);
  /// Of the open key. A number stays a number; everything else is written as text.
  bool Exchange(const char *name, Value &value);

  // Deletions take the children along.
  DeleteStatus DeleteChild(const char *subkey, RegistryOptions options = RK_NONE);
  DeleteStatus DeleteKey(RegistryHandle root, const char *path, RegistryOptions options = RK_NONE);
  /// An empty `parent` is the root itself.
  DeleteStatus DeleteKeyIn(RegistryHandle root, const char *parent, const char *child,
                           RegistryOptions options = RK_NONE);
  DeleteStatus DeleteSoftwareKey(const char *path, bool current_user, RegistryOptions options = RK_NONE);
  DeleteStatus DeleteSoftwareChild(const char *parent, const char *child, bool current_user,
                                   RegistryOptions options = RK_NONE);

private:
  static void ReportFailure(RegistryOptions options);
  [[noreturn]] void RequiredValueMissing(const char *name) const;
  bool Counts(uint32_t &subkeys, uint32_t &values) const;
  bool SetValue(const char *name, uint32_t type, const void *data, int32_t size);

  RegistryHandle current_key_ = nullptr;
  String current_path_; ///< of the open key, for messages: parts run together
  // Those that were current before, the latest last.
  Vector<RegistryHandle> key_stack_;
  Vector<String> path_stack_;
};

} // namespace korb
