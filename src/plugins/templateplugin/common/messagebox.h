#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_MESSAGEBOX_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_MESSAGEBOX_H

#include <QMessageBox>
#include <QString>

class QWidget;

// The four standard message boxes, shown modally over the widget the pendant handed to the
// plug-in (s_messageBoxParent; none: centred on the screen). Each returns the button pressed.
// Called off the interface thread, a box is not shown: the call logs and returns NoButton.
class MessageBox {
public:
    static QMessageBox::StandardButton information(
        QString text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton,
        QMessageBox::StandardButton escapeButton = QMessageBox::NoButton);
    static QMessageBox::StandardButton warning(
        const QString& text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton,
        QMessageBox::StandardButton escapeButton = QMessageBox::NoButton);
    static QMessageBox::StandardButton critical(
        const QString& text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton,
        QMessageBox::StandardButton escapeButton = QMessageBox::NoButton);
    static QMessageBox::StandardButton question(
        const QString& text,
        QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No,
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton,
        QMessageBox::StandardButton escapeButton = QMessageBox::NoButton);

    static QWidget* s_messageBoxParent;

private:
    static QMessageBox::StandardButton show(QMessageBox::Icon icon, const QString& title,
                                            const QString& text,
                                            QMessageBox::StandardButtons buttons,
                                            QMessageBox::StandardButton defaultButton,
                                            QMessageBox::StandardButton escapeButton);
};

#endif
