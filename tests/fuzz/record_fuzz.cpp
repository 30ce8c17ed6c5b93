// Any bytes are a record: what is understood keeps its limits, and what is written again says the same.
#include <cstdlib>

#include "core/RunValues.h"
#include "engine/SharedFiles.h"
#include "engine/UninstallRecord.h"
#include "format/Record.h"
#include "ui/TextLookup.h"

using namespace korb;

static void Require(bool holds) {
  if (!holds)
    abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const String text(reinterpret_cast<const char *>(data), static_cast<int32_t>(size));
  TextTable.clear();
  UninstallRecord record;
  ReadUninstallRecord(text, record);
  Require(TextTable.count <= kMaxTextNumber + 1 && record.associations.count <= kMaxAssociationLines);
  int32_t bytes = 0;
  for (int32_t i = 0; i < record.entries.count; ++i)
    bytes += record.entries.at(i).length();
  Require(bytes <= text.length());

  String list;
  for (int32_t i = 0; i < record.entries.count; ++i)
    list += record.entries.at(i) + "\r\n";
  const int32_t lines = record.entries.count;
  UninstallRecord again;
  ReadUninstallRecord(UninstallRecordText(list, ""), again);
  // The heading's two empty lines, and the one that the list's own last line end opens.
  if (list.find("[Strings]", 0, FIND_IGNORE_CASE) < 0)
    Require(again.entries.count == lines + 2 || again.entries.count == lines + 3);

  String shared = text;
  SharedEntry entry;
  for (int32_t length = shared.length(); TakeSharedEntry(shared, entry); length = shared.length())
    Require(shared.length() < length);
  return 0;
}
