#include "tools/pendant_emulator/script_console.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "tools/pendant_emulator/script_thread.h"
#include "tools/pendant_emulator/transcript.h"

ScriptConsole::ScriptConsole(ScriptThread& script, Transcript& transcript, QWidget* parent)
    : QWidget(parent), script_(script), transcript_(transcript) {
    auto* layout = new QVBoxLayout(this);
    view_ = new QPlainTextEdit(this);
    view_->setObjectName("script_transcript");
    view_->setReadOnly(true);
    view_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view_->setMaximumBlockCount(5000);
    layout->addWidget(view_, 1);
    auto* row = new QHBoxLayout;
    input_ = new QComboBox(this);
    input_->setObjectName("script_input");
    input_->setEditable(true);
    input_->setInsertPolicy(QComboBox::NoInsert);
    input_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* send_button = new QPushButton("Send", this);
    send_button->setObjectName("script_send");
    row->addWidget(new QLabel("Command:", this));
    row->addWidget(input_, 1);
    row->addWidget(send_button);
    layout->addLayout(row);
    connect(send_button, &QPushButton::clicked, this, [this] { send(input_->currentText()); });
    connect(input_->lineEdit(), &QLineEdit::returnPressed, this,
            [this] { send(input_->currentText()); });
    connect(&transcript_, &Transcript::line_added, this, &ScriptConsole::append);
    for (const QString& line : transcript_.lines()) {
        append(line);
    }
}

void ScriptConsole::set_suggestions(const QStringList& commands) {
    input_->clear();
    input_->addItems(commands);
    input_->setCurrentIndex(-1);
}

int ScriptConsole::send(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return 0;
    }
    ScriptLine line{default_plugin_, trimmed};
    QString error;
    if (trimmed.startsWith("script_common_interface") && !ScriptLine::parse(trimmed, line, error)) {
        transcript_.note(QString("console: %1: %2").arg(trimmed, error));
        return 0;
    }
    return script_.submit(line);
}

void ScriptConsole::append(const QString& line) {
    view_->appendPlainText(line);
}
