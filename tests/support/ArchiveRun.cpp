#include "tests/support/ArchiveRun.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "core/RunValues.h"

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
  memcpy(destination, bytes_.data() + position, static_cast<size_t>(count));
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

ArchiveRun::ArchiveRun(const Bytes &executable) : image(Mapped(executable)), file(executable) {
  ResetRun();
  config.looks.title_color = 1; // the system's
  config.looks.top_color = 2;
}

ArchiveRun::~ArchiveRun() {
  const auto *base = cursor.base();
  const bool in_image = base >= image.data() && base <= image.data() + image.size();
  if (!in_image && base != reinterpret_cast<const uint8_t *>(payload_buffer.data()))
    free(const_cast<uint8_t *>(base));
}

void ArchiveRun::ReadConfiguration() {
  location = LocateArchive(file);
  cursor = SectionCursor(location, {image.data(), static_cast<int32_t>(image.size())});
  ReadArchiveHeader(cursor, header);
  DecodeConfig(cursor, header, stream, host);
  ReadConfigStream(stream, location.file_size, host, config);
}

void ArchiveRun::Run() {
  ReadConfiguration();
  BuildUninstallerImage(file, location, header, config, uninstaller);
  AssemblePayload(file, location, header, config, "A:\\dir", user, payload_buffer, cursor);
  for (int32_t i = 0; i < header.sizes.count; ++i) {
    records.emplace_back();
    ReadPayloadRecord(cursor, header.sizes.at(i), records.back());
  }
}

void ResetRun() {
  ClearTrap();
  ResetRunValues();
}

} // namespace korb::test
