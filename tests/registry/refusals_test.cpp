// The catalogue of refusals against what it speaks of: the texts in the rules' sources, the methods
// of the class registry, and the refusals that the scenarios expect.
#include "registry/refusals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "scenario/json.h"
#include "scenario/scenario.h"
#include "support/source_dir.h"

namespace tavcc {
namespace {

// What stands between the placeholders of a text.
std::vector<std::string> PiecesOf(std::string_view text) {
  std::vector<std::string> pieces(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      pieces.back() += text[i];
    } else {
      ++i;  // the digit
      pieces.emplace_back();
    }
  }
  std::erase(pieces, "");
  return pieces;
}

// ---- The rules' sources ------------------------------------------------------------------------

// Chinese in the rules that refuses nothing, or is what a rule puts in a placeholder.
constexpr std::string_view kNoRefusals[] = {
    // the result line of a batch
    "编号为：",
    "的",
    "单据",
    "反",
    "审核成功！",
    "审核失败！失败原因：",
    // the names of the classes there
    "采购订单",
    "购货单",
    "采购估价单",
    "采购返利单",
    "采购结算单",
    "销售订单",
    "销售单",
    "委托代销单",
    "销售返利单",
    "委托代销结算单",
    "其他入库单",
    "其他出库单",
    "盘盈单",
    "盘亏单",
    "组装单",
    "拆卸单",
    "调拨单",
    "调价单",
    // in placeholders: the lines without a price, the partner, the document
    "、",
    "供应商",
    "客户",
    "委托代销",
    // frames around the outcome of an audit by itself
    "单据[%1]审核成功!",
    "单据[%1]审核失败!",
    "单据[%1]反审核成功!",
    "单据[%1]反审核失败!",
    // before the description of an error
    "单据合法性检查出错，错误描述：",
    "单据合法性检查错误，错误描述：",
    "当前资料被保存后扩展处理方法出错:",
    "当前资料被保存后扩展处理方法出错：",
    "重建余额表过程发生错误，错误描述：",
    // an outcome
    "重建余额表完成。",
};

std::string WithoutComment(const std::string& line) {
  bool inside = false;
  for (size_t i = 0; i + 1 < line.size(); ++i) {
    if (line[i] == '\\') {
      ++i;
    } else if (line[i] == '"') {
      inside = !inside;
    } else if (!inside && line[i] == '/' && line[i + 1] == '/') {
      return line.substr(0, i);
    }
  }
  return line;
}

void AddLiterals(const std::string& line, std::set<std::string>& literals) {
  std::string literal;
  bool inside = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') {
      if (inside) literals.insert(std::exchange(literal, ""));
      inside = !inside;
    } else if (inside) {
      if (line[i] == '\\') ++i;
      literal += line[i];
    }
  }
}

bool IsChinese(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
}

// Every literal of the rules that holds Chinese.
std::set<std::string> ChineseLiterals() {
  std::set<std::string> literals;
  for (const char* folder : {"audit", "checks", "pricing", "balances", "billtypes"}) {
    for (const auto& entry : std::filesystem::directory_iterator(SourceDir() / "src" / folder)) {
      std::istringstream lines(ReadTextFile(entry.path().string()));
      for (std::string line; std::getline(lines, line);) {
        AddLiterals(WithoutComment(line), literals);
      }
    }
  }
  std::erase_if(literals, [](const std::string& literal) { return !IsChinese(literal); });
  return literals;
}

std::set<std::string> CataloguePieces() {
  std::set<std::string> pieces;
  for (const Refusal& refusal : Refusals()) {
    for (const RefusalText& text : refusal.texts) {
      for (std::string& piece : PiecesOf(text.text)) pieces.insert(std::move(piece));
    }
  }
  return pieces;
}

