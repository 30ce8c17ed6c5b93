// What a user sees of an installation's course, and what Cancel does to it.
#include <doctest/doctest.h>

#include <iterator>

#include "core/Windows.h"

#include <commctrl.h>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"

using namespace korb::test;

namespace {

constexpr int kStepText = 1011, kCancel = 1003;

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
  const Window dialog = Dialog();
  CHECK(dialog.title == "Installing");
  HWND bar = nullptr;
  for (const Control &control : dialog.controls)
    if (control.kind == PROGRESS_CLASSA)
      bar = control.handle;
  REQUIRE(bar);
  // The bar covers its frame, and the dialog stands in the middle of the screen.
  RECT place, frame, around;
  GetWindowRect(bar, &place);
  GetWindowRect(dialog.Find("1007")->handle, &frame);
  GetWindowRect(dialog.handle, &around);
  CHECK(place.left == frame.left - 1);
  CHECK(place.top == frame.top - 1);
  CHECK(std::abs(around.left + around.right - GetSystemMetrics(SM_CXSCREEN)) <= 2);
  CHECK(std::abs(around.top + around.bottom - GetSystemMetrics(SM_CYSCREEN)) <= 2);

  // What each wait shows, in this order; the last file's name is no format.
  const std::string file = "100% %n%s%s.bin";
  const std::string steps[] = {"100% verified 36", file + " -> C:\\Program Files\\Steps\\" + file + " 87",
                               "shortcuts 95", "end 100"};
  const HWND step_text = dialog.Find(std::to_string(kStepText))->handle;
  size_t step = 0;
  for (LRESULT last = 0; IsWindow(dialog.handle); Sleep(5)) {
    char text[256] = "";
    SendMessageA(step_text, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    const LRESULT at = SendMessageA(bar, PBM_GETPOS, 0, 0);
    if (!IsWindow(bar))
      break;
    CHECK(at >= last);
    last = at;
    if (step < std::size(steps) && text + (" " + std::to_string(at)) == steps[step])
      ++step;
  }
  CAPTURE(step);
  CHECK(step == std::size(steps));
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
