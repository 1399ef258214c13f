// SPDX-License-Identifier: MIT
#include "ui/databases/T_renameform.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kWidth = 480;

}  // namespace

TRenameForm::TRenameForm(UiContext& context, SchemaSelection selection, QWidget* parent)
    : SchemaDialog(context, std::move(selection), QStringLiteral("TRenameForm"),
                   tr("Change Name Of Table/Index/Key"), parent) {
  setWindowTitle(tr("change name of a Table/Index/Key"));
  const SchemaItem& item = Items().front();
  auto* form = new QFormLayout;
  form->setSpacing(kSpacing);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  for (QLineEdit* field : {AddField(*form, "EditOwner", tr("Owner"), item.owner),
                           AddField(*form, "EditTable", tr("Table"), item.table),
                           AddField(*form, "EditCurName", tr("Current Name"), item.name)}) {
    MakeReadOnly(*field);
  }
  new_name_ = AddField(*form, "EditNewName", tr("&New Name"), {});
  new_name_->setPlaceholderText(tr("The name without an owner"));
  new_name_->setToolTip(tr("Sent to the server as it is typed; the server judges it"));
  Body().addLayout(form);
  Body().addStretch(1);

  QPushButton& submit = AddSubmit(QStringLiteral("SubmitBtn"), tr("E&xecute"));
  submit.setToolTip(tr("Changes the name"));
  submit.setDefault(true);
  connect(&submit, &QPushButton::clicked, this, &TRenameForm::SubmitBtnClick);
  AddCancel();
  new_name_->setFocus();
  SetAdvice(RenameAdvice(Selection().kind, item, Source().name),
            Selection().kind == ObjectKind::PrimaryKey);
  RestoreDialogSize(kWidth, layout()->heightForWidth(kWidth));
}

QLineEdit* TRenameForm::AddField(QFormLayout& form, const char* name, const QString& caption,
                                 const std::string& text) {
  auto* field = new QLineEdit(ToQt(text), this);
  field->setObjectName(QLatin1String(name));
  field->setAccessibleName(QString(caption).remove(u'&'));
  form.addRow(caption, field);
  return field;
}

SchemaItem TRenameForm::Item() const {
  SchemaItem item = Items().front();
  if (!Succeeded()) return item;
  item.name = ToBytes(new_name_->text());
  if (Selection().kind == ObjectKind::Table) item.table = item.name;
  return item;
}

void TRenameForm::SubmitBtnClick() {
  Run(tr("Rename"), [this](DatabaseWork& work) {
    return RenameObject(Context().workspace, Selection(), ToBytes(new_name_->text()), work);
  });
}

}  // namespace quillmere
