// SPDX-License-Identifier: MIT
#include "ui/databases/T_dropform.h"

#include <QCheckBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/databases/schema_item_model.h"
#include "ui/toolkit/icons.h"

namespace quillmere {

TDropForm::TDropForm(UiContext& context, SchemaSelection selection, QWidget* parent)
    : SchemaDialog(context, std::move(selection), QStringLiteral("TDropForm"),
                   tr("Drop Key/Table/Index"), parent) {
  setWindowTitle(tr("Drop Key/Table/Index"));
  const ObjectKind kind = Selection().kind;
  auto* top = new QLabel(DropCountLine(kind, Items().size()), this);
  top->setObjectName(QStringLiteral("LableTop"));
  auto* list = new QListView(this);
  list->setObjectName(QStringLiteral("DropListBox"));
  list->setUniformItemSizes(true);
  list->setSelectionMode(QAbstractItemView::NoSelection);
  list->setAccessibleName(top->text());
  const auto text = [kind](const SchemaItem& item) { return ItemText(kind, item); };
  list->setModel(new SchemaItemModel(Items(), {{QString(), text}}, this));
  top->setBuddy(list);

  cascade_ = new QCheckBox(tr("Drop All &Foreign Key Constrains"), this);
  cascade_->setObjectName(QStringLiteral("ChBCasecade"));
  cascade_->setEnabled(kind == ObjectKind::Table);
  cascade_->setToolTip(kind == ObjectKind::Table
                           ? tr("Tables go although foreign keys of other tables reference them")
                           : tr("Only for tables; primary keys always take along the foreign keys "
                                "that reference them"));
  connect(cascade_, &QCheckBox::toggled, this, [this] { ShowAdvice(); });
  Body().addWidget(top);
  Body().addWidget(list, 1);
  Body().addWidget(cascade_);

  QPushButton& drop = AddSubmit(QStringLiteral("DropBtn"), tr("&Drop"));
  drop.setIcon(Icon("drop"));
  drop.setToolTip(tr("Drops all of the list"));
  drop.setAutoDefault(false);
  connect(&drop, &QPushButton::clicked, this, &TDropForm::DropBtnClick);
  // Return must not drop anything by accident.
  QPushButton& cancel = AddCancel();
  cancel.setDefault(true);
  cancel.setFocus();
  ShowAdvice();
  RestoreDialogSize(520, 420);
}

void TDropForm::ShowAdvice() {
  SetAdvice(DropAdvice(Selection().kind, Items().size(), Source().name, cascade_->isChecked()),
            true);
}

void TDropForm::DropBtnClick() {
  Run(tr("Drop"), [this](DatabaseWork& work) {
    return DropObjects(Context().workspace, Selection(), cascade_->isChecked(), work);
  });
}

}  // namespace quillmere
