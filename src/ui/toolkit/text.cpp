// SPDX-License-Identifier: MIT
#include "ui/toolkit/text.h"

#include <QLineEdit>
#include <QLocale>

namespace quillmere {

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

std::string EditedText(const QLineEdit& field, std::string_view original) {
  // The field drops or replaces what it cannot show, so what it made of the original is compared.
  QLineEdit shown;
  shown.setMaxLength(field.maxLength());
  shown.setText(ToQt(original));
  return shown.text() == field.text() ? std::string(original) : ToBytes(field.text());
}

QString Counted(std::size_t count, const QString& noun) {
  const QString number = QLocale(QLocale::English).toString(static_cast<qulonglong>(count));
  return number + u' ' + noun + (count == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace quillmere
