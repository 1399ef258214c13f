// SPDX-License-Identifier: MIT
#include "ui/main_dialogs/about.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "foundation/version.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kIconSize = 64;
constexpr int kValueWidth = 420;
constexpr double kNameSize = 1.7;  // of the font's size

QLayout* MakeHead() {
  auto* head = new QHBoxLayout;
  head->setSpacing(2 * kMargin);
  auto* picture = new QLabel;
  picture->setPixmap(Icon("app").pixmap(kIconSize));
  head->addWidget(picture);
  auto* name = new QLabel(QCoreApplication::applicationName());
  QFont font = name->font();
  font.setPointSizeF(font.pointSizeF() * kNameSize);
  font.setBold(true);
  name->setFont(font);
  auto* purpose = new QLabel(AboutBox::tr("Replicates Oracle databases from their redo"));
  purpose->setForegroundRole(QPalette::PlaceholderText);
  auto* words = new QVBoxLayout;
  words->setSpacing(kSpacing / 2);
  words->addStretch();
  words->addWidget(name);
  words->addWidget(purpose);
  words->addStretch();
  head->addLayout(words, 1);
  return head;
}

QLabel* MakeValue(const std::string& value) {
  auto* label = new QLabel(ToQt(value));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setMinimumWidth(kValueWidth);
  // A long path must not widen the dialog; the operator may.
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label->setToolTip(ToQt(value));
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

}  // namespace

AboutFacts FactsOf(Workspace& workspace) {
  const OciLibrary& client = workspace.Oci();
  return {{"Version", ProgramVersion()},
          {"Oracle client", client.Loaded() ? client.Path() : client.LoadError()},
          {"Working folder", workspace.FolderText()},
          {"Qt", qVersion()}};
}

std::string FactsText(const AboutFacts& facts) {
  std::string text;
  for (const auto& [what, value] : facts) text.append(what).append(": ").append(value) += '\n';
  return text;
}

AboutBox::AboutBox(UiContext& context, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("AboutBox"));
  setWindowTitle(tr("About %1").arg(QCoreApplication::applicationName()));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kMargin, 2 * kMargin, 2 * kMargin, kMargin);
  layout->setSpacing(2 * kMargin);
  layout->addLayout(MakeHead());

  const AboutFacts facts = FactsOf(context.workspace);
  auto* form = new QFormLayout;
  form->setHorizontalSpacing(2 * kMargin);
  form->setVerticalSpacing(kSpacing);
  for (const auto& [what, value] : facts) form->addRow(Translated(what), MakeValue(value));
  layout->addLayout(form);
  layout->addStretch();

  auto* buttons = new QDialogButtonBox;
  auto* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  copy->setObjectName(QStringLiteral("CopyBtn"));
  copy->setIcon(Icon("copy"));
  copy->setToolTip(tr("Copy these lines, for a question or a report"));
  copy->setAutoDefault(false);
  auto* close = buttons->addButton(tr("C&lose"), QDialogButtonBox::RejectRole);
  close->setObjectName(QStringLiteral("CloseBtn"));
  close->setDefault(true);
  close->setFocus();
  const QString text = ToQt(std::string("Quillmere\n") + FactsText(facts));
  connect(copy, &QPushButton::clicked, this,
          [text] { QGuiApplication::clipboard()->setText(text); });
  connect(close, &QPushButton::clicked, this, &AboutBox::reject);
  layout->addWidget(buttons);
}

}  // namespace quillmere
