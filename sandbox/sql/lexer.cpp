// SPDX-License-Identifier: MIT
#include "sandbox/sql/lexer.h"

#include <algorithm>
#include <cctype>

#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMaxNameBytes = 30;

bool IsNameStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) >= 0x80;
}

bool IsNamePart(char c) {
  return IsNameStart(c) || IsDigit(c) || c == '_' || c == '$' || c == '#';
}

class Lexer {
 public:
  Lexer(std::string_view sql, std::vector<Token>* out) : sql_(sql), out_(*out) {}

  Status Run() {
    out_.clear();
    for (;;) {
      SkipBlanksAndComments();
      begin_ = at_;
      if (at_ >= sql_.size()) break;
      if (Status status = ReadToken(); !status.ok()) return status;
    }
    return Push(TokenKind::End, "");
  }

 private:
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0';
  }

  Status Push(TokenKind kind, std::string text) {
    out_.push_back(Token{kind, std::move(text), begin_, at_});
    return {};
  }

  // To behind the next `mark`, or to the end.
  void SkipPast(std::string_view mark, std::size_t from) {
    const std::size_t found = sql_.find(mark, from);
    at_ = found == std::string_view::npos ? sql_.size() : found + mark.size();
  }

  void SkipBlanksAndComments() {
    while (at_ < sql_.size()) {
      if (std::isspace(static_cast<unsigned char>(sql_[at_]))) {
        ++at_;
      } else if (Peek() == '-' && Peek(1) == '-') {
        SkipPast("\n", at_);
      } else if (Peek() == '/' && Peek(1) == '*') {
        SkipPast("*/", at_ + 2);
      } else {
        return;
      }
    }
  }

  Status ReadToken() {
    const char c = Peek();
    if ((c == 'n' || c == 'N') && Peek(1) == '\'') ++at_;
    if (Peek() == '\'') return ReadString();
    if (c == '"') return ReadQuotedName();
    if (IsNameStart(c)) return ReadWord();
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return ReadNumber();
    return ReadSymbol();
  }

  Status ReadString() {
    std::string text;
    for (std::size_t from = ++at_;; from = at_) {
      const std::size_t quote = sql_.find('\'', from);
      if (quote == std::string_view::npos) return Ora(1756);
      text.append(sql_, from, quote - from);
      at_ = quote + 1;
      if (Peek() != '\'') return Push(TokenKind::String, std::move(text));
      text += '\'';
      ++at_;
    }
  }

  Status PushName(TokenKind kind, std::string text) {
    if (text.empty()) return Ora(1741);
    if (text.size() > kMaxNameBytes) return Ora(972, Shortened(text, 60));
    return Push(kind, std::move(text));
  }

  Status ReadQuotedName() {
    const std::size_t quote = sql_.find('"', at_ + 1);
    if (quote == std::string_view::npos) return Ora(1740);
    at_ = quote + 1;
    return PushName(TokenKind::QuotedName,
                    std::string(sql_.substr(begin_ + 1, quote - begin_ - 1)));
  }

  Status ReadWord() {
    while (IsNamePart(Peek())) ++at_;
    return PushName(TokenKind::Word, Upper(sql_.substr(begin_, at_ - begin_)));
  }

  void SkipDigits() {
    while (IsDigit(Peek())) ++at_;
  }

  Status ReadNumber() {
    SkipDigits();
    if (Peek() == '.') ++at_;
    SkipDigits();
    const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 2 : 1;
    if ((Peek() == 'e' || Peek() == 'E') && IsDigit(Peek(sign))) {
      at_ += sign;
      SkipDigits();
    }
    return Push(TokenKind::Number, std::string(sql_.substr(begin_, at_ - begin_)));
  }

  Status ReadSymbol() {
    static constexpr std::string_view kTwo[] = {"<>", "!=", "^=", "<=", ">=", "||", "=>"};
    static constexpr std::string_view kOne = "()+-*/=<>,.;";
    const bool two =
        std::find(std::begin(kTwo), std::end(kTwo), sql_.substr(at_, 2)) != std::end(kTwo);
    if (!two && kOne.find(Peek()) == std::string_view::npos) {
      return Ora(911, Shortened(sql_.substr(at_), 40));
    }
    at_ += two ? 2 : 1;
    return Push(TokenKind::Symbol, std::string(sql_.substr(begin_, at_ - begin_)));
  }

  std::string_view sql_;
  std::vector<Token>& out_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;  // of the token being read
};

}  // namespace

Status Tokenise(std::string_view sql, std::vector<Token>* out) {
  return Lexer(sql, out).Run();
}

}  // namespace quillmere::sandbox
