#include <algorithm>
#include <cctype>

#include "sandbox/expr/function_parts.h"
#include "sandbox/values/decimal.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

using Args = std::vector<Datum>;

// Results beyond this would only fill the memory.
constexpr std::size_t kMaxPadded = 32767;

std::int64_t Whole(const Datum& value) {
  const auto number = Decimal::Parse(value.text);
  if (!number) return 0;
  const auto whole = number->Truncated(0).ToInt64();
  constexpr std::int64_t kFar = 1LL << 40;
  if (!whole) return number->IsNegative() ? -kFar : kFar;
  return std::clamp(*whole, -kFar, kFar);
}

Status Concatenate(const Args& args, const EvalContext&, Datum* out) {
  std::size_t size = 0;
  for (const Datum& argument : args) size += argument.text.size();
  out->text.reserve(size);
  for (const Datum& argument : args) {
    if (!argument.null) out->text += argument.text;
  }
  return {};
}

Status ToUpper(const Args& args, const EvalContext&, Datum* out) {
  out->text = Upper(args[0].text);
  return {};
}

Status ToLower(const Args& args, const EvalContext&, Datum* out) {
  out->text = Lower(args[0].text);
  return {};
}

Status Substring(const Args& args, const EvalContext&, Datum* out) {
  const std::string& text = args[0].text;
  const auto count = static_cast<std::int64_t>(CountCharacters(text));
  std::int64_t start = Whole(args[1]);
  if (start > 0) {
    --start;
  } else if (start < 0) {
    start += count;
  }
  if (start < 0 || start >= count) return {};
  const std::int64_t length = args.size() > 2 ? Whole(args[2]) : count;
  if (length < 1) return {};
  const std::int64_t end = std::min(count, start + length);
  const std::size_t from = ByteOfCharacter(text, static_cast<std::size_t>(start));
  out->text = text.substr(from, ByteOfCharacter(text, static_cast<std::size_t>(end)) - from);
  return {};
}

Status Length(const Args& args, const EvalContext&, Datum* out) {
  out->text = std::to_string(CountCharacters(args[0].text));
  return {};
}

Status Instr(const Args& args, const EvalContext&, Datum* out) {
  const std::size_t at = args[0].text.find(args[1].text);
  out->text =
      at == std::string::npos
          ? "0"
          : std::to_string(CountCharacters(std::string_view(args[0].text).substr(0, at)) + 1);
  return {};
}

Status Replace(const Args& args, const EvalContext&, Datum* out) {
  if (args[0].null) {
    out->null = true;
    return {};
  }
  const std::string& text = args[0].text;
  const std::string& from = args[1].text;
  if (from.empty()) {
    out->text = text;
    return {};
  }
  std::size_t at = 0;
  for (std::size_t hit = text.find(from); hit != std::string::npos; hit = text.find(from, at)) {
    out->text.append(text, at, hit - at);
    if (args.size() > 2) out->text += args[2].text;
    at = hit + from.size();
  }
  out->text.append(text, at);
  return {};
}

std::string Padding(const std::string& pad, std::size_t characters) {
  std::string padding;
  const std::size_t pad_characters = std::max<std::size_t>(1, CountCharacters(pad));
  while (characters >= pad_characters) {
    padding += pad;
    characters -= pad_characters;
  }
  return padding + pad.substr(0, ByteOfCharacter(pad, characters));
}

template <bool left>
Status Pad(const Args& args, const EvalContext&, Datum* out) {
  const std::int64_t wanted = Whole(args[1]);
  if (wanted < 1) return {};
  const auto width = std::min(static_cast<std::size_t>(wanted), kMaxPadded);
  const std::string& text = args[0].text;
  const std::size_t has = CountCharacters(text);
  if (has >= width) {
    out->text = text.substr(0, ByteOfCharacter(text, width));
    return {};
  }
  const std::string padding = Padding(args.size() > 2 ? args[2].text : " ", width - has);
  out->text = left ? padding + text : text + padding;
  return {};
}

template <bool left, bool right>
Status Trim(const Args& args, const EvalContext&, Datum* out) {
  const std::string set = args.size() > 1 ? args[1].text : " ";
  std::string_view text = args[0].text;
  if (left) text.remove_prefix(std::min(text.find_first_not_of(set), text.size()));
  if (right) text = text.substr(0, text.find_last_not_of(set) + 1);
  out->text = text;
  return {};
}

