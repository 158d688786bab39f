// The manual page, made of the table of options.
#include <fmt/core.h>

#include <algorithm>

#include "language/language.h"
#include "tavcc/option_table.h"

namespace tavcc {
namespace {

// A text as roff takes it: no line begins a request, and a hyphen stays one.
std::string Roff(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else {
      out += c;
    }
  }
  return out.starts_with('.') || out.starts_with('\'') ? "\\&" + out : out;
}

std::string Head(const OptionText& option) {
  std::string head;
  for (const std::string& name : option.names) {
    head += (head.empty() ? "\\fB" : ", \\fB") + Roff(name) + "\\fR";
  }
  return option.value.empty() ? head : head + " \\fI" + Roff(option.value) + "\\fR";
}

std::string Sentence(const std::string& text) {
  return Say("{}.", text);
}

std::string Item(const OptionText& option) {
  const std::string text = fmt::format(".TP\n{}\n{}\n", Head(option), Sentence(Roff(option.what)));
  if (option.choices.empty() || option.choices.size() > 8) return text;
  std::string choices;
  for (const std::string& choice : option.choices) {
    choices += (choices.empty() ? "" : ", ") + Roff(choice);
  }
  return text + Say("One of {}.", choices) + "\n";
}

bool IsIn(const OptionText& option, const CommandText& command) {
  return std::ranges::any_of(command.options, [&](const OptionText& other) {
    return other.names == option.names && other.what == option.what;
  });
}

// An option that most commands take, which is said once.
bool IsCommon(const OptionText& option, const std::vector<CommandText>& commands) {
  const auto having = std::ranges::count_if(
      commands, [&](const CommandText& command) { return IsIn(option, command); });
  return static_cast<size_t>(having) * 2 > commands.size();
}

std::string Synopsis(const CommandText& command) {
  std::string text = fmt::format(".SS \"tavcc {}", Roff(command.name));
  for (const OptionText& argument : command.arguments) {
    text += " " + Roff(argument.names.front());
  }
  return fmt::format("{}\"\n{}\n", text, Sentence(Roff(command.summary)));
}

std::string Section(const std::string& title) {
  return ".SH " + title + "\n";
}

// A term of a list, as roff has it, and what it stands for.
std::string Term(const char* term, const std::string& what) {
  return fmt::format(".TP\n{}\n{}\n", term, what);
}

// Chinese has no blanks that could be stretched to fill a line.
std::string Adjustment() {
  return CurrentLanguage() == Language::kChinese ? ".ad l\n" : "";
}

std::string PageHead() {
  return fmt::format(".TH TAVCC 1 2026-11-22 \"tavcc\" \"{}\"\n", Translated("User Commands")) +
         Adjustment() + Section(Translated("NAME")) + "tavcc \\- " +
         Translated("business rules of an ERP's inventory module, from a shell") + "\n" +
         Section(Translated("SYNOPSIS")) + ".B tavcc\n" +
         fmt::format(".I {}\n[\\fI{}\\fR .\\|.\\|.]\n", Translated("command"),
                     Translated("argument")) +
         Section(Translated("DESCRIPTION")) +
         Translated(
             "Runs the rules on a database file with the ERP schema, or on a SQL Server over ODBC.") +
         "\n" + Section(Translated("COMMANDS"));
}

std::string PageFoot() {
  return Section(Translated("EXIT STATUS")) +
         Translated("0 passed, 1 refused by a rule, 2 failed.") + "\n" +
         Section(Translated("ENVIRONMENT")) +
         Term("\\fBTAVCC_DSN\\fR",
              Translated("The connection string where no database is named.")) +
         Term("\\fBLC_ALL\\fR, \\fBLC_MESSAGES\\fR, \\fBLANG\\fR",
              Translated("The language, where \\fB\\-\\-lang\\fR names none: Chinese for "
                         "\\fIzh\\fR and all that begins so, else English.")) +
         Term("\\fBPAGER\\fR",
              Translated("What long output of \\fBtavcc sql\\fR is read with on a terminal; "
                         "\\fBless\\fR where it is not set, nothing where it is empty.")) +
         Section(Translated("FILES")) +
         Term("\\fI$XDG_STATE_HOME/tavcc/history\\fR",
              Translated("The history of the shell of \\fBtavcc sql\\fR, by default in "
                         "\\fI~/.local/state\\fR."));
}

}  // namespace

std::string ManualPage(const std::vector<CommandText>& commands) {
  std::string text = PageHead();
  std::vector<OptionText> common;
  for (const CommandText& command : commands) {
    text += Synopsis(command);
    for (const OptionText& argument : command.arguments) text += Item(argument);
    for (const OptionText& option : command.options) {
      if (!IsCommon(option, commands)) {
        text += Item(option);
      } else if (std::ranges::find(common, option.names, &OptionText::names) == common.end()) {
        common.push_back(option);
      }
    }
  }
  text += Section(Translated("COMMON OPTIONS")) +
          Translated("Of every command that works on a database.") + "\n";
  for (const OptionText& option : common) text += Item(option);
  return text + PageFoot();
}

}  // namespace tavcc
