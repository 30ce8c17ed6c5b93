// File types: what an installation makes of them, and what the uninstaller gives back.
#include "core/RunValues.h"
#include "engine/Associations.h"
#include "engine/RestoreAssociations.h"
#include "tests/support/MemoryMachine.h"
#include "tests/support/Testing.h"

namespace {

void AppendCopy(const FileAssociation &one, Vector<FileAssociation> &to) {
  FileAssociation &copy = to.append_slot();
  copy.flags = one.flags;
  for (auto text : {&FileAssociation::extension, &FileAssociation::file_class, &FileAssociation::description,
                    &FileAssociation::verb, &FileAssociation::verb_label, &FileAssociation::command,
                    &FileAssociation::language, &FileAssociation::icon})
    copy.*text = one.*text;
}

struct Types {
  Types() {
    ResetRunValues();
    ProductName = "Thing";
    FileAssociation &open = records.append_slot();
    open.extension = "thg";
    open.file_class = "ThingFile";
    open.verb = "open";
    open.verb_label = "&Open";
    open.command = "%InstallDir%\\a.exe";
  }

  void Register() {
    Vector<FileAssociation> completed; // in place, while they are registered
    for (int32_t i = 0; i < records.count; ++i)
      AppendCopy(records.at(i), completed);
    RegisterAssociations(completed, notes);
  }
  /// What the record of the registered ones has the uninstaller undo.
  void Restore() {
    UninstallRecord record;
    ReadUninstallRecord("[Strings]\r\n[Associations]\r\n" + notes.association_lines, record);
    RestoreAssociations(record.associations);
  }
  FileAssociation &record() { return records.at(0); }

  MemoryMachine machine;
  Vector<FileAssociation> records;
  InstallNotes notes;
};

const char kNewType[] = "[.thg] ThingFile\n"
                        "[ThingFile]\n"
                        "[ThingFile\\shell]\n"
                        "[ThingFile\\shell\\open] &Open\n"
                        "[ThingFile\\shell\\open\\command] C:\\App\\a.exe\n";

} // namespace

TEST_CASE_FIXTURE(Types, "a new type is made with its verb, and its extension goes with it") {
  record().icon = "%InstallDir%\\a.ico";
  Register();
  CHECK(machine.Registry() == "[.thg] ThingFile\n"
                              "[ThingFile]\n"
                              "[ThingFile\\DefaultIcon] C:\\App\\a.ico\n"
                              "[ThingFile\\shell]\n"
                              "[ThingFile\\shell\\open] &Open\n"
                              "[ThingFile\\shell\\open\\command] C:\\App\\a.exe\n");
  CHECK(notes.association_lines == ".thg~!~ThingFile~!~open\r\n");
  CHECK(notes.journal.error_report.is_empty());
  Restore();
  CHECK(machine.Registry() == "");
}

TEST_CASE_FIXTURE(Types, "a type without an icon leaves nothing either") {
  Register();
  CHECK(machine.Registry() == kNewType);
  Restore();
  CHECK(machine.Registry() == "");
}

TEST_CASE_FIXTURE(Types, "what an extension had comes back, of its own kind, however often the product was installed") {
  machine.Set(".thg", "", "%Their%File", true);
  Register();
  Register();
  CHECK(machine.keys[".thg"][""].text == "ThingFile");
  CHECK(machine.keys[".thg"]["Thing Backup"].text == "%Their%File");
  CHECK(machine.keys[".thg"]["Thing Backup"].expands);
  Restore();
  CHECK(machine.Registry() == "[.thg] %%Their%File\n");
}

TEST_CASE_FIXTURE(Types, "an extension that is given back stays for its second verb, too") {
  machine.Set(".thg", "", "Theirs");
  AppendCopy(record(), records);
  records.at(1).verb = "print";
  Register();
  Restore();
  CHECK(machine.Registry() == "[.thg] Theirs\n");
}

TEST_CASE_FIXTURE(Types, "an extension that has another owner by now stays, as after a run that ended halfway") {
  Register();
  machine.Set(".thg", "", "Theirs");
  Restore();
  CHECK(machine.Registry() == "[.thg] Theirs\n");
}

TEST_CASE_FIXTURE(Types, "other verbs of a type, and a command that was there, survive") {
  machine.Set("ThingFile\\shell\\open\\command", "", "theirs");
  machine.Set("ThingFile\\shell\\view\\command", "", "view");
  const std::string before = machine.Registry();
  Register();
  CHECK(machine.keys["ThingFile\\shell\\open\\command"]["Thing Backup"].text == "theirs");
  Restore();
  CHECK(machine.keys["ThingFile\\shell\\open\\command"][""].text == "theirs");
  CHECK(machine.keys["ThingFile\\shell\\open\\command"].size() == 1);
  CHECK(machine.keys["ThingFile\\shell\\view\\command"][""].text == "view");
}

TEST_CASE_FIXTURE(Types, "without a class the verb joins the one that the extension has, and is nowhere without one") {
  record().file_class = "";
  Register();
  CHECK(machine.Registry() == "");
  CHECK(notes.association_lines.is_empty());

  machine.Set(".thg", "", "Theirs");
  Register();
  CHECK(machine.keys["Theirs\\shell\\open\\command"][""].text == "C:\\App\\a.exe");
  CHECK(machine.keys[".thg"].size() == 1);
  CHECK(notes.association_lines == ".thg~!~Theirs~!~open\r\n");
}

TEST_CASE_FIXTURE(Types, "a class that was there goes with its last verb when it got an icon") {
  machine.Set(".thg", "", "Theirs");
  machine.Set("Theirs\\DefaultIcon", "", "their.ico");
  machine.Set("Theirs\\shell\\open\\command", "", "theirs");
  record().file_class = "";
  record().icon = "a.ico";
  Register();
  CHECK(machine.keys["Theirs\\DefaultIcon"]["Thing Backup"].text == "their.ico");
  Restore();
  CHECK(machine.Registry() == "");
}

TEST_CASE_FIXTURE(Types, "the default verb is set where it is one") {
  record().flags = kDefaultVerb;
  Register();
  CHECK(machine.keys["ThingFile\\shell"][""].text == "open");
  record().verb = " ";
  Register();
  CHECK(machine.keys["ThingFile\\shell"][""].text == "open");
}

TEST_CASE_FIXTURE(Types, "an association holds in its language only") {
  LanguageNames.set_count(1);
  LanguageNames.at(0) = "English";
  record().language = "Deutsch";
  Register();
  CHECK(machine.Registry() == "");
  record().language = "English";
  Register();
  CHECK(machine.Registry() == kNewType);
}

TEST_CASE_FIXTURE(Types, "the product's own keys are made for the machine and the user") {
  CreateProductKeys("", notes.journal);
  CHECK(machine.Registry() == "");
  CreateProductKeys("Thing", notes.journal);
  CHECK(machine.keys.count("machine\\Software\\Thing") == 1);
  CHECK(machine.keys.count("user\\Software\\Thing") == 1);
}

TEST_CASE_FIXTURE(Types, "what the registry refuses is told, and noted for the uninstaller all the same") {
  machine.refuses_keys = true;
  Register();
  CreateProductKeys("Maker\\Thing", notes.journal);
  CHECK(notes.association_lines == ".thg~!~ThingFile~!~open\r\n");
  CHECK(notes.journal.error_report == "Failed to associate file type:  \".thg\".\r\n\r\n"
                                      "Error creating registry keys:\r\nMaker\\Thing\r\n\r\n");
}