TEST(Refusals, EveryTextOfTheRulesIsInTheCatalogue) {
  const std::set<std::string> known = CataloguePieces();
  const std::set<std::string_view> others(std::begin(kNoRefusals), std::end(kNoRefusals));
  const std::set<std::string> literals = ChineseLiterals();
  EXPECT_GT(literals.size(), 80U);
  for (const std::string& literal : literals) {
    EXPECT_TRUE(known.contains(literal) || others.contains(literal))
        << "the rules say \"" << literal << "\", and src/registry/refusals.cpp has no row for it";
  }
}

TEST(Refusals, EveryTextOfTheCatalogueIsInTheRules) {
  const std::set<std::string> literals = ChineseLiterals();
  for (const std::string& piece : CataloguePieces()) {
    EXPECT_TRUE(literals.contains(piece)) << "no rule says \"" << piece << "\"";
  }
  for (const std::string_view text : kNoRefusals) {
    EXPECT_TRUE(literals.contains(std::string(text))) << "no rule says \"" << text << "\"";
  }
}

// ---- The rows ----------------------------------------------------------------------------------

TEST(Refusals, EachHasANameOfItsOwnAndSaysWhatToDo) {
  std::set<std::string_view> names;
  std::set<std::string_view> texts;
  for (const Refusal& refusal : Refusals()) {
    EXPECT_TRUE(names.insert(refusal.name).second) << refusal.name << " stands twice";
    EXPECT_EQ(std::count(refusal.name.begin(), refusal.name.end(), '.'), 1) << refusal.name;
    EXPECT_EQ(refusal.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz_."), std::string::npos)
        << refusal.name;
    EXPECT_FALSE(refusal.texts.empty()) << refusal.name;
    for (const RefusalText& text : refusal.texts) {
      EXPECT_TRUE(texts.insert(text.text).second) << text.text << " stands twice";
      EXPECT_FALSE(text.methods.empty()) << text.text;
    }
    for (const Bilingual* said : {&refusal.cause, &refusal.remedy}) {
      EXPECT_TRUE(said->english.ends_with('.')) << refusal.name;
      EXPECT_FALSE(IsChinese(std::string(said->english))) << refusal.name;
      EXPECT_TRUE(said->chinese.ends_with("。")) << refusal.name;
    }
  }
}

TEST(Refusals, TheirMethodsAreThoseOfTheClasses) {
  for (const Refusal& refusal : Refusals()) {
    for (const RefusalText& text : refusal.texts) {
      for (const std::string_view method : text.methods) {
        EXPECT_NO_THROW(FindMethodByName(method)) << text.text;
      }
    }
  }
}

// ---- The scenarios -----------------------------------------------------------------------------

// Whether the message, without the line of a batch around it, is the text.
bool Says(std::string_view message, std::string_view text) {
  while (message.ends_with('|')) message.remove_suffix(1);
  const std::vector<std::string> pieces = PiecesOf(text);
  size_t at = message.find(pieces.front());
  if (pieces.size() == 1) return message.ends_with(text);
  for (const std::string& piece : pieces) {
    at = at == std::string_view::npos ? at : message.find(piece, at);
  }
  return at != std::string_view::npos && message.ends_with(pieces.back());
}

using Shown = std::map<std::string_view, std::set<std::string>>;  // texts to methods

void AddShown(const std::string& method, const std::string& message, Shown& shown) {
  std::istringstream lines(message);
  for (std::string line; std::getline(lines, line, '|');) {
    for (const Refusal& refusal : Refusals()) {
      for (const RefusalText& text : refusal.texts) {
        if (Says(line, text.text)) shown[text.text].insert(method);
      }
    }
  }
}

void AddTexts(const std::string& method, const Json& json, Shown& shown) {
  if (json.is_string()) AddShown(method, json.get<std::string>(), shown);
  for (const Json& element : json) AddTexts(method, element, shown);
  for (const Json::Member& member : json.items()) AddTexts(method, member.value, shown);
}

// What the scenarios expect which method to say.
const Shown& ShownByScenarios() {
  static const Shown shown = [] {
    Shown all;
    for (const std::string& file : ScenarioFiles({(SourceDir() / "tests/scenarios").string()})) {
      for (const Step& step : LoadScenario(file).steps) {
        if (!step.IsCall()) continue;
        const std::string method =
            std::string(step.cls->name) + "." + std::string(step.method->name);
        AddTexts(method, step.expect, all);
        if (step.error && step.error->description) {
          AddShown(method, *step.error->description, all);
        }
      }
    }
    return all;
  }();
  return shown;
}

TEST(Refusals, WhatAScenarioExpectsOfAMethodIsInItsRow) {
  for (const Refusal& refusal : Refusals()) {
    for (const RefusalText& text : refusal.texts) {
      const auto found = ShownByScenarios().find(text.text);
      if (found == ShownByScenarios().end()) continue;
      for (const std::string& method : found->second) {
        EXPECT_NE(std::find(text.methods.begin(), text.methods.end(), method), text.methods.end())
            << method << " says \"" << text.text << "\", and its row does not name it";
      }
    }
  }
}

// These hand on what others say, who stand before them in a row.
bool HandsOn(std::string_view method, const RefusalText& text) {
  const bool can =
      method == "PublicSysInfo.VerifyDataBeforeAudit" || method == "PublicSysInfo.AuditBill";
  return can && method != text.methods.front();
}

// Its calls fail for every bill that a database has; tests/billtypes gives it rows that no database
// returns.
constexpr std::string_view kShownElsewhere = "CheckBill";

TEST(Refusals, EachIsExpectedBySomeScenarioOfEachMethodThatGivesIt) {
  int compared = 0;
  for (const Refusal& refusal : Refusals()) {
    for (const RefusalText& text : refusal.texts) {
      for (const std::string_view method : text.methods) {
        if (HandsOn(method, text) || method.ends_with(kShownElsewhere)) continue;
        const auto found = ShownByScenarios().find(text.text);
        EXPECT_TRUE(found != ShownByScenarios().end() &&
                    found->second.contains(std::string(method)))
            << "no scenario has " << method << " say \"" << text.text << "\"";
        ++compared;
      }
    }
  }
  EXPECT_GT(compared, 80);
}

// ---- Finding -----------------------------------------------------------------------------------

std::string_view NameOf(std::string_view message) {
  const Refusal* const refusal = FindRefusal(message);
  return refusal == nullptr ? "" : refusal->name;
}

TEST(Refusals, AreFoundByTheirMessage) {
  EXPECT_EQ(NameOf("该单据已被审核，不能再审核！"), "bill.audited");
  EXPECT_EQ(NameOf("不能审核以前期间的单据！"), "period.closed");
  EXPECT_EQ(NameOf("第1、3行商品单价为零,审核不成功！"), "price.zero");
  EXPECT_EQ(NameOf("当前客户的信用额度为：20000，截止到本次往来余额已经超出。"), "credit.exceeded");
  EXPECT_EQ(NameOf("截止到今天销售订单存在超期的未收的款项，控制不允许出库"), "overdue.receivable");
}

TEST(Refusals, AreFoundInTheLineOfABatch) {
  EXPECT_EQ(NameOf("编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！|"),
            "stock.negative");
  EXPECT_EQ(NameOf("编号为：第1的其他入库单单据审核失败！失败原因：第2行商品单价为零,审核不成功！"),
            "price.zero");
  EXPECT_EQ(NameOf("单据[PY1]审核失败!该单据不存在，可能已经被删除！"), "bill.missing");
}

TEST(Refusals, OtherMessagesAreNone) {
  EXPECT_EQ(NameOf(""), "");
  EXPECT_EQ(NameOf("|"), "");
  EXPECT_EQ(NameOf("disk full"), "");
  EXPECT_EQ(NameOf("编号为：XS260301的销售单单据审核成功！|"), "");
  EXPECT_EQ(NameOf("审核出现负库存商品！ more"), "");
  EXPECT_EQ(NameOf("第1行商品"), "");
}

}  // namespace
}  // namespace tavcc
