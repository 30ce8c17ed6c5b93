// Work that is done on several processors at once.
#pragma once

#include <functional>
#include <span>

namespace korb::packer {

using Task = std::function<void()>;

/// Runs every task once, in no particular order and on as many threads as the machine has processors, and returns when
/// all are done. So no task may write what another one uses. On a single processor, or where no thread can be started,
/// the caller does everything. What a task throws is thrown here, when all have ended.
void RunTogether(std::span<const Task> tasks);

} // namespace korb::packer
