// What a user sees of a run's course, and what Cancel does to it.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "core/Windows.h"

#include <commctrl.h>

#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"

using namespace korb::test;

namespace {

constexpr int kCancel = 1003;

/// Two files, and time enough to see each step; without any question before the progress dialog.
struct Steps {
  explicit Steps(const std::string &option = "") : product(ProductManifest("steps") + option) {
    product.Write("data.bin", std::string(100000, 'd'));
    product.Pack();
  }
  CleanPlace place{{"C:\\Program Files\\Steps"}};
  PackedProduct product;
};

Window Dialog() {
  const auto dialog = WaitForWindow("A label");
  REQUIRE(dialog);
  return *dialog;
}

/// Clicks Cancel and gives the question.
Window AskedToCancel() {
  CHECK(Click(Dialog(), std::to_string(kCancel)));
  const auto question = WaitForWindow("Really?");
  REQUIRE(question);
  return *question;
}

void EndInstallation(Process &setup) {
  AnswerWindow("OK", "OK");
  CHECK(setup.Wait() == DWORD{1});
}

} // namespace

TEST_CASE_FIXTURE(Steps, "the steps come in their order, each with its place of the bar") {
  Process setup = product.Start();
  // The last file's name is no format.
  const std::string file = "100% %n%s%s.bin";
  for (const std::string &step :
       {std::string("start 2"), std::string("100% verified 36"), std::string("unpack 40"),
        file + " -> C:\\Program Files\\Steps\\" + file + " 87", std::string("shortcuts 95"), std::string("end 100")}) {
    CAPTURE(step);
    REQUIRE_MESSAGE(WaitForProgress(step), ShownProgress());
  }
  EndInstallation(setup);
}

TEST_CASE_FIXTURE(Steps, "the progress dialog is in the middle of the screen, and its bar's end can be seen") {
  Process setup = product.Start();
  const Window dialog = Dialog();
  CHECK(dialog.title == "Installing");
  HWND bar = nullptr;
  for (const Control &control : dialog.controls)
    if (control.kind == PROGRESS_CLASSA)
      bar = control.handle;
  REQUIRE(bar);
  RECT place, frame, around;
  GetWindowRect(bar, &place);
  GetWindowRect(dialog.Find("1007")->handle, &frame);
  GetWindowRect(dialog.handle, &around);
  CHECK(place.left == frame.left - 1);
  CHECK(place.top == frame.top - 1);
  // What is not done yet can be told from the dialog around it.
  REQUIRE(WaitForProgress("shortcuts 95"));
  const HDC screen = GetDC(nullptr);
  const int middle = (place.top + place.bottom) / 2;
  CHECK(GetPixel(screen, place.right - 3, middle) != GetPixel(screen, place.right + 3, middle));
  ReleaseDC(nullptr, screen);
  CHECK(std::abs(around.left + around.right - GetSystemMetrics(SM_CXSCREEN)) <= 2);
  CHECK(std::abs(around.top + around.bottom - GetSystemMetrics(SM_CYSCREEN)) <= 2);
  EndInstallation(setup);
}

TEST_CASE_FIXTURE(Steps, "a cancel that is declined changes nothing") {
  Process setup = product.Start();
  CHECK(Click(AskedToCancel(), "No"));
  EndInstallation(setup);
}

TEST_CASE_FIXTURE(Steps, "a cancel that is confirmed ends the run where it is") {
  Process setup = product.Start();
  CHECK(Click(AskedToCancel(), "Yes"));
  CHECK(setup.Wait() == DWORD{1});
}

TEST_CASE("an installation that can't be cancelled does not listen") {
  const Steps steps("no_cancel = true");
  Process setup = steps.product.Start();
  const Window dialog = Dialog();
  const Control *cancel = dialog.Find(std::to_string(kCancel));
  REQUIRE(cancel);
  CHECK_FALSE(cancel->enabled);
  PostMessageA(dialog.handle, WM_COMMAND, kCancel, reinterpret_cast<LPARAM>(cancel->handle));
  CHECK_FALSE(WaitForWindow("Really?", 300));
  EndInstallation(setup);
}

