// The machine and the user that an archive's readers ask, played by doubles.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "archive/ArchiveFile.h"
#include "archive/ConfigHost.h"
#include "archive/PayloadHost.h"
#include "packer/Bytes.h"

namespace korb::test {

using packer::Bytes;

/// A file in memory. Reads that touch `unreadable_from` or what is behind it fail, as on a bad disk.
class MemoryFile final : public ArchiveFile {
public:
  explicit MemoryFile(Bytes bytes) : bytes_(std::move(bytes)) {}
  int32_t Size() override { return static_cast<int32_t>(bytes_.size()); }
  bool Seek(int32_t position) override { return position >= 0; }
  bool ReadAt(int32_t position, void *destination, int32_t count) override;
  bool ReadSpan(String &text, int32_t position, int32_t count) override;

  int64_t unreadable_from = INT64_MAX;

private:
  Bytes bytes_;
};

/// Notes what the configuration asks for and answers with marked texts.
class RecordingConfigHost final : public ConfigHost {
public:
  void CreateMainWindow() override { calls.push_back("window"); }
  String CommonFilesFolder() override { return "C:\\Common"; }
  String ProgramFilesFolder() override { return "C:\\Programs"; }
  String WindowsDirectory() override { return "C:\\Win"; }
  void ExpandPathVariables(String &text) override;
  void NormalisePath(String &path, const String &base) override;
  void CreateDirectoryTree(const String &path) override;
  void LoadBackground(const String &block) override;

  std::vector<std::string> calls;
};

/// A user with a drive: files by path, and what happens at each question for a disk.
class VolumeUser final : public PayloadHost {
public:
  void SetProgress(int32_t percent) override { Note("progress " + std::to_string(percent)); }
  void SetStep(int32_t number, int32_t percent) override;
  void WaitPhase(int32_t milliseconds) override { Note("wait " + std::to_string(milliseconds)); }
  const char *Text(int32_t number) override;
  bool AskForVolume(const String &message) override;
  void AskCancel() override { Note("cancel?"); }
  ByteSource *OpenVolume(const String &path, int32_t &size) override;
  void CloseVolume() override { Note("close"); }

  /// Answers a question; gives whether it was OK. Without one the test ends.
  std::function<bool()> answer;
  std::map<std::string, std::string> files;
  bool unreadable = false; ///< a volume gives its serial and nothing more
  std::vector<std::string> calls;

private:
  void Note(std::string call) { calls.push_back(std::move(call)); }
  class Volume final : public ByteSource {
  public:
    bool Read(void *destination, int32_t count) override;
    std::string bytes;
    size_t position = 0;
    bool unreadable = false;
  };
  Volume volume_;
};

/// A fresh run: the values of core/RunValues.h as a process starts with them, and an empty trap.
void ResetRun();

} // namespace korb::test
