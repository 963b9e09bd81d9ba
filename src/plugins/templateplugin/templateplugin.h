#ifndef TEMPLATEPLUGIN_TEMPLATEPLUGIN_H
#define TEMPLATEPLUGIN_TEMPLATEPLUGIN_H

#include <QMutex>
#include <QPointer>
#include <QReadWriteLock>
#include <QString>
#include <QWaitCondition>

#include <atomic>
#include <cstdint>

#include "platform/abscondinfo.h"
#include "platform/iplugin.h"
#include "src/plugins/templateplugin/script_wakeup.h"

class GripperLogicControl;
class GripperSettingWidget;
class QTranslator;
class QWidget;
class ScriptCommand;

// The object the pendant creates from this library: the gripper page, the program lifecycle
// hooks, the program-step hooks and the string commands of robot scripts.
class TemplatePlugin : public ExtensionSystem::IPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.qt-project.Orla.TeachPendantPlugin" FILE "templateplugin.json")

public:
    enum RobotScriptStatus : int32_t {
        RSS_RUN = 0,
        RSS_PAUSE = 1,
        RSS_STOP = 2,
    };

    TemplatePlugin();
    ~TemplatePlugin() override;

    // The name the plug-in's steps carry, whatever object name the host gives it.
    static QString own_name();

    Q_INVOKABLE QWidget* createCondUI(QWidget* parent);
    Q_INVOKABLE void updateCondForm(AbsCondInfo* absCond);
    Q_INVOKABLE AbsCondInfo* copyAbsCond(AbsCondInfo* srcAbsCond);
    Q_INVOKABLE bool checkCondInfo(AbsCondInfo* absCondInfo, QString& errorInfo);
    Q_INVOKABLE AbsCondInfo* xmlInfoToCondInfo(QString alias, QString xmlInfo);
    Q_INVOKABLE QString condInfo2ScriptInfo(AbsCondInfo* absCondInfo);

    bool mode_connect(int index, const QString& type, const QString& parameters);
    bool device_scan();
    bool mode_disconnect(int index);
    bool is_connect(int index);
    bool is_activate(int index);
    bool is_gripped(int index);
    bool is_arrivate(int index);
    bool is_dropped(int index);
    int get_status(int index);
    int get_position(int index);
    bool set_activate(int index);
    bool set_force(int index, int force);
    bool set_speed(int index, int speed);
    bool set_position(int index, int position, bool block);
    QString gripperUiConfig();
    bool debug_connect(int index, const QString& parameters);

public slots:
    bool pluginCommonInterface(const QString& in, QString& out) override;
    bool initParms() override;
    bool pausePlugin() override;
    bool continuePlugin() override;
    bool stopPlugin() override;
    QWidget* createUI(QWidget* parent) override;
    void setPluginSharedFilePath(const QString& path) override;
    void setPluginMessageBoxParentWidget(QWidget* parent) override;
    void loadTranslator(const QString& language) override;
    void enableEdit(const bool& enable) override;

private:
    // How the wait for a move ends; MW_WAITING while it goes on.
    enum MoveWait { MW_WAITING, MW_FINISHED, MW_STOPPED, MW_LOST };

    typedef bool (TemplatePlugin::*CommandHandler)(const ScriptCommand& command, QString& out);
    struct CommandEntry {
        const char* name;
        CommandHandler handler;
    };
    static const CommandEntry kCommands[];

    static CommandHandler handler_of(const QString& name);
    void set_script_status(RobotScriptStatus status);
    void pass_command_mutex();
    void set_command_running(bool running);
    void finish_command();

    GripperLogicControl* driver_at(int index);
    GripperLogicControl* slot_driver_at(int index);
    GripperSettingWidget* setting_page();
    MoveWait move_wait_state(GripperLogicControl* driver);
    bool wait_for_move(GripperLogicControl* driver);

    bool run_connect_tcp(const ScriptCommand& command, QString& out);
    bool run_connect_usb(const ScriptCommand& command, QString& out);
    bool run_scan(const ScriptCommand& command, QString& out);
    bool run_active(const ScriptCommand& command, QString& out);
    bool run_set_position(const ScriptCommand& command, QString& out);
    bool run_set_force(const ScriptCommand& command, QString& out);
    bool run_set_speed(const ScriptCommand& command, QString& out);
    bool run_is_connect(const ScriptCommand& command, QString& out);
    bool run_is_activate(const ScriptCommand& command, QString& out);
    bool run_get_status(const ScriptCommand& command, QString& out);
    bool run_get_position(const ScriptCommand& command, QString& out);
    bool run_is_grip(const ScriptCommand& command, QString& out);
    bool run_is_arrive(const ScriptCommand& command, QString& out);
    bool run_is_drop(const ScriptCommand& command, QString& out);
    bool run_disconnect(const ScriptCommand& command, QString& out);
    bool run_config_info(const ScriptCommand& command, QString& out);
    bool run_set_param(const ScriptCommand& command, QString& out);

    // The page made by createUI; the host owns it, so it may go away.
    QPointer<QWidget> widget_;
    bool command_running_;
    QMutex command_mutex_;
    QWaitCondition command_finished_;
    mutable QReadWriteLock status_lock_;
    RobotScriptStatus robot_script_status_;
    QTranslator* translator_;
    // Set once createUI has made the page, whose Setting tab the connect commands drive.
    std::atomic<bool> page_created_;
    ScriptWakeup move_wakeup_;
};

#endif
