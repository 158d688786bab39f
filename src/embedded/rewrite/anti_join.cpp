// Anti-joins: rows are deleted that have no match in a table which the statement uses for nothing
// else.
//
//   DELETE t FROM t LEFT JOIN (SELECT k FROM a UNION ALL SELECT k FROM b GROUP BY k) u ON t.k = u.k
//     WHERE t.q = 0 AND u.k IS NULL
//   DELETE t FROM t WHERE t.q = 0 AND NOT EXISTS (SELECT 1 FROM a WHERE t.k = a.k)
//     AND NOT EXISTS (SELECT 1 FROM b WHERE t.k = b.k)
//
// It may since an equality on u.k matches no null, so that u.k is null only where there was no
// match. The query in place of u comes apart into its blocks, since SQLite takes a condition from
// outside into a block but not into several at once: each is then a look into an index for each row
// of t. It makes no difference to whether there is a match that a block leaves out equal rows or
// groups by what it shows; texts that a group takes for equal are equal in the comparison as well.
#include "embedded/rewrite/anti_join.h"

#include <algorithm>
#include <utility>

#include "embedded/bind/same.h"
#include "embedded/bind/walk.h"
#include "embedded/rewrite/conditions.h"
#include "embedded/rewrite/copy.h"
#include "embedded/rewrite/rules.h"
#include "embedded/types/stored_form.h"

namespace tavcc::sql {
namespace {

const BoundColumn* ColumnOf(const BoundExpression& expression, const BoundSource& source) {
  const auto* column = As<BoundColumn>(expression);
  return column != nullptr && column->source == &source ? column : nullptr;
}

template <class Tree>
bool Mentions(const Tree& tree, const BoundSource& source) {
  bool mentions = false;
  ForEachExpression(tree, [&](const BoundExpression& inner) {
    mentions = mentions || ColumnOf(inner, source) != nullptr;
  });
  return mentions;
}

// What is converted, where the other type stores it the same way.
const BoundExpression& Unconverted(const BoundExpression& expression) {
  const auto* convert = As<BoundConvert>(expression);
  const bool same = convert != nullptr && IsSameStored(convert->operand->type, convert->type);
  return same ? Unconverted(*convert->operand) : expression;
}

// The column of `source` in "column = something without source"; null when it is not of this form.
const BoundColumn* Matched(const BoundCondition& condition, const BoundSource& source) {
  const BoundComparison* equality = AsEquality(condition);
  if (equality == nullptr) return nullptr;
  const BoundColumn* left = ColumnOf(Unconverted(*equality->left), source);
  const BoundColumn* right = ColumnOf(Unconverted(*equality->right), source);
  if (left != nullptr && !Mentions(*equality->right, source)) return left;
  if (right != nullptr && !Mentions(*equality->left, source)) return right;
  return nullptr;
}

// Whether a condition asks that there be no match: "u.K IS NULL" for a matched column.
bool AsksForNoMatch(const BoundCondition& condition, const BoundSource& source,
                    const std::vector<int>& matched) {
  const auto* is_null = As<BoundIsNull>(condition);
  if (is_null == nullptr || is_null->negated) return false;
  const BoundColumn* column = ColumnOf(*is_null->operand, source);
  return column != nullptr && std::ranges::find(matched, column->column) != matched.end();
}

// Whether grouping does no more than leave out equal rows.
bool OnlyLeavesOutEqualRows(const BoundSelect& select) {
  if (!select.grouped) return true;
  if (select.having) return false;
  return std::ranges::all_of(select.items, [&](const BoundItem& item) {
    const BoundExpression& shown = Unconverted(*item.expression);
    return shown.kind == BoundExpression::Kind::kColumn &&
           std::ranges::any_of(select.group_by,
                               [&](const auto& key) { return AreSame(*key, shown); });
  });
}

// The query that a block does no more than show: SELECT columns FROM (query).
const BoundQuery* ShownBy(const BoundSelect& select) {
  if (select.grouped || select.where || !select.from || !select.from->source) return nullptr;
  return select.from->source->query.get();
}

bool IsSeparable(const BoundQuery& query) {
  if (!query.order_by.empty()) return false;
  if (query.recursion != 0) return false;
  if (!query.select) {
    return (query.set_operator == Query::SetOperator::kUnion ||
            query.set_operator == Query::SetOperator::kUnionAll) &&
           IsSeparable(*query.left) && IsSeparable(*query.right);
  }
  const BoundSelect& select = *query.select;
  if (select.top || select.windowed || !OnlyLeavesOutEqualRows(select)) return false;
  const BoundQuery* shown = ShownBy(select);
  return shown == nullptr || IsSeparable(*shown);
}

BoundConditionPtr NoneOf(BoundFromPtr from, BoundConditionPtr where) {
  auto select = std::make_unique<BoundSelect>();
  select->items.push_back(
      {std::make_unique<BoundLiteral>(TypedValue{kIntType, StoredValue(int64_t{1})}, -1), "", -1});
  select->from = std::move(from);
  select->where = std::move(where);
  auto exists = std::make_unique<BoundExists>();
  exists->query = std::make_unique<BoundQuery>();
  exists->query->select = std::move(select);
  exists->query->columns.push_back({"", kIntType, false, false});
  return std::make_unique<BoundNot>(std::move(exists));
}

class AntiJoin final : public StatementPass {
 public:
  explicit AntiJoin(BindResult& binding) : binding_(binding) {}

