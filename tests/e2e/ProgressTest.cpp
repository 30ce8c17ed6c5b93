// What a user sees of a run's course, and what Cancel does to it.
#include <doctest/doctest.h>

#include <filesystem>

#include "core/Windows.h"

#include <commctrl.h>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"

using namespace korb::test;

namespace {

constexpr int kCancel = 1003;

/// Two files, and time enough to see each step; without any question before the progress dialog.
void PackSteps(PackedProduct &product) {
  product.Write("data.bin", std::string(100000, 'd'));
  product.Pack();
}

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

TEST_CASE("the steps come in their order, each with its place of the bar") {
  PackedProduct product(ProductManifest("steps"));
  PackSteps(product);
  Process setup = product.Start();
  CHECK(WaitForProgress("start 2"));
  const Window dialog = Dialog();
  CHECK(dialog.title == "Installing");
  HWND bar = nullptr;
  for (const Control &control : dialog.controls)
    if (control.kind == PROGRESS_CLASSA)
      bar = control.handle;
  REQUIRE(bar);
  // The bar covers its frame and has an edge of its own, and the dialog is in the middle of the screen.
  RECT place, inside, frame, around;
  GetWindowRect(bar, &place);
  GetClientRect(bar, &inside);
  GetWindowRect(dialog.Find("1007")->handle, &frame);
  GetWindowRect(dialog.handle, &around);
  CHECK(place.left == frame.left - 1);
  CHECK(place.top == frame.top - 1);
  CHECK(inside.right == place.right - place.left - 2);
  CHECK(std::abs(around.left + around.right - GetSystemMetrics(SM_CXSCREEN)) <= 2);
  CHECK(std::abs(around.top + around.bottom - GetSystemMetrics(SM_CYSCREEN)) <= 2);

  // The last file's name is no format.
  const std::string file = "100% %n%s%s.bin";
  for (const std::string &step :
       {std::string("100% verified 36"), std::string("unpack 40"),
        file + " -> C:\\Program Files\\Steps\\" + file + " 87", std::string("shortcuts 95"), std::string("end 100")}) {
    CAPTURE(step);
    CHECK(WaitForProgress(step));
  }
  EndInstallation(setup);
}

TEST_CASE("a cancel is asked for, and ends the run where it stands") {
  PackedProduct product(ProductManifest("steps"));
  PackSteps(product);
  Process declined = product.Start();
  CHECK(Click(AskedToCancel(), "No"));
  EndInstallation(declined);
  Process cancelled = product.Start();
  CHECK(Click(AskedToCancel(), "Yes"));
  CHECK(cancelled.Wait() == DWORD{1});
}

TEST_CASE("an installation that can't be cancelled does not listen") {
  PackedProduct product(ProductManifest("steps") + "no_cancel = true");
  PackSteps(product);
  Process setup = product.Start();
  const Window dialog = Dialog();
  const Control *cancel = dialog.Find(std::to_string(kCancel));
  REQUIRE(cancel);
  CHECK_FALSE(cancel->enabled);
  PostMessageA(dialog.handle, WM_COMMAND, kCancel, reinterpret_cast<LPARAM>(cancel->handle));
  CHECK_FALSE(WaitForWindow("Really?", 300));
  EndInstallation(setup);
}

TEST_CASE("whatever keeps a run waiting, what the user sees meanwhile is where it is") {
  PackedProduct product(ProductManifest("course"));
  constexpr size_t kLarge = 70000, kFirstPart = 40000, kVolume = 70000; // the latter two as the product has them
  product.Write("large.bin", std::string(kLarge, 'l'));
  for (const char *file : {"waiting_server.dll", "korb-blocks.ttf"})
    product.Write(file, FileBytes(file));
  product.Pack();
  const auto disk = [&](int number) { return product.Folder() + "\\Setup" + std::to_string(number) + ".KRB"; };
  size_t payload = kFirstPart;
  for (int i = 2; std::filesystem::exists(disk(i)); ++i)
    payload += FileBytes(disk(i)).size() - 4;
  std::filesystem::rename(disk(3), disk(3) + ".away");
  const HANDLE pipe =
      CreateNamedPipeA("\\\\.\\pipe\\course", PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 1000, 1000, 0, nullptr);
  REQUIRE(pipe != INVALID_HANDLE_VALUE);
  Process setup = product.Start();

  REQUIRE(WaitForWindow("disk 3"));
  CHECK(ShownProgress() == "start " + std::to_string(5 + (kFirstPart + kVolume - 4) * 30 / payload));
  std::filesystem::rename(disk(3) + ".away", disk(3));
  AnswerWindow("disk 3", "OK");

  // With its first byte here, the file is being written until all of it is.
  std::string large(kLarge, '\0');
  DWORD count = 0;
  ConnectNamedPipe(pipe, nullptr);
  CHECK(ReadFile(pipe, large.data(), 1, &count, nullptr));
  CHECK(ShownProgress([&] {
          for (size_t done = 1; done < kLarge; done += count)
            if (!ReadFile(pipe, large.data() + done, static_cast<DWORD>(kLarge - done), &count, nullptr))
              break;
        }) == "b.txt -> C:\\Program Files\\Course\\b.txt 61");
  CHECK((large == std::string(kLarge, 'l')));
  CloseHandle(pipe);

  REQUIRE(WaitForWindow("registering"));
  CHECK(ShownProgress() == "korb-blocks.ttf -> C:\\windows\\Fonts\\korb-blocks.ttf 87");
  AnswerWindow("registering", "OK");
  AnswerWindow("Installed.", "OK");
  CHECK(setup.Wait() == DWORD{1});

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
