#include "tests/support/ArchiveDoubles.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "core/RunValues.h"
#include "tests/support/FailureTrap.h"

namespace korb::test {

namespace {

std::string Std(const String &text) {
  return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

} // namespace

bool MemoryFile::ReadAt(int32_t position, void *destination, int32_t count) {
  const int64_t end = int64_t{position} + count;
  if (position < 0 || end > static_cast<int64_t>(bytes_.size()) || end > unreadable_from)
    return false;
  std::copy_n(bytes_.data() + position, count, static_cast<uint8_t *>(destination)); // no bytes may go nowhere
  return true;
}

bool MemoryFile::ReadSpan(String &text, int32_t position, int32_t count) {
  if (position < 0 || count < 0 || int64_t{position} + count > static_cast<int64_t>(bytes_.size()))
    return false;
  text.assign(reinterpret_cast<const char *>(bytes_.data()) + position, count);
  return true;
}

void RecordingConfigHost::ExpandPathVariables(String &text) {
  calls.push_back("expand " + Std(text));
}

void RecordingConfigHost::NormalisePath(String &path, const String &base) {
  if (Std(path).find(':') == std::string::npos)
    path = (Std(base) + "\\" + Std(path)).c_str();
}

void RecordingConfigHost::CreateDirectoryTree(const String &path) {
  calls.push_back("create " + Std(path));
}

void RecordingConfigHost::LoadBackground(const String &block) {
  calls.push_back("bitmap " + Std(block));
}

void VolumeUser::SetStep(int32_t number, int32_t percent) {
  Note("step " + std::to_string(number) + " " + std::to_string(percent));
}

const char *VolumeUser::Text(int32_t number) {
  return number == 26 ? "insert %d in %c:" : number == 30 ? "wrong disk" : "";
}

bool VolumeUser::AskForVolume(const String &message) {
  Note("ask " + Std(message));
  if (!answer)
    throw std::runtime_error("asked for a disk: " + Std(message));
  return answer();
}

ByteSource *VolumeUser::OpenVolume(const String &path, int32_t &size) {
  Note("open " + Std(path));
  const auto found = files.find(Std(path));
  if (found == files.end())
    return nullptr;
  volume_.bytes = found->second;
  volume_.position = 0;
  volume_.unreadable = unreadable;
  size = static_cast<int32_t>(volume_.bytes.size());
  return &volume_;
}

bool VolumeUser::Volume::Read(void *destination, int32_t count) {
  if (position + static_cast<size_t>(count) > bytes.size() || (unreadable && position > 0))
    return false;
  memcpy(destination, bytes.data() + position, static_cast<size_t>(count));
  position += static_cast<size_t>(count);
  return true;
}

void ResetRun() {
  ClearTrap();
  ResetRunValues();
}

} // namespace korb::test
