// Byte blocks and the little-endian writer that all of the packer's formats are made with.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Checksum.h"

namespace korb::packer {

using Bytes = std::vector<uint8_t>;

inline void PutU8(Bytes &out, uint8_t value) {
  out.push_back(value);
}

inline void PutU16(Bytes &out, uint16_t value) {
  out.push_back(static_cast<uint8_t>(value));
  out.push_back(static_cast<uint8_t>(value >> 8));
}

inline void PutU32(Bytes &out, uint32_t value) {
  PutU16(out, static_cast<uint16_t>(value));
  PutU16(out, static_cast<uint16_t>(value >> 16));
}

inline void PutI32(Bytes &out, int32_t value) {
  PutU32(out, static_cast<uint32_t>(value));
}

inline void PutU64(Bytes &out, uint64_t value) {
  PutU32(out, static_cast<uint32_t>(value));
  PutU32(out, static_cast<uint32_t>(value >> 32));
}

inline void PutBytes(Bytes &out, const Bytes &bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

/// The program's checksum of at most INT32_MAX `bytes`.
inline uint32_t ChecksumOf(std::span<const uint8_t> bytes) {
  return Checksum32(bytes.data(), static_cast<int32_t>(bytes.size()));
}

/// The value at `at`; the caller has made sure that `bytes` holds it.
inline uint16_t GetU16(const Bytes &bytes, uint64_t at) {
  const uint8_t *from = bytes.data() + static_cast<size_t>(at);
  return static_cast<uint16_t>(from[0] | from[1] << 8);
}

inline uint32_t GetU32(const Bytes &bytes, uint64_t at) {
  return GetU16(bytes, at) | static_cast<uint32_t>(GetU16(bytes, at + 2)) << 16;
}

inline void SetU16(Bytes &bytes, size_t at, uint16_t value) {
  bytes[at] = static_cast<uint8_t>(value);
  bytes[at + 1] = static_cast<uint8_t>(value >> 8);
}

inline void SetU32(Bytes &bytes, size_t at, uint32_t value) {
  SetU16(bytes, at, static_cast<uint16_t>(value));
  SetU16(bytes, at + 2, static_cast<uint16_t>(value >> 16));
}

} // namespace korb::packer
