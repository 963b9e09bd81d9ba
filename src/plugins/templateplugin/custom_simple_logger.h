#ifndef TEMPLATEPLUGIN_CUSTOM_SIMPLE_LOGGER_H
#define TEMPLATEPLUGIN_CUSTOM_SIMPLE_LOGGER_H

#include <QString>
#include <QtGlobal>

#include <cstdarg>

// The framework message handler that was installed before outputMessage; null when none was.
extern QtMessageHandler g_default_qt_message_halder_;

// Back end of simple_logger: turns one call into a debug message of the category "default",
// reading level + "_" + file + "_" + line + ":" + the expanded format.
void custom_simple_logger(const char* level, const char* file, unsigned int line,
                          const char* format, va_list args);

// Framework message handler: appends each message, time-stamped and tagged, to
// "./zanther_gripper_log.log", then hands it on to the previous handler.
void outputMessage(QtMsgType type, const QMessageLogContext& context, const QString& message);

// Installs outputMessage as the framework message handler and keeps the one it replaces; a
// repeated call keeps the handler found by the first one.
void install_output_message();

// Puts the kept handler back in place of outputMessage; a handler installed after outputMessage
// stays.
void uninstall_output_message();

// Registers custom_simple_logger and installs outputMessage, keeping the previous handler.
// A repeated call keeps the handler found by the first one.
void install_gripper_logging();

#endif
