#include "tools/pendant_emulator/bench_page.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "tools/pendant_emulator/emulated_grippers.h"

BenchPage::BenchPage(EmulatedGrippers& grippers, QWidget* parent)
    : QWidget(parent), grippers_(grippers) {
    auto* layout = new QVBoxLayout(this);
    report_ = new QPlainTextEdit(this);
    report_->setObjectName("bench_report");
    report_->setReadOnly(true);
    report_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    layout->addWidget(report_, 1);
    auto* row = new QHBoxLayout;
    gripper_ = new QComboBox(this);
    command_ = new QLineEdit(this);
    command_->setPlaceholderText(
        "state | object 600 | object none | drop | fault silent | fault none");
    auto* send_button = new QPushButton("Send to simulator", this);
    reply_ = new QLabel(this);
    reply_->setWordWrap(true);
    row->addWidget(new QLabel("Simulated gripper:", this));
    row->addWidget(gripper_);
    row->addWidget(command_, 1);
    row->addWidget(send_button);
    layout->addLayout(row);
    layout->addWidget(reply_);
    connect(send_button, &QPushButton::clicked, this, &BenchPage::send);
    connect(command_, &QLineEdit::returnPressed, this, &BenchPage::send);
}

void BenchPage::list_simulators() {
    gripper_->clear();
    for (const BenchGripper& gripper : grippers_.grippers()) {
        if (gripper.simulator) {
            gripper_->addItem(QString::number(gripper.id), gripper.id);
        }
    }
}

void BenchPage::add_report(const QString& line) {
    report_->appendPlainText(line);
}

QString BenchPage::report() const {
    return report_->toPlainText();
}

QString BenchPage::simulator_command(int id, const QString& command) {
    const BenchGripper* gripper = grippers_.gripper(id);
    if (gripper == nullptr || !gripper->simulator) {
        return QString("error: gripper %1 is not simulated").arg(id);
    }
    // Each simulator serves one gripper, its number 1: "drop" becomes "drop 1".
    QStringList words = command.simplified().split(' ');
    if (QStringList{"state", "fault", "object", "drop"}.contains(words.first())) {
        words.insert(1, "1");
    }
    const QString reply = gripper->simulator->command(words.join(' '));
    return reply.isEmpty() ? QString("error: the simulator did not answer") : reply;
}

void BenchPage::send() {
    if (gripper_->count() == 0) {
        reply_->setText("No simulated gripper");
        return;
    }
    reply_->setText(simulator_command(gripper_->currentData().toInt(), command_->text()));
}
