// From a product and the stub to an installer, in memory.
#pragma once

#include "packer/Product.h"
#include "packer/write/RecordWriter.h"
#include "packer/write/StubImage.h"

namespace korb::packer {

struct Installer {
  Bytes executable;
  std::vector<Bytes> volumes; ///< the first is volume number 2
  size_t config_size = 0;     ///< bytes of the stored configuration
  size_t payload_size = 0;    ///< bytes of the stored payload, volumes included
  size_t plain_size = 0;      ///< bytes of the payload before packing
  Storing storing = Storing::kAsWished;
  size_t tail_size = 0; ///< bytes after the section: the uninstaller keeps them
};

/// The program part of an installer of `product`, made from `stub`. Throws PackError when the stub is unfit.
StubImage ProgramOf(const Product &product, const Bytes &stub);

/// Tells before the payload is packed what BuildInstaller would: throws PackError when it would, as far as that doesn't
/// depend on how well the payload packs. True when a part of the payload will stay in the uninstaller for sure.
bool TryInstaller(const Product &product, const Bytes &stub);

/// Builds the installer of `product` from `stub`, the bytes of the program without an archive. The same product and
/// stub give the same bytes. What a reader would refuse is written all the same where the format can hold it (see
/// ProductCheck.h), but a payload that packing does not help is stored unpacked; throws PackError when it can't, or
/// when the stub is unfit.
Installer BuildInstaller(const Product &product, const Bytes &stub, const ProgressCallback &progress = {});

/// The last step of BuildInstaller alone: an installer around a plain configuration stream and a payload that came from
/// elsewhere. Of `product` it takes the program part, the payload plan and the volumes' serial.
Installer AssembleInstaller(const Product &product, const Bytes &config, const Payload &payload, const Bytes &stub);

/// File name of volume `number`, from 2.
std::string VolumeFileName(const Product &product, size_t number);

} // namespace korb::packer
