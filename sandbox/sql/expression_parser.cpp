#include "sandbox/sql/expression_parser.h"

#include <algorithm>

namespace quillmere::sandbox {

namespace {

// Deep enough for any statement people or programs write, shallow enough for any stack.
constexpr int kMaxDepth = 200;
constexpr std::size_t kMaxInList = 1000;

void AddArgument(Expr* expr, ExprPtr argument) {
  expr->depth = std::max(expr->depth, argument->depth + 1);
  expr->args.push_back(std::move(argument));
}

ExprPtr Make(ExprOp op, ExprPtr first = nullptr, ExprPtr second = nullptr) {
  auto expr = std::make_unique<Expr>();
  expr->op = op;
  if (first) AddArgument(expr.get(), std::move(first));
  if (second) AddArgument(expr.get(), std::move(second));
  return expr;
}

Status CheckDepth(const Expr& expr) {
  return expr.depth > kMaxDepth ? Ora(900, "expression nests too deeply") : Status();
}

// Gives a level of nesting back when its function returns.
class Level {
 public:
  explicit Level(int& depth) : depth_(depth) {}
  ~Level() { --depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  int& depth_;
};

}  // namespace

Status ExpressionParser::Enter() {
  return ++depth_ > kMaxDepth ? Ora(900, "expression nests too deeply") : Status();
}

Status ExpressionParser::ParseCondition(ExprPtr* out) {
  const Level level(depth_);
  if (Status status = Enter(); !status.ok()) return status;
  if (Status status = ParseAnd(out); !status.ok()) return status;
  if (!reader_.IsWord("OR")) return {};
  ExprPtr any = Make(ExprOp::Or, std::move(*out));
  while (reader_.TakeWord("OR")) {
    ExprPtr next;
    if (Status status = ParseAnd(&next); !status.ok()) return status;
    AddArgument(any.get(), std::move(next));
  }
  *out = std::move(any);
  return {};
}

Status ExpressionParser::ParseAnd(ExprPtr* out) {
  if (Status status = ParseNot(out); !status.ok()) return status;
  if (!reader_.IsWord("AND")) return {};
  ExprPtr all = Make(ExprOp::And, std::move(*out));
  while (reader_.TakeWord("AND")) {
    ExprPtr next;
    if (Status status = ParseNot(&next); !status.ok()) return status;
    AddArgument(all.get(), std::move(next));
  }
  *out = std::move(all);
  return {};
}

Status ExpressionParser::ParseNot(ExprPtr* out) {
  bool negate = false;
  while (reader_.TakeWord("NOT")) negate = !negate;
  if (Status status = ParsePredicate(out); !status.ok()) return status;
  if (negate) *out = Make(ExprOp::Not, std::move(*out));
  return {};
}

// Whether "(" opens a condition and not a value: found by looking for what only conditions hold.
bool ExpressionParser::ParenthesisHoldsCondition() const {
  int open = 0;
  for (std::size_t i = 0;; ++i) {
    const Token& token = reader_.Ahead(i);
    if (token.kind == TokenKind::End) return false;
    if (token.kind == TokenKind::Symbol) {
      if (token.text == "(") ++open;
      if (token.text == ")" && --open == 0) return false;
      if (token.text == "=" || token.text == "<" || token.text == ">" || token.text == "<>" ||
          token.text == "!=" || token.text == "^=" || token.text == "<=" || token.text == ">=") {
        return true;
      }
    } else if (token.kind == TokenKind::Word &&
               (token.text == "IN" || token.text == "IS" || token.text == "LIKE" ||
                token.text == "BETWEEN" || token.text == "EXISTS" || token.text == "NOT")) {
      return true;
    }
  }
}

Status ExpressionParser::ParsePredicate(ExprPtr* out) {
  if (reader_.IsWord("EXISTS")) return ParseExists(out);
  if (reader_.IsSymbol("(") && ParenthesisHoldsCondition()) {
    reader_.Advance();
    if (Status status = ParseCondition(out); !status.ok()) return status;
    return reader_.NeedSymbol(")", 907);
  }
  ExprPtr left;
  if (Status status = ParseValue(&left); !status.ok()) return status;
  return ParsePredicateTail(std::move(left), out);
}

Status ExpressionParser::ParsePredicateTail(ExprPtr left, ExprPtr* out) {
  struct Comparison {
    std::string_view symbol;
    ExprOp op;
  };
  static constexpr Comparison kComparisons[] = {
      {"=", ExprOp::Equal},     {"<>", ExprOp::NotEqual},    {"!=", ExprOp::NotEqual},
      {"^=", ExprOp::NotEqual}, {"<", ExprOp::Less},         {"<=", ExprOp::LessEqual},
      {">", ExprOp::Greater},   {">=", ExprOp::GreaterEqual}};
  for (const Comparison& comparison : kComparisons) {
    if (!reader_.TakeSymbol(comparison.symbol)) continue;
    ExprPtr right;
    if (Status status = ParseValue(&right); !status.ok()) return status;
    *out = Make(comparison.op, std::move(left), std::move(right));
    return {};
  }
  if (reader_.TakeWord("IS")) {
    const bool negate = reader_.TakeWord("NOT");
    if (Status status = reader_.NeedWord("NULL", 908); !status.ok()) return status;
    *out = Make(ExprOp::IsNull, std::move(left));
    if (negate) *out = Make(ExprOp::Not, std::move(*out));
    return {};
  }
  const bool negate = reader_.TakeWord("NOT");
  if (reader_.TakeWord("IN")) {
    if (Status status = ParseIn(std::move(left), out); !status.ok()) return status;
  } else if (reader_.TakeWord("BETWEEN")) {
    ExprPtr low;
    ExprPtr high;
    if (Status status = ParseValue(&low); !status.ok()) return status;
    if (Status status = reader_.NeedWord("AND"); !status.ok()) return status;
    if (Status status = ParseValue(&high); !status.ok()) return status;
    *out = Make(ExprOp::Between, std::move(left), std::move(low));
    AddArgument(out->get(), std::move(high));
  } else if (reader_.TakeWord("LIKE")) {
    ExprPtr pattern;
    if (Status status = ParseValue(&pattern); !status.ok()) return status;
    *out = Make(ExprOp::Like, std::move(left), std::move(pattern));
    if (reader_.TakeWord("ESCAPE")) {
      ExprPtr escape;
      if (Status status = ParseValue(&escape); !status.ok()) return status;
      AddArgument(out->get(), std::move(escape));
    }
  } else {
    return Ora(920);
  }
  if (negate) *out = Make(ExprOp::Not, std::move(*out));
  return {};
}

Status ExpressionParser::ParseIn(ExprPtr left, ExprPtr* out) {
  if (Status status = reader_.NeedSymbol("(", 906); !status.ok()) return status;
  *out = Make(ExprOp::In, std::move(left));
  do {
    ExprPtr value;
    if (Status status = ParseValue(&value); !status.ok()) return status;
    AddArgument(out->get(), std::move(value));
    if ((*out)->args.size() > kMaxInList + 1) {
      return {1795, "maximum number of expressions in a list is 1000"};
    }
  } while (reader_.TakeSymbol(","));
  return reader_.NeedSymbol(")", 907);
}

Status ExpressionParser::ParseExists(ExprPtr* out) {
  const Level level(depth_);
  if (Status status = Enter(); !status.ok()) return status;
  reader_.Advance();
  if (Status status = reader_.NeedSymbol("(", 906); !status.ok()) return status;
  if (Status status = reader_.NeedWord("SELECT", 936); !status.ok()) return status;
  *out = Make(ExprOp::Exists);
  (*out)->subquery = std::make_shared<Select>();
  if (Status status = ParseSelect((*out)->subquery.get()); !status.ok()) return status;
  return reader_.NeedSymbol(")", 907);
}

Status ExpressionParser::ParseValue(ExprPtr* out) {
  const Level level(depth_);
  if (Status status = Enter(); !status.ok()) return status;
  if (Status status = ParseTerm(out); !status.ok()) return status;
  for (;;) {
    ExprOp op = ExprOp::Add;
    if (reader_.IsSymbol("-")) {
      op = ExprOp::Subtract;
    } else if (reader_.IsSymbol("||")) {
      op = ExprOp::Concat;
    } else if (!reader_.IsSymbol("+")) {
      return {};
    }
    reader_.Advance();
    ExprPtr right;
    if (Status status = ParseTerm(&right); !status.ok()) return status;
    // Long texts come as thousands of pieces joined by ||: one node takes them all.
    if (op == ExprOp::Concat && (*out)->op == ExprOp::Concat) {
      AddArgument(out->get(), std::move(right));
      continue;
    }
    *out = Make(op, std::move(*out), std::move(right));
    if (Status status = CheckDepth(**out); !status.ok()) return status;
  }
}

Status ExpressionParser::ParseTerm(ExprPtr* out) {
  if (Status status = ParseFactor(out); !status.ok()) return status;
  while (reader_.IsSymbol("*") || reader_.IsSymbol("/")) {
    const ExprOp op = reader_.IsSymbol("*") ? ExprOp::Multiply : ExprOp::Divide;
    reader_.Advance();
    ExprPtr right;
    if (Status status = ParseFactor(&right); !status.ok()) return status;
    *out = Make(op, std::move(*out), std::move(right));
    if (Status status = CheckDepth(**out); !status.ok()) return status;
  }
  return {};
}

Status ExpressionParser::ParseFactor(ExprPtr* out) {
  bool negate = false;
  while (reader_.IsSymbol("-") || reader_.IsSymbol("+")) {
    if (reader_.IsSymbol("-")) negate = !negate;
    reader_.Advance();
  }
  if (Status status = ParsePrimary(out); !status.ok()) return status;
  if (negate) *out = Make(ExprOp::Negate, std::move(*out));
  return {};
}

Status ExpressionParser::ParsePrimary(ExprPtr* out) {
  const Token& token = reader_.Current();
  if (token.kind == TokenKind::String || token.kind == TokenKind::Number) {
    *out = Make(ExprOp::Literal);
    (*out)->token = reader_.Index();
    (*out)->is_number = token.kind == TokenKind::Number;
    reader_.Advance();
    return {};
  }
  if (reader_.TakeSymbol("(")) {
    if (Status status = ParseValue(out); !status.ok()) return status;
    return reader_.NeedSymbol(")", 907);
  }
  if (reader_.TakeWord("NULL")) {
    *out = Make(ExprOp::Null);
    return {};
  }
  if (reader_.IsWord("DATE") && reader_.Ahead().kind == TokenKind::String) {
    return ParseTypedLiteral("DATE_LITERAL", out);
  }
  if (reader_.IsWord("TIMESTAMP") && reader_.Ahead().kind == TokenKind::String) {
    return ParseTypedLiteral("TIMESTAMP_LITERAL", out);
  }
  if (token.kind == TokenKind::Word || token.kind == TokenKind::QuotedName) {
    return ParseNameOrCall(out);
  }
  return Ora(936);
}

Status ExpressionParser::ParseTypedLiteral(std::string_view function, ExprPtr* out) {
  reader_.Advance();
  *out = Make(ExprOp::Call);
  (*out)->name = function;
  ExprPtr text = Make(ExprOp::Literal);
  text->token = reader_.Index();
  AddArgument(out->get(), std::move(text));
  reader_.Advance();
  return {};
}

Status ExpressionParser::ParseNameOrCall(ExprPtr* out) {
  const bool plain = reader_.Current().kind == TokenKind::Word;
  if (plain &&
      (reader_.IsWord("SYSDATE") || reader_.IsWord("SYSTIMESTAMP") || reader_.IsWord("USER"))) {
    *out = Make(ExprOp::Call);
    (*out)->name = reader_.Current().text;
    reader_.Advance();
    return {};
  }
  if (plain && reader_.TakeWord("ROWID")) {
    *out = Make(ExprOp::Rowid);
    return {};
  }
  std::vector<std::string> parts(1);
  if (Status status = reader_.ReadName(&parts[0], 936); !status.ok()) return status;
  while (reader_.TakeSymbol(".")) {
    if (reader_.TakeWord("ROWID")) {
      *out = Make(ExprOp::Rowid);
      (*out)->qualifier = parts.back();
      return {};
    }
    if (parts.size() == 3) return Ora(1747);
    if (Status status = reader_.ReadName(&parts.emplace_back(), 1747); !status.ok()) return status;
  }
  if (reader_.IsSymbol("(") && parts.size() == 1) {
    *out = Make(ExprOp::Call);
    (*out)->name = parts[0];
    return ParseCallArguments(out->get());
  }
  *out = Make(ExprOp::Column);
  (*out)->name = parts.back();
  if (parts.size() > 1) (*out)->qualifier = parts[parts.size() - 2];
  return {};
}

Status ExpressionParser::ParseCallArguments(Expr* call) {
  reader_.Advance();
  if (reader_.TakeSymbol(")")) return {};
  if (call->name == "COUNT" && reader_.IsSymbol("*")) {
    reader_.Advance();
    call->op = ExprOp::CountStar;
    return reader_.NeedSymbol(")", 907);
  }
  do {
    ExprPtr argument;
    if (Status status = ParseValue(&argument); !status.ok()) return status;
    AddArgument(call, std::move(argument));
  } while (reader_.TakeSymbol(","));
  return reader_.NeedSymbol(")", 907);
}

}  // namespace quillmere::sandbox
