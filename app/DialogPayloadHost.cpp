#include "app/DialogPayloadHost.h"

#include "core/MessagePump.h"
#include "format/Texts.h"
#include "ui/Progress.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

void DialogPayloadHost::SetProgress(int32_t percent) {
  korb::SetProgress(percent);
}

void DialogPayloadHost::SetStep(int32_t number, int32_t percent) {
  korb::SetStep(number, percent);
}

void DialogPayloadHost::WaitPhase(int32_t milliseconds) {
  korb::WaitPhase(milliseconds);
}

const char *DialogPayloadHost::Text(int32_t number) {
  return TextLookup(number);
}

bool DialogPayloadHost::AskForVolume(const String &message) {
  return MessageBoxA(DialogOwner(), message, TextLookup(kTextVolumeCaption), MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
}

void DialogPayloadHost::AskCancel() {
  korb::AskCancel();
}

ByteSource *DialogPayloadHost::OpenVolume(const String &path, int32_t &size) {
  ShowPendingProgress(); // a disk may have to start first
  if (volume_.Open(path, DF_READ_SHARED, FILE_ATTRIBUTE_NORMAL) != OPEN_OK)
    return nullptr;
  size = volume_.Size();
  return &volume_;
}

void DialogPayloadHost::CloseVolume() {
  volume_.Close();
}

} // namespace korb
