#include "src/plugins/templateplugin/script_wakeup.h"

void ScriptWakeup::wake() {
    QMutexLocker locker(&mutex_);
    condition_.wakeAll();
}
