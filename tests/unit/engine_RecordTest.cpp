// The texts that an installation leaves and an uninstaller reads.
#include "core/RunValues.h"
#include "engine/InstallLog.h"
#include "engine/InstallLogBlock.h"
#include "engine/RemoveSelf.h"
#include "engine/SelfRemovalText.h"
#include "engine/UninstallRecord.h"
#include "format/Texts.h"
#include "tests/support/Testing.h"

namespace {

/// "entries|associations|texts" as they were understood: `a,b|.x/c/v|10=text`.
std::string Understood(const std::string &bytes) {
  TextTable.clear();
  UninstallRecord record;
  ReadUninstallRecord(String(bytes.data(), static_cast<int32_t>(bytes.size())), record);
  std::string all;
  for (int32_t i = 0; i < record.entries.count; ++i)
    all += (i != 0 ? "," : "") + std::string(record.entries.at(i));
  all += "|";
  for (int32_t i = 0; i < record.associations.count; ++i) {
    const FileAssociation &one = record.associations.at(i);
    all += std::string(one.extension) + "/" + one.file_class.c_str() + "/" + one.verb.c_str() + " ";
  }
  all += "|";
  for (int32_t i = 0; i < TextTable.count; ++i)
    if (TextTable.at(i).count > 0)
      all += std::to_string(i) + "=" + TextTable.at(i).at(0).c_str() + " ";
  TextTable.clear();
  return all;
}

} // namespace

TEST_CASE("a record is read as far as it can be understood") {
  const struct {
    const char *bytes, *understood;
  } rows[] = {
      {"", "||"},
      {"a\r\n\r\n~b", "a,,~b||"},
      {"a[sTRINGS]~5\nx\n[aSSOCIATIONS].a~!~b~!~c", "a|.a/b/c |5=x "},
      {"[Strings]\r\n~1\r\none\r\n\r\n two\r\n \r\n~2\r\n~3\r\nlast", "||1=one\r\n\r\n two 2= 3=last "},
      {"[Strings]\r\nnot a text\r\n~1000x\r\nlargest\r\n~1\r\none\r\n~1\r\nagain", "||1=again 1000=largest "},
      {"[Strings]~0\nx\n~1001\nx\n~-5\nx\n~\nx\n~99999999999\nx\n~7\ngood", "||7=good "},
      {"[Associations]\r\n.a~!~b~!~c", "[Associations],.a~!~b~!~c||"}, // no heading of its own in front of the texts
      {"[Strings][Associations].a~!~b\n.a~!~ ~!~c\n.a~!~b~!~c~!~d\n~!~b~!~c\n\n.e~!~f~!~g", "|.a/b/c~!~d .e/f/g |"},
      {"[Strings][Associations]CLSID~!~b~!~c\n.~!~b~!~c\n. ~!~b~!~c\n .a~!~b~!~c", "||"},
      {"a\r\n[Strings]\r\n~5\r\ncut o", "a,||5=cut o "},
  };
  for (const auto &row : rows) {
    CAPTURE(std::string(row.bytes));
    CHECK(Understood(row.bytes) == row.understood);
  }
  std::string many = "[Strings]\r\n~5\r\nx\r\n[Associations]\r\n", texts = "[Strings]\r\n";
  for (int i = 0; i < 600; ++i)
    many += ".a~!~b~!~c\r\n", texts += "~7\r\n" + std::to_string(i) + "\r\n";
  CHECK(Understood(many).size() == 499 * 7 + sizeof "||5=x " - 1);
  CHECK(Understood(texts) == "||7=498 "); // the line behind the heading is one of the 500
}

TEST_CASE("what a record is made of comes back") {
  TextTable.clear();
  TextTable.set_count(72);
  for (const int8_t *number = kSavedTexts.numbers; *number >= 0; ++number) {
    TextTable.at(*number).set_count(1);
    TextTable.at(*number).at(0) = str_format("<product> %d\r\n\r\n%%s", *number);
  }
  ProductName = "Thing";
  const String entries =
      String("x:\\") + std::string(70000, 'p').c_str() + "\r\n~C:\\a\r\n"; // longer than a format gives
  std::string text = UninstallRecordText(entries, "").c_str();
  CHECK(text.find("~C:\\a\r\n\r\n\r\n[Strings]\r\n~10\r\nThing 10\r\n\r\n%s\r\n~15\r\n") == 70005);
  CHECK(text.substr(text.size() - 23) == "\r\n~71\r\nThing 71\r\n\r\n%s\r\n");
  text = UninstallRecordText(entries, ".a~!~b~!~c\r\n").c_str();
  CHECK(text.find("\r\n%s\r\n\r\n\r\n[Associations]\r\n.a~!~b~!~c\r\n") == text.size() - 38);
  const std::string back = Understood(text);
  CHECK(back.substr(70004, 30) == "~C:\\a,,,|.a/b/c |10=Thing 10\r\n");
}

TEST_CASE("a log tells of a run without an uninstaller and without lines of its own") {
  ProductName = "Thing";
  InstallDir = "C:\\Thing";
  InstallFlags = 0;
  CHECK(InstallLogBlock("", true, "Done\r\n\r\n", "", DateTime::from({2001, 5, 7, 15, 4, 9})) ==
        "\r\nInstallation log for: Thing\r\nInstall date: 7-May-2001 3:04:09p\r\nInstall location: C:\\Thing\r\n"
        "Installer version: 11.0\r\n\r\nDone\r\n\r\n");
}

// Symptom: an uninstaller in "C:\\100% Pure" stayed for ever.
TEST_CASE("a percent sign of a path is written twice, since a batch drops a single one") {
  CHECK(SelfRemovalText("C:\\9% a\\U%n\\u.exe", "C:\\9% a", "U%n") ==
        ":Repeat\r\ndel \"C:\\9%% a\\U%%n\\u.exe\"\r\nif exist \"C:\\9%% a\\U%%n\\u.exe\" goto Repeat\r\nrd "
        "\"C:\\9%% a\\U%%n\"\r\nrd \"C:\\9%% a\"\r\ndel \"c:\\delunins.bat\"\r\n");
}

TEST_CASE("the batch removes the program before its directories, and itself last") {
  CHECK(SelfRemovalText("C:\\T\\Un\\u.exe", "C:\\T", "Un") ==
        ":Repeat\r\ndel \"C:\\T\\Un\\u.exe\"\r\nif exist \"C:\\T\\Un\\u.exe\" goto Repeat\r\nrd \"C:\\T\\Un\"\r\nrd "
        "\"C:\\T\"\r\ndel \"c:\\delunins.bat\"\r\n");
  CHECK(SelfRemovalText("p", "C:\\T", "").find("rd \"C:\\T\"\r\ndel \"c") ==
        SelfRemovalText("p", "C:\\T", "").find("rd"));
}
