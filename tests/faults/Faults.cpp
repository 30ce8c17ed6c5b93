// Refuses one system call of the program, or ends the program in front of one.
//
// Linked into the very program beside its own entry: it starts first, puts a thunk of its own in front of each import
// in the table of calls, and lets the program begin. What the program looks up at run time gets a thunk as it is looked
// up, and so do the methods of an object that it creates. An installer's uninstaller has the same image, and the
// environment comes with it.
//
//   KORB_FAULT         GROUP:N or NAME:N, with :ERROR behind it if another error is wanted. The Nth call of that class,
//                      or of that function, is refused. kill:N ends the program where it stands in front of the Nth
//                      call that would change the machine.
//   KORB_FAULT_SITES   if it is set, the report also gets a line for each call: its name, and the nearest ways back.
//   KORB_FAULT_REPORT  a file that gets lines: what was refused and from where, an exception, a restart that was asked
//                      for (which is then not made), and at the end how often each function was called.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tests/faults/Calls.h"

extern "C" void WinMainCRTStartup();

extern "C" {
void FaultGate();
[[gnu::used]] void *__stdcall FaultDecide(const DWORD *stack);
[[gnu::used]] DWORD FaultAnswer, FaultPop; // what a call that is not passed on gives, and takes off the stack
}

namespace korb::faults {

namespace {

constexpr DWORD kSlots = 256;
constexpr DWORD kThunkBytes = 16;
constexpr DWORD kTraceWords = 600, kTraceEntries = 12;
constexpr UINT kExceptionCode = 70;
constexpr DWORD kHaste = 20; ///< times as fast as it is, so that nobody waits for what a person is to read

struct Slot {
  const Call *call;
  void *original;
  DWORD calls;
};

Slot Slots[kSlots];
DWORD SlotCount;
BYTE *Thunks;
bool Inside; // a call of this file's own

char Wanted[64], ReportPath[MAX_PATH];
DWORD WantedNumber, WantedError, WantedCalls;
bool HasError;

char *Sites, *SitesEnd; // the lines of KORB_FAULT_SITES
constexpr DWORD kSiteBytes = 1 << 20, kSiteLine = 80;

/// The code of this program, for telling return addresses.
DWORD CodeBegin, CodeEnd;

// Reports.

char *PutHex(char *to, DWORD number) {
  for (int i = 0; i < 8; ++i, number <<= 4)
    *to++ = "0123456789abcdef"[number >> 28];
  return to;
}

class Line {
public:
  Line() { size_ = 0; }
  Line &operator<<(const char *text) {
    while (*text && size_ < sizeof text_)
      text_[size_++] = *text++;
    return *this;
  }
  Line &operator<<(DWORD number) {
    char digits[11];
    char *digit = &digits[10];
    for (*digit = '\0'; number > 0 || !*digit; number /= 10)
      *--digit = static_cast<char>('0' + number % 10);
    return *this << digit;
  }
  Line &Hex(DWORD number) {
    char digits[9] = "";
    PutHex(digits, number);
    return *this << digits;
  }
  void Write() {
    *this << "\n";
    WriteBytes(text_, size_);
  }
  static void WriteBytes(const char *bytes, DWORD size) {
    if (!*ReportPath)
      return;
    Inside = true;
    const HANDLE file = CreateFileA(ReportPath, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written;
    SetFilePointer(file, 0, nullptr, FILE_END);
    WriteFile(file, bytes, size, &written, nullptr);
    CloseHandle(file);
    Inside = false;
  }

private:
  static inline char text_[8000]; // one line at a time
  static inline DWORD size_;
};

/// True where the bytes before `address` are a call.
bool IsReturnAddress(DWORD address) {
  if (address < CodeBegin + 7 || address >= CodeEnd)
    return false;
  const BYTE *p = reinterpret_cast<const BYTE *>(address);
  return p[-5] == 0xE8 || (p[-6] == 0xFF && (p[-5] == 0x15 || (p[-5] & 0xF8) == 0x90)) ||
         (p[-2] == 0xFF && ((p[-1] & 0xF8) == 0xD0 || (p[-1] & 0xF8) == 0x10)) ||
         (p[-3] == 0xFF && (p[-2] & 0xF8) == 0x50);
}

/// Whatever on the stack looks like a way back, the nearest first.
DWORD FindTrace(const DWORD *stack, DWORD *trace, DWORD wanted) {
  const DWORD *end;
  asm("movl %%fs:4, %0" : "=r"(end));
  DWORD found = 0;
  for (DWORD i = 0; i < kTraceWords && stack + i < end && found < wanted; ++i)
    if (IsReturnAddress(stack[i]))
      trace[found++] = stack[i];
  return found;
}

void AddTrace(Line &line, const DWORD *stack) {
  DWORD trace[kTraceEntries];
  const DWORD found = FindTrace(stack, trace, kTraceEntries);
  for (DWORD i = 0; i < found; ++i) {
    line << " ";
    line.Hex(trace[i]);
  }
}

void NoteSite(const Call &call, const DWORD *stack) {
  if (!Sites || SitesEnd + kSiteLine > Sites + kSiteBytes)
    return;
  for (const char *p = call.name; *p;)
    *SitesEnd++ = *p++;
  DWORD trace[2] = {};
  FindTrace(stack, trace, 2);
  for (DWORD address : trace) {
    *SitesEnd++ = ' ';
    SitesEnd = PutHex(SitesEnd, address);
  }
  *SitesEnd++ = '\n';
}

void WriteCounts() {
  Line line;
  for (DWORD i = 0; i < SlotCount; ++i)
    if (Slots[i].calls && *Slots[i].call->group)
      line << "calls " << Slots[i].call->group << " " << Slots[i].call->name << " " << Slots[i].calls << "\n";
  line << "ended";
  line.Write();
  Line::WriteBytes(Sites, static_cast<DWORD>(SitesEnd - Sites));
}

LONG WINAPI TellException(EXCEPTION_POINTERS *what) {
  Line line;
  line << "exception ";
  line.Hex(what->ExceptionRecord->ExceptionCode) << " at ";
  line.Hex(reinterpret_cast<DWORD>(what->ExceptionRecord->ExceptionAddress));
  AddTrace(line, reinterpret_cast<const DWORD *>(what->ContextRecord->Esp));
  line.Write();
  TerminateProcess(GetCurrentProcess(), kExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

// Thunks.

/// A function that comes here first.
void *MakeThunk(const Call &call, void *original) {
  for (DWORD i = 0; i < SlotCount; ++i)
    if (Slots[i].call == &call && Slots[i].original == original)
      return Thunks + i * kThunkBytes;
  if (SlotCount == kSlots)
    return original;
  BYTE *thunk = Thunks + SlotCount * kThunkBytes;
  thunk[0] = 0x68; // push the slot
  memcpy(thunk + 1, &SlotCount, 4);
  thunk[5] = 0xE9; // jmp FaultGate
  const DWORD distance = reinterpret_cast<DWORD>(&FaultGate) - reinterpret_cast<DWORD>(thunk + 10);
  memcpy(thunk + 6, &distance, 4);
  Slots[SlotCount++] = {&call, original, 0};
  return thunk;
}

const Call *FindCall(const char *name) {
  for (const Call &call : kCalls)
    if (strcmp(call.name, name) == 0)
      return &call;
  return nullptr;
}

void *Wrap(const char *name, void *original) {
  const Call *call = original ? FindCall(name) : nullptr;
  return call ? MakeThunk(*call, original) : original;
}

/// Calls a function with the words of another call. It takes them off the stack itself.
DWORD CallOriginal(void *function, const DWORD *words, DWORD count) {
  DWORD result;
  asm volatile("movl %%esp, %%edi\n\t"
               "jmp 2f\n"
               "1:\tpushl -4(%%esi,%%ecx,4)\n\t"
               "decl %%ecx\n"
               "2:\ttestl %%ecx, %%ecx\n\t"
               "jnz 1b\n\t"
               "call *%%eax\n\t"
               "movl %%edi, %%esp"
               : "=a"(result), "+c"(count)
               : "a"(function), "S"(words)
               : "edx", "edi", "memory", "cc");
  return result;
}

void **WrapMethods(void *object, const char *const *names, DWORD count, void **copy) {
  void **methods = *static_cast<void ***>(object);
  if (methods != copy)
    for (DWORD i = 0; i < count; ++i)
      copy[i] = names[i] ? Wrap(names[i], methods[i]) : methods[i];
  *static_cast<void ***>(object) = copy;
  return copy;
}

/// Shortcuts are the objects that installers make.
void WrapLink(void *link) {
  static void *copy[21];
  static const char *const names[21] = {
      "QueryInterface", nullptr,        nullptr,           nullptr, nullptr,
      nullptr,          nullptr,        nullptr,           nullptr, "SetWorkingDirectory",
      nullptr,          "SetArguments", nullptr,           nullptr, nullptr,
      nullptr,          nullptr,        "SetIconLocation", nullptr, nullptr,
      "SetPath"};
  WrapMethods(link, names, 21, copy);
}

void WrapFile(void *file) {
  static void *copy[9];
  static const char *const names[9] = {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "Save"};
  WrapMethods(file, names, 9, copy);
}

/// Carries a call out and sees to what it gives.
DWORD CarryOut(const Slot &slot, const DWORD *words) {
  const bool looks_up = strcmp(slot.call->name, "GetProcAddress") == 0;
  const DWORD result = CallOriginal(slot.original, words, slot.call->words);
  if (looks_up && words[1] >= 0x10000)
    return reinterpret_cast<DWORD>(Wrap(reinterpret_cast<const char *>(words[1]), reinterpret_cast<void *>(result)));
  if (strcmp(slot.call->name, "CoCreateInstance") == 0 && result == 0)
    WrapLink(*reinterpret_cast<void **>(words[4]));
  if (strcmp(slot.call->name, "QueryInterface") == 0 && result == 0)
    WrapFile(*reinterpret_cast<void **>(words[2]));
  return result;
}

bool IsSeen(const Call &call) {
  return strcmp(call.name, "GetProcAddress") == 0 || strcmp(call.name, "CoCreateInstance") == 0 ||
         strcmp(call.name, "QueryInterface") == 0;
}

void Refuse(const Slot &slot, const DWORD *words, const DWORD *stack) {
  const Call &call = *slot.call;
  const DWORD error = HasError ? WantedError : call.error;
  Line line;
  line << "refused " << call.group << " " << call.name << " " << slot.calls << " error " << error;
  AddTrace(line, stack);
  line.Write();
  if (call.effect == Effect::Carried)
    CallOriginal(slot.original, words, call.words);
  if (call.zeroed)
    if (DWORD *count = reinterpret_cast<DWORD *>(words[call.zeroed - 1]))
      *count = 0;
  SetLastError(error);
  FaultAnswer = call.told == Told::ByStatus ? error : static_cast<DWORD>(call.failure);
}

void Kill(const Slot &slot, const DWORD *stack) {
  Line line;
  line << "killed " << slot.call->name << " " << slot.calls;
  AddTrace(line, stack);
  line.Write();
  Inside = true;
  TerminateProcess(GetCurrentProcess(), 1);
}

/// Calls that are never refused.
void *Watch(const Slot &slot, const DWORD *words) {
  const char *name = slot.call->name;
  FaultAnswer = static_cast<DWORD>(slot.call->failure);
  if (strcmp(name, "ExitProcess") == 0) {
    WriteCounts();
    return slot.original;
  }
  if (strcmp(name, "Sleep") == 0)
    reinterpret_cast<decltype(&Sleep)>(slot.original)(words[0] / kHaste);
  else if (strcmp(name, "GetTickCount") == 0)
    FaultAnswer = reinterpret_cast<decltype(&GetTickCount)>(slot.original)() * kHaste;
  else {
    Line line;
    line << "restart";
    line.Write();
  }
  return nullptr;
}

/// True when this call is the one.
bool IsWanted(const Slot &slot) {
  if (!WantedNumber)
    return false;
  const Call &call = *slot.call;
  const bool kill = strcmp(Wanted, "kill") == 0;
  if (kill ? !call.changes : strcmp(Wanted, call.group) != 0 && strcmp(Wanted, call.name) != 0)
    return false;
  return ++WantedCalls == WantedNumber;
}

} // namespace

} // namespace korb::faults

using namespace korb::faults;

/// What the gate asks: the function to go on with, or null when the answer is known. `stack` is the slot, the way back,
/// and the words of the call.
extern "C" void *__stdcall FaultDecide(const DWORD *stack) {
  Slot &slot = Slots[stack[0]];
  if (Inside)
    return slot.original;
  const Call &call = *slot.call;
  const DWORD *words = stack + 2;
  ++slot.calls;
  FaultPop = call.words * 4u;
  if (!*call.group)
    return Watch(slot, words);
  NoteSite(call, stack + 1);
  if (IsWanted(slot)) {
    if (strcmp(Wanted, "kill") == 0)
      Kill(slot, stack + 1);
    Refuse(slot, words, stack + 1);
    return nullptr;
  }
  if (!IsSeen(call))
    return slot.original;
  const DWORD answer = CarryOut(slot, words);
  FaultAnswer = answer;
  FaultPop = call.words * 4u;
  return nullptr;
}

asm(".text\n"
    ".globl _FaultGate\n"
    "_FaultGate:\n\t"
    "pushl %eax\n\t"
    "pushl %ecx\n\t"
    "pushl %edx\n\t"
    "leal 12(%esp), %eax\n\t"
    "pushl %eax\n\t"
    "call _FaultDecide@4\n\t"
    "testl %eax, %eax\n\t"
    "jz 1f\n\t"
    "movl %eax, 12(%esp)\n\t"
    "popl %edx\n\t"
    "popl %ecx\n\t"
    "popl %eax\n\t"
    "ret\n" // to the original, with the way back on top of the stack
    "1:\tpopl %edx\n\t"
    "popl %ecx\n\t"
    "popl %eax\n\t"
    "addl $4, %esp\n\t"
    "popl %ecx\n\t"
    "addl _FaultPop, %esp\n\t"
    "movl _FaultAnswer, %eax\n\t"
    "jmp *%ecx\n");

// The start.

namespace korb::faults {

namespace {

const IMAGE_NT_HEADERS32 &OwnHeaders(BYTE *base) {
  return *reinterpret_cast<IMAGE_NT_HEADERS32 *>(base + reinterpret_cast<IMAGE_DOS_HEADER *>(base)->e_lfanew);
}

/// The section with the imports as it is in the file: the loaded one has addresses where the names were. Null when it
/// can't be read.
BYTE *ReadImports(const IMAGE_SECTION_HEADER &section) {
  BYTE *bytes = static_cast<BYTE *>(VirtualAlloc(nullptr, section.SizeOfRawData, MEM_COMMIT, PAGE_READWRITE));
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, sizeof path);
  const HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  DWORD read = 0;
  SetFilePointer(file, static_cast<LONG>(section.PointerToRawData), nullptr, FILE_BEGIN);
  const BOOL done = ReadFile(file, bytes, section.SizeOfRawData, &read, nullptr);
  CloseHandle(file);
  return done && read == section.SizeOfRawData ? bytes : nullptr;
}

void WrapImports(BYTE *base) {
  const IMAGE_NT_HEADERS32 &headers = OwnHeaders(base);
  CodeBegin = reinterpret_cast<DWORD>(base) + headers.OptionalHeader.BaseOfCode;
  CodeEnd = CodeBegin + IMAGE_FIRST_SECTION(&headers)->Misc.VirtualSize;
  const DWORD at = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  const IMAGE_SECTION_HEADER *section = IMAGE_FIRST_SECTION(&headers);
  while (at < section->VirtualAddress || at >= section->VirtualAddress + section->SizeOfRawData)
    ++section;
  const BYTE *names = ReadImports(*section);
  if (!names)
    return;
  for (auto *library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(base + at); library->Name; ++library) {
    auto *name = reinterpret_cast<const DWORD *>(names + library->FirstThunk - section->VirtualAddress);
    auto *address = reinterpret_cast<DWORD *>(base + library->FirstThunk);
    for (; *name; ++name, ++address)
      if (!(*name & IMAGE_ORDINAL_FLAG32)) {
        const auto *hint = reinterpret_cast<IMAGE_IMPORT_BY_NAME *>(base + *name);
        *address = reinterpret_cast<DWORD>(
            Wrap(reinterpret_cast<const char *>(hint->Name), reinterpret_cast<void *>(*address)));
      }
  }
}

DWORD TakeNumber(const char *&text) {
  DWORD number = 0;
  while (*text >= '0' && *text <= '9')
    number = number * 10 + static_cast<DWORD>(*text++ - '0');
  return number;
}

void ReadWish() {
  GetEnvironmentVariableA("KORB_FAULT_REPORT", ReportPath, sizeof ReportPath);
  char text[100];
  if (GetEnvironmentVariableA("KORB_FAULT_SITES", text, sizeof text))
    Sites = SitesEnd = static_cast<char *>(VirtualAlloc(nullptr, kSiteBytes, MEM_COMMIT, PAGE_READWRITE));
  if (GetEnvironmentVariableA("KORB_FAULT", text, sizeof text) - 1 >= sizeof text - 1)
    return;
  const char *p = text;
  for (DWORD i = 0; *p && *p != ':' && i + 1 < sizeof Wanted; ++i)
    Wanted[i] = *p++;
  if (*p++ != ':')
    return;
  WantedNumber = TakeNumber(p);
  HasError = *p++ == ':';
  if (HasError)
    WantedError = TakeNumber(p);
}

} // namespace

} // namespace korb::faults

/// The loader's way in: the program's own entry comes after it.
extern "C" void FaultsStart() {
  ReadWish();
  Thunks = static_cast<BYTE *>(VirtualAlloc(nullptr, kSlots * kThunkBytes, MEM_COMMIT, PAGE_EXECUTE_READWRITE));
  SetUnhandledExceptionFilter(TellException);
  if (Thunks)
    WrapImports(reinterpret_cast<BYTE *>(GetModuleHandleA(nullptr)));
  WinMainCRTStartup();
}
