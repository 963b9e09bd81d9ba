#include "tools/pendant_emulator/dialog_answerer.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

const int LOOK_INTERVAL_MS = 20;

}  // namespace

DialogAnswerer::DialogAnswerer(QObject* parent) : QObject(parent) {
    connect(&timer_, &QTimer::timeout, this, &DialogAnswerer::look);
    timer_.start(LOOK_INTERVAL_MS);
}

void DialogAnswerer::look() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible()) {
        return;
    }
    const QString text = QString("%1: %2").arg(box->windowTitle(), box->text().simplified());
    answered_.append(text);
    emit dialog_answered(text);
    QAbstractButton* button = box->defaultButton();
    if (button == nullptr && !box->buttons().isEmpty()) {
        button = box->buttons().first();
    }
    if (button != nullptr) {
        button->click();
    } else {
        box->reject();
    }
}
