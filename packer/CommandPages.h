// What shells and manuals want to know of the commands, written from the commands themselves.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace korb::packer {

/// The manual page of `app` and its commands, for `man`. `version` stands at its foot.
std::string ManPage(const CLI::App &app, const std::string &version);

/// A script that completes the commands of `app` and their options; files where neither fits.
std::string BashCompletion(const CLI::App &app);
std::string ZshCompletion(const CLI::App &app);

} // namespace korb::packer
