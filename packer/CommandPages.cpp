#include "packer/CommandPages.h"

#include <sstream>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace korb::packer {

namespace {

std::vector<const CLI::App *> CommandsOf(const CLI::App &app) {
  return app.get_subcommands([](const CLI::App *) { return true; });
}

// "-o" and "--output", in the order in which they were given.
std::vector<std::string> SpellingsOf(const CLI::Option &option) {
  std::vector<std::string> spellings;
  for (const std::string &name : option.get_snames())
    spellings.push_back("-" + name);
  for (const std::string &name : option.get_lnames())
    spellings.push_back("--" + name);
  return spellings;
}

std::string Joined(const std::vector<std::string> &words, const char *between) {
  std::string text;
  for (const std::string &word : words)
    text += (text.empty() ? "" : between) + word;
  return text;
}

bool TakesValue(const CLI::Option &option) {
  return option.get_items_expected_max() > 0;
}

// Text of a manual page: a backslash, a dash, and a point at the beginning of a line mean something there.
std::string Roff(const std::string &text) {
  std::string out;
  for (char c : text) {
    if (c == '\\' || c == '-')
      out += '\\';
    if ((c == '.' || c == '\'') && (out.empty() || out.back() == '\n'))
      out += "\\&";
    out += c == '\\' ? "e" : std::string(1, c);
  }
  return out;
}

void AddOptions(const CLI::App &app, std::ostream &page) {
  for (const CLI::Option *option : app.get_options()) {
    page << ".TP\n";
    if (option->nonpositional())
      page << "\\fB" << Roff(Joined(SpellingsOf(*option), ", ")) << "\\fR"
           << (TakesValue(*option) ? " \\fI" + option->get_type_name() + "\\fR" : "") << "\n";
    else
      page << "\\fI" << Roff(option->get_single_name()) << "\\fR\n";
    page << Roff(option->get_description()) << "\n";
  }
}

void AddExamples(const CLI::App &app, std::ostream &page) {
  page << ".PP\n.nf\n" << Roff(app.get_footer()) << "\n.fi\n";
}

// In a double-quoted text of zsh that stands between single quotes, with what _arguments reads there.
std::string ZshText(const std::string &text) {
  std::string out;
  for (char c : text)
    out += c == '\''                          ? std::string("'\\''")
           : c == ':' || c == '[' || c == ']' ? std::string{'\\', c}
                                              : std::string(1, c);
  return out;
}

} // namespace

std::string ManPage(const CLI::App &app, const std::string &version) {
  std::ostringstream page;
  const std::string name = app.get_name();
  page
      << ".TH KORBPACK 1 \"\" \"" << Roff(version) << "\"\n"
      << ".SH NAME\n"
      << name << " \\- " << Roff(app.get_description()) << "\n"
      << ".SH SYNOPSIS\n.B " << name << "\n\\fICOMMAND\\fR [\\fIOPTION\\fR]...\n"
      << ".SH DESCRIPTION\nA manifest, which is a TOML file, describes the product; docs/manifest.md tells its keys.\n";
  AddExamples(app, page);
  page << ".SH OPTIONS\n";
  AddOptions(app, page);
  page << ".SH COMMANDS\n";
  for (const CLI::App *command : CommandsOf(app)) {
    page << ".SS " << name << " " << command->get_name() << "\n" << Roff(command->get_description()) << ".\n";
    AddOptions(*command, page);
    AddExamples(*command, page);
  }
  return page.str();
}

std::string BashCompletion(const CLI::App &app) {
  std::string names, cases;
  const auto options = [](const CLI::App &of) {
    std::vector<std::string> words;
    for (const CLI::Option *option : of.get_options())
      for (const std::string &spelling : SpellingsOf(*option))
        words.push_back(spelling);
    return Joined(words, " ");
  };
  std::vector<std::string> commands;
  for (const CLI::App *command : CommandsOf(app)) {
    commands.push_back(command->get_name());
    cases += "  " + command->get_name() + ") words='" + options(*command) + "' ;;\n";
  }
  return "# Completes the commands of korbpack in bash.\n"
         "_korbpack() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} command= words= i\n"
         "  for ((i = 1; i < COMP_CWORD; ++i)); do\n"
         "    case ${COMP_WORDS[i]} in\n"
         "    " +
         Joined(commands, " | ") +
         ") command=${COMP_WORDS[i]} && break ;;\n"
         "    esac\n"
         "  done\n"
         "  case $command in\n"
         "  '') words='" +
         Joined(commands, " ") + " " + options(app) + "' ;;\n" + cases +
         "  esac\n"
         "  COMPREPLY=()\n"
         "  if [[ -z $command || $word == -* ]]; then COMPREPLY=($(compgen -W \"$words\" -- \"$word\")); fi\n"
         "}\n"
         "complete -o default -F _korbpack korbpack\n";
}

std::string ZshCompletion(const CLI::App &app) {
  std::string commands, cases;
  for (const CLI::App *command : CommandsOf(app)) {
    commands += "    '" + command->get_name() + ":" + ZshText(command->get_description()) + "'\n";
    cases += "  " + command->get_name() + ") _arguments";
    for (const CLI::Option *option : command->get_options())
      for (const std::string &spelling : SpellingsOf(*option))
        cases += " '" + spelling + "[" + ZshText(option->get_description()) + "]" +
                 (TakesValue(*option) ? ":value:_files" : "") + "'";
    cases += " '*:file:_files' ;;\n";
  }
  return "#compdef korbpack\n"
         "# Completes the commands of korbpack in zsh.\n"
         "_korbpack() {\n"
         "  local -a commands=(\n" +
         commands +
         "  )\n"
         "  if ((CURRENT == 2)); then\n"
         "    _describe command commands\n"
         "    return\n"
         "  fi\n"
         "  shift words\n"
         "  ((CURRENT--))\n"
         "  case $words[1] in\n" +
         cases +
         "  esac\n"
         "}\n"
         "_korbpack \"$@\"\n";
}

} // namespace korb::packer
