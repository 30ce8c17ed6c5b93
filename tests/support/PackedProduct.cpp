#include "tests/support/PackedProduct.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "packer/Build.h"
#include "packer/manifest/ManifestReader.h"
#include "packer/write/Installer.h"

namespace korb::test {

namespace {

std::filesystem::path OwnFolder() {
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, sizeof path);
  return std::filesystem::path(path).parent_path();
}

} // namespace

PackedProduct::PackedProduct(const std::string &manifest) {
  folder_.Write("manifest.toml", manifest);
}

std::string PackedProduct::Pack(const std::string &name) {
  packer::BuildRequest request;
  request.manifest = folder_.Path() / "manifest.toml";
  request.output = folder_.Path() / name;
  request.stub = OwnFolder() / "korb.exe";
  std::ostringstream summary, problems;
  if (!packer::BuildFromManifest(request, summary, problems))
    throw std::runtime_error(problems.str());
  installer_ = request.output.string();
  return installer_;
}

void PackedProduct::PackSpoiled(const std::function<void(packer::Product &)> &spoil) {
  packer::Findings findings;
  packer::Product product = packer::ReadManifest(folder_.Path() / "manifest.toml", {}, findings).product;
  spoil(product);
  installer_ = (folder_.Path() / "setup.exe").string();
  WriteInstaller(product, installer_);
}

Process PackedProduct::Start(const std::string &arguments) const {
  return Process("\"" + installer_ + "\" " + arguments, Folder());
}

void PackedProduct::Install() const {
  Process installer = Start("/a");
  if (!installer.Wait())
    throw std::runtime_error("the installer does not come to an end");
}

void WriteInstaller(const packer::Product &product, const std::string &path) {
  const std::string stub = FileBytes((OwnFolder() / "korb.exe").string());
  const packer::Bytes file = packer::BuildInstaller(product, packer::Bytes(stub.begin(), stub.end())).executable;
  WriteFileBytes(path, std::string(file.begin(), file.end()));
}

std::filesystem::path GivenFolder(const char *variable) {
  const char *folder = std::getenv(variable);
  if (folder == nullptr)
    throw std::runtime_error(std::string(variable) + " does not name a folder of the tests");
  return "Z:" + std::string(folder);
}

std::filesystem::path BuildExample(const std::string &name) {
  const std::filesystem::path setup = std::filesystem::path("C:\\") / name / "setup.exe";
  std::filesystem::create_directories(setup.parent_path());
  std::ostringstream summary, problems;
  packer::BuildFromManifest({GivenFolder("KORB_EXAMPLES") / name / "setup.toml", setup, "korb.exe", {}}, summary,
                            problems);
  if (!problems.str().empty())
    throw std::runtime_error(problems.str());
  return setup;
}

std::string ProductManifest(const std::string &name) {
  return FileBytes((GivenFolder("KORB_E2E") / "products" / (name + ".toml")).string());
}

std::string InstallLog(const std::string &home) {
  const std::string log = FileBytes(home + "\\Install.LOG");
  const size_t heading_end = log.find("\r\n\r\n", log.rfind("\r\nInstall date"));
  return heading_end == std::string::npos ? log : log.substr(heading_end + 4);
}

std::string MachineValue(const std::string &key, const std::string &name) {
  union {
    char text[1000];
    DWORD number;
  } value{};
  DWORD size = sizeof value - 1, type = REG_NONE;
  if (RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), RRF_RT_REG_SZ | RRF_RT_REG_DWORD, &type, &value,
                   &size) != ERROR_SUCCESS)
    return "missing";
  return type == REG_DWORD ? std::to_string(value.number) : value.text;
}

void SetRegistryText(HKEY root, const std::string &key, const std::string &name, const std::string &value) {
  HKEY handle;
  if (RegCreateKeyA(root, key.c_str(), &handle) != ERROR_SUCCESS)
    throw std::runtime_error("can't make the key " + key);
  RegSetValueExA(handle, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()),
                 static_cast<DWORD>(value.size() + 1));
  RegCloseKey(handle);
}

void SetWindowsVersion(const std::string &program, const std::string &version) {
  SetRegistryText(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\" + program, "Version", version);
}

std::string FileBytes(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  if (!file)
    throw std::runtime_error("can't read " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void WriteFileBytes(const std::string &path, const std::string &bytes) {
  if (!std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw std::runtime_error("can't write " + path);
}

std::string DescribeFile(const std::string &path) {
  WIN32_FIND_DATAA found;
  const HANDLE find = FindFirstFileA(path.c_str(), &found);
  if (find == INVALID_HANDLE_VALUE)
    return "missing";
  FindClose(find);
  std::string words;
  const struct {
    DWORD bit;
    const char *word;
  } attributes[] = {{FILE_ATTRIBUTE_DIRECTORY, "directory "},
                    {FILE_ATTRIBUTE_ARCHIVE, "archive "},
                    {FILE_ATTRIBUTE_READONLY, "read-only "},
                    {FILE_ATTRIBUTE_HIDDEN, "hidden "},
                    {FILE_ATTRIBUTE_SYSTEM, "system "}};
  for (const auto &attribute : attributes)
    if (found.dwFileAttributes & attribute.bit)
      words += attribute.word;
  FILETIME local;
  SYSTEMTIME time;
  FileTimeToLocalFileTime(&found.ftLastWriteTime, &local);
  FileTimeToSystemTime(&local, &time);
  char date[40];
  wsprintfA(date, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute,
            time.wSecond);
  return words + date;
}

} // namespace korb::test
