// SPDX-License-Identifier: MIT
#include "ui/toolkit/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace quillmere {
namespace {

const QString kPlace = QStringLiteral("look/language");

QString CodeOf(Language language) {
  return language == Language::German ? QStringLiteral("de") : QStringLiteral("en");
}

// Owned by the application. One that can not be loaded leaves the texts as they are in the code.
void Add(const QString& file, const QString& folder) {
  auto* translator = new QTranslator(QCoreApplication::instance());
  if (!translator->load(file, folder)) return delete translator;
  QCoreApplication::installTranslator(translator);
}

}  // namespace

Language ChosenLanguage(const WindowMemory& memory) {
  return memory.Text(kPlace) == CodeOf(Language::German) ? Language::German : Language::English;
}

void KeepLanguage(WindowMemory& memory, Language language) {
  memory.KeepText(kPlace, CodeOf(language));
}

void UseLanguage(Language language) {
  // Their end takes them out of the application.
  qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());
  const QString code = CodeOf(language);
  QLocale::setDefault(QLocale(code));
  // Qt's own dialogs and buttons; the system's packages may be without them.
  Add(QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  // English, too: its plurals.
  Add(QStringLiteral("quillmere_") + code, QStringLiteral(":/translations"));
}

}  // namespace quillmere
