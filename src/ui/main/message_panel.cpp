// SPDX-License-Identifier: MIT
#include "ui/main/message_panel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/main/message_view.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/hints.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kSideWidth = 160;

}  // namespace

MessagePanel::MessagePanel(MessageLog& log, const std::filesystem::path& folder, QWidget* parent)
    : QWidget(parent), log_(log) {
  setObjectName(QStringLiteral("PnlLog"));
  view_ = new MessageView(log, folder, this);
  view_->setObjectName(QStringLiteral("TreeView1"));
  view_->setAccessibleName(tr("Messages"));
  SetHint(view_, tr("Show all errors and informaitons"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(view_, 1);
  row->addWidget(MakeSide());
  connect(view_, &MessageView::LookedAt, this, &MessagePanel::Look);
  connect(view_, &MessageView::HelpAsked, this, &MessagePanel::HelpAsked);
  connect(&view_->Model(), &MessageListModel::LogShown, this, &MessagePanel::ShowUnread);
  ShowUnread();
}

QWidget* MessagePanel::MakeSide() {
  auto* side = new QWidget(this);
  side->setFixedWidth(kSideWidth);
  filter_ = new QLineEdit(side);
  filter_->setObjectName(QStringLiteral("MessageFilter"));
  filter_->setAccessibleName(tr("Find in the messages"));
  filter_->setPlaceholderText(tr("Find in the messages"));
  filter_->setClearButtonEnabled(true);
  errors_only_ = new QCheckBox(tr("&Errors only"), side);
  errors_only_->setObjectName(QStringLiteral("ErrorsOnly"));
  errors_only_->setToolTip(tr("What was said several times stands in a filtered list once"));
  unread_ = new QToolButton(side);
  unread_->setObjectName(QStringLiteral("UnreadBtn"));
  unread_->setIcon(Icon("error"));
  unread_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  unread_->setAutoRaise(true);
  unread_->setFocusPolicy(Qt::TabFocus);
  unread_->setToolTip(tr("Shows the latest; a click into the list counts as reading, too"));
  connect(filter_, &QLineEdit::textChanged, this, &MessagePanel::Filter);
  connect(errors_only_, &QCheckBox::toggled, this, &MessagePanel::Filter);
  connect(unread_, &QToolButton::clicked, this, [this] {
    errors_only_->setChecked(true);
    view_->scrollToBottom();
    view_->setFocus();
    Look();
  });
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(kSpacing / 2, 0, kSpacing / 2, 0);
  column->setSpacing(0);
  column->addWidget(filter_);
  column->addWidget(errors_only_);
  column->addWidget(unread_);
  column->addStretch();
  return side;
}

void MessagePanel::Filter() {
  view_->Model().SetFilter(errors_only_->isChecked(), ToBytes(filter_->text()));
}

void MessagePanel::Look() {
  log_.MarkRead();
  ShowUnread();
}

QString MessagePanel::UnreadWords() const {
  const std::size_t count = log_.UnreadErrors();
  return count == 0 ? QString() : tr("%Ln unread error(s)", nullptr, Plural(count));
}

void MessagePanel::ShowUnread() {
  const std::size_t count = log_.UnreadErrors();
  const QString words = UnreadWords();
  unread_->setVisible(count > 0);
  unread_->setText(words);
  if (count == told_) return;
  told_ = count;
  Q_EMIT UnreadChanged(words);
}

}  // namespace quillmere