Status Chr(const Args& args, const EvalContext&, Datum* out) {
  const std::int64_t code = Whole(args[0]);
  if (code < 0 || code > 0xFFFFFF) return Ora(1428);
  for (int shift = 16; shift >= 0; shift -= 8) {
    const auto byte = static_cast<char>((code >> shift) & 0xFF);
    if (shift == 0 || (code >> shift) != 0) out->text += byte;
  }
  return {};
}

Status HexToRaw(const Args& args, const EvalContext& context, Datum* out) {
  return Convert(args[0], Kind::Raw, context, out);
}

Status Identity(const Args& args, const EvalContext&, Datum* out) {
  out->text = args[0].text;
  out->null = args[0].null;
  return {};
}

// \XXXX is a UTF-16 unit, \\ a backslash.
Status Unistr(const Args& args, const EvalContext&, Datum* out) {
  const std::string& text = args[0].text;
  char32_t high = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] != '\\') {
      out->text += text[at++];
    } else if (at + 1 < text.size() && text[at + 1] == '\\') {
      out->text += '\\';
      at += 2;
    } else {
      const std::string_view hex = std::string_view(text).substr(at + 1, 4);
      if (hex.size() != 4 || !IsHexText(hex))
        return {30186, "'\\' must be followed by four hexadecimal characters or another '\\'"};
      const auto unit = static_cast<char32_t>(std::stoul(std::string(hex), nullptr, 16));
      at += 5;
      if (unit >= 0xD800 && unit < 0xDC00) {
        high = unit;
        continue;
      }
      const bool pair = high != 0 && unit >= 0xDC00 && unit < 0xE000;
      AppendUtf8(pair ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : unit, &out->text);
      high = 0;
    }
  }
  return {};
}

Status NothingYet(const Args&, const EvalContext&, Datum*) {
  return {};
}

Status SecondIfNull(const Args& args, const EvalContext&, Datum* out) {
  const Datum& chosen = args[0].null ? args[1] : args[0];
  out->text = chosen.text;
  out->null = chosen.null;
  return {};
}

Status UserName(const Args&, const EvalContext& context, Datum* out) {
  out->text = context.user;
  return {};
}

}  // namespace

void AddTextFunctions(std::vector<Function>* out) {
  const Kind text = Kind::Text;
  const Kind number = Kind::Number;
  constexpr std::size_t kMany = 1000000;
  out->insert(out->end(), {{"||", 2, kMany, {text}, text, false, Concatenate},
                           {"||", 2, kMany, {Kind::Lob}, Kind::Lob, false, Concatenate},
                           {"CONCAT", 2, 2, {text}, text, false, Concatenate},
                           {"UPPER", 1, 1, {text}, text, true, ToUpper},
                           {"LOWER", 1, 1, {text}, text, true, ToLower},
                           {"SUBSTR", 2, 3, {text, number, number}, text, true, Substring},
                           {"LENGTH", 1, 1, {text}, number, true, Length},
                           {"INSTR", 2, 2, {text, text}, number, true, Instr},
                           {"REPLACE", 2, 3, {text}, text, false, Replace},
                           {"LPAD", 2, 3, {text, number, text}, text, true, Pad<true>},
                           {"RPAD", 2, 3, {text, number, text}, text, true, Pad<false>},
                           {"TRIM", 1, 1, {text}, text, true, Trim<true, true>},
                           {"LTRIM", 1, 2, {text}, text, true, Trim<true, false>},
                           {"RTRIM", 1, 2, {text}, text, true, Trim<false, true>},
                           {"CHR", 1, 1, {number}, text, true, Chr},
                           {"HEXTORAW", 1, 1, {text}, Kind::Raw, true, HexToRaw},
                           {"RAWTOHEX", 1, 1, {Kind::Raw}, text, true, Identity},
                           {"UNISTR", 1, 1, {text}, text, true, Unistr},
                           {"TO_CHAR", 1, 1, {text}, text, true, Identity},
                           {"TO_CHAR", 1, 1, {number}, text, true, Identity},
                           {"TO_NCHAR", 1, 1, {text}, text, true, Identity},
                           {"TO_CLOB", 1, 1, {text}, Kind::Lob, true, Identity},
                           {"EMPTY_CLOB", 0, 0, {text}, Kind::Lob, false, NothingYet},
                           {"EMPTY_BLOB", 0, 0, {text}, Kind::Raw, false, NothingYet},
                           {"USER", 0, 0, {text}, text, false, UserName}});
  for (const Kind kind : {Kind::Text, Kind::Number, Kind::Date, Kind::Timestamp, Kind::TimestampTz,
                          Kind::Raw, Kind::Lob}) {
    out->push_back({"NVL", 2, 2, {kind}, kind, false, SecondIfNull});
  }
}

}  // namespace quillmere::sandbox
