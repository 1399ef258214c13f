// SPDX-License-Identifier: MIT
#include "ui/databases/T_migrateform.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/databases/schema_item_model.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"
#include "workspace/source_operations.h"

namespace quillmere {
namespace {

// In the order shown.
constexpr struct {
  const char* caption;
  bool MigrateChoices::*choice;
  bool for_tables;  // only for them
} kOptions[] = {{QT_TRANSLATE_NOOP("quillmere::TMigrateForm", "Drop Target"),
                 &MigrateChoices::drop_target, false},
                {QT_TRANSLATE_NOOP("quillmere::TMigrateForm", "Prompt Before Drop"),
                 &MigrateChoices::prompt_before_drop, false},
                {QT_TRANSLATE_NOOP("quillmere::TMigrateForm", "Include Primary Key"),
                 &MigrateChoices::include_primary_key, true},
                {QT_TRANSLATE_NOOP("quillmere::TMigrateForm", "Include Index"),
                 &MigrateChoices::include_index, true}};

QComboBox* MakeTargets(const DataSourceRegistry& registry, QWidget* parent) {
  auto* targets = new QComboBox(parent);
  targets->setObjectName(QStringLiteral("CBTargetDS"));
  targets->setPlaceholderText(TMigrateForm::tr("Choose a data source"));
  for (std::size_t slot = 0; slot < registry.Count(); ++slot) {
    const DataSource& source = registry.At(slot);
    if (source.state == ConnectionState::Empty) continue;
    targets->addItem(OneLine(source.name), static_cast<qulonglong>(slot));
  }
  targets->setCurrentIndex(-1);
  return targets;
}

}  // namespace

TMigrateForm::TMigrateForm(UiContext& context, SchemaSelection selection, QWidget* parent)
    : SchemaDialog(context, std::move(selection), QStringLiteral("TMigrateForm"), QString(),
                   parent) {
  setWindowTitle(tr("Migrate Table/Key/Index To Another DB"));
  auto* top = new QLabel(MigrateCountLine(Selection().kind, Items().size()), this);
  top->setObjectName(QStringLiteral("LableTop"));
  QTreeView* list = MakeList("MigrateLV", top->text());
  list->setModel(
      new SchemaItemModel(Items(),
                          {{tr("Migrate Item"), NameOfTable},
                           {tr("Owner"), [](const SchemaItem& item) { return item.owner; }}},
                          this));
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list->header()->setStretchLastSection(false);
  top->setBuddy(list);
  auto* left = new QVBoxLayout;
  left->addWidget(top);
  left->addWidget(list, 1);
  auto* right = new QVBoxLayout;
  right->setSpacing(kMargin);
  right->addWidget(MakeDatabases());
  right->addWidget(MakeOptions(), 1);
  auto* columns = new QHBoxLayout;
  columns->setSpacing(kMargin);
  columns->addLayout(left, 1);
  columns->addLayout(right, 1);
  Body().addLayout(columns, 1);

  QPushButton& submit = AddSubmit(QStringLiteral("SubmitBtn"), tr("E&xecute"));
  submit.setToolTip(tr("Creates all of the list on the chosen data source"));
  submit.setDefault(true);
  connect(&submit, &QPushButton::clicked, this, &TMigrateForm::SubmitBtnClick);
  AddCancel();
  target_->setFocus();
  ShowAdvice();
  RestoreDialogSize(720, 480);
}

QTreeView* TMigrateForm::MakeList(const char* name, const QString& accessible_name) {
  auto* list = new QTreeView(this);
  list->setObjectName(QLatin1String(name));
  list->setAccessibleName(accessible_name);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setAllColumnsShowFocus(true);
  list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  return list;
}

QWidget* TMigrateForm::MakeDatabases() {
  auto* source = new QLineEdit(ToQt(Source().name), this);
  source->setObjectName(QStringLiteral("EditSourceDS"));
  MakeReadOnly(*source);
  auto* source_group = new QGroupBox(tr("Source Database"), this);
  auto* source_form = new QFormLayout(source_group);
  source_form->addRow(tr("Data Source:"), source);

  target_ = MakeTargets(Context().workspace.Registry(), this);
  target_->setToolTip(tr("The data source on which the objects are created"));
  connect(target_, &QComboBox::currentIndexChanged, this, [this] { ShowAdvice(); });
  auto* target_group = new QGroupBox(tr("Target Database"), this);
  auto* target_form = new QFormLayout(target_group);
  target_form->addRow(tr("&Data Source:"), target_);
  for (QFormLayout* form : {source_form, target_form}) {
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  }
  auto* both = new QWidget(this);
  auto* column = new QVBoxLayout(both);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kMargin);
  column->addWidget(source_group);
  column->addWidget(target_group);
  return both;
}

QWidget* TMigrateForm::MakeOptions() {
  options_ = new QStandardItemModel(this);
  options_->setHorizontalHeaderLabels({tr("Control Parameter")});
  for (const auto& option : kOptions) {
    auto* item = new QStandardItem(tr(option.caption));
    item->setCheckable(true);
    item->setEnabled(Selection().kind == ObjectKind::Table || !option.for_tables);
    options_->appendRow(item);
  }
  connect(options_, &QStandardItemModel::itemChanged, this, [this] { ShowAdvice(); });
  QTreeView* list = MakeList("OptionsLV", tr("Control Parameter"));
  list->setModel(options_);
  list->setCurrentIndex(options_->index(0, 0));
  return list;
}

std::optional<std::size_t> TMigrateForm::Target() const {
  if (target_->currentIndex() < 0) return std::nullopt;
  return static_cast<std::size_t>(target_->currentData().toULongLong());
}

MigrateChoices TMigrateForm::Choices() const {
  MigrateChoices choices;
  int row = 0;
  for (const auto& option : kOptions) {
    choices.*option.choice = options_->item(row++)->checkState() == Qt::Checked;
  }
  return choices;
}

void TMigrateForm::ShowAdvice() {
  MigratePlan plan;
  plan.kind = Selection().kind;
  plan.count = Items().size();
  plan.source = Source().name;
  const std::optional<std::size_t> target = Target();
  if (target) plan.target = Context().workspace.Registry().At(*target).name;
  plan.choices = Choices();
  SetAdvice(MigrateAdvice(plan), target && plan.choices.drop_target);
}

void TMigrateForm::SubmitBtnClick() {
  const std::optional<std::size_t> target_index = Target();
  if (!target_index) {
    ShowNotice(this, tr("Choose the data source to migrate to first"), target_);
    return;
  }
  Workspace& workspace = Context().workspace;
  const std::string busy = WhyTargetBusy(workspace, *target_index);
  if (!busy.empty() && !Confirm(this, tr("%1. Migrate to it all the same?").arg(ToQt(busy))))
    return;
  const MigrateChoices choices = Choices();
  const std::string name = workspace.Registry().At(*target_index).name;
  if (choices.drop_target && !Confirm(this, DropTargetQuestion(Selection().kind, Items(), name))) {
    return;
  }
  const MigrateTarget target{*target_index, choices, !busy.empty()};
  Run(tr("Migrate"),
      [&](DatabaseWork& work) { return MigrateObjects(workspace, Selection(), target, work); });
  if (!Succeeded()) return;
  // The target's lists show what was made; why they do not is in the message list.
  Waiting waiting(Context(), parentWidget(), tr("Refresh"));
  static_cast<void>(RefreshDataSource(workspace, *target_index, waiting));
}

}  // namespace quillmere
