// SPDX-License-Identifier: MIT
#include "ui/toolkit/text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLineEdit>
#include <QLocale>
#include <QStringList>
#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

#include "foundation/text.h"
#include "ui/toolkit/core_words.h"
#include "ui/toolkit/language.h"

namespace quillmere {
namespace {

// Before the first text is asked for: "%Ln job(s)" is nothing to show, in English neither.
void UseEnglish() {
  UseLanguage(Language::English);
}

Q_COREAPP_STARTUP_FUNCTION(UseEnglish)

// How many bytes of the text are the pattern's own, and what stands in the places of the others; 0
// when the text is none of the pattern.
std::size_t CommonWith(std::string_view pattern, std::string_view text, QStringList& names) {
  const std::size_t first = pattern.find('%');
  if (first == pattern.npos || !text.starts_with(pattern.substr(0, first))) return 0;
  std::size_t common = first;
  text.remove_prefix(first);
  pattern.remove_prefix(first);
  while (!pattern.empty()) {
    const std::size_t next = pattern.find('%', 2);
    const std::string_view part = pattern.substr(2, next == pattern.npos ? next : next - 2);
    const std::size_t end =
        next == pattern.npos ? text.size() - std::min(part.size(), text.size()) : text.find(part);
    if (end == text.npos || text.substr(end, part.size()) != part) return 0;
    names << ToQt(text.substr(0, end));
    common += part.size();
    text.remove_prefix(end + part.size());
    pattern.remove_prefix(2 + part.size());
  }
  return common;
}

// All at once, for a name may have a percent sign in it.
QString WithNames(const QString& words, const QStringList& names) {
  QString text;
  for (qsizetype i = 0; i < words.size(); ++i) {
    const int place = words[i] == u'%' && i + 1 < words.size() ? words[i + 1].digitValue() : 0;
    const bool name = place >= 1 && place <= names.size();
    text += name ? names[place - 1] : QString(words[i]);
    i += name ? 1 : 0;
  }
  return text;
}

}  // namespace

QString ToQt(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string ToBytes(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString OneLine(std::string_view bytes) {
  QString text = ToQt(bytes);
  for (QChar& character : text) {
    const bool breaks_line =
        character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
    if (breaks_line || character.category() == QChar::Other_Control) character = u' ';
  }
  return text;
}

QString Beginning(std::string_view bytes, std::size_t most) {
  if (bytes.size() <= most) return OneLine(bytes);
  while (most > 0 && ContinuesCharacter(bytes[most])) --most;
  return OneLine(bytes.substr(0, most)) + QStringLiteral(" ...");
}

std::string EditedText(const QLineEdit& field, std::string_view original) {
  // The field drops or replaces what it cannot show, so what it made of the original is compared.
  QLineEdit shown;
  shown.setMaxLength(field.maxLength());
  shown.setText(ToQt(original));
  return shown.text() == field.text() ? std::string(original) : ToBytes(field.text());
}

QString Grouped(std::int64_t number) {
  return QLocale().toString(static_cast<qlonglong>(number));
}

QString Dated(std::string_view readable_time) {
  const QDateTime time = QDateTime::fromString(ToQt(readable_time), Qt::ISODate);
  return time.toString(QCoreApplication::translate("Dates", "yyyy-MM-dd HH:mm:ss"));
}

int Plural(std::size_t count) {
  return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

QString Translated(std::string_view text) {
  const std::string words(text);
  QString translated = QCoreApplication::translate("CoreWords", words.c_str());
  if (ToBytes(translated) != words) return translated;
  std::size_t most = 0;
  for (const char* pattern : kCoreWords) {
    QStringList names;
    const std::size_t common = CommonWith(pattern, text, names);
    if (common <= most) continue;
    most = common;
    translated = WithNames(QCoreApplication::translate("CoreWords", pattern), names);
  }
  return translated;
}

}  // namespace quillmere