namespace {

constexpr size_t kLarge = 70000, kFirstPart = 40000, kVolume = 70000; // the latter two as the product has them

/// A product that keeps its run waiting: for a disk, for who reads a pipe, for a library and for the user.
struct Course {
  Course() {
    product.Write("large.bin", std::string(kLarge, 'l'));
    for (const char *file : {"waiting_server.dll", "korb-blocks.ttf"})
      product.Write(file, FileBytes(file));
    product.Pack();
    REQUIRE(pipe != INVALID_HANDLE_VALUE);
  }
  ~Course() { CloseHandle(pipe); }

  std::string Disk(int number) const { return product.Folder() + "\\Setup" + std::to_string(number) + ".KRB"; }

  /// How large all parts of the payload are.
  size_t PayloadSize() const {
    size_t size = kFirstPart;
    for (int i = 2; std::filesystem::exists(Disk(i)); ++i)
      size += FileBytes(Disk(i)).size() - 4;
    return size;
  }

  /// Takes the next bytes that the run writes to the pipe, until there are `end`.
  void Receive(size_t end) {
    ConnectNamedPipe(pipe, nullptr);
    char bytes[1000];
    for (DWORD count; received.size() < end; received.append(bytes, count))
      if (!ReadFile(pipe, bytes, static_cast<DWORD>(std::min(end - received.size(), sizeof bytes)), &count, nullptr))
        break;
  }

  void EndInstallation(Process &setup) {
    AnswerWindow("registering", "OK");
    AnswerWindow("Installed.", "OK");
    CHECK(setup.Wait() == DWORD{1});
  }

  CleanPlace place{{"C:\\Program Files\\Course"},
                   {kUninstallKey + "Course", "Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs"}};
  PackedProduct product{ProductManifest("course")};
  const HANDLE pipe =
      CreateNamedPipeA("\\\\.\\pipe\\course", PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 1000, 1000, 0, nullptr);
  std::string received;
};

} // namespace

TEST_CASE_FIXTURE(Course, "whatever keeps an installation waiting, what the user sees meanwhile is where it is") {
  const size_t payload = PayloadSize();
  std::filesystem::rename(Disk(3), Disk(3) + ".away");
  Process setup = product.Start();
  REQUIRE(WaitForWindow("disk 3"));
  CHECK(ShownProgress() == "start " + std::to_string(5 + (kFirstPart + kVolume - 4) * 30 / payload));
  std::filesystem::rename(Disk(3) + ".away", Disk(3));
  AnswerWindow("disk 3", "OK");

  Receive(1); // with its first byte here, the file is being written until all of it is
  CHECK(ShownProgress([&] { Receive(kLarge); }) == "b.txt -> C:\\Program Files\\Course\\b.txt 61");
  CHECK((received == std::string(kLarge, 'l')));
  CloseHandle(pipe);

  REQUIRE(WaitForWindow("registering"));
  CHECK(ShownProgress() == "korb-blocks.ttf -> C:\\windows\\Fonts\\korb-blocks.ttf 87");
  EndInstallation(setup);
}

TEST_CASE_FIXTURE(Course, "whatever keeps an uninstallation waiting, what the user sees meanwhile is where it is") {
  {
    Process setup = product.Start();
    Receive(kLarge);
    EndInstallation(setup);
  }
  Process uninstaller(UninstallValue("Course", "UninstallString"), "C:\\windows");
  AnswerWindow("Remove?", "Yes");
  CHECK(WaitForProgress("associations 1"));
  REQUIRE(WaitForWindow("font Korb Blocks?"));
  CHECK(ShownProgress() == "fonts 5");
  AnswerWindow("font Korb Blocks?", "Yes");
  CHECK(WaitForProgress("\\\\.\\pipe 44")); // the shortest directory, listed after three files
  REQUIRE(WaitForWindow("unregistering"));
  CHECK(ShownProgress() == "shared files 90");
  AnswerWindow("unregistering", "OK");
  AnswerWindow("waiting_server.dll?", "Yes");
  CHECK(WaitForProgress("registry 95"));
  AnswerWindow("Removed.", "OK");
  CHECK(uninstaller.Wait() == DWORD{1});
  CHECK(WaitForSelfRemoval());
}
