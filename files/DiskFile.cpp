#include "files/DiskFile.h"

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/Windows.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "files/TempFiles.h"

namespace korb {

namespace {

constexpr int32_t kWriteBlock = 0x100000;
constexpr DWORD kRetryWait = 150; ///< milliseconds
constexpr DWORD kBusyWait = 100;
constexpr int32_t kBusyAttempts = 5;
constexpr int32_t kNoPosition = INT32_MIN;

constexpr const char *kPastEnd = "Read past end of file";

OpenCode CodeOf(DWORD error) {
  switch (error) {
  case ERROR_INVALID_NAME:
    return OPEN_BAD_NAME;
  case ERROR_FILE_NOT_FOUND:
    return OPEN_NOT_FOUND;
  case ERROR_PATH_NOT_FOUND:
    return OPEN_NO_DIRECTORY;
  case ERROR_SHARING_VIOLATION:
    return OPEN_LOCKED;
  case ERROR_TOO_MANY_OPEN_FILES:
    return OPEN_TOO_MANY;
  case ERROR_INVALID_PARAMETER:
    return OPEN_BAD_PARAMETER;
  case ERROR_FILE_EXISTS:
    return OPEN_EXISTS;
  default:
    return OPEN_UNKNOWN;
  }
}

DWORD DispositionOf(FileOptions flags) {
  static constexpr uint8_t kDispositions[] = {OPEN_ALWAYS, OPEN_EXISTING, CREATE_NEW, CREATE_ALWAYS};
  return kDispositions[flags & DF_CREATION_MASK];
}

} // namespace

const char *OpenCodeText(OpenCode code) {
  switch (code) {
  case OPEN_OK:
    return "The file was successfully opened.";
  case OPEN_BAD_NAME:
    return "The filename is invalid.";
  case OPEN_NOT_FOUND:
    return "The file was not found.";
  case OPEN_NO_DIRECTORY:
    return "The directory does not exist.";
  case OPEN_LOCKED:
    return "The file is locked by another application.";
  case OPEN_NOT_LOADED:
    return "Failed to read the file into memory.";
  case OPEN_TOO_MANY:
    return "Too many files are already open.";
  case OPEN_BAD_PARAMETER:
    return "An invalid parameter was used.";
  case OPEN_EXISTS:
    return "The file already exists.";
  default:
    return "An unknown error occurred.";
  }
}

bool DiskFile::Fail(const char *sentence) {
  error_text_ = sentence;
  return false;
}

// Out of line, as every function that handles a file would carry them.
DiskFile::DiskFile() = default;

DiskFile::~DiskFile() {
  Close();
}

OpenCode DiskFile::Open(const char *name, FileOptions flags, uint32_t attributes) {
  const OpenCode code = OpenQuiet(name, flags, attributes);
  if (code != OPEN_OK) {
    error_text_ = OpenCodeText(code);
    if (flags & DF_REQUIRED)
      FatalFormat("Failed to open required file:\r\n%s\r\n\r\n%s", name_, error_text_);
  }
  return code;
}

OpenCode DiskFile::OpenQuiet(const char *name, FileOptions flags, uint32_t attributes) {
  Close();
  if ((!name || !*name) && !(flags & DF_TEMP_DEFAULT)) {
    name_.clear();
    return OPEN_BAD_NAME;
  }
  const OpenCode code = OpenHandle(name, flags, attributes);
  if (code != OPEN_OK)
    return code;
  if ((flags & DF_IN_MEMORY) && !LoadToMemory()) {
    Close();
    return OPEN_NOT_LOADED;
  }
  if (flags & DF_AT_END)
    SeekFromEnd(0);
  if (flags & DF_PROBE)
    Close();
  return OPEN_OK;
}

OpenCode DiskFile::OpenHandle(const char *name, FileOptions flags, uint32_t attributes) {
  can_read_ = opened_for_read_ = !(flags & DF_NO_READ);
  can_write_ = opened_for_write_ = !(flags & DF_NO_WRITE);
  // Who does not read but lets others write lets them read, and the other way round; the second rule sees the first.
  uint32_t access = 0;
  if (can_read_)
    access |= GENERIC_READ;
  else if (flags & DF_SHARE_WRITE)
    flags |= DF_SHARE_READ;
  if (can_write_)
    access |= GENERIC_WRITE;
  else if (flags & DF_SHARE_READ)
    flags |= DF_SHARE_WRITE;
  const uint32_t share =
      (flags & DF_SHARE_READ ? FILE_SHARE_READ : 0u) | (flags & DF_SHARE_WRITE ? FILE_SHARE_WRITE : 0u);

  switch (flags & DF_PLACE_MASK) {
  case DF_TEMP_DEFAULT:
    name_ = TempFileName(nullptr);
    flags |= DF_CREATE_ALWAYS;
    break;
  case DF_TEMP_IN_DIR:
    name_ = TempFileName(name);
    flags |= DF_CREATE_ALWAYS;
    break;
  case DF_TEMP_BESIDE:
    name_ = TempFileName(DirectoryPart(name));
    flags |= DF_CREATE_ALWAYS;
    break;
  case DF_IN_TEMP_DIR:
    name_ = PathJoin(TempDirectory(), name);
    break;
  default:
    name_ = name;
  }
  handle_ = OpenWithRetries(access, share, DispositionOf(flags), flags, attributes);
  return handle_ ? OPEN_OK : CodeOf(GetLastError());
}

/// Null, with the last error standing, when the file can't be opened. Both kinds of retry count on one counter.
void *DiskFile::OpenWithRetries(uint32_t access, uint32_t share, uint32_t disposition, FileOptions flags,
                                uint32_t attributes) {
  int32_t attempt = 0;
  for (;;) {
    const HANDLE handle = CreateFileA(name_, access, share, nullptr, disposition, attributes, nullptr);
    if (handle != INVALID_HANDLE_VALUE)
      return handle;
    const DWORD error = GetLastError();
    DWORD wait = kBusyWait;
    if ((flags & DF_RETRY_ONCE) && attempt++ == 0) {
      wait = kRetryWait;
    } else if (error != ERROR_SHARING_VIOLATION || (flags & DF_NO_BUSY_RETRY) || attempt++ >= kBusyAttempts) {
      SetLastError(error);
      return nullptr;
    }
    ShowPendingProgress();
    Sleep(wait);
  }
}

void DiskFile::Close() {
  if (in_memory_)
    WriteBack();
  while (locks_.count > 0) {
    const FileLock &lock = *locks_.last_value();
    Unlock(lock.offset, lock.length);
    locks_.remove_last();
  }
  if (handle_) {
    // A caller may still want the error of what went before.
    const DWORD error = GetLastError();
    CloseHandle(handle_);
    SetLastError(error);
  }
  handle_ = nullptr;
  saved_positions_.clear();
  can_read_ = opened_for_read_ = can_write_ = opened_for_write_ = false;
}

void DiskFile::WriteBack() {
  if (!handle_ || !memory_dirty_)
    return;
  memory_dirty_ = in_memory_ = false;
  Rewind();
  Write(memory_.data(), memory_.length());
  Truncate();
  memory_.Clear();
}

bool DiskFile::Read(void *destination, int32_t count) {
  if (count == 0)
    return true;
  if (count < 0)
    return Fail(str_format("Illegal block size %d", count));
  if (!destination)
    return Fail("NULL block pointer");
  if (!can_read_)
    return Fail("Read access denied");
  if (in_memory_)
    return memory_.Read(destination, count) || Fail(kPastEnd);
  if (!handle_)
    return Fail("File not open");
  DWORD read;
  if (!ReadFile(handle_, destination, static_cast<DWORD>(count), &read, nullptr))
    return Fail(LastErrorText());
  return read == static_cast<DWORD>(count) || Fail(kPastEnd);
}

bool DiskFile::Write(const void *source, int32_t count) {
  if (count == 0)
    return true;
  if (count < 0) {
    error_text_ = "Illegal block size";
    return true;
  }
  if (!can_write_) {
    error_text_ = "Write access denied";
    return true;
  }
  if (!source)
    return Fail("NULL block pointer");
  if (in_memory_) {
    memory_.Write(source, count);
    memory_dirty_ = true;
    return true;
  }
  if (!handle_)
    return false;
  for (const char *p = static_cast<const char *>(source); count > 0;) {
    const DWORD block = static_cast<DWORD>(count < kWriteBlock ? count : kWriteBlock);
    DWORD written;
    if (!WriteFile(handle_, p, block, &written, nullptr))
      return Fail(LastErrorText());
    if (written != block) {
      // Where the system gives no reason, only a full disk takes a part: callers report the last error.
      SetLastError(ERROR_DISK_FULL);
      return Fail("Not all data could be written");
    }
    p += block;
    count -= static_cast<int32_t>(block);
  }
  if (flush_each_write_)
    Flush();
  return true;
}

int32_t DiskFile::Tell() {
  if (in_memory_)
    return memory_.Tell();
  return handle_ ? static_cast<int32_t>(SetFilePointer(handle_, 0, nullptr, FILE_CURRENT)) : -1;
}

bool DiskFile::HasMore() {
  const int32_t position = Tell();
  return position >= 0 && position < Size();
}

int32_t DiskFile::Size() {
  if (in_memory_)
    return memory_.length();
  if (!handle_)
    return -1;
  DWORD high = 0;
  const DWORD low = GetFileSize(handle_, &high);
  return high != 0 || low > INT32_MAX ? -1 : static_cast<int32_t>(low);
}

bool DiskFile::Seek(int32_t offset) {
  if (in_memory_)
    return memory_.Seek(offset);
  return handle_ && SetFilePointer(handle_, offset, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER;
}

bool DiskFile::SeekFromEnd(int32_t offset) {
  if (in_memory_)
    return memory_.SeekFromEnd(offset);
  return handle_ && SetFilePointer(handle_, offset, nullptr, FILE_END) != INVALID_SET_FILE_POINTER;
}

int32_t DiskFile::PushPosition() {
  const int32_t position = Tell();
  saved_positions_.append(position);
  return position;
}

int32_t DiskFile::PushPositionAndSeek(int32_t offset) {
  const int32_t position = PushPosition();
  Seek(offset);
  return position;
}

int32_t DiskFile::PopPosition() {
  if (saved_positions_.count == 0)
    return kNoPosition;
  const int32_t position = saved_positions_.take_at(saved_positions_.count - 1);
  Seek(position);
  return position;
}

bool DiskFile::Truncate() {
  if (in_memory_) {
    memory_.Truncate();
    memory_dirty_ = true;
    return true;
  }
  return can_write_ && handle_ && SetEndOfFile(handle_);
}

bool DiskFile::Flush() {
  return handle_ && FlushFileBuffers(handle_);
}

/// Kept out of its one caller, as FileMatches is.
[[gnu::noinline]] bool DiskFile::SetModified(const FileDate &date, bool flush) {
  const auto word = [](int32_t value) { return static_cast<WORD>(value); };
  const SYSTEMTIME parts = {word(date.year),   word(date.month),  0, word(date.day), word(date.hour),
                            word(date.minute), word(date.second), 0};
  FILETIME local, universal;
  if (!handle_ || !SystemTimeToFileTime(&parts, &local) || !LocalFileTimeToFileTime(&local, &universal))
    return false;
  if (flush)
    Flush();
  return SetFileTime(handle_, nullptr, nullptr, &universal) != 0;
}

bool DiskFile::Unlock(uint32_t offset, uint32_t length) {
  return handle_ && length > 0 && UnlockFile(handle_, offset, 0, length, 0);
}

} // namespace korb
