// The typed reads and writes, and the memory stream that goes on behind its end.
#include <algorithm>
#include <cstring>

#include "core/MemoryStream.h"
#include "tests/support/Testing.h"

namespace {

MemoryStream StreamOf(const std::string &bytes) {
  MemoryStream stream;
  stream.assign(bytes.data(), static_cast<int32_t>(bytes.size()));
  return stream;
}

/// Reads as a file does: a failed read leaves the destination alone.
class FileLikeSource : public ByteSource {
public:
  explicit FileLikeSource(std::string bytes) : bytes_(std::move(bytes)) {}
  bool Read(void *destination, int32_t count) override {
    if (static_cast<size_t>(count) > bytes_.size() - at_)
      return false;
    memcpy(destination, bytes_.data() + at_, static_cast<size_t>(count));
    at_ += static_cast<size_t>(count);
    return true;
  }

private:
  std::string bytes_;
  size_t at_ = 0;
};

/// Notes what is written, and fails from the `good`th write on.
class NotingSink : public ByteSink {
public:
  explicit NotingSink(size_t good = 99) : good_(good) {}
  bool Write(const void *source, int32_t count) override {
    bytes.append(static_cast<const char *>(source), static_cast<size_t>(count));
    sizes.push_back(count);
    return sizes.size() <= good_;
  }
  std::string bytes;
  std::vector<int32_t> sizes;

private:
  size_t good_;
};

} // namespace

TEST_CASE("a read past the end gives what is there, then zeros, and moves on") {
  MemoryStream stream = StreamOf("abcdef");
  uint32_t dword = 0;
  CHECK(stream.ReadU32(dword));
  CHECK(dword == 0x64636261);
  CHECK_FALSE(stream.ReadU32(dword));
  CHECK(dword == 0x6665);
  CHECK(stream.Tell() == 8);
  CHECK_FALSE(stream.HasMore());
  uint64_t qword = 5;
  CHECK_FALSE(stream.ReadU64(qword));
  CHECK(qword == 0);
  CHECK(stream.Tell() == 16);
}

TEST_CASE("a record is read byte by byte, and no bytes from nowhere") {
  MemoryStream stream = StreamOf("abcdef");
  struct {
    uint16_t word;
    uint8_t byte[2];
  } record;
  stream.Skip(2);
  CHECK(stream.ReadRecord(record));
  CHECK(record.word == 0x6463);
  CHECK(record.byte[1] == 'f');
  char buffer[1];
  CHECK(stream.Read(nullptr, 0));
  CHECK_FALSE(stream.Read(buffer, -1));
  CHECK_FALSE(stream.Read(nullptr, 1));
  CHECK(stream.Tell() == 6);
}

TEST_CASE("before the beginning it is as empty as after the end") {
  MemoryStream stream = StreamOf("abcdef");
  char buffer[4] = "xyz";
  stream.Skip(-2);
  CHECK_FALSE(stream.HasMore());
  CHECK_FALSE(stream.Read(buffer, 4));
  CHECK(buffer[2] == '\0');
  CHECK(stream.Tell() == 2);
  stream.Skip(INT32_MAX);
  CHECK(stream.Tell() == INT32_MAX);
  CHECK_FALSE(stream.Read(buffer, 4));
  CHECK(stream.Tell() == INT32_MAX);
}

TEST_CASE("a text is read up to a 0 byte or the end") {
  MemoryStream stream = StreamOf("one\0\0cut"s);
  String text = "old";
  for (const char *expected : {"one", "", "cut"}) {
    CHECK(stream.ReadText(text));
    CHECK(text == expected);
  }
  text = "old";
  CHECK_FALSE(stream.ReadText(text));
  CHECK(text == "");
  CHECK(stream.Tell() == 10); // both failed bytes count
  FileLikeSource file("cut");
  CHECK(file.ReadText(text));
  CHECK(text == "cut");
  CHECK_FALSE(file.ReadText(text));
  const std::string large(5000, 'x');
  CHECK(StreamOf(large).ReadText(text));
  CHECK(Std(text) == large);
}

TEST_CASE("a counted text is read whole, or not at all") {
  struct Row {
    std::string bytes;
    int width;
    bool good;
    const char *text;
  };
  for (const Row &row :
       {Row{"\3abcd"s, 1, true, "abc"}, Row{"\3\0abcd"s, 2, true, "abc"}, Row{"\3\0\0\0abcd"s, 4, true, "abc"},
        Row{"\0"s, 1, true, ""}, Row{"\0\0"s, 2, true, ""}, Row{"\0\0\0\0"s, 4, true, ""}, Row{""s, 1, false, "old"},
        Row{"\1"s, 2, false, "old"}, Row{"\1\0\0"s, 4, false, "old"}, Row{"\4abc"s, 1, false, ""},
        Row{"\4\0abc"s, 2, false, ""}, Row{"\4\0\0\0abc"s, 4, false, ""}, Row{"\377\377\377\377abc"s, 4, false, "old"},
        Row{"\377\377\377\177abc"s, 4, false, "old"}}) {
    CAPTURE(row.bytes);
    CAPTURE(row.width);
    String text = "old";
    MemoryStream counted = StreamOf(row.bytes);
    const bool good = row.width == 1   ? counted.ReadText8(text)
                      : row.width == 2 ? counted.ReadText16(text)
                                       : counted.ReadText32(text);
    CHECK(good == row.good);
    CHECK(text == row.text);
  }
}

