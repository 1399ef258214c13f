// SPDX-License-Identifier: MIT
#include "ui/toolkit/text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLineEdit>
#include <QLocale>
#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

#include "foundation/text.h"
#include "ui/toolkit/core_sentences.h"
#include "ui/toolkit/core_words.h"
#include "ui/toolkit/language.h"
#include "ui/toolkit/other_words.h"
#include "ui/toolkit/schema_words.h"

namespace quillmere {
namespace {

// Before the first text is asked for: "%Ln job(s)" is nothing to show, in English neither.
void UseEnglish() {
  UseLanguage(Language::English);
}

Q_COREAPP_STARTUP_FUNCTION(UseEnglish)

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
  static const CoreSentences sentences("CoreWords", kCoreWords, kSchemaWords, kOtherWords);
  return sentences.Translated(text);
}

}  // namespace quillmere
