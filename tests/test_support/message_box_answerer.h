#ifndef TESTS_TEST_SUPPORT_MESSAGE_BOX_ANSWERER_H
#define TESTS_TEST_SUPPORT_MESSAGE_BOX_ANSWERER_H

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <QtTest>

// Answers the modal message boxes that appear while it lives, as an operator would: it notes
// each box's title and text, parent and icon, and presses the given button (Escape: the key),
// by default the box's default (or first) one.
class MessageBoxAnswerer : public QObject {
public:
    explicit MessageBoxAnswerer(QMessageBox::StandardButton button = QMessageBox::NoButton)
        : button_(button) {
        timer_.setInterval(5);
        connect(&timer_, &QTimer::timeout, this, &MessageBoxAnswerer::answer);
        timer_.start();
    }

    // "title: text" of each box answered.
    QStringList boxes() const { return boxes_; }
    QWidget* parent = nullptr;
    QMessageBox::Icon icon = QMessageBox::NoIcon;

private:
    void answer() {
        QMessageBox* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (nullptr == box || !box->isVisible()) {
            return;
        }
        boxes_ << box->windowTitle() + QStringLiteral(": ") + box->text();
        parent = box->parentWidget();
        icon = box->icon();
        if (QMessageBox::Escape == button_) {
            QTest::keyClick(box, Qt::Key_Escape);
            return;
        }
        QAbstractButton* button =
            QMessageBox::NoButton == button_ ? box->defaultButton() : box->button(button_);
        (nullptr != button ? button : box->buttons().value(0))->click();
    }

    QMessageBox::StandardButton button_;
    QTimer timer_;
    QStringList boxes_;
};

#endif
