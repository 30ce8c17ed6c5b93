// A file's bytes.
#pragma once

#include <cstdint>

#include "core/ByteStream.h"
#include "core/Date.h"
#include "core/MemoryStream.h"
#include "core/Options.h"
#include "core/String.h"
#include "core/Vector.h"

namespace korb {

// How a file is opened. The two lowest bits are one field, and so are the three highest; other values of the latter are
// as 0.
enum FileOptions : uint32_t {
  DF_OPEN_ALWAYS = 0x0, ///< created when missing
  DF_OPEN_EXISTING = 0x1,
  DF_CREATE_NEW = 0x2,
  DF_CREATE_ALWAYS = 0x3, ///< an existing file is cut to nothing
  DF_CREATION_MASK = 0x3,
  DF_NO_READ = 0x8,
  DF_NO_WRITE = 0x10,
  DF_REQUIRED = 0x20,   ///< a failed open ends the process
  DF_RETRY_ONCE = 0x40, ///< after the first failure of any kind, 150 ms later
  DF_IN_MEMORY = 0x80,
  DF_SHARE_READ = 0x100,
  DF_SHARE_WRITE = 0x200,
  DF_AT_END = 0x400,
  DF_PROBE = 0x800,          ///< close at once: only the result counts
  DF_NO_BUSY_RETRY = 0x1000, ///< do not wait for a file that another program holds
  DF_TEMP_DEFAULT = 0x20000000,
  DF_TEMP_IN_DIR = 0x40000000,
  DF_TEMP_BESIDE = 0x80000000,
  DF_IN_TEMP_DIR = 0xC0000000,
  DF_PLACE_MASK = 0xE0000000,

  /// For reading an existing file that others may use.
  DF_READ_SHARED = DF_OPEN_EXISTING | DF_NO_WRITE | DF_SHARE_READ,
};
template <>
inline constexpr bool IsOptionWord<FileOptions> = true;

/// What an open comes to. The numbers travel through results, so they stay.
enum OpenCode : int32_t {
  OPEN_OK = 0,
  OPEN_UNKNOWN = 1, ///< denied access too
  OPEN_BAD_NAME = 2,
  OPEN_NOT_FOUND = 3,
  OPEN_NO_DIRECTORY = 4,
  OPEN_LOCKED = 5,
  OPEN_NOT_LOADED = 6, ///< the load into memory failed
  OPEN_TOO_MANY = 7,
  OPEN_BAD_PARAMETER = 8,
  OPEN_EXISTS = 9,
};

/// The sentence for an open code.
const char *OpenCodeText(OpenCode code);

/// A byte range that is released at close.
struct FileLock {
  uint32_t offset;
  uint32_t length;
};
template <>
inline constexpr const char *TypeName<FileLock> = "FileLock";

/// Sizes and positions are signed 32 bits: a file of 2 GiB or more is out of reach, and says -1 for its size.
/// Operations with a boolean result are true on success. What Open, Read and Write refuse leaves a sentence in
/// error_text; the others leave one only by those.
class DiskFile final : public ByteStream {
public:
  DiskFile();
  ~DiskFile();
  DiskFile(const DiskFile &) = delete;
  DiskFile &operator=(const DiskFile &) = delete;

  /// Closes what is open and opens `name` with DF_ flags; `attributes` are given to a file that is made.
  /// With DF_REQUIRED a failure ends the process.
  OpenCode Open(const char *name, FileOptions flags, uint32_t attributes);
  /// The same without error_text and without the report.
  OpenCode OpenQuiet(const char *name, FileOptions flags, uint32_t attributes);
  /// Writes a changed memory image back and closes the handle. An unchanged image stays and goes on answering.
  void Close();
  bool IsOpen() const { return handle_ || in_memory_; }

  /// False with fewer bytes than asked for; those that came are in the buffer.
  bool Read(void *destination, int32_t count) override;
  /// A negative count, and a file without write access, are true: only error_text tells of them.
  bool Write(const void *source, int32_t count) override;
  bool WriteString(const String &text) { return Write(text.data(), text.length()); }

  /// -1 when nothing is open.
  virtual int32_t Tell();
  /// True while a byte can be read; false when nothing is open.
  virtual bool HasMore();
  /// Bytes; -1 when nothing is open or the file is too large.
  int32_t Size();
  /// Bytes from the start. False when nothing is open or the offset is negative; in memory also beyond the end.
  bool Seek(int32_t offset);
  /// 0 is the end itself; false as above.
  bool SeekFromEnd(int32_t offset);
  bool Rewind() { return Seek(0); }
  /// Saves the position and gives it.
  int32_t PushPosition();
  int32_t PushPositionAndSeek(int32_t offset);
  /// Goes back to the saved position and gives it; 0x80000000, and nothing moved, when none is saved.
  int32_t PopPosition();

  // These leave the position where it was. False when not all the bytes are there.

  bool ReadAt(int32_t offset, void *destination, int32_t count);
  /// The last `count` bytes, at least one.
  bool ReadTail(void *destination, int32_t count);
  /// False, and `text` as it was, when the span passes the end; a failed read empties it.
  bool ReadSpan(String &text, int32_t offset, int32_t count);
  /// The whole file; false for a null `text` too.
  bool ReadAll(String *text);

  /// From the position up to a NUL, which is consumed, or to the end; empty when nothing is open.
  String ReadCString();

  /// Makes `text` all that the file holds. False at the first step that fails, with those before it done.
  bool ReplaceContents(const String &text);
  /// Cuts the file at the position. False without write access; in memory always true, though without write access the
  /// cut never reaches the disk.
  bool Truncate();
  /// Waits until the disk has everything. False when no file is open on disk or the system refuses.
  bool Flush();
  /// True when the file is empty, can't be read, or ends in CR or LF.
  bool EndsLine();
  /// Ends the last line if it is not ended. False when nothing is open or the write fails.
  bool EnsureNewline();
  /// Sets the time of the last write, in local time; creation and access stay. Without `flush` nobody waits for the
  /// disk: on a fixed drive a time that was set by hand stays, whatever of this handle's writes is still on its way.
  bool SetModified(const FileDate &date, bool flush = true);
  /// From here on everything happens in memory, and Close writes the changes back. False when the file can't be read.
  bool LoadToMemory();
  /// Releases `length` bytes from `offset` on. False without a handle or a length, or when no such range is locked.
  bool Unlock(uint32_t offset, uint32_t length);

  /// What was really opened or tried, temporary names included.
  const String &name() const { return name_; }
  /// The sentence of the last failure; a success does not clear it.
  const String &error_text() const { return error_text_; }

private:
  OpenCode OpenHandle(const char *name, FileOptions flags, uint32_t attributes);
  void *OpenWithRetries(uint32_t access, uint32_t share, uint32_t disposition, FileOptions flags, uint32_t attributes);
  void WriteBack();
  bool Fail(const char *sentence);

  void *handle_ = nullptr; ///< never the invalid handle
  String name_;
  Vector<int32_t> saved_positions_; ///< the newest last
  MemoryStream memory_;
  bool in_memory_ = false;
  bool memory_dirty_ = false;
  bool flush_each_write_ = false; ///< nobody sets it
  bool can_read_ = false;
  bool can_write_ = false;
  bool opened_for_read_ = false;
  bool opened_for_write_ = false;
  String error_text_;
  Vector<FileLock> locks_; ///< the newest last; nobody takes one; whoever does finds it released at close
};

} // namespace korb
