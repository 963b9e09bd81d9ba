#ifndef TESTS_TEST_SUPPORT_MESSAGE_BOX_ANSWERER_H
#define TESTS_TEST_SUPPORT_MESSAGE_BOX_ANSWERER_H

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

// Answers the modal message boxes that appear while it lives, as an operator would: it notes
// each box's title and text and presses its default (or first) button.
class MessageBoxAnswerer : public QObject {
public:
    MessageBoxAnswerer() {
        timer_.setInterval(10);
        connect(&timer_, &QTimer::timeout, this, &MessageBoxAnswerer::answer);
        timer_.start();
    }

    // "title: text" of each box answered.
    QStringList boxes() const { return boxes_; }

private:
    void answer() {
        QMessageBox* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (nullptr == box || !box->isVisible()) {
            return;
        }
        boxes_ << box->windowTitle() + QStringLiteral(": ") + box->text();
        QAbstractButton* button = box->defaultButton();
        if (nullptr == button) {
            button = box->buttons().value(0);
        }
        button->click();
    }

    QTimer timer_;
    QStringList boxes_;
};

#endif
