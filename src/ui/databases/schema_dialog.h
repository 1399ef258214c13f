// SPDX-License-Identifier: MIT
// What the drop, rename and migrate dialogs have in common: the objects they were opened for, what
// they say in words, and the run.
#pragma once

#include <QDialog>
#include <functional>

#include "ui/H_global.h"
#include "ui/databases/schema_texts.h"
#include "workspace/schema_changes.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace quillmere {

// Accepted when the operation ran, whatever became of its items.
class SchemaDialog : public QDialog {
  Q_OBJECT

 public:
  ~SchemaDialog() override;

 protected:
  // tips: the first text of LblTips.
  SchemaDialog(UiContext& context, SchemaSelection selection, const QString& name,
               const QString& tips, QWidget* parent);

  UiContext& Context() { return context_; }
  const SchemaSelection& Selection() const { return selection_; }
  const std::vector<SchemaItem>& Items() const { return selection_.items; }
  const DataSource& Source() { return context_.workspace.Registry().At(selection_.source); }

  // The form fills the body; below it stand the words, LblTips and the two buttons.
  QVBoxLayout& Body() { return *body_; }
  // destroys: something will be gone that cannot be brought back.
  void SetAdvice(const QString& text, bool destroys);
  QPushButton& AddSubmit(const QString& object_name, const QString& caption);
  QPushButton& AddCancel();

  using Operation = std::function<SchemaRun(DatabaseWork& work)>;

  // A field to read and to copy from.
  void MakeReadOnly(QLineEdit& field) const;

  // When all is laid out: the size of the last time, else this one.
  void RestoreDialogSize(int width, int height);

  // Shows how far it is, then what could not be done, and closes the dialog. What was refused as a
  // whole, or cancelled before anything was done, leaves it open.
  void Run(const QString& title, const Operation& operation);
  bool Succeeded() const { return succeeded_; }  // with at least one item

 private:
  void ShowTip(std::string_view line, bool failed);

  UiContext& context_;
  const SchemaSelection selection_;
  const QString name_;
  bool succeeded_ = false;
  QVBoxLayout* body_ = nullptr;
  QLabel* warning_ = nullptr;
  QLabel* advice_ = nullptr;
  QLabel* tips_ = nullptr;
  QHBoxLayout* buttons_ = nullptr;
};

}  // namespace quillmere
