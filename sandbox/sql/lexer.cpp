#include "sandbox/sql/lexer.h"

#include <cctype>

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMaxNameBytes = 30;

bool IsNameStart(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalpha(byte) || byte >= 0x80;
}

bool IsNamePart(char c) {
  return IsNameStart(c) || std::isdigit(static_cast<unsigned char>(c)) || c == '_' || c == '$' ||
         c == '#';
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

class Lexer {
 public:
  Lexer(std::string_view sql, std::vector<Token>* out) : sql_(sql), out_(*out) {}

  Status Run() {
    out_.clear();
    for (;;) {
      SkipBlanksAndComments();
      if (at_ >= sql_.size()) break;
      if (Status status = ReadToken(); !status.ok()) return status;
    }
    Push(TokenKind::End, sql_.size(), "");
    return {};
  }

 private:
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0';
  }

  void Push(TokenKind kind, std::size_t begin, std::string text) {
    out_.push_back(Token{kind, std::move(text), begin, at_});
  }

  void SkipBlanksAndComments() {
    while (at_ < sql_.size()) {
      if (std::isspace(static_cast<unsigned char>(sql_[at_]))) {
        ++at_;
      } else if (Peek() == '-' && Peek(1) == '-') {
        const std::size_t line_end = sql_.find('\n', at_);
        at_ = line_end == std::string_view::npos ? sql_.size() : line_end + 1;
      } else if (Peek() == '/' && Peek(1) == '*') {
        const std::size_t end = sql_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? sql_.size() : end + 2;
      } else {
        return;
      }
    }
  }

  Status ReadToken() {
    const char c = Peek();
    if (c == '\'') return ReadString(at_);
    if ((c == 'n' || c == 'N') && Peek(1) == '\'') {
      ++at_;
      return ReadString(at_ - 1);
    }
    if (c == '"') return ReadQuotedName();
    if (IsNameStart(c)) return ReadWord();
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return ReadNumber();
    return ReadSymbol();
  }

  Status ReadString(std::size_t begin) {
    std::string text;
    std::size_t from = ++at_;
    for (;;) {
      const std::size_t quote = sql_.find('\'', from);
      if (quote == std::string_view::npos) return Ora(1756);
      text.append(sql_, at_, quote - at_);
      if (quote + 1 < sql_.size() && sql_[quote + 1] == '\'') {
        text += '\'';
        at_ = from = quote + 2;
        continue;
      }
      at_ = quote + 1;
      Push(TokenKind::String, begin, std::move(text));
      return {};
    }
  }

  Status ReadQuotedName() {
    const std::size_t begin = at_;
    const std::size_t quote = sql_.find('"', at_ + 1);
    if (quote == std::string_view::npos) return Ora(1740);
    std::string text(sql_.substr(begin + 1, quote - begin - 1));
    at_ = quote + 1;
    if (text.empty()) return Ora(1741);
    if (text.size() > kMaxNameBytes) return Ora(972, Shortened(text, 60));
    Push(TokenKind::QuotedName, begin, std::move(text));
    return {};
  }

  Status ReadWord() {
    const std::size_t begin = at_;
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
    std::string text(sql_.substr(begin, at_ - begin));
    for (char& c : text) {
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    if (text.size() > kMaxNameBytes) return Ora(972, Shortened(text, 60));
    Push(TokenKind::Word, begin, std::move(text));
    return {};
  }

  Status ReadNumber() {
    const std::size_t begin = at_;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == '.' && Peek(1) != '.') {
      ++at_;
      while (IsDigit(Peek())) ++at_;
    }
    if (Peek() == 'e' || Peek() == 'E') {
      const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 2 : 1;
      if (IsDigit(Peek(sign))) {
        at_ += sign;
        while (IsDigit(Peek())) ++at_;
      }
    }
    Push(TokenKind::Number, begin, std::string(sql_.substr(begin, at_ - begin)));
    return {};
  }

  Status ReadSymbol() {
    static constexpr std::string_view kTwo[] = {"<>", "!=", "^=", "<=", ">=", "||", "=>", ":="};
    static constexpr std::string_view kOne = "()+-*/=<>,.;:@%&";
    const std::size_t begin = at_;
    for (const std::string_view two : kTwo) {
      if (sql_.substr(at_, 2) == two) {
        at_ += 2;
        Push(TokenKind::Symbol, begin, std::string(two));
        return {};
      }
    }
    if (kOne.find(Peek()) == std::string_view::npos) {
      return Ora(911, Shortened(sql_.substr(at_), 40));
    }
    ++at_;
    Push(TokenKind::Symbol, begin, std::string(sql_.substr(begin, 1)));
    return {};
  }

  std::string_view sql_;
  std::vector<Token>& out_;
  std::size_t at_ = 0;
};

}  // namespace

Status Tokenise(std::string_view sql, std::vector<Token>* out) {
  return Lexer(sql, out).Run();
}

std::string ShapeOf(const std::vector<Token>& tokens) {
  std::string shape;
  for (const Token& token : tokens) {
    switch (token.kind) {
      case TokenKind::String:
        shape += "?s";
        break;
      case TokenKind::Number:
        shape += "?n";
        break;
      case TokenKind::QuotedName:
        shape += '"';
        shape += token.text;
        shape += '"';
        break;
      default:
        shape += token.text;
        break;
    }
    shape += ' ';
  }
  return shape;
}

}  // namespace quillmere::sandbox
