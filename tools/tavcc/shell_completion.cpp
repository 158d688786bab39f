// The scripts by which shells complete, made of the table of options.
#include <fmt/core.h>

#include "tavcc/option_table.h"

namespace tavcc {
namespace {

std::string Joined(const std::vector<std::string>& words, std::string_view between = " ") {
  std::string text;
  for (const std::string& word : words) {
    if (&word != &words.front()) text += between;
    text += word;
  }
  return text;
}

std::vector<std::string> Names(const std::vector<CommandText>& commands) {
  std::vector<std::string> names;
  for (const CommandText& command : commands) names.push_back(command.name);
  return names;
}

// What stands in single quotes in a shell, without what ends them.
std::string Quotable(const std::string& text, std::string_view bad) {
  std::string out;
  for (const char c : text) {
    if (bad.find(c) == std::string_view::npos) out += c;
  }
  return out;
}

// ---- bash ----

std::string BashReply(const std::string& what) {
  return "COMPREPLY=($(compgen " + what + " -- \"$word\"))";
}

std::string BashValues(const OptionText& option) {
  if (option.is_file) return BashReply("-f");
  return option.choices.empty() ? "COMPREPLY=()" : BashReply("-W '" + Joined(option.choices) + "'");
}

std::string Bash(const std::vector<CommandText>& commands) {
  std::string values, words, arguments;
  for (const CommandText& command : commands) {
    std::vector<std::string> names;
    for (const OptionText& option : command.options) {
      names.insert(names.end(), option.names.begin(), option.names.end());
      if (option.value.empty()) continue;
      for (const std::string& name : option.names) {
        values +=
            fmt::format("    '{} {}') {}; return ;;\n", command.name, name, BashValues(option));
      }
    }
    words += fmt::format("    {}) {} ;;\n", command.name, BashReply("-W '" + Joined(names) + "'"));
    if (command.arguments.empty()) continue;
    arguments +=
        fmt::format("    {}) {} ;;\n", command.name, BashValues(command.arguments.front()));
  }
  return "# Completion of tavcc for bash: eval \"$(tavcc completion bash)\"\n"
         "_tavcc() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  local command=${COMP_WORDS[1]}\n"
         "  local IFS=$' \\t\\n'\n"
         "  COMPREPLY=()\n"
         "  if [ \"$COMP_CWORD\" = 1 ]; then\n    " +
         BashReply("-W '" + Joined(Names(commands)) + " --help --version'") +
         "\n    return\n  fi\n"
         "  case \"$command $before\" in\n" +
         values + "  esac\n  if [ \"${word:0:1}\" = - ]; then\n    case $command in\n" + words +
         "    esac\n    return\n  fi\n  case $command in\n" + arguments +
         "  esac\n}\n"
         "complete -o filenames -o bashdefault -F _tavcc tavcc\n";
}

// ---- zsh ----

std::string ZshValues(const OptionText& option) {
  const std::string name = option.value.empty() ? option.names.front() : option.value;
  const std::string action = option.is_file           ? "_files"
                             : option.choices.empty() ? " "
                                                      : "(" + Joined(option.choices) + ")";
  return ":" + Quotable(name, ":'[]") + ":" + action;
}

std::string Zsh(const std::vector<CommandText>& commands) {
  std::string list, cases;
  for (const CommandText& command : commands) {
    list += fmt::format("    '{}:{}'\n", command.name, Quotable(command.summary, "':"));
    cases += fmt::format("    {})\n      _arguments", command.name);
    for (const OptionText& option : command.options) {
      for (const std::string& name : option.names) {
        cases += fmt::format(" \\\n        '*{}[{}]{}'", name, Quotable(option.what, "'[]:"),
                             option.value.empty() ? "" : ZshValues(option));
      }
    }
    for (const OptionText& argument : command.arguments) {
      cases += fmt::format(" \\\n        '*{}'", ZshValues(argument));
    }
    cases += "\n      ;;\n";
  }
  return "#compdef tavcc\n"
         "# Completion of tavcc for zsh: eval \"$(tavcc completion zsh)\"\n"
         "_tavcc() {\n  local -a commands\n  commands=(\n" +
         list +
         "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    return\n  fi\n"
         "  local command=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $command in\n" +
         cases + "  esac\n}\n(( $+functions[compdef] )) && compdef _tavcc tavcc\n";
}

// ---- fish ----

std::string FishValues(const OptionText& option) {
  if (option.is_file) return " -r -F";
  return option.choices.empty() ? "" : " -x -a '" + Joined(option.choices) + "'";
}

std::string Fish(const std::vector<CommandText>& commands) {
  std::string text =
      "# Completion of tavcc for fish: tavcc completion fish | source\n"
      "complete -c tavcc -f\n";
  for (const CommandText& command : commands) {
    text += fmt::format("complete -c tavcc -n __fish_use_subcommand -a {} -d '{}'\n", command.name,
                        Quotable(command.summary, "'\\"));
    const std::string when =
        fmt::format("complete -c tavcc -n '__fish_seen_subcommand_from {}'", command.name);
    for (const OptionText& option : command.options) {
      text += when;
      for (const std::string& name : option.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!option.value.empty()) {
        text += option.choices.empty() && !option.is_file ? " -x" : FishValues(option);
      }
      text += fmt::format(" -d '{}'\n", Quotable(option.what, "'\\"));
    }
    for (const OptionText& argument : command.arguments) {
      const std::string values = FishValues(argument);
      if (!values.empty()) text += when + values + "\n";
    }
  }
  return text;
}

}  // namespace

std::string CompletionScript(const std::string& shell, const std::vector<CommandText>& commands) {
  if (shell == "zsh") return Zsh(commands);
  return shell == "fish" ? Fish(commands) : Bash(commands);
}

}  // namespace tavcc
