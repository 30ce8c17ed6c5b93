// The system calls that can be refused, by the class under which they are counted.
#pragma once

#include "core/Windows.h"

namespace korb::faults {

/// How a call tells that it failed.
enum class Told : BYTE {
  ByError,  ///< gives `failure`, and the error is the thread's last one
  ByStatus, ///< gives the error itself
};

/// What a refused call does besides.
enum class Effect : BYTE {
  None,    ///< nothing: it is refused before anything happens
  Carried, ///< it is carried out and then said to have failed, so that what it gives back is given back
};

struct Call {
  const char *name;
  const char *group;
  BYTE words; ///< that its arguments take on the stack
  LONG failure;
  DWORD error;
  BYTE zeroed = 0;      ///< the argument, from 1, that points to a count or a pointer that a failed call sets to 0
  bool changes = false; ///< the machine is another one after it, so the moment before it is one of its own
  Told told = Told::ByError;
  Effect effect = Effect::None;
};

constexpr LONG kNoObject = static_cast<LONG>(0x80004005); // E_FAIL

constexpr Call kCalls[] = {
    {"CreateFileA", "open", 7, -1, ERROR_ACCESS_DENIED, 0, true},
    {"GetTempFileNameA", "open", 4, 0, ERROR_ACCESS_DENIED, 0, true},
    {"ReadFile", "read", 5, 0, ERROR_CRC, 4},
    {"GetFileVersionInfoSizeA", "read", 2, 0, ERROR_FILE_CORRUPT},
    {"GetFileVersionInfoA", "read", 4, 0, ERROR_FILE_CORRUPT},
    {"VerQueryValueA", "read", 4, 0, ERROR_FILE_CORRUPT},
    {"GetPrivateProfileStringA", "read", 6, 0, ERROR_ACCESS_DENIED},
    {"WriteFile", "write", 5, 0, ERROR_DISK_FULL, 4, true},
    {"FlushFileBuffers", "write", 1, 0, ERROR_DISK_FULL, 0, true},
    {"WritePrivateProfileStringA", "write", 4, 0, ERROR_ACCESS_DENIED, 0, true},
    {"WriteProfileStringA", "write", 3, 0, ERROR_ACCESS_DENIED, 0, true},
    {"SetFilePointer", "size", 4, -1, ERROR_SEEK},
    {"SetEndOfFile", "size", 1, 0, ERROR_DISK_FULL, 0, true},
    {"GetFileSize", "size", 2, -1, ERROR_GEN_FAILURE},
    {"LockFile", "size", 5, 0, ERROR_LOCK_VIOLATION},
    {"UnlockFile", "size", 5, 0, ERROR_NOT_LOCKED},
    {"CloseHandle", "close", 1, 0, ERROR_INVALID_HANDLE, 0, true, Told::ByError, Effect::Carried},
    {"FindClose", "close", 1, 0, ERROR_INVALID_HANDLE, 0, false, Told::ByError, Effect::Carried},
    {"RegCloseKey", "close", 1, 0, ERROR_INVALID_HANDLE, 0, false, Told::ByStatus, Effect::Carried},
    {"FreeLibrary", "close", 1, 0, ERROR_INVALID_HANDLE, 0, false, Told::ByError, Effect::Carried},
    {"GetFileAttributesA", "attributes", 1, -1, ERROR_ACCESS_DENIED},
    {"SetFileAttributesA", "attributes", 2, 0, ERROR_ACCESS_DENIED, 0, true},
    {"GetFileTime", "attributes", 4, 0, ERROR_ACCESS_DENIED},
    {"SetFileTime", "attributes", 4, 0, ERROR_ACCESS_DENIED, 0, true},
    {"FileTimeToDosDateTime", "attributes", 3, 0, ERROR_INVALID_PARAMETER},
    {"DosDateTimeToFileTime", "attributes", 3, 0, ERROR_INVALID_PARAMETER},
    {"FileTimeToLocalFileTime", "attributes", 2, 0, ERROR_INVALID_PARAMETER},
    {"LocalFileTimeToFileTime", "attributes", 2, 0, ERROR_INVALID_PARAMETER},
    {"FileTimeToSystemTime", "attributes", 2, 0, ERROR_INVALID_PARAMETER},
    {"SystemTimeToFileTime", "attributes", 2, 0, ERROR_INVALID_PARAMETER},
    {"DeleteFileA", "delete", 1, 0, ERROR_SHARING_VIOLATION, 0, true},
    {"MoveFileA", "move", 2, 0, ERROR_SHARING_VIOLATION, 0, true},
    {"MoveFileExA", "move", 3, 0, ERROR_ACCESS_DENIED, 0, true},
    {"CreateDirectoryA", "directory", 2, 0, ERROR_ACCESS_DENIED, 0, true},
    {"RemoveDirectoryA", "directory", 1, 0, ERROR_ACCESS_DENIED, 0, true},
    {"FindFirstFileA", "directory", 2, -1, ERROR_ACCESS_DENIED},
    {"FindNextFileA", "directory", 2, 0, ERROR_ACCESS_DENIED},
    {"SetCurrentDirectoryA", "directory", 1, 0, ERROR_ACCESS_DENIED},
    {"GetCurrentDirectoryA", "directory", 2, 0, ERROR_ACCESS_DENIED},
    {"GetTempPathA", "directory", 2, 0, ERROR_PATH_NOT_FOUND},
    {"GetWindowsDirectoryA", "directory", 2, 0, ERROR_PATH_NOT_FOUND},
    {"GetSystemDirectoryA", "directory", 2, 0, ERROR_PATH_NOT_FOUND},
    {"GetFullPathNameA", "directory", 4, 0, ERROR_INVALID_NAME},
    {"GetShortPathNameA", "directory", 3, 0, ERROR_PATH_NOT_FOUND},
    {"GetFinalPathNameByHandleA", "directory", 4, 0, ERROR_PATH_NOT_FOUND},
    {"GetModuleFileNameA", "directory", 3, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"SearchPathA", "directory", 6, 0, ERROR_FILE_NOT_FOUND},
    {"GetDiskFreeSpaceA", "space", 5, 0, ERROR_NOT_READY},
    {"GetDiskFreeSpaceExA", "space", 4, 0, ERROR_NOT_READY},
    {"GetDriveTypeA", "space", 1, 0, ERROR_NOT_READY},
    {"GetVolumeInformationA", "space", 8, 0, ERROR_NOT_READY},
    {"GetLogicalDrives", "space", 0, 0, ERROR_NOT_READY},
    {"RegOpenKeyExA", "registry-open", 5, 0, ERROR_ACCESS_DENIED, 0, false, Told::ByStatus},
    {"RegCreateKeyExA", "registry-open", 9, 0, ERROR_ACCESS_DENIED, 0, true, Told::ByStatus},
    {"RegQueryValueExA", "registry-read", 6, 0, ERROR_NO_SYSTEM_RESOURCES, 0, false, Told::ByStatus},
    {"RegQueryInfoKeyA", "registry-read", 12, 0, ERROR_NO_SYSTEM_RESOURCES, 0, false, Told::ByStatus},
    {"RegSetValueExA", "registry-write", 6, 0, ERROR_NO_SYSTEM_RESOURCES, 0, true, Told::ByStatus},
    {"RegDeleteKeyA", "registry-delete", 2, 0, ERROR_ACCESS_DENIED, 0, true, Told::ByStatus},
    {"RegDeleteValueA", "registry-delete", 2, 0, ERROR_ACCESS_DENIED, 0, true, Told::ByStatus},
    {"RegEnumKeyA", "registry-enumerate", 4, 0, ERROR_NO_SYSTEM_RESOURCES, 0, false, Told::ByStatus},
    {"RegEnumKeyExA", "registry-enumerate", 8, 0, ERROR_NO_SYSTEM_RESOURCES, 0, false, Told::ByStatus},
    {"RegEnumValueA", "registry-enumerate", 8, 0, ERROR_NO_SYSTEM_RESOURCES, 0, false, Told::ByStatus},
    {"CreateProcessA", "process", 10, 0, ERROR_NOT_ENOUGH_MEMORY, 0, true},
    {"WaitForSingleObject", "wait", 2, -1, ERROR_INVALID_HANDLE},
    {"OpenProcess", "process", 3, 0, ERROR_ACCESS_DENIED},
    {"GetExitCodeProcess", "process", 2, 0, ERROR_INVALID_HANDLE},
    {"OpenProcessToken", "process", 3, 0, ERROR_ACCESS_DENIED},
    {"LookupPrivilegeValueA", "process", 3, 0, ERROR_ACCESS_DENIED},
    {"AdjustTokenPrivileges", "process", 6, 0, ERROR_ACCESS_DENIED},
    {"ShellExecuteA", "process", 6, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED, 0, true},
    {"LoadLibraryA", "library", 1, 0, ERROR_MOD_NOT_FOUND},
    {"GetProcAddress", "library", 2, 0, ERROR_PROC_NOT_FOUND},
    {"FindResourceA", "library", 3, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"LoadResource", "library", 2, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"LockResource", "library", 1, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"SizeofResource", "library", 2, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"RegisterClassA", "window", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateWindowExA", "window", 12, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateDialogParamA", "window", 5, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"DialogBoxParamA", "window", 5, -1, ERROR_NOT_ENOUGH_MEMORY},
    {"MessageBoxA", "window", 4, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"SetTimer", "window", 4, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"LoadCursorA", "window", 2, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"LoadIconA", "window", 2, 0, ERROR_RESOURCE_NAME_NOT_FOUND},
    {"SHBrowseForFolderA", "window", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GetDC", "gdi", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"BeginPaint", "gdi", 2, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateFontA", "gdi", 14, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateFontIndirectA", "gdi", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateSolidBrush", "gdi", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateCompatibleDC", "gdi", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateCompatibleBitmap", "gdi", 3, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreateDIBitmap", "gdi", 6, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"CreatePalette", "gdi", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GetObjectA", "gdi", 3, 0, ERROR_INVALID_HANDLE},
    {"GetStockObject", "gdi", 1, 0, ERROR_INVALID_PARAMETER},
    {"SelectObject", "gdi", 2, 0, ERROR_INVALID_HANDLE},
    {"GetTextMetricsA", "gdi", 2, 0, ERROR_INVALID_HANDLE},
    {"GetTextExtentPoint32W", "gdi", 4, 0, ERROR_INVALID_HANDLE},
    {"GetDeviceCaps", "gdi", 2, 0, ERROR_INVALID_HANDLE},
    {"GetSysColorBrush", "gdi", 1, 0, ERROR_INVALID_PARAMETER},
    {"BitBlt", "gdi", 9, 0, ERROR_INVALID_HANDLE},
    {"StretchBlt", "gdi", 11, 0, ERROR_INVALID_HANDLE},
    {"StretchDIBits", "gdi", 13, 0, ERROR_INVALID_HANDLE},
    {"SetDIBitsToDevice", "gdi", 12, 0, ERROR_INVALID_HANDLE},
    {"TextOutW", "gdi", 5, 0, ERROR_INVALID_HANDLE},
    {"DrawTextA", "gdi", 5, 0, ERROR_INVALID_HANDLE},
    {"GradientFill", "gdi", 6, 0, ERROR_INVALID_HANDLE},
    {"HeapAlloc", "memory", 3, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"HeapReAlloc", "memory", 4, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"VirtualAlloc", "memory", 4, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GlobalAlloc", "memory", 2, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GlobalLock", "memory", 1, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"MultiByteToWideChar", "text", 6, 0, ERROR_INSUFFICIENT_BUFFER},
    {"WideCharToMultiByte", "text", 8, 0, ERROR_INSUFFICIENT_BUFFER},
    {"FormatMessageA", "text", 7, 0, ERROR_MR_MID_NOT_FOUND},
    {"ExpandEnvironmentStringsA", "text", 3, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GetEnvironmentVariableA", "text", 3, 0, ERROR_ENVVAR_NOT_FOUND},
    {"SetEnvironmentVariableA", "text", 2, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"GetDateFormatA", "text", 6, 0, ERROR_INVALID_PARAMETER},
    {"GetTimeFormatA", "text", 6, 0, ERROR_INVALID_PARAMETER},
    {"GetLocaleInfoA", "text", 4, 0, ERROR_INVALID_PARAMETER},
    {"AddFontResourceA", "fonts", 1, 0, ERROR_FILE_NOT_FOUND, 0, true},
    {"RemoveFontResourceA", "fonts", 1, 0, ERROR_FILE_NOT_FOUND, 0, true},
    {"CoInitialize", "com", 1, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    {"CoCreateInstance", "com", 5, kNoObject, ERROR_NOT_ENOUGH_MEMORY, 5},
    {"QueryInterface", "com", 3, kNoObject, ERROR_NOT_ENOUGH_MEMORY, 3},
    {"SetPath", "com", 2, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    {"SetIconLocation", "com", 3, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    {"SetArguments", "com", 2, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    {"SetWorkingDirectory", "com", 2, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    {"Save", "com", 3, kNoObject, ERROR_DISK_FULL, 0, true},
    {"DllRegisterServer", "com", 0, kNoObject, ERROR_ACCESS_DENIED, 0, true},
    {"DllUnregisterServer", "com", 0, kNoObject, ERROR_ACCESS_DENIED, 0, true},
    {"SHGetMalloc", "com", 1, kNoObject, ERROR_NOT_ENOUGH_MEMORY, 1},
    {"SHGetSpecialFolderLocation", "com", 3, kNoObject, ERROR_NOT_ENOUGH_MEMORY, 3},
    {"SHGetPathFromIDListA", "com", 2, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"SHGetSpecialFolderPathA", "com", 4, 0, ERROR_NOT_ENOUGH_MEMORY},
    {"SHGetFolderPathA", "com", 5, kNoObject, ERROR_NOT_ENOUGH_MEMORY},
    // Not refused, but seen on their way.
    {"ExitProcess", "", 1, 0, 0},
    {"ExitWindowsEx", "", 2, 1, 0},
    {"Sleep", "", 1, 0, 0},
    {"GetTickCount", "", 0, 0, 0},
};

} // namespace korb::faults
