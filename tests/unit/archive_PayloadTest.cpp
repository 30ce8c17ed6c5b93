// Gathering the payload in each of its layouts, and the user who changes disks.
#include <algorithm>

#include "core/RunValues.h"
#include "tests/support/ArchiveRun.h"
#include "tests/support/Testing.h"

using packer::PayloadLayout;

namespace {

using Calls = std::vector<std::string>;

std::string Text(const Bytes &bytes) {
  return std::string(bytes.begin(), bytes.end());
}

void CheckRecords(const ArchiveRun &run) {
  REQUIRE(run.records.size() == 2);
  const PayloadRecord &one = run.records[0];
  CHECK(one.name == "dir\\one.txt"s);
  CHECK(one.label == "label"s);
  CHECK(one.icon == "icon"s);
  CHECK(one.arguments == "arguments"s);
  CHECK(one.target == "target"s);
  CHECK(one.dest_kind == KindProgram);
  CHECK(one.file_flags == FF_START_MENU);
  CHECK(one.attributes == 0x20);
  CHECK(one.date.year == 1999);
  CHECK(one.date.second == 58);
  CHECK(std::string(reinterpret_cast<const char *>(one.contents), static_cast<size_t>(one.size)) == "12345");
  const PayloadRecord &two = run.records[1];
  CHECK(two.name == "empty.txt"s);
  CHECK(two.icon == ""s);
  CHECK(two.target == "target"s);
  CHECK(two.size == 0);
  CHECK(run.cursor.left() == 0);
  CHECK(PumpCount == 2);
}

/// An installer whose payload is spread over volumes of `volume` bytes; 0: none.
TestInstaller Spread(PayloadLayout layout, bool packed, int32_t first, int32_t volume) {
  TestInstaller installer;
  installer.product.files[0].flags = FF_START_MENU; // the other flag with an icon is used elsewhere
  installer.product.payload.layout = layout;
  if (packed)
    installer.product.flags |= IF_PACKED_PAYLOAD;
  if (volume != 0) {
    installer.product.payload.first_part_size = first;
    installer.product.payload.volume_size = volume;
  }
  return installer;
}

void GiveVolumes(ArchiveRun &run, const packer::Installer &installer) {
  for (size_t i = 0; i < installer.volumes.size(); ++i)
    run.user.files["A:\\dir\\DISK" + std::to_string(i + 2) + ".KRB"] = Text(installer.volumes[i]);
}

} // namespace

TEST_CASE("the payload comes together from every layout") {
  for (PayloadLayout layout : {PayloadLayout::kInSection, PayloadLayout::kInFile})
    for (bool packed : {false, true}) // signed as well
      for (const auto &sizes : {std::pair{0, 0}, {0, 1 << 20}, {1, 5}, {40, 44}}) {
        const int first = sizes.first, volume = sizes.second;
        CAPTURE(static_cast<int>(layout));
        CAPTURE(packed);
        CAPTURE(volume);
        TestInstaller installer = Spread(layout, packed, first, volume);
        if (packed)
          installer.executable = Sign;
        const packer::Installer built = installer.Build();
        ArchiveRun run(built.executable);
        GiveVolumes(run, built);
        run.Run();
        CheckRecords(run);
        const bool in_image = layout == PayloadLayout::kInSection && volume == 0;
        CHECK(run.payload_buffer.is_empty() == in_image); // nothing is copied that lies in the image
        CHECK(std::count(run.user.calls.begin(), run.user.calls.end(), "close") ==
              static_cast<ptrdiff_t>(built.volumes.size()));
      }
}

TEST_CASE("progress is shown and each stage is waited for") {
  const packer::Installer built = Spread(PayloadLayout::kInSection, true, 50, 84).Build();
  const size_t size = built.payload_size;
  REQUIRE(built.volumes.size() >= 1);
  ArchiveRun run(built.executable);
  GiveVolumes(run, built);
  run.Run();
  Calls expected;
  for (size_t i = 0; i < built.volumes.size(); ++i) {
    expected.push_back("progress " + std::to_string(5 + (50 + i * 80) * 30 / size));
    expected.push_back("open A:\\dir\\DISK" + std::to_string(i + 2) + ".KRB");
    expected.push_back("close");
  }
  for (const char *call : {"wait 500", "step 62 36", "wait 500", "step 29 40", "wait 500"})
    expected.push_back(call);
  CHECK(run.user.calls == expected);
}

