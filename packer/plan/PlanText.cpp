#include "packer/plan/PlanText.h"

#include <sstream>

#include "packer/check/Report.h"

namespace korb::packer {

namespace {

std::string Shown(const Json &value) {
  return value.is_string() ? EscapeControls(value.get_ref<const std::string &>()) : Written(value);
}

std::string Joined(const Json &words) {
  std::string text;
  for (const Json &word : words)
    text += (text.empty() ? "" : ", ") + Shown(word);
  return text;
}

class PlanWriter {
public:
  explicit PlanWriter(std::ostream &out) : out_(out) {}

  void Write(const Json &plan) {
    WriteHead(plan);
    for (const Json &step : plan["steps"])
      WriteStep(step);
    for (const Json &reason : plan["restart"])
      WriteRestart(reason);
  }

private:
  void WriteHead(const Json &plan) {
    const Json &machine = plan["machine"], &run = plan["run"];
    out_ << Shown(plan["installer"]) << ": " << Shown(plan["product"])
         << (plan["version"] == "" ? "" : " " + Shown(plan["version"])) << " on " << Shown(machine["windows"]) << ", "
         << Shown(machine["bits"]) << "-bit, " << (run["silent"] == true ? "silently" : "with dialogs") << "\n";
    for (const Json &assumed : machine["assumed"])
      out_ << "  assumed: " << Shown(assumed) << "\n";
    out_ << "  directory: " << Shown(run["directory"]) << "\n  room: " << Shown(run["file_bytes"])
         << " bytes of files, " << Shown(run["disk_bytes"]) << " on the disk\n";
    if (plan.contains("refused"))
      out_ << "  REFUSED: " << Shown(plan["refused"]) << "\n";
  }

  void WriteStep(const Json &step) {
    if (step["phase"] != phase_) {
      phase_ = step["phase"];
      key_ = "";
      out_ << phase_ << "\n";
    }
    const std::string &action = step["action"].get_ref<const std::string &>();
    if (action == "key" || action == "value")
      return WriteRegistry(step, action);
    out_ << "  " << action;
    for (const char *name : {"path", "about", "name", "file", "face"})
      if (step.contains(name))
        out_ << " " << Shown(step[name]);
    if (step.contains("place"))
      out_ << ", which is " << Shown(step["place"]);
    const std::string more = action == "batch"
                                 ? Shown(step["interpreter"]) + (step["hidden"] == true ? ", hidden" : ", in a window")
                                 : MoreOf(step);
    out_ << (more.empty() ? "" : " (" + more + ")") << "\n";
    if (action == "batch")
      WriteScript(step["script"]);
  }

  static std::string MoreOf(const Json &step) {
    std::string more;
    const auto add = [&](const std::string &text) { more += (more.empty() ? "" : "; ") + text; };
    if (step.contains("placed"))
      add(Shown(step["placed"]));
    if (step.contains("when"))
      add(Shown(step["when"]) + (step.contains("value") ? " " + Shown(step["value"]) : ""));
    if (step.contains("in_use"))
      add("in use: " + Shown(step["in_use"]));
    if (step.value("keep", false))
      add("stays when the product goes");
    if (step.contains("size"))
      add(Shown(step["size"]) + " bytes");
    if (step.contains("date") && step["date"] != "none")
      add(Shown(step["date"]));
    if (step.contains("attributes") && step["attributes"] != Json::array({"archive"}) && !step["attributes"].empty())
      add(Joined(step["attributes"]));
    if (step.contains("target"))
      add("to " + Shown(step["target"]) + (step.contains("arguments") ? " " + Shown(step["arguments"]) : ""));
    for (const char *name : {"line", "why"})
      if (step.contains(name))
        add(Shown(step[name]));
    return more;
  }

  void WriteRegistry(const Json &step, const std::string &action) {
    const std::string key = Shown(step[step.contains("place") ? "place" : "key"]);
    if (key != key_)
      out_ << "  " << (action == "key" ? "new key " : "key ") << key << "\n";
    key_ = key;
    if (action == "value")
      out_ << "    " << (step["name"] == "" ? "(default)" : Shown(step["name"])) << " = " << Written(step["data"])
           << (step["type"] == "REG_EXPAND_SZ" ? ", with variables" : "") << "\n";
  }

  void WriteScript(const Json &script) {
    std::istringstream lines(script.get<std::string>());
    for (std::string line; std::getline(lines, line);) {
      while (line.ends_with('\r'))
        line.pop_back();
      out_ << "    | " << EscapeControls(line) << "\n";
    }
  }

  void WriteRestart(const Json &reason) {
    if (phase_ != "restart")
      out_ << (phase_ = "restart") << "\n";
    if (reason["when"] == "always")
      out_ << "  always, by " << Shown(reason["why"]) << "\n";
    else
      out_ << "  by " << Shown(reason["by"]) << ", if in use: " << Shown(reason["why"]) << " ("
           << Shown(reason["files"]) << ")" << (reason.contains("but") ? "; " + Shown(reason["but"]) : "") << "\n";
  }

  std::ostream &out_;
  std::string phase_, key_;
};

} // namespace

void WritePlanText(const Json &plan, std::ostream &out) {
  PlanWriter(out).Write(plan);
}

} // namespace korb::packer
