#include "src/plugins/templateplugin/common/messagebox.h"

#include <QCoreApplication>
#include <QThread>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

QWidget* MessageBox::s_messageBoxParent = nullptr;

QMessageBox::StandardButton MessageBox::information(QString text,
                                                    QMessageBox::StandardButtons buttons,
                                                    QMessageBox::StandardButton defaultButton,
                                                    QMessageBox::StandardButton escapeButton) {
    return show(QMessageBox::Information, QCoreApplication::translate("MessageBox", "Information"),
                text, buttons, defaultButton, escapeButton);
}

QMessageBox::StandardButton MessageBox::warning(const QString& text,
                                                QMessageBox::StandardButtons buttons,
                                                QMessageBox::StandardButton defaultButton,
                                                QMessageBox::StandardButton escapeButton) {
    return show(QMessageBox::Warning, QCoreApplication::translate("MessageBox", "Warning"), text,
                buttons, defaultButton, escapeButton);
}

QMessageBox::StandardButton MessageBox::critical(const QString& text,
                                                 QMessageBox::StandardButtons buttons,
                                                 QMessageBox::StandardButton defaultButton,
                                                 QMessageBox::StandardButton escapeButton) {
    return show(QMessageBox::Critical, QCoreApplication::translate("MessageBox", "Critical"), text,
                buttons, defaultButton, escapeButton);
}

QMessageBox::StandardButton MessageBox::question(const QString& text,
                                                 QMessageBox::StandardButtons buttons,
                                                 QMessageBox::StandardButton defaultButton,
                                                 QMessageBox::StandardButton escapeButton) {
    return show(QMessageBox::Question, QCoreApplication::translate("MessageBox", "Question"), text,
                buttons, defaultButton, escapeButton);
}

QMessageBox::StandardButton MessageBox::show(QMessageBox::Icon icon, const QString& title,
                                             const QString& text,
                                             QMessageBox::StandardButtons buttons,
                                             QMessageBox::StandardButton defaultButton,
                                             QMessageBox::StandardButton escapeButton) {
    if (nullptr == QCoreApplication::instance() ||
        QThread::currentThread() != QCoreApplication::instance()->thread()) {
        GRIPPER_LOG("W", "QThread::currentThread() != qApp->thread()");
        GRIPPER_LOG("W", "text = %s", text.toUtf8().constData());
        return QMessageBox::NoButton;
    }
    QMessageBox box(icon, title, text, buttons, s_messageBoxParent);
    if (QMessageBox::NoButton != defaultButton) {
        box.setDefaultButton(defaultButton);
    }
    if (QMessageBox::NoButton != escapeButton) {
        box.setEscapeButton(escapeButton);
    }
    box.exec();
    return box.standardButton(box.clickedButton());
}
