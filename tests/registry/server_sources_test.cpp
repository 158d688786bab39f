// A method's row in the class table is told to hosts in two more places, which are written for
// readers and for the interface compiler: its declaration in the type library's source, and its
// early-bound member. Both follow from the row; where one is missing or says something else, the
// test prints what to write, and where.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "registry/class_registry.h"
#include "scenario/json.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

constexpr size_t kWidest = 100;

std::string TypeName(ArgumentType type) {
  switch (type) {
    case ArgumentType::kBoolean:
      return "VARIANT_BOOL";
    case ArgumentType::kInteger:
      return "short";
    case ArgumentType::kLong:
      return "long";
    case ArgumentType::kDouble:
      return "double";
    case ArgumentType::kDate:
      return "DATE";
    case ArgumentType::kText:
      return "BSTR";
    case ArgumentType::kVariant:
      return "VARIANT";
    case ArgumentType::kTransactionMode:
      return "TransactionMode";
    default:
      return "IDispatch*";
  }
}

// "BSTR* strReturnMsg"
std::string Declared(ArgumentType type, bool pointer, std::string_view name) {
  return TypeName(type) + (pointer ? "* " : " ") + std::string(name);
}

// An in parameter that may be left out needs a value for it in an early-bound call.
std::string Attributes(const Parameter& parameter) {
  if (parameter.in_out) return parameter.optional ? "[in, out, optional] " : "[in, out] ";
  if (!parameter.optional) return "[in] ";
  if (parameter.type == ArgumentType::kText) return "[in, defaultvalue(\"\")] ";
  return "[in, defaultvalue(" + std::to_string(parameter.default_value.value_or(0)) + ")] ";
}

// "head(part, part, …)tail", broken between parts where a line is full, as the formatter does.
std::string Wrapped(const std::string& head, const std::vector<std::string>& parts,
                    const std::string& tail) {
  std::string text;
  std::string line = head + "(";
  const std::string indent(line.size(), ' ');
  for (size_t i = 0; i < parts.size(); ++i) {
    const std::string part = parts[i] + (i + 1 < parts.size() ? "," : ")" + tail);
    const bool fresh = line.back() == '(' || line == indent;
    if (!fresh && line.size() + 1 + part.size() > kWidest) {
      text += line + "\n";
      line = indent;
    } else if (!fresh) {
      line += " ";
    }
    line += part;
  }
  return text + line + "\n";
}

std::string IdlOf(const Method& method) {
  std::ostringstream id;
  id << "    [" << (method.is_property ? "propget, " : "") << "id(0x" << std::hex << std::uppercase
     << method.dispatch_id << ")]\n";
  std::vector<std::string> parts;
  for (const Parameter& parameter : method.parameters) {
    parts.push_back(Attributes(parameter) +
                    Declared(parameter.type, parameter.in_out, parameter.name));
  }
  parts.push_back("[out, retval] " + Declared(method.result, true, "result"));
  return id.str() + Wrapped("    HRESULT " + std::string(method.name), parts, ";");
}

std::string MemberOf(const Method& method, const std::string& call) {
  std::vector<std::string> declared, handed_on = {std::to_string(method.slot)};
  for (const Parameter& parameter : method.parameters) {
    declared.push_back(Declared(parameter.type, parameter.in_out, parameter.name));
    handed_on.emplace_back(parameter.name);
  }
  declared.push_back(Declared(method.result, true, "result"));
  handed_on.emplace_back("result");
  const std::string name = (method.is_property ? "get_" : "") + std::string(method.name);
  return Wrapped("  HRESULT STDMETHODCALLTYPE " + name, declared, " noexcept override {") +
         Wrapped("    return " + call, handed_on, ";") + "  }\n";
}

// Blanks and line ends are the formatter's affair.
std::string WithoutBlanks(std::string_view text) {
  std::string out(text);
  std::erase_if(out, [](char c) { return c == ' ' || c == '\n'; });
  return out;
}

// What stands from the first `begin` behind `opening` on, in front of `end`.
std::string Body(const std::string& text, const std::string& opening, const std::string& begin,
                 const std::string& end) {
  const size_t at = text.find(opening);
  if (at == std::string::npos) return "";
  const size_t first = text.find(begin, at);
  return text.substr(first, text.find(end, first) - first);
}

// The body has the declarations of all methods, in the order of their slots, and nothing else.
void ExpectDeclared(const ClassDescription& cls, const std::string& file, const std::string& where,
                    const std::string& body, const std::vector<std::string>& wanted) {
  ASSERT_FALSE(body.empty()) << file << " has no " << where;
  const std::string found = WithoutBlanks(body);
  size_t at = 0;
  for (size_t i = 0; i < wanted.size(); ++i) {
    const std::string one = WithoutBlanks(wanted[i]);
    const size_t next = found.find(one, at);
    EXPECT_NE(next, std::string::npos)
        << file << ", " << where << ": the row of " << cls.name << "." << cls.methods[i].name
        << " in src/registry/class_table.cpp wants "
        << (i == 0 ? std::string("here as the first method")
                   : "here, behind " + std::string(cls.methods[i - 1].name))
        << ":\n\n"
        << wanted[i];
    if (next == std::string::npos) return;
    EXPECT_EQ(next, at) << file << ", " << where << ": what stands in front of "
                        << cls.methods[i].name << " is in no row of the class table";
    at = next + one.size();
  }
  EXPECT_EQ(found.size(), at) << file << ", " << where << ": what stands behind "
                              << cls.methods.back().name << " is in no row of the class table";
}

TEST(ServerSources, TheTypeLibrarySaysWhatTheClassTableSays) {
  const std::string file = "src/automation/TavM_CC_PlugIns.idl";
  const std::string idl = ReadTextFile((SourceDir() / file).string());
  for (const ClassDescription& cls : Classes()) {
    std::vector<std::string> wanted;
    for (const Method& method : cls.methods) wanted.push_back(IdlOf(method));
    const std::string where = "interface _" + std::string(cls.name);
    ExpectDeclared(cls, file, where, Body(idl, where + " :", "    [", "\n  };"), wanted);
  }
}

// Three classes with the same methods share their members.
std::string MembersOf(const ClassDescription& cls) {
  constexpr std::string_view kAlike[] = {"CheckProfit", "CheckLoss", "AdjustPrice"};
  const bool alike = std::ranges::find(kAlike, cls.name) != std::end(kAlike);
  return alike ? "CheckAndSave" : std::string(cls.name);
}

TEST(ServerSources, TheEarlyBoundMembersAreThoseOfTheClassTable) {
  const std::string file = "src/automation/interfaces.cpp";
  const std::string source = ReadTextFile((SourceDir() / file).string());
  for (const ClassDescription& cls : Classes()) {
    const std::string members = MembersOf(cls);
    const std::string where = "class " + members;
    std::vector<std::string> wanted;
    for (const Method& method : cls.methods) {
      wanted.push_back(MemberOf(method, members == cls.name ? "Call" : "this->Call"));
    }
    ExpectDeclared(cls, file, where, Body(source, where + " final :", "  HRESULT", "\n};"), wanted);
  }
}

}  // namespace
}  // namespace tavcc
