#ifndef TOOLS_PENDANT_EMULATOR_STEP_EDITOR_DIALOG_H
#define TOOLS_PENDANT_EMULATOR_STEP_EDITOR_DIALOG_H

#include <QDialog>

// The window around a plug-in's program-step editor (the widget its createCondUI makes). The
// editor itself saves and removes steps through the plug-in manager; this window only shows it.
class StepEditorDialog : public QDialog {
    Q_OBJECT

public:
    StepEditorDialog(const QString& type, QWidget* parent);

    // Takes the editor made by the plug-in (created with this dialog as its parent).
    void set_editor(QWidget* editor);
    QWidget* editor() const { return editor_; }

private:
    QWidget* editor_ = nullptr;
};

#endif
