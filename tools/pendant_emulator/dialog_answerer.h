#ifndef TOOLS_PENDANT_EMULATOR_DIALOG_ANSWERER_H
#define TOOLS_PENDANT_EMULATOR_DIALOG_ANSWERER_H

#include <QObject>
#include <QStringList>
#include <QTimer>

// Answers the message boxes that open while the tour runs, as an operator would press their
// default button, and keeps their texts.
class DialogAnswerer : public QObject {
    Q_OBJECT

public:
    explicit DialogAnswerer(QObject* parent = nullptr);

    // Texts of the boxes answered so far, "<title>: <text>".
    const QStringList& answered() const { return answered_; }

signals:
    void dialog_answered(const QString& text);

private:
    void look();

    QTimer timer_;
    QStringList answered_;
};

#endif