TEST_CASE("counted bytes are appended, or not at all") {
  MemoryStream stream = StreamOf("abcdef");
  String text = "x";
  for (const int32_t count : {2, 0, -1})
    CHECK(stream.ReadBytes(text, count));
  CHECK(text == "xab");
  CHECK_FALSE(stream.ReadBytes(text, INT32_MAX)); // takes no memory for what isn't there
  CHECK(text == "xab");
  CHECK_FALSE(stream.HasMore());
  FileLikeSource file("ab");
  CHECK_FALSE(file.ReadBytes(text, 3));
  CHECK(text == "xab");
}

TEST_CASE("numbers are written little-endian, and texts with an end or a count") {
  MemoryStream stream;
  CHECK(stream.WriteByte(0x11));
  CHECK(stream.WriteU16(0x2233));
  CHECK(stream.WriteU32(0x44556677));
  CHECK(stream.WriteText("ab"));
  CHECK(stream.WriteText(nullptr));
  CHECK(stream.WriteText8("c", 1));
  CHECK(stream.WriteText16("de", 2));
  CHECK(stream.WriteText32("f", 1));
  CHECK(stream.WriteText32(nullptr, 5));
  CHECK(stream.WriteText8("x", -1));
  CHECK(Std(stream) == "\x11\x33\x22\x77\x66\x55\x44"
                       "ab\1c\2\0de\1\0\0\0f\0\0\0\0\0"s);
}

TEST_CASE("a counted text is cut at what its count can say") {
  const std::string text(70000, 't');
  NotingSink sink;
  CHECK(sink.WriteText8(text.data(), 300));
  CHECK(sink.WriteText16(text.data(), 70000));
  CHECK(sink.sizes == std::vector<int32_t>{1, 255, 2, 65535});
}

TEST_CASE("a fill is written in pieces, up to the first that fails") {
  NotingSink pieces;
  CHECK(pieces.WriteFill('A' + 0x100, 1025));
  CHECK(pieces.sizes == std::vector<int32_t>{1024, 1});
  CHECK(pieces.bytes == std::string(1025, 'A'));
  CHECK_FALSE(pieces.WriteFill('A', -1));
  NotingSink broken(1);
  CHECK_FALSE(broken.WriteFill('A', 5000));
  CHECK(broken.sizes.size() == 2);
}

TEST_CASE("writing overwrites, grows, and never shortens") {
  MemoryStream stream = StreamOf("abcdef");
  stream.Skip(2);
  CHECK(stream.Write("XY", 2));
  CHECK_FALSE(stream.Write("x", -1));
  CHECK_FALSE(stream.Write(nullptr, 1));
  CHECK(Std(stream) == "abXYef");
  stream.Skip(4);
  CHECK(stream.Write("!", 1));
  CHECK(Std(stream) == "abXYef\0\0!"s);
}

TEST_CASE("a stream may write its own bytes, though its block moves") {
  MemoryStream stream = StreamOf("abcdefghi");
  CHECK(stream.Seek(9));
  CHECK(stream.Write(stream.c_str(), 9));
  CHECK(Std(stream) == "abcdefghiabcdefghi");
}

TEST_CASE("a seek goes nowhere outside") {
  MemoryStream stream = StreamOf("123456789012345678");
  CHECK(stream.Seek(18));
  CHECK_FALSE(stream.Seek(19));
  CHECK_FALSE(stream.Seek(-1));
  CHECK(stream.Tell() == 18);
  CHECK(stream.SeekFromEnd(-16));
  CHECK_FALSE(stream.SeekFromEnd(-19));
  CHECK_FALSE(stream.SeekFromEnd(INT32_MAX));
  CHECK(stream.Tell() == 2);
}

TEST_CASE("a stream is cut where it is, and room is reserved there, but not before the beginning") {
  MemoryStream stream = StreamOf("abcdef");
  stream.Skip(2);
  stream.Truncate();
  CHECK(Std(stream) == "ab");
  memcpy(stream.Reserve(3), "cde", 3);
  CHECK(Std(stream) == "abcde");
  stream.Skip(-9);
  CHECK_FALSE(stream.Write("x", 1));
  CHECK(stream.Reserve(1) == nullptr);
  stream.Truncate();
  CHECK(stream.length() == 5);
}

TEST_CASE("a copy within never sees its own output") {
  struct Row {
    int32_t place, from, count;
    const char *result; // null: refused
  };
  for (const Row &row :
       {Row{3, 0, 3, "abcabc"}, Row{3, 0, 4, nullptr}, Row{3, 1, 2, "abcbcf"}, Row{5, 0, 5, "abcdeabcde"},
        Row{6, -1, 2, nullptr}, Row{6, 0, 0, nullptr}, Row{6, 0, -1, nullptr}, Row{7, 0, 2, nullptr},
        Row{-1, 0, 1, nullptr}, Row{6, INT32_MAX, INT32_MAX, nullptr}}) {
    CAPTURE(row.place);
    CAPTURE(row.count);
    MemoryStream stream = StreamOf("abcdef");
    stream.Skip(row.place);
    CHECK(stream.CopyWithin(row.from, row.count) == (row.result != nullptr));
    CHECK(Std(stream) == (row.result != nullptr ? row.result : "abcdef"));
    CHECK(stream.Tell() == row.place + (row.result != nullptr ? row.count : 0));
  }
}
