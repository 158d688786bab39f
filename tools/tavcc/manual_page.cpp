// The manual page, made of the table of options.
#include <fmt/core.h>

#include <algorithm>

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

std::string Item(const OptionText& option) {
  std::string text = fmt::format(".TP\n{}\n{}.\n", Head(option), Roff(option.what));
  if (option.choices.empty() || option.choices.size() > 8) return text;
  text += "One of ";
  for (const std::string& choice : option.choices) {
    text += (&choice == &option.choices.front() ? "" : ", ") + Roff(choice);
  }
  return text + ".\n";
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
  return fmt::format("{}\"\n{}.\n", text, Roff(command.summary));
}

constexpr const char* kPageHead =
    ".TH TAVCC 1 2026-11-22 \"tavcc\" \"User Commands\"\n"
    ".SH NAME\n"
    "tavcc \\- business rules of an ERP's inventory module, from a shell\n"
    ".SH SYNOPSIS\n"
    ".B tavcc\n"
    ".I command\n"
    "[\\fIargument\\fR .\\|.\\|.]\n"
    ".SH DESCRIPTION\n"
    "Runs the rules on a database file with the ERP schema, or on a SQL Server over ODBC.\n"
    ".SH COMMANDS\n";

constexpr const char* kPageFoot =
    ".SH EXIT STATUS\n"
    "0 passed, 1 refused by a rule, 2 failed.\n"
    ".SH ENVIRONMENT\n"
    ".TP\n"
    "\\fBTAVCC_DSN\\fR\n"
    "The connection string where no database is named.\n"
    ".TP\n"
    "\\fBPAGER\\fR\n"
    "What long output of \\fBtavcc sql\\fR is read with on a terminal; \\fBless\\fR where it is not\n"
    "set, nothing where it is empty.\n"
    ".SH FILES\n"
    ".TP\n"
    "\\fI$XDG_STATE_HOME/tavcc/history\\fR\n"
    "The history of the shell of \\fBtavcc sql\\fR, by default in \\fI~/.local/state\\fR.\n";

}  // namespace

std::string ManualPage(const std::vector<CommandText>& commands) {
  std::string text = kPageHead;
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
  text += ".SH COMMON OPTIONS\nOf every command that works on a database.\n";
  for (const OptionText& option : common) text += Item(option);
  return text + kPageFoot;
}

}  // namespace tavcc