namespace {

/// A payload with one volume after the section, whose disk the user has in no drive yet.
struct OneVolume {
  const packer::Installer built = Spread(PayloadLayout::kInSection, false, 40, 1 << 20).Build();
  const std::string path = "A:\\dir\\DISK2.KRB", right = Text(built.volumes.at(0));
  ArchiveRun run{built.executable};
};

} // namespace

TEST_CASE_FIXTURE(OneVolume, "a volume is asked for until the right one is there") {
  int asked = 0;
  run.user.answer = [&] {
    switch (++asked) {
    case 1: // still nothing
      return true;
    case 2:
      run.user.files[path] = Raw(1000); // the right serial, and no payload
      return true;
    case 3:
      run.user.files[path] = Raw(1001) + right.substr(4);
      return false; // declined, and then not cancelled: the disk is tried all the same
    default:
      run.user.files[path] = right;
      return true;
    }
  };
  run.Run();
  CheckRecords(run);
  const std::string open = "open " + path, again = "ask wrong disk\r\n\r\ninsert 2 in A:";
  const Calls prompts(run.user.calls.begin() + 1, run.user.calls.begin() + 15);
  CHECK(prompts == Calls{open, "ask insert 2 in A:", open, again, open, "close", again, "cancel?", open, "close", again,
                         open, "close", "wait 500"});
}

TEST_CASE_FIXTURE(OneVolume, "a volume that can't be read is damage") {
  run.user.files[path] = right;
  run.user.unreadable = true;
  CHECK(TrappedCode([&] { run.Run(); }) == 50);
}

TEST_CASE_FIXTURE(OneVolume, "what a volume has beyond the payload is left there") {
  run.user.files[path] = right + "longer than the slack that a string has";
  run.Run();
  CheckRecords(run);
}

TEST_CASE_FIXTURE(OneVolume, "a wrong disk is told as such at once") {
  run.user.files[path] = "other";
  CHECK_THROWS_WITH(run.Run(), "asked for a disk: wrong disk\r\n\r\ninsert 2 in A:");
}

TEST_CASE_FIXTURE(OneVolume, "after a volume that ends early the next one is asked for") {
  run.user.files[path] = right.substr(0, 10);
  CHECK_THROWS_WITH(run.Run(), "asked for a disk: insert 3 in A:");
}

TEST_CASE("a payload that the executable can't give ends the run with error 2") {
  for (PayloadLayout layout : {PayloadLayout::kInSection, PayloadLayout::kInFile}) {
    TestInstaller installer = Spread(layout, false, 0, 0);
    if (layout == PayloadLayout::kInSection)
      installer.executable = [](Bytes &file) { Put(file, kArchivePos + header::kArchiveLengthAt, Raw(36)); };
    ArchiveRun run(installer.Build().executable);
    run.ReadConfiguration();
    if (layout == PayloadLayout::kInFile)
      run.file.unreadable_from = run.file.Size() - 1;
    CHECK(Trapped([&] {
            AssemblePayload(run.file, run.location, run.header, run.config, "", run.user, run.payload_buffer,
                            run.cursor);
          }) == "Error code 2: failed to read archive data");
  }
}

