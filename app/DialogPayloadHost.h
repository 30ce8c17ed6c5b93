// Shows the user how the payload comes together, and asks for disks.
#pragma once

#include "archive/PayloadHost.h"
#include "files/DiskFile.h"

namespace korb {

class DialogPayloadHost final : public PayloadHost {
public:
  void SetProgress(int32_t percent) override;
  void SetStep(int32_t number, int32_t percent) override;
  void WaitPhase(int32_t milliseconds) override;
  const char *Text(int32_t number) override;
  bool AskForVolume(const String &message) override;
  void AskCancel() override;
  ByteSource *OpenVolume(const String &path, int32_t &size) override;
  void CloseVolume() override;

private:
  DiskFile volume_;
};

} // namespace korb