 protected:
  void OnDelete(BoundDelete& remove) override {
    const BoundSource* missed = FindAntiJoined(remove);
    if (missed == nullptr) return;
    std::vector<BoundConditionPtr> where;
    for (BoundConditionPtr& conjunct : SplitConjuncts(std::move(remove.where))) {
      if (!Mentions(*conjunct, *missed)) where.push_back(std::move(conjunct));
    }
    BoundFromPtr right = std::move(remove.from->right);
    BoundConditionPtr on = std::move(remove.from->on);
    remove.from = std::move(remove.from->left);
    if (missed->table) {
      where.push_back(NoneOf(std::move(right), std::move(on)));
    } else {
      TreeCopy shown(binding_.next_source);
      AddNoneOf(*right->source->query, *missed, *on, shown, where);
    }
    remove.where = All(std::move(where));
  }

 private:
  // Adds "NOT EXISTS (block WHERE on)" for each block of the query that stands for `source`.
  // `shown` knows what the columns of the sources around it are in the block.
  void AddNoneOf(BoundQuery& query, const BoundSource& source, const BoundCondition& on,
                 TreeCopy& shown, std::vector<BoundConditionPtr>& where) {
    if (!query.select) {
      AddNoneOf(*query.left, source, on, shown, where);
      AddNoneOf(*query.right, source, on, shown, where);
      return;
    }
    BoundSelect& select = *query.select;
    shown.Show(source, select);
    if (ShownBy(select) != nullptr) {
      BoundSource& inner = *select.from->source;
      AddNoneOf(*inner.query, inner, on, shown, where);
      return;
    }
    std::vector<BoundConditionPtr> conditions;
    conditions.push_back(shown.Copy(on));
    for (BoundConditionPtr& conjunct : SplitConjuncts(std::move(select.where))) {
      conditions.push_back(std::move(conjunct));
    }
    where.push_back(NoneOf(std::move(select.from), All(std::move(conditions))));
  }

  BindResult& binding_;
};

}  // namespace

const BoundSource* FindAntiJoined(const BoundDelete& remove) {
  const BoundFrom& from = *remove.from;
  const BoundCondition* const where = remove.where.get();
  if (from.join != BoundFrom::Join::kLeft || !from.right->source) return nullptr;
  const BoundSource& source = *from.right->source;
  if (&source == remove.target) return nullptr;
  if (source.query && !IsSeparable(*source.query)) return nullptr;
  std::vector<int> matched;
  bool simple = true;
  ForEachConjunct(from.on.get(), [&](const BoundCondition& conjunct) {
    if (const BoundColumn* column = Matched(conjunct, source)) {
      matched.push_back(column->column);
    } else if (Mentions(conjunct, source)) {
      simple = false;
    }
  });
  bool asked = false;
  ForEachConjunct(where, [&](const BoundCondition& conjunct) {
    if (AsksForNoMatch(conjunct, source, matched)) {
      asked = true;
    } else if (Mentions(conjunct, source)) {
      simple = false;
    }
  });
  return simple && asked ? &source : nullptr;
}

std::unique_ptr<StatementPass> AntiJoinPass(BindResult& binding) {
  return std::make_unique<AntiJoin>(binding);
}

}  // namespace tavcc::sql