TEST_CASE("the uninstaller is the stub again, but for sizes and patch, and nothing of a signature stays in it") {
  const Bytes stub = TestStub();
  for (bool patched : {false, true}) {
    TestInstaller installer;
    installer.tail = {'T', 'H', 'E', ' ', 'T', 'A', 'I', 'L'};
    if (patched)
      installer.executable = Sign;
    else
      installer.product.flags |= IF_VERIFY_STUB;
    installer.product.stub_patch_offset = patched ? 0x500 : static_cast<int32_t>(kArchivePos) + 8 - kStubPatchSize + 1;
    ArchiveRun run(installer.Build().executable);
    run.Run();
    Bytes expected = stub;
    expected.insert(expected.end(), installer.tail.begin(), installer.tail.end());
    if (patched) // one byte further and it doesn't fit, and is left out without a word
      Put(expected, 0x500, std::string(kStubPatchSize, 'P'));
    CHECK(std::string(run.uninstaller.c_str(), static_cast<size_t>(run.uninstaller.length())) == Text(expected));
  }
}

TEST_CASE("what looks like a signature and doesn't end with the file is left alone") {
  const int32_t end = static_cast<int32_t>(TestInstaller().Build().executable.size());
  for (const auto &[place, size] :
       {std::pair{end - 16, 15}, {end - 16, 17}, {end + 1, -1}, {end, 0}, {-16, end + 16}}) {
    TestInstaller installer;
    const std::string entry = Raw(place) + Raw(size);
    installer.executable = [&](Bytes &file) { Put(file, kPeOffset + pe::kSignatureAt, entry); };
    ArchiveRun run(installer.Build().executable);
    run.Run();
    CHECK(run.location.file_size == run.file.Size());
    CHECK(std::string(run.uninstaller.c_str() + kPeOffset + pe::kSignatureAt, 8) ==
          (size == 0 ? Raw(uint64_t{0}) : entry));
  }
}

TEST_CASE("sections behind the archive's move up in the uninstaller's table") {
  TestInstaller installer;
  installer.executable = [](Bytes &file) {
    // The archive's entry changes places with the one in front of it.
    for (size_t i = 0; i < 40; ++i)
      std::swap(file[kSectionEntry + i], file[kSectionEntry - 40 + i]);
    Put(file, kSectionEntry + 40, std::string(40, '#') + std::string(40, '@'));
  };
  const Bytes file = installer.Build().executable;
  ArchiveRun run(file);
  run.Run();
  const Bytes image(run.uninstaller.c_str(), run.uninstaller.c_str() + run.uninstaller.length());
  const uint32_t raw = static_cast<uint32_t>(run.location.section_raw_size);
  CHECK(run.location.section_index == 3);
  CHECK(packer::GetU16(image, kPeOffset + pe::kSectionCountAt) == 4);
  CHECK(packer::GetU32(image, kPeOffset + pe::kImageSizeAt) == 0x5000);
  CHECK(packer::GetU32(image, kPeOffset + pe::kInitializedDataSizeAt) == 0x800);
  CHECK(image[kSectionEntry - 40 + 4] == '3');
  CHECK(packer::GetU32(image, kSectionEntry - 40 + pe::kRawPointerAt) == 0x400 + 0x200 * 3 - raw);
  CHECK(image[kSectionEntry] == '#'); // what stood behind the table comes along, one entry further than there are
  CHECK(image[kSectionEntry + 40] == '@');
  CHECK(packer::GetU32(image, kSectionEntry + pe::kRawPointerAt) == 0x23232323);
}

TEST_CASE("a cursor gives zeros and empty texts past the end, and stays there") {
  const std::string bytes("\1\2\3\4\5\6ab\0cd", 11);
  ArchiveCursor cursor(bytes.data(), static_cast<int32_t>(bytes.size()));
  CHECK(cursor.CursorReadU32() == 0x04030201);
  cursor.CursorSkip(2);
  CHECK(std::string(cursor.CursorReadText()) == "ab");
  ArchiveCursor unended = cursor;
  CHECK(std::string(unended.CursorReadText()) == "");
  CHECK(unended.left() == 0);
  CHECK(cursor.CursorReadU32() == 0x6463); // half of it is there
  CHECK(cursor.CursorReadU32() == 0);
  String block;
  cursor.CursorReadBlock(block, 3);
  CHECK(block == String("\0\0\0", 3));
  cursor.CursorSkip(0x7FFFFFFF);
  CHECK(cursor.left() == 0);
}
