#include "tools/pendant_emulator/step_editor_dialog.h"

#include <QVBoxLayout>

StepEditorDialog::StepEditorDialog(const QString& type, QWidget* parent) : QDialog(parent) {
    setObjectName("step_editor_" + type);
    setWindowTitle(QString("Program step: %1").arg(type));
    setModal(false);
    new QVBoxLayout(this);
}

void StepEditorDialog::set_editor(QWidget* editor) {
    editor_ = editor;
    layout()->addWidget(editor);
}
